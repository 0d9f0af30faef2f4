#include "platform/CFURL.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "platform/src/http/CFObjects.h"

namespace {

/// Both escape steps, as a download takes them; "(null)" when one fails.
std::string normalised(const std::string& utf8) {
    const CFString text{utf8};
    const CFString nothing{""};
    const CFStringRef decoded =
        CFURLCreateStringByReplacingPercentEscapes(kCFAllocatorDefault, &text, &nothing);
    const CFStringRef escaped =
        CFURLCreateStringByAddingPercentEscapes(kCFAllocatorDefault, decoded, nullptr, nullptr, 0x08000100);
    const std::string result = escaped != nullptr ? escaped->utf8 : "(null)";
    CFRelease(decoded);
    CFRelease(escaped);
    return result;
}

TEST(CFURL, DecodingAndEscapingAgainNormalisesEveryEscape) {
    const std::pair<const char*, const char*> cases[] = {
        {"", ""},
        {"http://a/b%2520c", "http://a/b%2520c"},  // the "%" that %25 stands for is escaped again
        {"http://a/100%", "http://a/100%25"},      // no escape at all
        {"http://a/%zz%4", "http://a/%25zz%254"},  // nor are these
        {"http://a/%41%7e", "http://a/A~"},        // what may stand in a URL loses its escape
        {"http://a/%00", "http://a/%00"},
        {"http://a/\"<>\\^`{|}", "http://a/%22%3C%3E%5C%5E%60%7B%7C%7D"},
        {"http://[::1]:80/-._~:/?#[]@!$&'()*+,;=", "http://[::1]:80/-._~:/?#[]@!$&'()*+,;="},
        {"http://a/%ED%A0%80", "(null)"},  // half a surrogate pair is no UTF-8
    };
    for (const auto& [given, expected] : cases)
        EXPECT_EQ(normalised(given), expected) << given;

    const CFString text{"%2F%20%2f"};
    const CFString slash{"/"};
    const CFStringRef decoded =
        CFURLCreateStringByReplacingPercentEscapes(kCFAllocatorDefault, &text, &slash);
    ASSERT_NE(decoded, nullptr);
    EXPECT_EQ(decoded->utf8, "%2F %2f") << "a character that is to stay escaped";
    CFRelease(decoded);
}

TEST(CFURL, AURLHoldsOnlyWhatMayStandInIt) {
    const std::pair<const char*, bool> cases[] = {
        {"http://a/%20", true},      {"a", true}, {"", false}, {"http://a/ ", false}, {"http://a/%2", false},
        {"http://a/\xC3\xA9", false}};
    for (const auto& [given, accepted] : cases) {
        const CFString text{given};
        const CFURLRef url = CFURLCreateWithString(kCFAllocatorDefault, &text, nullptr);
        EXPECT_EQ(url != nullptr, accepted) << given;
        CFRelease(url);
    }
}

}  // namespace
