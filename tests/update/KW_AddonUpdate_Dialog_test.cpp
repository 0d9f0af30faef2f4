#include "tests/update/OfflineUpdateFixture.h"

#include "language/KW_Language.h"

namespace {

class ResultDialog : public OfflineUpdateFixture {
protected:
    /// "1 text", "(4 text)" for a hidden item, "5 text -" for a disabled one.
    static std::string item(short number) {
        const platform::DialogItem* const each = dialog()->find(number);
        std::string line = std::to_string(number) + " " + GS::UniStringToUtf8(each->text);
        if (!each->enabled) line += " -";
        return each->visible ? line : "(" + line + ")";
    }
    static std::vector<std::string> items() {
        std::vector<std::string> all;
        for (short number = 1; number <= 7; ++number)
            all.push_back(item(number));
        return all;
    }
    static std::string with(short text, const std::string& placeholder, const std::string& name) {
        std::string line = suiteText(text);
        return line.replace(line.find(placeholder), placeholder.size(), name);
    }
    static std::string numbered(short number, const std::string& text) {
        return std::to_string(number) + " " + text;
    }
};

TEST_F(ResultDialog, OffersOnlyItsCloseButtonWhileTheCheckRuns) {
    check(true);
    ASSERT_NE(dialog(), nullptr);
    EXPECT_EQ(GS::UniStringToUtf8(dialog()->title), "TessaroLibrary");
    EXPECT_EQ(dialog()->width, 655);
    EXPECT_EQ(dialog()->height, 172);
    for (const short number : {1, 4, 5, 6, 7})
        EXPECT_FALSE(dialog()->find(number)->visible) << number;
    EXPECT_EQ(item(2), numbered(2, suiteText(5)));
    EXPECT_TRUE(dialog()->find(3)->visible);
    EXPECT_FALSE(dialog()->find(3)->text.IsEmpty()) << "the text of the resource";
}

TEST_F(ResultDialog, TellsOfTheAddOnAndItsLibraryInEveryLanguage) {
    for (short language = 0; language < KW_Language_Count; ++language) {
        for (const bool available : {false, true}) {
            for (const char* const library : {"Tessaro", ""}) {
                gKW_Language = language;
                check(true, text(library));
                finish(available ? kNewerLine : "");
                ASSERT_NE(dialog(), nullptr);
                const std::vector<std::string> expected = {
                    numbered(1, suiteText(37)),
                    numbered(2, suiteText(5)),
                    numbered(3, suiteText(available ? 34 : 35)),
                    numbered(4, with(available ? 81 : 80, "ADDONNAME", "TessaroLibrary")),
                    numbered(5, suiteText(79) + (available ? "" : " -")),
                    numbered(6, with(82, "ADDONLIBNAME", library)),
                    numbered(7, suiteText(84)),
                };
                EXPECT_EQ(items(), expected);
            }
        }
    }
}

TEST_F(ResultDialog, LeavesTheLibraryOutForAnAddOnWithoutOne) {
    for (const bool available : {false, true}) {
        check(true, KW_String());
        finish(available ? kNewerLine : "");
        ASSERT_NE(dialog(), nullptr);
        EXPECT_EQ(item(4), numbered(4, suiteText(available ? 34 : 35)));
        EXPECT_EQ(item(5), numbered(5, suiteText(79) + (available ? "" : " -")));
        for (const short number : {1, 2, 3, 6, 7})
            EXPECT_EQ(dialog()->find(number)->visible, number < 3) << number;
    }
}

TEST_F(ResultDialog, LeadsWhereItsButtonsSayAndCloses) {
    const std::string page = "http://update.tessaro.example/update_plugins/updates.htm?acver=22&lang=";
    constexpr short kCloseBox = -1;
    const struct {
        short item;
        short language;
        std::vector<std::string> addresses;
    } cases[] = {
        {1, 1, {"http://www.tessaro.example/"}},
        {5, 3, {page + "3&addon=TessaroLibrary"}},
        {7, 0, {page + "0&addon=TessaroLibrary&lib=Unknown"}},
        {2, 1, {}},
        {kCloseBox, 1, {}},
    };
    for (const auto& each : cases) {
        gKW_Language = each.language;
        launched_.clear();
        check(true);
        finish(kNewerLine);
        if (each.item != kCloseBox) {
            click(each.item);
        } else {
            platform::DialogControl::instance().perform(platform::UserAction::close(sIDUpdateDialog));
        }
        EXPECT_EQ(launched_, each.addresses);
        EXPECT_EQ(dialog(), nullptr);
        EXPECT_EQ(sUpdateCancelled, each.item == 2);
        EXPECT_EQ(host_.calls.back(), "UnregisterModelessWindow");
    }
}

TEST_F(ResultDialog, AnswersEachMessageAsItsHostExpects) {
    const auto handle = [](short message, short item) {
        return KW_AddonUpdate_ResultUpdate_Handler(message, 0, item, 0, 0);
    };
    for (const short item : {-2, -1, 0, 1, 2, 3, 4, 5, 6, 7, 8}) {
        const bool isButton = item == -1 || item == 1 || item == 2 || item == 5 || item == 7;
        EXPECT_EQ(handle(DG_MSG_CLICK, item), isButton ? item : 0) << item;
    }
    EXPECT_EQ(handle(DG_MSG_INIT, 0), 0);
    EXPECT_EQ(handle(DG_MSG_CLOSE, 2), 1);
    EXPECT_EQ(handle(DG_MSG_CHANGE, 1), 0);
}

}  // namespace
