#include "library/KW_Library.h"

#include "language/KW_Resource.h"
#include "library/KW_General.h"
#include "library/KW_LibPart.h"
#include "tests/library/LibraryHost.h"
#include "tests/support/ScriptedPresenter.h"

#include <gmock/gmock.h>
#include <filesystem>

namespace {

using platform::UserAction;
using support::LibraryHost;
using support::text;
using support::utf8;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kChooser = "chooser folder [TessaroLibrary: Select the “QRN_Library” folder] [] []";
constexpr const char* kDefaultAlert =
    "alert -1 [|The library part was not found. Load the “QRN_Library” library and try again.|] [OK||]";

class KWLibrary : public LibraryHost {
protected:
    KWLibrary()
        : addOnFolder(utf8(KW_Location::AddOnLocation(true))), suiteFolder(addOnFolder + "/QRN_Library") {
        std::filesystem::create_directory(suiteFolder);
        partsOfFolder[suiteFolder] = {{"Chair", {7, "/Lib/Chair.gsm"}}};
        partsOfFolder["/chosen"] = {{"Table", {8, "/chosen/Table.gsm"}}};
    }
    ~KWLibrary() override { removeSuiteFolder(); }

    void removeSuiteFolder() const { std::filesystem::remove(suiteFolder); }

