#include "language/KW_Resource.h"

#include "tests/language/LanguageFixture.h"
#include "tests/support/RecordingHost.h"
#include "tests/support/Text.h"

#include <gmock/gmock.h>
#include <vector>

namespace {

using testing::ElementsAre;

class KW_Resource_Test : public LanguageFixture {
protected:
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
             {3, 4, "nur deutsch"},
             {1, 0, "_ERR_NO_"},
             {1, 65537, "everywhere"},  // the host takes 16 bits
         }) {
        gKW_Language = each.language;
        EXPECT_EQ(support::utf8(KW_Resource_GetCurrentString(32530, each.index)), each.text)
            << each.language << ", " << each.index;
    }
}

TEST_F(KW_Resource_Test, AMenuItemGetsItsText) {
    host_.menus = {32501};
    EXPECT_EQ(KW_Menu_SetText(32501, 3, KW_String()), kNoError);
    EXPECT_EQ(KW_Menu_SetText(32502, 4, support::text("x")), support::RecordingHost::kNoSuchMenu);
    EXPECT_THAT(host_.calls, ElementsAre("SMIT 32501 3 ", "SMIT 32502 4 x"));
}

TEST_F(KW_Resource_Test, TheMenusOfAllLanguagesGetTheTextsOfTheCurrentOne) {
    gKW_Language = 3;  // lacks the text of item 2
    MenuUpdate();
    std::vector<std::string> expected;
    for (int menu = 32500; menu <= 32506; ++menu) {
        for (const char* item : {"1 Über", "2 Language", "3 Jetzt suchen", "4 Automatisch suchen", "5 Info"})
            expected.push_back("SMIT " + std::to_string(menu) + " " + item);
    }
    EXPECT_EQ(host_.calls, expected);
}

}  // namespace
