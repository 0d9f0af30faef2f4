#include "tools/VersionsLint.h"

#include "update/KW_AddonUpdate_Internal.h"

#include <algorithm>
#include <chrono>
#include <tuple>

namespace tools {

namespace {

using Tokens = std::vector<KW_Units>;

constexpr VersionsRule kRules[] = {
    {"date-format", Severity::Error,
     "A date has ten characters, dd/mm/yyyy or dd-mm-yyyy. With another one the line is ignored, or an "
     "add-on's"
     " year is read wrongly."},
    {"date-impossible", Severity::Warning,
     "No calendar has this date. The check compares dates as text, so it wins or loses against the wrong "
     "ones."},
    {"empty-name", Severity::Error,
     "A line that starts with a blank or tab has an empty first token: it is ignored, or publishes a product"
     " without a name."},
    {"encoding-differs", Severity::Error,
     "The check for updates guesses the encoding, the reader of the file takes UTF-8. Here they find "
     "different"
     " entries. UTF-8, or a byte-order mark, serves both."},
    {"host-tag", Severity::Error,
     "The third token is (AC, the host's version in three digits, and ): (AC220). The last digit is left "
     "off, so"
     " (AC22) reads as host 2; without the form the line is ignored."},
    {"language-case", Severity::Note, "A language marker works in any case and is usually in lower case."},
    {"notice-date", Severity::Warning,
     "A notice's dates are dd/mm/yyyy or dd-mm-yyyy, the first not behind the second. They are not checked "
     "when"
     " they are read."},
    {"notice-name", Severity::Warning,
     "MESSAGE anywhere in the first token makes the line a notice; write MESSAGE alone for a notice, and "
     "nothing"
     " with it for a product."},
    {"nothing-published", Severity::Warning, "No line of the file publishes an add-on or a library."},
    {"stray-line", Severity::Warning,
     "The line is no comment (*), text (#), notice or entry, and is ignored."},
    {"stray-text", Severity::Warning,
     "A text line (#) belongs to the entry or notice right above it. This one follows none and is ignored."},
    {"superseded", Severity::Warning,
     "Another line for the same product (name, host tag and major version) has a later date, or the same one"
     " above: this line wins nothing."},
    {"text-mark", Severity::Warning,
     "The first two characters of a text line are left off: write \"# \" before the text."},
    {"undecodable", Severity::Error,
     "The reader cannot decode the file and finds nothing. UTF-8, or a byte-order mark, serves every "
     "reader."},
    {"unknown-marker", Severity::Warning,
     "The marker is ignored. An add-on line has ita int fra ger spa jap rus NoSE NoSuite, a library line "
     "NoSuite,"
     " the last two in exactly this case."},
    {"version-numbers", Severity::Error,
     "A version is four numbers between dots, each up to 32767, without zeros in front. With fewer the line "
     "is"
     " ignored; others are read differently or not at all."},
};

/// The units of a pattern token, for trying one token of a line among good ones.
class GoodToken {
public:
    explicit GoodToken(const char* text) : text_(KW_SystemText(text)) {}
    operator KW_Units() const { return KW_UnitsOf(text_); }

private:
    KW_String text_;
};

bool isCalendarDate(KW_Units date) {
    const std::string arranged = utf8Of(KW_UnitsOf(KW_AddonUpdate_ArrangeDate(date)));
    if (arranged.size() != 8) return false;
    const int number = std::stoi(arranged);
    return std::chrono::year_month_day(std::chrono::year(number / 10000),
                                       std::chrono::month(static_cast<unsigned>(number / 100 % 100)),
                                       std::chrono::day(static_cast<unsigned>(number % 100)))
        .ok();
}

bool contains(KW_Units text, char wanted) {
    return std::ranges::find(text, static_cast<unsigned short>(wanted)) != text.end();
}

class Linter {
public:
    std::vector<VersionsFinding> lint(const VersionsTexts& texts) {
        const std::vector<VersionsEntry> read = versionsEntries(texts.read);
        if (!texts.isDecoded) addToFile("undecodable", "the reader cannot decode the file");
        if (read != versionsEntries(texts.checked))
            addToFile("encoding-differs", "the check for updates finds other entries than the reader");
        // What the check decodes tells more than nothing.
        const KW_String& text = texts.isDecoded ? texts.read : texts.checked;
        if (read.empty()) addToFile("nothing-published", "no add-on and no library is published");
        lintLines(KW_UnitsOf(text));
        lintProducts(versionsEntries(text));
        std::ranges::stable_sort(findings_, {}, &VersionsFinding::line);
        return std::move(findings_);
    }

private:
    void addToFile(std::string_view rule, std::string message) { add(rule, 0, 0, std::move(message)); }

