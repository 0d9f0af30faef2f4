// The texts are read in place; here the same is done with lists of lines and of tokens, step by step, and
// both must come to the same on many random texts.

#include "language/KW_Language.h"
#include "tests/update/VersionText.h"
#include "update/KW_AddonUpdate_Internal.h"

#include <gtest/gtest.h>
#include <random>
#include <sstream>

namespace {

KW_String token(const KW_List<KW_String>& tokens, long number) {
    return number <= tokens.count ? tokens[number - 1] : KW_String();
}

bool digitsOnly(const KW_String& text) {
    const KW_CString bytes = text.ToCStr(KW_String::Encoding_System);
    for (unsigned int i = 0; i + 1 < bytes.size; ++i) {
        if (bytes.data[i] < '0' || bytes.data[i] > '9') return false;
    }
    return true;
}

bool isDate(const KW_String& text) {
    const auto separates = [&text](unsigned int at) {
        return text.CharAt(at) == '-' || text.CharAt(at) == '/';
    };
    return separates(2) && separates(5) && digitsOnly(text.Substring(0, 2)) &&
           digitsOnly(text.Substring(3, 2)) && digitsOnly(text.Substring(6, 4));
}

int kindOf(const KW_List<KW_String>& tokens) {
    if (tokens.count < 2) return 0;
    if (tokens[1].length == 10 && isDate(tokens[1])) return 2;
    if (tokens.count < 4) return 0;
    KW_List<KW_String> numbers;
    tokens[1].Split(numbers, '.');
    if (numbers.count < 4) return 0;
    for (long i = 0; i < 4; ++i) {
        if (!digitsOnly(numbers[i])) return 0;
    }
    const KW_String& tag = tokens[2];
    if (!tag.StartsWith(text("(AC"), 0) || !tag.EndsWith(text(")"))) return 0;
    return digitsOnly(tag.Substring(3, tag.length - 4)) && isDate(tokens[3]) ? 1 : 0;
}

std::string arranged(const KW_String& date) {
    return utf8(date.Substring(6, 4)) + utf8(date.Substring(3, 2)) + utf8(date.Substring(0, 2));
}

std::string joinedText(long& line, const KW_List<KW_String>& lines) {
    std::string joined;
    for (; line + 1 < lines.count && lines[line + 1].StartsWith(text("#"), 0); ++line) {
        if (!joined.empty()) joined += "\n";
        joined += utf8(lines[line + 1].Substring(2));
    }
    return joined;
}

long number(const KW_String& digits) {
    return static_cast<short>(KW_AddonUpdate_ToLong(digits));
}

std::string addonEntry(const KW_List<KW_String>& tokens) {
    std::string entry = "addon";
    KW_List<KW_String> numbers;
    tokens[1].Split(numbers, '.');
    for (long i = 0; i < 4; ++i)
        entry += " " + std::to_string(number(numbers[i]));
    const KW_String& tag = tokens[2];
    entry += " for " + std::to_string(tag.length > 5 ? number(tag.Substring(3, tag.length - 5)) : 0);
    bool inSE = true;
    bool inSuite = true;
    for (long i = 4; i < tokens.count; ++i) {
        if (tokens[i] == text("NoSE")) inSE = false;
        if (tokens[i] == text("NoSuite")) inSuite = false;
        for (short language = 0; language < KW_Language_Count; ++language) {
            if (KW_String::CompareIgnoreCase(tokens[i], 0, gKW_Languages_Suffixes[language], 0, 0) == 0) {
                entry += " " + std::to_string(language);
            }
        }
    }
    return entry + (inSE ? "" : " NoSE") + (inSuite ? "" : " NoSuite");
}

/// The entries, each kind in file order, by lists of lines and tokens.
std::string entriesByLists(const KW_String& file) {
    std::string messages;
    std::string addons;
    std::string libraries;
    KW_List<KW_String> lines;
    file.SplitLines(lines, true, true);
    for (long i = 0; i < lines.count; ++i) {
        if (lines[i].StartsWith(text("*"), 0) || lines[i].StartsWith(text("#"), 0)) continue;
        KW_List<KW_String> tokens;
        lines[i].SplitBySpaces(tokens);
        if (tokens[0].IndexOf(text("MESSAGE"), 0) >= 0) {
            const std::string all = joinedText(i, lines);
            const std::size_t url = std::min(all.find("http://"), all.size());
            messages += "message " + arranged(token(tokens, 2)) + " " + arranged(token(tokens, 3)) + " [" +
                        all.substr(0, url) + "][" + all.substr(url) + "]\n";
        } else if (const int kind = kindOf(tokens); kind == 2) {
            bool inSuite = true;
            for (long t = 2; t < tokens.count; ++t)
                inSuite = inSuite && tokens[t] != text("NoSuite");
            libraries += "library" + std::string(inSuite ? "" : " NoSuite") + " " + utf8(tokens[0]) + " " +
                         utf8(tokens[1]) + " " + arranged(tokens[1]) + " [" + joinedText(i, lines) + "]\n";
        } else if (kind == 1) {
            addons += addonEntry(tokens) + " " + utf8(tokens[0]) + " " + utf8(tokens[1]) + " " +
                      utf8(tokens[3]) + " " + arranged(tokens[3]) + " [" + joinedText(i, lines) + "]\n";
        }
    }
    return messages + addons + libraries;
}

std::string entriesInPlace(const KW_String& file) {
    KW_List<KW_AddonUpdate_Message> messages;
    KW_List<KW_AddonUpdate_Addon> addons;
    KW_List<KW_AddonUpdate_Library> libraries;
    KW_AddonUpdate_ReadVersions(file, messages, addons, libraries);
    std::string all;
    for (long i = 0; i < messages.count; ++i) {
        const KW_AddonUpdate_Message& each = messages[i];
        all += "message " + utf8(each.firstDate) + " " + utf8(each.secondDate) + " [" + utf8(each.text) +
               "][" + utf8(each.url) + "]\n";
    }
    for (long i = 0; i < addons.count; ++i) {
        const KW_AddonUpdate_Addon& each = addons[i];
        all += "addon";
        for (const short version : each.versionNumbers)
            all += " " + std::to_string(version);
        all += " for " + std::to_string(each.hostVersion);
        for (long l = 0; l < each.languages.count; ++l)
            all += " " + std::to_string(each.languages[l]);
        all += (each.inSE ? "" : " NoSE") + std::string(each.inSuite ? "" : " NoSuite");
        all += " " + utf8(each.name) + " " + utf8(each.versionText) + " " + utf8(each.dateText) + " " +
               utf8(each.date) + " [" + utf8(each.text) + "]\n";
    }
    for (long i = 0; i < libraries.count; ++i) {
        const KW_AddonUpdate_Library& each = libraries[i];
        all += "library" + std::string(each.inSuite ? "" : " NoSuite") + " " + utf8(each.name) + " " +
               utf8(each.dateText) + " " + utf8(each.date) + " [" + utf8(each.text) + "]\n";
    }
    return all;
}

KW_AddonUpdate_Comparison comparedByLists(const KW_String& own, const KW_String& file) {
    KW_List<KW_String> ownTokens;
    own.SplitBySpaces(ownTokens);
    if (kindOf(ownTokens) == 0) return KW_AddonUpdate_OwnLineInvalid;
    KW_List<KW_String> ownNumbers;
    ownTokens[1].Split(ownNumbers, '.');
    KW_List<KW_String> lines;
    file.SplitLines(lines, true, true);
    for (long i = 0; i < lines.count; ++i) {
        KW_List<KW_String> tokens;
        lines[i].SplitBySpaces(tokens);
        if (kindOf(tokens) != 1) continue;
        KW_List<KW_String> numbers;
        tokens[1].Split(numbers, '.');
        if (tokens[0] == ownTokens[0] && tokens[2] == token(ownTokens, 3) && numbers[0] == ownNumbers[0] &&
            arranged(tokens[3]) > arranged(token(ownTokens, 4))) {
            return KW_AddonUpdate_UpdateAvailable;
        }
    }
    return KW_AddonUpdate_UpToDate;
}

/// Pieces from which random texts come near the grammar often, with bars between them.
const char kPieces[] =
    "MESSAGE |Tessaro |T |22.0.5.2210 |1..2.3|...| (AC220) |(AC22) | (AC) |(AC2x) |03/08/2018|3/8/18|"
    "15-10-2018 |01/10/20189|T 1.2.3.4 (AC220) 15/10/2018 |T 1.0.0.0 (AC220) 16/10/2018\n|"
    "9999999999999999999.|# |#|\n|\n|\r\n|\r|\t| |*|http://|ita |RUS |NoSE |NoSuite |"
    "\xC3\xA8|\xE6\x97\xA5|\xF0\x9F\x98\x80|\xEF\xBC\x91";

std::string randomText(std::mt19937& random, std::size_t count) {
    std::vector<std::string> pieces;
    std::istringstream all(kPieces);
    for (std::string piece; std::getline(all, piece, '|');)
        pieces.push_back(piece);
    std::string chosen;
    for (std::size_t i = 0; i < count; ++i) {
        chosen += random() % 16 == 0 ? std::string(1, static_cast<char>(random() % 127 + 1))
                                     : pieces[random() % pieces.size()];
    }
    return chosen;
}

TEST(VersionsInPlace, ComeToWhatListsOfLinesAndTokensComeTo) {
    std::mt19937 random(220);
    int entries = 0;
    int updates = 0;
    for (int round = 0; round < 3000; ++round) {
        const KW_String file = text(randomText(random, random() % 60));
        const std::string expected = entriesByLists(file);
        ASSERT_EQ(entriesInPlace(file), expected) << utf8(file);
        entries += !expected.empty();
        for (const std::string& own : {std::string("T 1.2.3.4 (AC220) 15/10/2018"), randomText(random, 4)}) {
            const auto comparison = comparedByLists(text(own), file);
            ASSERT_EQ(KW_AddonUpdate_CompareVersions(text(own), file), comparison) << own << "\n"
                                                                                   << utf8(file);
            updates += comparison == KW_AddonUpdate_UpdateAvailable;
        }
    }
    EXPECT_GT(entries, 1000);
    EXPECT_GT(updates, 300);
}

}  // namespace
