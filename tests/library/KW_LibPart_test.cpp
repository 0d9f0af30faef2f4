#include "library/KW_LibPart.h"

#include "tests/library/LibraryHost.h"

#include <gmock/gmock.h>

namespace {

using support::LibraryHost;
using support::text;
using support::utf8;
using testing::ElementsAre;

class KWLibPart : public LibraryHost {
protected:
    KWLibPart() {
        parts = {
            {"Chair", {7, "/Lib/Chair.gsm"}}, {"Lost", {8, "/Lib/Lost.gsm", true}}, {"", {9, "/Lib/.gsm"}}};
    }
};

TEST_F(KWLibPart, ASearchHandsOutTheLocationOfWhatItFindsOrTellsWhatIsWrong) {
    API_LibPart part;
    ASSERT_EQ(KW_LibPart::Search(text("Chair"), APILib_Door, part), kNoError);
    EXPECT_EQ(part.index, 7);
    ASSERT_NE(part.location, nullptr);
    EXPECT_EQ(utf8(KW_Location(*part.location)), "/Lib/Chair.gsm");
    delete part.location;
    EXPECT_THAT(host.calls, ElementsAre("LibPart_Search false false"));

    EXPECT_EQ(KW_LibPart::Search(text("Lost"), APILib_Door, part), kAPIErrMissingDefinition);
    EXPECT_EQ(part.location, nullptr);
    EXPECT_EQ(KW_LibPart::Index(text("Lost"), APILib_Door), -1);
    EXPECT_EQ(KW_LibPart::Search(text("Chair.gsm"), APILib_Door, part), kAPIErrNoSuchPart);
    EXPECT_EQ(KW_LibPart::Index(text("Chair.gsm"), APILib_Door), 7);
    searchAnswer = -123;
    EXPECT_EQ(KW_LibPart::Search(text("Chair"), APILib_Door, part), -123);
}

TEST_F(KWLibPart, ANameThatNoPartCanHaveIsNotSearchedFor) {
    const std::string longest(kAPIPartNameUnits - 1, 'x');
    parts[longest] = {10, "/Lib/x.gsm"};
    EXPECT_EQ(KW_LibPart::Index(text(longest), APILib_Door), 10);
    EXPECT_THAT(searched, ElementsAre(longest));
    for (const std::string& name : {longest + "x", std::string(1'000'000, 'x')})
        EXPECT_EQ(KW_LibPart::Index(text(name), APILib_Door), -1);
    EXPECT_EQ(searched.size(), 1u);
}

TEST_F(KWLibPart, IsSearchedForByNameOrFileWithoutExtension) {
    const struct {
        KW_String given;
        std::string asName;
        std::string asFile;
    } cases[] = {
        {text("Chair."), "Chair", "Chair"},
        {text(".gsm"), "", ""},
        {text(""), "", ""},
        {KW_String(), "", ""},
        {KW_String("Chair\0hidden", 12, KW_String::Encoding_System), "Chair", "Chair"},
        {text("/Lib/Chair"), "/Lib/Chair", "Chair"},
        {text("/a.b/Chair"), "/a", ""},
        {text("/a.b/Chair.v2.gsm"), "/a.b/Chair.v2", "Chair.v2"},
    };
    for (const auto& each : cases) {
        KW_LibPart::Index(each.given, APILib_Door);
        EXPECT_EQ(searched.back(), each.asName) << utf8(each.given);
        KW_Location found;
        KW_LibPart::Location(KW_Location(each.given), APILib_Door, found);
        EXPECT_EQ(searched.back(), each.asFile) << utf8(each.given);
    }
}

TEST_F(KWLibPart, ALocationIsTheOneThatTheHostHolds) {
    KW_Location location;
    EXPECT_TRUE(KW_LibPart::Location(KW_Location(text("/elsewhere/Chair.txt")), APILib_Door, location));
    EXPECT_EQ(utf8(location), "/Lib/Chair.gsm");
    EXPECT_FALSE(KW_LibPart::Location(KW_Location(text("/Lib/Lost.gsm")), APILib_Door, location));
    EXPECT_TRUE(KW_LibPart::Location(9, location));
    // The host's indices have 32 bits.
    for (const long index : {8L, 0L, -1L, 99L, 0x1'0000'0007L, -0x1'0000'0000L + 7}) {
        API_LibPart part;
        EXPECT_FALSE(KW_LibPart::LibPart(index, part)) << index;
        EXPECT_EQ(part.location, nullptr);
        EXPECT_FALSE(KW_LibPart::Location(index, location)) << index;
    }
    EXPECT_EQ(utf8(location), "/Lib/.gsm") << "unchanged";
}

}  // namespace
