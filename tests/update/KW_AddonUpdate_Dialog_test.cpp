#include "tests/update/OfflineUpdateFixture.h"

#include "language/KW_Language.h"
#include "platform/host/LaunchHandling.h"

namespace {

class ResultDialog : public OfflineUpdateFixture {
protected:
    /// "1 text", "5 text -" for a disabled item.
    static std::string item(short number) {
        const platform::DialogItem* const each = dialog()->find(number);
        const std::string line = std::to_string(number) + " " + GS::UniStringToUtf8(each->text);
        return each->enabled ? line : line + " -";
    }
    static std::vector<short> visible() {
        std::vector<short> numbers;
        for (short number = 1; number <= 7; ++number)
            if (dialog()->find(number)->visible) numbers.push_back(number);
        return numbers;
    }
    static std::string with(short text, const std::string& placeholder, const std::string& name) {
        std::string line = suiteText(text);
        return line.replace(line.find(placeholder), placeholder.size(), name);
    }
};

TEST_F(ResultDialog, OffersOnlyItsCloseButtonWhileTheCheckRuns) {
    check(true);
    ASSERT_NE(dialog(), nullptr);
    EXPECT_EQ(GS::UniStringToUtf8(dialog()->title), "TessaroLibrary");
    EXPECT_EQ(dialog()->width, 655);
    EXPECT_EQ(dialog()->height, 172);
    EXPECT_EQ(visible(), (std::vector<short>{2, 3}));
    EXPECT_EQ(item(2), "2 " + suiteText(5));
    EXPECT_FALSE(dialog()->find(3)->text.IsEmpty()) << "the text of the resource";
}

TEST_F(ResultDialog, TellsOfTheAddOnAndItsLibraryInEveryLanguage) {
    for (short language = 0; language < KW_Language_Count; ++language) {
        for (const bool available : {false, true}) {
            for (const KW_String& library : {text("Tessaro"), text(""), KW_String()}) {
                gKW_Language = language;
                check(true, library);
                finish(available ? kNewerLine : "");
                ASSERT_NE(dialog(), nullptr);
                const bool named = library.data != nullptr;
                const std::string headline = suiteText(available ? 34 : 35);
                EXPECT_EQ(item(1), "1 " + suiteText(37));
                EXPECT_EQ(item(2), "2 " + suiteText(5));
                EXPECT_EQ(item(4), "4 " + (named ? with(available ? 81 : 80, "ADDONNAME", "TessaroLibrary")
                                                 : headline));
                EXPECT_EQ(item(5), "5 " + suiteText(79) + (available ? "" : " -"));
                EXPECT_EQ(visible(), named ? std::vector<short>({1, 2, 3, 4, 5, 6, 7})
                                           : std::vector<short>({1, 2, 4, 5}));
                const int before = presenter_.changes;
                DGSetItemText(sIDUpdateDialog, 2, GS::UniString());
                EXPECT_GT(presenter_.changes, before) << "a bracket is still open";
                if (!named) continue;
                EXPECT_EQ(item(3), "3 " + headline);
                EXPECT_EQ(item(6), "6 " + with(82, "ADDONLIBNAME", utf8(library)));
                EXPECT_EQ(item(7), "7 " + suiteText(84));
            }
        }
    }
}

/// Where the buttons lead is in the transcripts.
TEST_F(ResultDialog, AnswersEachMessageAsItsHostExpectsAndNotesACancel) {
    platform::setLaunchHandler([](const platform::LaunchRequest&) { return 0; });
    const auto handle = [](short message, short item) {
        return KW_AddonUpdate_ResultUpdate_Handler(message, 0, item, 0, 0);
    };
    for (const short item : {-2, -1, 0, 1, 2, 3, 4, 5, 6, 7, 8}) {
        const bool isButton = item == -1 || item == 1 || item == 2 || item == 5 || item == 7;
        sUpdateCancelled = false;
        EXPECT_EQ(handle(DG_MSG_CLICK, item), isButton ? item : 0) << item;
        EXPECT_EQ(sUpdateCancelled, item == 2);
    }
    platform::setLaunchHandler(nullptr);
    EXPECT_EQ(handle(DG_MSG_INIT, 0), 0);
    EXPECT_EQ(handle(DG_MSG_CLOSE, 2), 1);
    EXPECT_EQ(handle(DG_MSG_CHANGE, 1), 0);
}

}  // namespace
