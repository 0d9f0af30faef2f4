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

class KWLibrary : public LibraryHost {
protected:
    const std::pair<const std::string, Part> kChair{"Chair", {7, "/Lib/Chair.gsm"}};

    KWLibrary()
        : addOnFolder(utf8(KW_Location::AddOnLocation(true))), suiteFolder(addOnFolder + "/QRN_Library") {
        std::filesystem::create_directory(suiteFolder);
        partsOfFolder[suiteFolder] = {kChair};
    }
    ~KWLibrary() override { std::filesystem::remove(suiteFolder); }

    std::string addOnFolder;
    std::string suiteFolder;
    ScriptedPresenter user;
};

TEST_F(KWLibrary, TheEmbeddedLibraryComesFirst) {
    KW_List<KW_Location> list;
    libraries = {"/a", "/b", "/c"};
    for (const auto& [position, expected] :
         {std::pair{-1, "/a/b/c"}, {0, "/a/b/c"}, {1, "/b/a/c"}, {2, "/c/a/b"}, {3, "/a/b/c"}}) {
        embedded = position;
        EXPECT_TRUE(KW_Library::Libraries(list));
        std::string found;
        for (long i = 0; i < list.count; ++i)
            found += utf8(list[i]);
        EXPECT_EQ(found, expected) << position;
    }
    librariesAnswer = -1;
    EXPECT_FALSE(KW_Library::Libraries(list));
    EXPECT_EQ(list.count, 0);
}

TEST_F(KWLibrary, TheSuiteFolderIsLoadedUnlessOneOfItsNameIs) {
    const std::pair<std::vector<std::string>, bool> cases[] = {
        {{}, false},
        {{"/a", "/elsewhere/qrn_library"}, true},
        {{"/QRN_Library/parts", "/a/QRN_Library2", "/a/My QRN_Library", addOnFolder}, false},
    };
    for (const auto& [loaded, counts] : cases) {
        libraries = loaded;
        added.clear();
        EXPECT_TRUE(KW_Library::Load(true));
        EXPECT_EQ(added.empty(), counts) << testing::PrintToString(loaded);
        added.clear();
        EXPECT_TRUE(KW_Library::Load(false));
        EXPECT_THAT(added, ElementsAre(suiteFolder)) << "without a look at the loaded ones";
    }
    // So with the lookups of a part.
    libraries = {"/elsewhere/qrn_library"};
    parts.clear();
    partsOfFolder[suiteFolder] = {kChair};
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
    std::filesystem::remove(suiteFolder);
    added.clear();
    EXPECT_TRUE(KW_Library::Load(true)) << "nothing to load";
    EXPECT_TRUE(KW_Library::Load(false));
    EXPECT_THAT(added, IsEmpty());
}

TEST_F(KWLibrary, TheChosenFolderIsAdded) {
    user.then(UserAction::chooseFile("/chosen"))
        .then(UserAction::close())
        .then(UserAction::chooseFile("/refused"));
    EXPECT_TRUE(KW_Library::Ask(text("Where?"), false));
    EXPECT_FALSE(KW_Library::Ask(text("Where?"), true));
    addAnswer = -1;
    EXPECT_FALSE(KW_Library::Ask(KW_String(), true));
    EXPECT_THAT(added, ElementsAre("/chosen", "/refused"));
    std::string titles;
    for (const auto& each : user.choosers)
        titles += "[" + each.title + "]";
    EXPECT_EQ(titles, "[Where?][TessaroLibrary: Where?][TessaroLibrary: ]");
}

TEST_F(KWLibrary, TheUserIsToldWhenAPartStaysMissingAndThatIsWanted) {
    using Lookup = bool (*)(const KW_String&, long&, bool, const KW_String&, API_LibTypeID);
    for (const Lookup lookup : {&KW_General::GetLPIdxFullLib, &KW_General::GetLPIdxFullLibNoCheckLibs}) {
        parts = {kChair};
        long index = 99;
        EXPECT_TRUE(lookup(text("Chair.gsm"), index, true, text("no chair"), APILib_Door));
        EXPECT_EQ(index, 7);
        EXPECT_THAT(added, IsEmpty()) << "a part that is there needs no library";
        user.then(UserAction::close());
        EXPECT_FALSE(lookup(text("Lamp"), index, false, text("no lamp"), APILib_Door));
        EXPECT_EQ(index, -1);
        EXPECT_TRUE(user.alerts.empty());

        const KW_String standard = KW_Resource_GetFrameworkString(85);
        for (const KW_String& message : {text("no lamp"), text(""), KW_String()}) {
            user.then(UserAction::close()).then(UserAction::answer(1));
            EXPECT_FALSE(lookup(text("Lamp"), index, true, message, APILib_Door));
            EXPECT_EQ(GS::UniStringToUtf8(user.alerts.back().texts[1]),
                      utf8(message.length > 0 ? message : standard));
        }
        user.alerts.clear();
        added.clear();
    }
}

}  // namespace
