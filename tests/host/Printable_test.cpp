#include "host/Printable.h"

#include <gtest/gtest.h>

namespace {

TEST(Printable, NothingThatIsPrintedMovesTheCursorOrBreaksTheEncoding) {
    const std::pair<std::string, const char*> cases[] = {
        {"plain, \xC3\xA8, \xE2\x80\xA6, \xF0\x9F\x98\x80",
         "plain, \xC3\xA8, \xE2\x80\xA6, \xF0\x9F\x98\x80"},
        {"a\nb\tc\r", "a\\nb\\tc\\x0D"},
        {"\x1B[2J\x7F", "\\x1B[2J\\x7F"},
        {std::string("a\0b", 3), "a\\x00b"},
        {"\xC2\x9B"
         "1m",
         "\\xC2\\x9B1m"},  // a control character of the upper half
        {"\xE2\x80\xAE \xE2\x80\xA9 \xE2\x81\xA6", "\\xE2\\x80\\xAE \\xE2\\x80\\xA9 \\xE2\\x81\\xA6"},
        {"\xE8", "\\xE8"},                                        // cut short
        {"\xC0\xAF \xE0\x80\xAF", "\\xC0\\xAF \\xE0\\x80\\xAF"},  // overlong
        {"\xED\xA0\x80", "\\xED\\xA0\\x80"},                      // a surrogate
        {"\xF4\x90\x80\x80\xFF", "\\xF4\\x90\\x80\\x80\\xFF"},
    };
    for (const auto& [text, printed] : cases)
        EXPECT_EQ(host::printable(text), printed);
    EXPECT_EQ(host::inQuotes("C:\\ \"x\"\n"), "\"C:\\\\ \\\"x\\\"\\n\"");
}

}  // namespace
