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

namespace {

struct Sample {
    std::string bytes;  // in the encoding that is measured
    KW_String string;
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

struct Language {
    const char* name;
    std::string (*make)(std::size_t bytes);
};

constexpr Language kLanguages[] = {
    {"ASCII", sample::ascii}, {"Italian", sample::italian}, {"Japanese", sample::japanese}};

void decodeOurs(benchmark::State& state, const Sample& sample, Encoding encoding) {
    for (auto _ : state) {
        KW_String string(sample.bytes.data(), static_cast<unsigned int>(sample.bytes.size()), encoding);
        benchmark::DoNotOptimize(string.data);
    }
    state.SetBytesProcessed(static_cast<long>(state.iterations() * sample.bytes.size()));
}

void encodeOurs(benchmark::State& state, const Sample& sample, Encoding encoding) {
    for (auto _ : state) {
        const KW_CString bytes = sample.string.ToCStr(encoding);
        benchmark::DoNotOptimize(bytes.data);
    }
    state.SetBytesProcessed(static_cast<long>(state.iterations() * sample.bytes.size()));
}

void decodeByIcuUtf8(benchmark::State& state, const Sample& sample) {
    for (auto _ : state) {
        const std::unique_ptr<char16_t[]> units(new char16_t[sample.bytes.size() + 1]);
        UErrorCode status = U_ZERO_ERROR;
        int32_t length = 0;
        u_strFromUTF8(units.get(), static_cast<int32_t>(sample.bytes.size() + 1), &length,
                      sample.bytes.data(), static_cast<int32_t>(sample.bytes.size()), &status);
        benchmark::DoNotOptimize(units.get());
    }
}

void encodeByIcuUtf8(benchmark::State& state, const Sample& sample) {
    const std::u16string source(sample.string.data, sample.string.data + sample.string.length);
    for (auto _ : state) {
        const std::unique_ptr<char[]> bytes(new char[source.size() * 3 + 1]);
        UErrorCode status = U_ZERO_ERROR;
        int32_t length = 0;
        u_strToUTF8(bytes.get(), static_cast<int32_t>(source.size() * 3 + 1), &length, source.data(),
                    static_cast<int32_t>(source.size()), &status);
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
        const std::unique_ptr<char16_t[]> units(new char16_t[sample.bytes.size() + 1]);
        UErrorCode status = U_ZERO_ERROR;
        ucnv_toUChars(converter.get(), units.get(), static_cast<int32_t>(sample.bytes.size() + 1),
                      sample.bytes.data(), static_cast<int32_t>(sample.bytes.size()), &status);
        benchmark::DoNotOptimize(units.get());
    }
}

void encodeByIcuConverter(benchmark::State& state, const Sample& sample, const char* icuName) {
    const Converter converter = openConverter(icuName);
    const std::u16string source(sample.string.data, sample.string.data + sample.string.length);
    const int32_t room = UCNV_GET_MAX_BYTES_FOR_STRING(static_cast<int32_t>(source.size()),
                                                       ucnv_getMaxCharSize(converter.get()));
    for (auto _ : state) {
        const std::unique_ptr<char[]> bytes(new char[static_cast<std::size_t>(room)]);
        UErrorCode status = U_ZERO_ERROR;
        ucnv_fromUChars(converter.get(), bytes.get(), room, source.data(),
                        static_cast<int32_t>(source.size()), &status);
        benchmark::DoNotOptimize(bytes.get());
    }
}

void decodeByQt(benchmark::State& state, const Sample& sample) {
    for (auto _ : state) {
        const QString string =
            QString::fromUtf8(sample.bytes.data(), static_cast<qsizetype>(sample.bytes.size()));
        benchmark::DoNotOptimize(string.constData());
    }
}

void encodeByQt(benchmark::State& state, const Sample& sample) {
    const QString string =
        QString::fromUtf8(sample.bytes.data(), static_cast<qsizetype>(sample.bytes.size()));
    for (auto _ : state) {
        const QByteArray bytes = string.toUtf8();
        benchmark::DoNotOptimize(bytes.constData());
    }
}

Sample makeSample(const std::string& utf8, Encoding encoding) {
    Sample sample{{},
                  KW_String(utf8.data(), static_cast<unsigned int>(utf8.size()), KW_String::Encoding_UTF8)};
    const KW_CString bytes = sample.string.ToCStr(encoding);
    const unsigned int terminator = encoding == KW_String::Encoding_UTF32LE   ? 4
                                    : encoding == KW_String::Encoding_UTF16BE ? 2
                                                                              : 1;
    sample.bytes.assign(bytes.data, bytes.size - terminator);
    return sample;
}

// Names are ENCODING decode|encode/TEXT/SIZE/WHO; scripts/bench compares "ours" with each other WHO.
const bool kRegistered = [] {
    for (const EncodingUnderTest& under : kEncodings) {
        for (const std::size_t size : {std::size_t{1} << 20, std::size_t{20}}) {
            for (const Language& language : kLanguages) {
                if (language.make == sample::japanese && !under.holdsJapanese) continue;
                const Sample sample = makeSample(language.make(size), under.encoding);
                const std::string tail =
                    std::string("/") + language.name + (size == 20 ? "/short/" : "/1MiB/");
                const std::string decode = std::string(under.name) + " decode" + tail;
                const std::string encode = std::string(under.name) + " encode" + tail;
                const auto add = [](const std::string& name, auto function, auto... arguments) {
                    benchmark::RegisterBenchmark(name.c_str(), function, arguments...);
                };
                add(decode + "ours", decodeOurs, sample, under.encoding);
                add(encode + "ours", encodeOurs, sample, under.encoding);
                if (under.encoding == KW_String::Encoding_UTF8) {
                    add(decode + "ICU", decodeByIcuUtf8, sample);
                    add(encode + "ICU", encodeByIcuUtf8, sample);
                    add(decode + "Qt", decodeByQt, sample);
                    add(encode + "Qt", encodeByQt, sample);
                } else {
                    add(decode + "ICU", decodeByIcuConverter, sample, under.icuName);
                    add(encode + "ICU", encodeByIcuConverter, sample, under.icuName);
                }
            }
        }
    }
    return true;
}();

}  // namespace