    void addAt(std::string_view rule, KW_Units place, std::string message) {
        const auto units = place.data() == nullptr ? 0 : place.data() - line_.data();
        const KW_Units before = line_.first(static_cast<std::size_t>(units));
        const auto halves =
            std::ranges::count_if(before, [](auto unit) { return (unit & 0xFC00) == 0xDC00; });
        add(rule, number_, static_cast<int>(units - halves) + 1, std::move(message));
    }

    void add(std::string_view rule, int line, int column, std::string message) {
        findings_.push_back(
            {std::ranges::find(kRules, rule, &VersionsRule::id), line, column, std::move(message)});
    }

    void lintLines(KW_Units rest) {
        bool ownsText = false;   // the line above is an entry, a notice or text of one
        bool strayTold = false;  // stray text lines in a row are one finding
        for (number_ = 1; !rest.empty(); ++number_) {
            line_ = KW_TakeLine(rest);
            if (!line_.empty() && line_[0] == '#') {
                if (!ownsText && !strayTold) addAt("stray-text", line_, "text that belongs to no entry");
                strayTold = !ownsText;
                if (line_.size() > 1 && line_[1] != ' ' && line_[1] != '\t')
                    addAt("text-mark", line_.subspan(1), "the first character behind # is left off");
                continue;
            }
            strayTold = false;
            ownsText = lintLine();
        }
    }

    /// Whether text lines may follow.
    bool lintLine() {
        if (!line_.empty() && line_[0] == '*') return false;
        KW_AddonUpdate_TakeTokens(line_, tokens_);
        if (std::ranges::all_of(tokens_, &KW_Units::empty)) return false;
        const int kind = KW_AddonUpdate_KindOf(tokens_);
        if (utf8Of(tokens_[0]).find("MESSAGE") != std::string::npos) {
            lintNotice();
            return true;
        }
        if (tokens_[0].empty()) {
            addAt("empty-name", line_, "the line starts with a blank or tab");
            if (kind == KW_AddonUpdate_NoVersionLine) return false;
        }
        if (kind == KW_AddonUpdate_AddonLine) lintAddon();
        if (kind == KW_AddonUpdate_LibraryLine) lintLibrary();
        if (kind == KW_AddonUpdate_NoVersionLine) lintIgnored();
        return kind != KW_AddonUpdate_NoVersionLine;
    }

    void lintNotice() {
        if (utf8Of(tokens_[0]) != "MESSAGE")
            addAt("notice-name", tokens_[0], utf8Of(tokens_[0]) + " makes the line a notice");
        bool good = true;
        for (std::size_t i = 1; i < std::min<std::size_t>(tokens_.size(), 3); ++i) {
            if (tokens_[i].empty()) continue;
            const bool isDate =
                KW_AddonUpdate_KindOf(Tokens{name_, tokens_[i]}) == KW_AddonUpdate_LibraryLine;
            if (isDate && isCalendarDate(tokens_[i])) continue;
            good = false;
            addAt("notice-date", tokens_[i], utf8Of(tokens_[i]) + " is no date");
        }
        if (good && tokens_.size() > 2 && !tokens_[2].empty() &&
            KW_AddonUpdate_ArrangeDate(tokens_[1]) > KW_AddonUpdate_ArrangeDate(tokens_[2])) {
            addAt("notice-date", tokens_[1], "the first date is behind the second");
        }
    }

    void lintAddon() {
        KW_AddonUpdate_Addon addon;
        KW_AddonUpdate_SplitAddonVersion(lineText(), addon);
        std::string version;
        for (const short number : addon.versionNumbers)
            version += (version.empty() ? "" : ".") + std::to_string(number);
        if (version != utf8Of(tokens_[1]))
            addAt("version-numbers", tokens_[1], utf8Of(tokens_[1]) + " is read as " + version);
        if (tokens_[2].size() != 7)
            addAt("host-tag", tokens_[2],
                  utf8Of(tokens_[2]) + " is read as host " + std::to_string(addon.hostVersion));
        if (tokens_[3].size() != 10) {
            addAt("date-format", tokens_[3],
                  utf8Of(tokens_[3]) + " is read as " + utf8Of(KW_UnitsOf(addon.date)));
        } else {
            lintDate(tokens_[3]);
        }
        for (std::size_t i = 4; i < tokens_.size(); ++i)
            lintMarker(tokens_[i]);
    }

