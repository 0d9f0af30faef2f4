#include "language/KW_Resource.h"

#include "language/KW_Language.h"
#include "platform/UniString.h"
#include "tests/support/RecordingHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;

class KW_Resource_Test : public testing::Test {
protected:
    ~KW_Resource_Test() override { gKW_Language = KW_Language_International; }

    static std::string text(short base, long index) {
        const KW_String text = KW_Resource_GetString(static_cast<short>(base + gKW_Language), index);
        return GS::UniStringToUtf8(GS::UniString(text.data, text.length));
    }

    support::RecordingHost host_;
};

TEST_F(KW_Resource_Test, AMissingTextIsTakenFromTheInternationalCopy) {
    struct Case {
        short language;
        long index;
        const char* text;
    };
    for (const Case& each : std::vector<Case>{
             {0, 1, "dappertutto"},
             {0, 2, "only international"},
             {0, 3, ""},
             {0, 4, "_ERR_NO_"},
             {1, 1, "everywhere"},
             {2, 1, "everywhere"},  // a language without any texts
             {3, 1, "überall"},
             {3, 2, "only international"},
             {3, 3, "drei"},
             {3, 4, "nur deutsch"},
             {1, 0, "_ERR_NO_"},
             {1, -1, "_ERR_NO_"},
             {1, 65537, "everywhere"},  // the host takes 16 bits
         }) {
        gKW_Language = each.language;
        EXPECT_EQ(text(32530, each.index), each.text) << each.language << ", " << each.index;
    }
    EXPECT_NE(KW_Resource_GetString(32530 + 1, 3).data, nullptr) << "an empty text is not the null string";
}

TEST_F(KW_Resource_Test, AMenuItemGetsItsText) {
    host_.menus = {32501};
    EXPECT_EQ(KW_Menu_SetText(32501, 2, KW_String("Lingua", KW_String::Encoding_System)), kNoError);
    EXPECT_EQ(KW_Menu_SetText(32501, 3, KW_String()), kNoError);
    EXPECT_EQ(KW_Menu_SetText(32502, 4, KW_String("x", KW_String::Encoding_System)),
              support::RecordingHost::kNoSuchMenu);
    EXPECT_THAT(host_.calls, ElementsAre("SMIT 32501 2 Lingua", "SMIT 32501 3 ", "SMIT 32502 4 x"));
}

TEST_F(KW_Resource_Test, TheMenusOfAllLanguagesGetTheTextsOfTheCurrentOne) {
    host_.menus = {32500};
    gKW_Language = 3;  // lacks the text of item 2
    MenuUpdate();
    std::vector<std::string> expected;
    for (int menu = 32500; menu <= 32506; ++menu) {
        const std::string start = "SMIT " + std::to_string(menu) + " ";
        for (const char* item :
             {"1 Über", "2 Language", "3 Jetzt suchen", "4 Automatisch suchen", "5 Info"}) {
            expected.push_back(start + item);
        }
    }
    EXPECT_EQ(host_.calls, expected);
    gKW_Language = 0;
    MenuUpdate();
    EXPECT_EQ(host_.itemTexts.at({32500, 2}), "Lingua");
}

}  // namespace