    std::string addOnFolder;
    std::string suiteFolder;
    ScriptedPresenter user;
};

TEST_F(KWLibrary, TheEmbeddedLibraryComesFirst) {
    struct Case {
        std::vector<std::string> libraries;
        std::int32_t embedded;
        std::vector<std::string> expected;
    };
    const Case cases[] = {
        {{}, -1, {}},
        {{"/a", "/b", "/c"}, 0, {"/a", "/b", "/c"}},
        {{"/a", "/b", "/c"}, 1, {"/b", "/a", "/c"}},
        {{"/a", "/b", "/c"}, 2, {"/c", "/a", "/b"}},
        {{"/a", "/b"}, 2, {"/a", "/b"}},
    };
    KW_List<KW_Location> list;
    for (const Case& each : cases) {
        libraries = each.libraries;
        embedded = each.embedded;
        EXPECT_TRUE(KW_Library::Libraries(list));
        std::vector<std::string> found;
        for (long i = 0; i < list.count; ++i)
            found.push_back(utf8(list[i]));
        EXPECT_EQ(found, each.expected);
    }
    librariesAnswer = -1;
    EXPECT_FALSE(KW_Library::Libraries(list));
    EXPECT_EQ(list.count, 0);
}

TEST_F(KWLibrary, TheSuiteFolderIsLoadedUnlessOneOfItsNameIs) {
    std::string upper = suiteFolder;
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    struct Case {
        std::vector<std::string> libraries;
        bool counts;
    };
    const Case cases[] = {
        {{}, false},
        {{suiteFolder}, true},
        {{upper}, true},
        {{"/a", "/elsewhere/qrn_library"}, true},
        {{"QRN_LIBRARY"}, true},
        {{"/QRN_Library/parts", "/a/QRN_Library2", "/a/My QRN_Library", addOnFolder}, false},
    };
    for (const Case& each : cases) {
        libraries = each.libraries;
        added.clear();
        EXPECT_TRUE(KW_Library::Load(true));
        EXPECT_EQ(added.empty(), each.counts) << testing::PrintToString(each.libraries);
        added.clear();
        EXPECT_TRUE(KW_Library::Load(false));
        EXPECT_THAT(added, ElementsAre(suiteFolder)) << "without a look at the loaded ones";
    }
    // So with the lookups of a part.
    libraries = {"/elsewhere/qrn_library"};
    parts.clear();
    partsOfFolder[suiteFolder] = {{"Chair", {7, "/Lib/Chair.gsm"}}};
    user.then(UserAction::close());
    EXPECT_EQ(KW_LibPart::IndexFullLib(text("Chair"), APILib_Door), -1);
    EXPECT_EQ(KW_LibPart::IndexFullLibNoCheckLibs(text("Chair"), APILib_Door), 7);
}

TEST_F(KWLibrary, OnlyAHostThatRefusesTheFolderIsAFailure) {
    librariesAnswer = -1;
    EXPECT_TRUE(KW_Library::Load(true)) << "a host that cannot tell what is loaded";
    EXPECT_THAT(added, ElementsAre(suiteFolder));
    addAnswer = -1;
    EXPECT_FALSE(KW_Library::Load(true));
    EXPECT_FALSE(KW_Library::Load(false));
    removeSuiteFolder();
    added.clear();
    EXPECT_TRUE(KW_Library::Load(true)) << "nothing to load";
    EXPECT_TRUE(KW_Library::Load(false));
    EXPECT_THAT(added, IsEmpty());
}

TEST_F(KWLibrary, TheChosenFolderIsAdded) {
    user.then(UserAction::chooseFile("/chosen"));
    EXPECT_TRUE(KW_Library::Ask(text("Where?"), false));
    user.then(UserAction::close());
    EXPECT_FALSE(KW_Library::Ask(text("Where?"), true));
    addAnswer = -1;
    user.then(UserAction::chooseFile("/refused"));
    EXPECT_FALSE(KW_Library::Ask(KW_String(), true));
    user.then(UserAction::close());
    EXPECT_FALSE(KW_Library::Ask(text(""), false));
    EXPECT_THAT(added, ElementsAre("/chosen", "/refused"));
    std::vector<std::string> titles;
    for (const auto& chooser : user.choosers)
        titles.push_back(chooser.title);
    EXPECT_THAT(titles, ElementsAre("Where?", "TessaroLibrary: Where?", "TessaroLibrary: ", ""));
}

TEST_F(KWLibrary, AMissingPartIsFoundByLoadingTheSuiteLibraryOrOneThatTheUserChooses) {
    parts = {{"Door", {3, "/Lib/Door.gsm"}}};
    EXPECT_EQ(KW_LibPart::IndexFullLib(text("Door"), APILib_Door), 3);
    EXPECT_EQ(KW_LibPart::IndexFullLibNoCheckLibs(text("Door"), APILib_Door), 3);
    EXPECT_THAT(added, IsEmpty()) << "a part that is there needs no library";
    EXPECT_EQ(KW_LibPart::IndexFullLib(text("Chair"), APILib_Door), 7);
    EXPECT_THAT(added, ElementsAre(suiteFolder));
    EXPECT_THAT(user.log, IsEmpty());

    searched.clear();
    user.then(UserAction::chooseFile("/chosen"));
    EXPECT_EQ(KW_LibPart::IndexFullLib(text("Table"), APILib_Door), 8);
    EXPECT_THAT(added, ElementsAre(suiteFolder, suiteFolder, "/chosen"));
    EXPECT_THAT(user.log, ElementsAre(kChooser, "chooser closed"));
    EXPECT_EQ(searched.size(), 3u);

    user.then(UserAction::chooseFile("/empty"));
    EXPECT_EQ(KW_LibPart::IndexFullLib(text("Lamp"), APILib_Door), -1);
    EXPECT_EQ(searched.size(), 6u);

    user.then(UserAction::close());
    EXPECT_EQ(KW_LibPart::IndexFullLib(text("Lamp"), APILib_Door), -1);
    addAnswer = -1;
    user.then(UserAction::chooseFile("/refused"));
    EXPECT_EQ(KW_LibPart::IndexFullLib(text("Lamp"), APILib_Door), -1);
    EXPECT_EQ(searched.size(), 10u) << "no search after cancel or refusal";
}

TEST_F(KWLibrary, TheUserIsToldWhenAPartStaysMissingAndThatIsWanted) {
    using Lookup = bool (*)(const KW_String&, long&, bool, const KW_String&, API_LibTypeID);
    for (const Lookup lookup : {&KW_General::GetLPIdxFullLib, &KW_General::GetLPIdxFullLibNoCheckLibs}) {
        user.log.clear();
        parts.clear();
        partsOfFolder[suiteFolder] = {{"Chair", {7, "/Lib/Chair.gsm"}}};
        long index = 99;
        EXPECT_TRUE(lookup(text("Chair.gsm"), index, true, text("no chair"), APILib_Door));
        EXPECT_EQ(index, 7);
        user.then(UserAction::close());
        EXPECT_FALSE(lookup(text("Lamp"), index, false, text("no lamp"), APILib_Door));
        EXPECT_EQ(index, -1);
        EXPECT_THAT(user.log, ElementsAre(kChooser, "chooser closed"));

        const std::pair<KW_String, std::string> alerts[] = {{text("no lamp"), "alert -1 [|no lamp|] [OK||]"},
                                                            {text(""), kDefaultAlert},
                                                            {KW_String(), kDefaultAlert}};
        for (const auto& [message, alert] : alerts) {
            user.log.clear();
            user.then(UserAction::close()).then(UserAction::answer(1));
            EXPECT_FALSE(lookup(text("Lamp"), index, true, message, APILib_Door));
            EXPECT_THAT(user.log, ElementsAre(kChooser, "chooser closed", alert, "alert answered 1"));
        }
    }
    gKW_Language = 0;
    user.then(UserAction::close()).then(UserAction::answer(1));
    long index = 0;
    EXPECT_FALSE(KW_General::GetLPIdxFullLib(text("Lamp"), index, true, KW_String(), APILib_Door));
    EXPECT_EQ(user.choosers.back().title, "TessaroLibrary: " + utf8(KW_Resource_GetString(32710, 13)));
    EXPECT_EQ(GS::UniStringToUtf8(user.alerts.back().texts[1]), utf8(KW_Resource_GetString(32710, 85)));
}

}  // namespace