    void lintLibrary() {
        lintDate(tokens_[1]);
        for (std::size_t i = 2; i < tokens_.size(); ++i)
            if (const std::string marker = utf8Of(tokens_[i]); !marker.empty() && marker != "NoSuite")
                addAt("unknown-marker", tokens_[i], marker + " is ignored");
    }

    void lintDate(KW_Units date) {
        if (!isCalendarDate(date)) addAt("date-impossible", date, utf8Of(date) + " is in no calendar");
    }

    void lintMarker(KW_Units token) {
        const std::string marker = utf8Of(token);
        if (marker.empty() || marker == "NoSE" || marker == "NoSuite") return;
        KW_AddonUpdate_Addon addon;
        KW_AddonUpdate_SplitAddonVersion(KW_SystemText("A 1.1.1.1 (AC220) 01/01/2018 ") + textOf(token),
                                         addon);
        if (addon.languages.count == 0) {
            addAt("unknown-marker", token, marker + " is ignored");
        } else if (std::ranges::any_of(marker, [](char letter) { return letter >= 'A' && letter <= 'Z'; })) {
            addAt("language-case", token, marker + " is usually written in lower case");
        }
    }

    /// Why a line is no entry: each of its tokens is tried among good ones.
    void lintIgnored() {
        const KW_Units second = tokens_.size() > 1 ? tokens_[1] : KW_Units();
        const bool likeAddon = contains(second, '.') || std::ranges::any_of(tokens_, [](KW_Units token) {
                                   return !token.empty() && token[0] == '(';
                               });
        const bool likeDate = !second.empty() && second[0] >= '0' && second[0] <= '9' &&
                              (contains(second, '/') || contains(second, '-'));
        if (!likeAddon || tokens_.size() < 2) {
            if (likeDate) {
                addAt("date-format", second, utf8Of(second) + " is not dd/mm/yyyy: the line is ignored");
            } else {
                addAt("stray-line", line_, "the line is no entry and is ignored");
            }
            return;
        }
        const auto fits = [this](KW_Units version, KW_Units host, KW_Units date) {
            return KW_AddonUpdate_KindOf(Tokens{name_, version, host, date}) == KW_AddonUpdate_AddonLine;
        };
        const KW_Units third = tokens_.size() > 2 ? tokens_[2] : KW_Units();
        const KW_Units fourth = tokens_.size() > 3 ? tokens_[3] : KW_Units();
        if (!fits(second, host_, date_))
            addAt("version-numbers", second,
                  utf8Of(second) + " is not four numbers between dots: the line is ignored");
        if (!fits(version_, third, date_))
            addAt("host-tag", third.empty() ? line_.last(0) : third,
                  "\"" + utf8Of(third) + "\" is no host such as (AC220): the line is ignored");
        if (!fits(version_, host_, fourth))
            addAt("date-format", fourth.empty() ? line_.last(0) : fourth,
                  "\"" + utf8Of(fourth) + "\" is not dd/mm/yyyy: the line is ignored");
    }

    void lintProducts(const std::vector<VersionsEntry>& entries) {
        // By product, and within one the line that counts first.
        std::vector<const VersionsEntry*> sorted;
        for (const VersionsEntry& entry : entries)
            sorted.push_back(&entry);
        std::ranges::sort(sorted, [](const VersionsEntry* a, const VersionsEntry* b) {
            return std::tie(a->isLibrary, a->name, a->hostTag, a->major, b->date, a->line) <
                   std::tie(b->isLibrary, b->name, b->hostTag, b->major, a->date, b->line);
        });
        const VersionsEntry* winner = nullptr;
        for (const VersionsEntry* const entry : sorted) {
            if (winner != nullptr && winner->sameProduct(*entry)) {
                add("superseded", entry->line, 1,
                    "line " + std::to_string(winner->line) + " counts for " + entry->name + ", not this one");
            } else {
                winner = entry;
            }
        }
    }

    static KW_String textOf(KW_Units units) {
        KW_String text;
        KW_SetUnits(text, units);
        return text;
    }
    KW_String lineText() const { return textOf(line_); }

    const GoodToken name_{"A"};
    const GoodToken version_{"1.1.1.1"};
    const GoodToken host_{"(AC220)"};
    const GoodToken date_{"01/01/2018"};
    std::vector<VersionsFinding> findings_;
    KW_Units line_;
    int number_ = 0;
    Tokens tokens_;
};

}  // namespace

std::span<const VersionsRule> versionsRules() {
    return kRules;
}

std::string_view severityName(Severity severity) {
    return severity == Severity::Error ? "error" : severity == Severity::Warning ? "warning" : "note";
}

std::vector<VersionsFinding> lintVersions(const VersionsTexts& texts) {
    return Linter().lint(texts);
}

}  // namespace tools
