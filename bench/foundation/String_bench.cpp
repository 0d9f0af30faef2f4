// Searching, replacing and splitting 1 MiB of text, against the same work with std::u16string_view. Results
// are owned on both sides.

#include "bench/foundation/SampleText.h"
#include "foundation/KW_String.h"

#include <benchmark/benchmark.h>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t kSize = std::size_t{1} << 20;

KW_String ourText() {
    const std::string utf8 = sample::words(sample::kItalian, kSize);
    return KW_String(utf8.data(), static_cast<unsigned int>(utf8.size()), KW_String::Encoding_UTF8);
}

std::u16string theirs(const KW_String& string) {
    return std::u16string(string.data, string.data + string.length);
}

KW_String ours(const char* ascii) {
    return KW_String(ascii, KW_String::Encoding_ASCII);
}

// Not found: the whole text is looked through.
void indexOfOurs(benchmark::State& state) {
    const KW_String text = ourText();
    const KW_String what = ours("caffettiera");
    for (auto _ : state)
        benchmark::DoNotOptimize(text.IndexOf(what, 0));
}
BENCHMARK(indexOfOurs)->Name("IndexOf/1MiB/ours");

void indexOfView(benchmark::State& state) {
    const std::u16string text = theirs(ourText());
    const std::u16string_view view(text);
    for (auto _ : state)
        benchmark::DoNotOptimize(view.find(u"caffettiera"));
}
BENCHMARK(indexOfView)->Name("IndexOf/1MiB/u16string_view");

void lastIndexOfOurs(benchmark::State& state) {
    const KW_String text = ourText();
    const KW_String what = ours("caffettiera");
    for (auto _ : state)
        benchmark::DoNotOptimize(text.LastIndexOf(what));
}
BENCHMARK(lastIndexOfOurs)->Name("LastIndexOf/1MiB/ours");

void lastIndexOfView(benchmark::State& state) {
    const std::u16string text = theirs(ourText());
    const std::u16string_view view(text);
    for (auto _ : state)
        benchmark::DoNotOptimize(view.rfind(u"caffettiera"));
}
BENCHMARK(lastIndexOfView)->Name("LastIndexOf/1MiB/u16string_view");

void replaceOurs(benchmark::State& state, const char* what, const char* with) {
    const KW_String text = ourText();
    const KW_String from = ours(what);
    const KW_String to = ours(with);
    for (auto _ : state) {
        const KW_String result = text.Replace(from, to);
        benchmark::DoNotOptimize(result.data);
    }
}

void replaceView(benchmark::State& state, const char* what, const char* with) {
    const std::u16string text = theirs(ourText());
    const std::u16string from = theirs(ours(what));
    const std::u16string to = theirs(ours(with));
    for (auto _ : state) {
        const std::u16string_view view(text);
        std::u16string result;
        result.reserve(view.size());
        std::size_t start = 0;
        for (std::size_t at = view.find(from); at != view.npos; at = view.find(from, start)) {
            result.append(view.substr(start, at - start)).append(to);
            start = at + from.size();
        }
        result.append(view.substr(start));
        benchmark::DoNotOptimize(result.data());
    }
}
BENCHMARK_CAPTURE(replaceOurs, word, "bella", "brutta")->Name("Replace a word/1MiB/ours");
BENCHMARK_CAPTURE(replaceView, word, "bella", "brutta")->Name("Replace a word/1MiB/u16string_view");
BENCHMARK_CAPTURE(replaceOurs, blank, " ", "_")->Name("Replace a blank/1MiB/ours");
BENCHMARK_CAPTURE(replaceView, blank, " ", "_")->Name("Replace a blank/1MiB/u16string_view");

void splitOurs(benchmark::State& state, char separator) {
    const KW_String text = ourText();
    for (auto _ : state) {
        KW_List<KW_String> pieces;
        text.Split(pieces, separator);
        benchmark::DoNotOptimize(pieces.count);
    }
}

void splitView(benchmark::State& state, char16_t separator) {
    const std::u16string text = theirs(ourText());
    for (auto _ : state) {
        const std::u16string_view view(text);
        std::vector<std::u16string> pieces;
        std::size_t start = 0;
        for (std::size_t at = view.find(separator); at != view.npos; at = view.find(separator, start)) {
            pieces.emplace_back(view.substr(start, at - start));
            start = at + 1;
        }
        pieces.emplace_back(view.substr(start));
        benchmark::DoNotOptimize(pieces.data());
    }
}
BENCHMARK_CAPTURE(splitOurs, clauses, ',')->Name("Split at commas/1MiB/ours");
BENCHMARK_CAPTURE(splitView, clauses, u',')->Name("Split at commas/1MiB/u16string_view");
BENCHMARK_CAPTURE(splitOurs, words, ' ')->Name("Split at blanks/1MiB/ours");
BENCHMARK_CAPTURE(splitView, words, u' ')->Name("Split at blanks/1MiB/u16string_view");

void splitLinesOurs(benchmark::State& state) {
    const KW_String text = ourText();
    for (auto _ : state) {
        KW_List<KW_String> lines;
        text.SplitLines(lines, true, true);
        benchmark::DoNotOptimize(lines.count);
    }
}
BENCHMARK(splitLinesOurs)->Name("SplitLines/1MiB/ours");

void splitLinesView(benchmark::State& state) {
    const std::u16string text = theirs(ourText());
    for (auto _ : state) {
        const std::u16string_view view(text);
        std::vector<std::u16string> lines;
        std::size_t start = 0;
        for (std::size_t at = view.find_first_of(u"\r\n"); at != view.npos;
             at = view.find_first_of(u"\r\n", start)) {
            lines.emplace_back(view.substr(start, at - start));
            start = at + (view.substr(at, 2) == u"\r\n" ? 2 : 1);
        }
        lines.emplace_back(view.substr(start));
        benchmark::DoNotOptimize(lines.data());
    }
}
BENCHMARK(splitLinesView)->Name("SplitLines/1MiB/u16string_view");

}  // namespace
