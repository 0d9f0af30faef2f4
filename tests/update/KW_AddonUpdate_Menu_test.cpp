#include "tests/update/UpdateFixture.h"

namespace {

constexpr short kMenu = 32500;
constexpr short kItem = 4;

class AutoUpdateItem : public UpdateFixture {
protected:
    std::uint32_t& flags(short menu) { return host_.itemFlags[{menu, kItem}]; }
};

TEST_F(AutoUpdateItem, ShowsWhatIsStored) {
    const struct {
        std::string value;  // "-" for no value
        std::uint32_t before;
        std::uint32_t after;
    } cases[] = {
        {"-", 0, 2}, {"", 0, 2},  {"1", 0, 2},  {"1", 2, 2},  {"0", 2, 0},       {"0", 0, 0},
        {"7", 0, 0}, {"7", 2, 2}, {"-1", 2, 2}, {"no", 2, 2}, {"0", 0x13, 0x11}, {"1", 0x11, 0x13},
    };
    host_.menus = {32501, 32505};
    for (const auto& each : cases) {
        host_.calls.clear();
        flags(32501) = each.before;
        flags(32505) = each.before;
        if (each.value != "-") store("AutoUpdate", each.value);
        EXPECT_TRUE(KW_AddonUpdate_SetMenuUpdateCheck(kMenu, kItem));
        EXPECT_EQ(flags(32501), each.after) << each.value;
        EXPECT_EQ(flags(32505), each.after) << each.value;
        EXPECT_EQ(stored("AutoUpdate"), each.value == "-" ? "" : each.value) << "nothing is stored";
        const std::string written = std::to_string(each.after);
        EXPECT_EQ(host_.calls,
                  (std::vector<std::string>{"GMIF 32500 4", "GMIF 32501 4", "SMIF 32501 4 " + written,
                                            "GMIF 32502 4", "GMIF 32503 4", "GMIF 32504 4", "GMIF 32505 4",
                                            "SMIF 32505 4 " + written, "GMIF 32506 4"}));
    }
}

TEST_F(AutoUpdateItem, SwitchesEachMenuFromItsOwnMarkAndTheLastOneDecides) {
    EXPECT_TRUE(KW_AddonUpdate_SwitchAutoUpdateValue(kMenu, kItem));
    EXPECT_EQ(stored("AutoUpdate"), "") << "the host has none of the menus";
    host_.menus = {32500, 32503, 32506};
    flags(32500) = 0;
    flags(32503) = 2;
    flags(32506) = 0x12;
    for (const bool on : {false, true, false}) {
        EXPECT_TRUE(KW_AddonUpdate_SwitchAutoUpdateValue(kMenu, kItem));
        EXPECT_EQ(flags(32500), on ? 0u : 2u);
        EXPECT_EQ(flags(32503), on ? 2u : 0u);
        EXPECT_EQ(flags(32506), on ? 0x12u : 0x10u);
        EXPECT_EQ(stored("AutoUpdate"), on ? "1" : "0");
    }
}

}  // namespace
