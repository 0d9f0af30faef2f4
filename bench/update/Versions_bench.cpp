// From the bytes of a versions file to the answer whether there is an update, and to records; the same with
// Qt's strings and QStringView::split.

#include "foundation/KW_String.h"
#include "update/KW_AddonUpdate_Internal.h"

#include <benchmark/benchmark.h>

#include <QList>
#include <QString>
#include <QStringView>
#include <string>
#include <utility>

namespace {

constexpr char kOwnLine[] = "TessaroLibrary 22.0.4.2200 (AC220) 03/08/2018";

/// What the maker's server might send: products for several hosts, each with notes; every tenth product line
/// is the add-on's own, none of them newer, so that all lines have to be looked at.
std::string versionsFile(int lines) {
    std::string text = "* list of versions\n";
    for (int i = 1; i < lines; ++i) {
        switch (i % 4) {
            case 0:
                text += "# Corrected: the dialog opens again where it was closed.\n";
                break;
            case 1:
                text +=
                    "Objects" + std::to_string(i % 97) + " 1" + std::to_string(i % 10) + "/07/2018 NoSuite\n";
                break;
            default:
                text += (i % 10 == 2 ? "TessaroLibrary" : "TessaroProduct" + std::to_string(i % 89)) +
                        " 22.0." + std::to_string(i % 9) + ".22" + std::to_string(10 + i % 89) +
                        " (AC220) 1" + std::to_string(i % 10) + "/07/2018 ita int fra ger\n";
        }
    }
    return text;
}

void ours(benchmark::State& state) {
    const std::string bytes = versionsFile(static_cast<int>(state.range(0)));
    const KW_String own(kOwnLine, KW_String::Encoding_System);
    for (auto _ : state) {
        KW_String text;
        KW_String::TextToString(text, bytes.data(), static_cast<unsigned int>(bytes.size()), true,
                                KW_String::Encoding_System);
        benchmark::DoNotOptimize(KW_AddonUpdate_CompareVersions(own, text));
    }
    state.SetComplexityN(state.range(0));
}

bool qtDigits(QStringView text) {
    for (const QChar unit : text) {
        if (unit < u'0' || unit > u'9') return false;
    }
    return true;
}

bool qtDate(QStringView text) {
    const auto isSeparator = [](QChar unit) { return unit == u'-' || unit == u'/'; };
    return text.size() > 5 && isSeparator(text[2]) && isSeparator(text[5]) && qtDigits(text.mid(0, 2)) &&
           qtDigits(text.mid(3, 2)) && qtDigits(text.mid(6, 4));
}

bool qtAddonLine(const QList<QStringView>& tokens, QList<QStringView>& numbers) {
    if (tokens.size() < 2 || (tokens[1].size() == 10 && qtDate(tokens[1]))) return false;
    if (tokens.size() < 4) return false;
    numbers = tokens[1].split(u'.');
    if (numbers.size() < 4) return false;
    for (int i = 0; i < 4; ++i) {
        if (!qtDigits(numbers[i])) return false;
    }
    const QStringView tag = tokens[2];
    return tag.startsWith(u"(AC") && tag.endsWith(u')') && qtDigits(tag.mid(3, tag.size() - 4)) &&
           qtDate(tokens[3]);
}

QString qtArranged(QStringView date) {
    QString arranged;
    arranged.append(date.mid(6, 4)).append(date.mid(3, 2)).append(date.mid(0, 2));
    return arranged;
}

bool qtUpdateAvailable(const QString& own, const QString& text) {
    const QList<QStringView> ownTokens = QStringView(own).split(u' ', Qt::SkipEmptyParts);
    QList<QStringView> ownNumbers;
    if (!qtAddonLine(ownTokens, ownNumbers)) return false;
    const QString ownDate = qtArranged(ownTokens[3]);
    bool available = false;
    for (const QStringView line : QStringView(text).split(u'\n')) {
        const QList<QStringView> tokens = line.split(u' ', Qt::SkipEmptyParts);
        QList<QStringView> numbers;
        if (!qtAddonLine(tokens, numbers)) continue;
        if (tokens[0] != ownTokens[0] || tokens[2] != ownTokens[2] || numbers[0] != ownNumbers[0]) continue;
        if (qtArranged(tokens[3]) > ownDate) available = true;
    }
    return available;
}

void qt(benchmark::State& state) {
    const std::string bytes = versionsFile(static_cast<int>(state.range(0)));
    const QString own = QString::fromLatin1(kOwnLine);
    for (auto _ : state) {
        const QString text = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
        benchmark::DoNotOptimize(qtUpdateAvailable(own, text));
    }
}

/// What a record holds, in Qt's types.
struct QtAddon {
    QString name;
    QString versionText;
    short numbers[4];
    short hostVersion;
    QString date;
    QString dateText;
    QList<short> languages;
    QString text;
};

struct QtLibrary {
    QString name;
    QString date;
    QString dateText;
    QString text;
};

QString qtText(const QList<QStringView>& lines, qsizetype& line) {
    QString text;
    while (line + 1 < lines.size() && lines[line + 1].startsWith(u'#')) {
        if (!text.isEmpty()) text.append(u'\n');
        text.append(lines[++line].mid(2));
    }
    return text;
}

void qtRecords(const QString& text, QList<QtAddon>& addons, QList<QtLibrary>& libraries) {
    static const QString kLanguages[] = {u"ita"_qs, u"int"_qs, u"fra"_qs, u"ger"_qs,
                                         u"spa"_qs, u"jap"_qs, u"rus"_qs};
    const QList<QStringView> lines = QStringView(text).split(u'\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (lines[i].startsWith(u'*') || lines[i].startsWith(u'#')) continue;
        const QList<QStringView> tokens = lines[i].split(u' ', Qt::SkipEmptyParts);
        QList<QStringView> numbers;
        if (qtAddonLine(tokens, numbers)) {
            QtAddon addon{tokens[0].toString(),  tokens[1].toString(), {}, 0,
                          qtArranged(tokens[3]), tokens[3].toString(), {}, {}};
            for (int n = 0; n < 4; ++n)
                addon.numbers[n] = static_cast<short>(numbers[n].toLong());
            addon.hostVersion = tokens[2].mid(3, tokens[2].size() - 5).toShort();
            for (qsizetype marker = 4; marker < tokens.size(); ++marker) {
                for (short language = 0; language < 7; ++language) {
                    if (tokens[marker].compare(kLanguages[language], Qt::CaseInsensitive) == 0)
                        addon.languages.append(language);
                }
            }
            addon.text = qtText(lines, i);
            addons.append(std::move(addon));
        } else if (tokens.size() >= 2 && tokens[1].size() == 10 && qtDate(tokens[1])) {
            QtLibrary library{tokens[0].toString(), qtArranged(tokens[1]), tokens[1].toString(), {}};
            library.text = qtText(lines, i);
            libraries.append(std::move(library));
        }
    }
}

void recordsByQt(benchmark::State& state) {
    const std::string bytes = versionsFile(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const QString text = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
        QList<QtAddon> addons;
        QList<QtLibrary> libraries;
        qtRecords(text, addons, libraries);
        benchmark::DoNotOptimize(addons.size());
    }
}

void records(benchmark::State& state) {
    const std::string bytes = versionsFile(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        KW_String text;
        KW_String::TextToString(text, bytes.data(), static_cast<unsigned int>(bytes.size()), false,
                                KW_String::Encoding_UTF8);
        KW_List<KW_AddonUpdate_Message> messages;
        KW_List<KW_AddonUpdate_Addon> addons;
        KW_List<KW_AddonUpdate_Library> libraries;
        KW_AddonUpdate_ReadVersions(text, messages, addons, libraries);
        benchmark::DoNotOptimize(addons.count);
    }
    state.SetComplexityN(state.range(0));
}

constexpr int kLines = 20000;
BENCHMARK(ours)->Name("20,000 lines, compared/ours")->Arg(kLines);
BENCHMARK(qt)->Name("20,000 lines, compared/qt")->Arg(kLines);
BENCHMARK(records)->Name("20,000 lines, into records/ours")->Arg(kLines);
BENCHMARK(recordsByQt)->Name("20,000 lines, into records/qt")->Arg(kLines);
BENCHMARK(ours)
    ->Name("compared, lines:")
    ->RangeMultiplier(10)
    ->Range(1000, 1000000)
    ->Complexity(benchmark::oN);
BENCHMARK(records)
    ->Name("into records, lines:")
    ->RangeMultiplier(10)
    ->Range(1000, 1000000)
    ->Complexity(benchmark::oN);

}  // namespace
