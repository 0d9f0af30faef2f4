// Bytes to a string and back, against ICU's direct conversions (with a converter that is opened once and
// kept) and QString. Both sides own their result: ICU's in a buffer of the largest size possible, not
// initialised.

#include "bench/foundation/SampleText.h"
#include "foundation/KW_String.h"

#include <benchmark/benchmark.h>
#include <unicode/ucnv.h>
#include <unicode/ustring.h>
#include <memory>
#include <QByteArray>
#include <QString>
#include <utility>
#include <vector>

namespace {

struct Text {
    std::string bytes;  // in the encoding that is measured
    KW_String string;
};

// Texts that are converted in turn. Their number is a power of two.
class Sample {
public:
    explicit Sample(std::vector<Text> texts) : texts_(std::move(texts)) {}

    const Text& next() const {
        at_ = (at_ + 1) & (texts_.size() - 1);
        return texts_[at_];
    }

private:
    std::vector<Text> texts_;
    mutable std::size_t at_ = 0;
};

using Encoding = KW_String::Encoding;

struct EncodingUnderTest {
    const char* name;
    Encoding encoding;
    const char* icuName;
    bool holdsJapanese;
};

constexpr EncodingUnderTest kEncodings[] = {
    {"UTF-8", KW_String::Encoding_UTF8, "UTF-8", true},
    {"UTF-16BE", KW_String::Encoding_UTF16BE, "UTF-16BE", true},
    {"UTF-32", KW_String::Encoding_UTF32LE, "UTF-32LE", true},
    {"MacRoman", KW_String::Encoding_MacRoman, "macintosh", false},
    {"Windows-1252", KW_String::Encoding_WindowsLatin1, "windows-1252", false},
    {"Latin-1", KW_String::Encoding_ISOLatin1, "ISO-8859-1", false},
};

void decodeOurs(benchmark::State& state, const Sample& sample, Encoding encoding) {
    for (auto _ : state) {
        const std::string& bytes = sample.next().bytes;
        KW_String string(bytes.data(), static_cast<unsigned int>(bytes.size()), encoding);
        benchmark::DoNotOptimize(string.data);
    }
}

void encodeOurs(benchmark::State& state, const Sample& sample, Encoding encoding) {
    for (auto _ : state) {
        const KW_CString bytes = sample.next().string.ToCStr(encoding);
        benchmark::DoNotOptimize(bytes.data);
    }
}

const char16_t* icuUnits(const KW_String& string) {
    return reinterpret_cast<const char16_t*>(string.data);
}

void decodeByIcuUtf8(benchmark::State& state, const Sample& sample) {
    for (auto _ : state) {
        const std::string& bytes = sample.next().bytes;
        const std::unique_ptr<char16_t[]> units(new char16_t[bytes.size() + 1]);
        UErrorCode status = U_ZERO_ERROR;
        int32_t length = 0;
        u_strFromUTF8(units.get(), static_cast<int32_t>(bytes.size() + 1), &length, bytes.data(),
                      static_cast<int32_t>(bytes.size()), &status);
        benchmark::DoNotOptimize(units.get());
    }
}

void encodeByIcuUtf8(benchmark::State& state, const Sample& sample) {
    for (auto _ : state) {
        const KW_String& source = sample.next().string;
        const std::unique_ptr<char[]> bytes(new char[source.length * 3 + 1]);
        UErrorCode status = U_ZERO_ERROR;
        int32_t length = 0;
        u_strToUTF8(bytes.get(), static_cast<int32_t>(source.length * 3 + 1), &length, icuUnits(source),
                    static_cast<int32_t>(source.length), &status);
        benchmark::DoNotOptimize(bytes.get());
    }
}

using Converter = std::unique_ptr<UConverter, void (*)(UConverter*)>;

Converter openConverter(const char* name) {
    UErrorCode status = U_ZERO_ERROR;
    return Converter(ucnv_open(name, &status), ucnv_close);
}

void decodeByIcuConverter(benchmark::State& state, const Sample& sample, const char* icuName) {
    const Converter converter = openConverter(icuName);
    for (auto _ : state) {
        const std::string& bytes = sample.next().bytes;
        const std::unique_ptr<char16_t[]> units(new char16_t[bytes.size() + 1]);
        UErrorCode status = U_ZERO_ERROR;
        ucnv_toUChars(converter.get(), units.get(), static_cast<int32_t>(bytes.size() + 1), bytes.data(),
                      static_cast<int32_t>(bytes.size()), &status);
        benchmark::DoNotOptimize(units.get());
    }
}

void encodeByIcuConverter(benchmark::State& state, const Sample& sample, const char* icuName) {
    const Converter converter = openConverter(icuName);
    const int8_t mostBytes = ucnv_getMaxCharSize(converter.get());
    for (auto _ : state) {
        const KW_String& source = sample.next().string;
        const int32_t room = UCNV_GET_MAX_BYTES_FOR_STRING(static_cast<int32_t>(source.length), mostBytes);
        const std::unique_ptr<char[]> bytes(new char[static_cast<std::size_t>(room)]);
        UErrorCode status = U_ZERO_ERROR;
        ucnv_fromUChars(converter.get(), bytes.get(), room, icuUnits(source),
                        static_cast<int32_t>(source.length), &status);
        benchmark::DoNotOptimize(bytes.get());
    }
}

void decodeByQt(benchmark::State& state, const Sample& sample) {
    for (auto _ : state) {
        const std::string& bytes = sample.next().bytes;
        const QString string = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
        benchmark::DoNotOptimize(string.constData());
    }
}

void encodeByQt(benchmark::State& state, const Sample& sample) {
    for (auto _ : state) {
        const KW_String& source = sample.next().string;
        const QByteArray bytes =
            QStringView(icuUnits(source), static_cast<qsizetype>(source.length)).toUtf8();
        benchmark::DoNotOptimize(bytes.constData());
    }
}

Text makeText(const std::string& utf8, Encoding encoding) {
    Text text{{}, KW_String(utf8.data(), static_cast<unsigned int>(utf8.size()), KW_String::Encoding_UTF8)};
    const KW_CString bytes = text.string.ToCStr(encoding);
    const unsigned int terminator = encoding == KW_String::Encoding_UTF32LE   ? 4
                                    : encoding == KW_String::Encoding_UTF16BE ? 2
                                                                              : 1;
    text.bytes.assign(bytes.data, bytes.size - terminator);
    return text;
}

// The texts of a language in each size: a long one, a short one again and again, which a processor learns by
// heart, and many short ones (16 to 34 bytes) in turn, as a program meets them.
std::vector<std::pair<const char*, std::vector<std::string>>> textsBySize(const sample::Language& language) {
    std::vector<std::string> many;
    for (std::uint32_t seed = 1; seed <= 256; ++seed)
        many.push_back(sample::words(language, 16, seed * 7919));
    return {{"1MiB", {sample::words(language, 1 << 20)}},
            {"short", {language.shortText}},
            {"short in turn", std::move(many)}};
}

void add(const std::string& work, const char* who, auto function, auto... arguments) {
    benchmark::RegisterBenchmark((work + who).c_str(), function, arguments...);
}

void addEncoding(const EncodingUnderTest& under, const std::string& tail, const Sample& sample) {
    const std::string decode = std::string(under.name) + " decode" + tail;
    const std::string encode = std::string(under.name) + " encode" + tail;
    add(decode, "ours", decodeOurs, sample, under.encoding);
    add(encode, "ours", encodeOurs, sample, under.encoding);
    if (under.encoding == KW_String::Encoding_UTF8) {
        add(decode, "ICU", decodeByIcuUtf8, sample);
        add(encode, "ICU", encodeByIcuUtf8, sample);
        add(decode, "Qt", decodeByQt, sample);
        add(encode, "Qt", encodeByQt, sample);
    } else {
        add(decode, "ICU", decodeByIcuConverter, sample, under.icuName);
        add(encode, "ICU", encodeByIcuConverter, sample, under.icuName);
    }
}

// Names are ENCODING decode|encode/TEXT/SIZE/WHO; scripts/bench compares "ours" with each other WHO.
const bool kRegistered = [] {
    for (const sample::Language& language : {sample::kAscii, sample::kItalian, sample::kJapanese}) {
        for (const auto& [size, utf8Texts] : textsBySize(language)) {
            for (const EncodingUnderTest& under : kEncodings) {
                if (language.between.empty() && !under.holdsJapanese) continue;
                std::vector<Text> texts;
                for (const std::string& utf8 : utf8Texts)
                    texts.push_back(makeText(utf8, under.encoding));
                addEncoding(under, std::string("/") + language.name + "/" + size + "/",
                            Sample(std::move(texts)));
            }
        }
    }
    return true;
}();

}  // namespace
