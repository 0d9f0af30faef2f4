// Reading a text token by token, against the same over std::u16string_view. Tokens are owned on both sides.

#include "bench/foundation/SampleText.h"
#include "foundation/KW_Text_Scanner.h"

#include <benchmark/benchmark.h>
#include <string>
#include <string_view>

namespace {

KW_String text(std::size_t bytes) {
    const std::string utf8 = sample::words(sample::kItalian, bytes);
    return KW_String(utf8.data(), static_cast<unsigned int>(utf8.size()), KW_String::Encoding_UTF8);
}

void readTokensOurs(benchmark::State& state, std::size_t bytes) {
    const KW_String source = text(bytes);
    KW_Text_Scanner scanner;
    scanner.Set(source);
    for (auto _ : state) {
        scanner.position = 0;
        while (scanner.position < scanner.length) {
            const KW_String token = scanner.ReadToken(2, true);
            benchmark::DoNotOptimize(token.data);
        }
    }
    state.SetBytesProcessed(static_cast<long>(state.iterations() * source.length * 2UL));
}

void readTokensView(benchmark::State& state, std::size_t bytes) {
    const KW_String source = text(bytes);
    const std::u16string units(source.data, source.data + source.length);
    for (auto _ : state) {
        std::u16string_view rest(units);
        while (!rest.empty()) {
            rest.remove_prefix(std::min(rest.find_first_not_of(u" \t\r\n"), rest.size()));
            const std::u16string token(rest.substr(0, rest.find_first_of(u" \t\r\n")));
            rest.remove_prefix(token.size());
            benchmark::DoNotOptimize(token.data());
        }
    }
    state.SetBytesProcessed(static_cast<long>(state.iterations() * source.length * 2UL));
}

constexpr std::size_t kTenMiB = std::size_t{10} << 20;

BENCHMARK_CAPTURE(readTokensOurs, ten, kTenMiB)->Name("ReadToken/10MiB/ours");
BENCHMARK_CAPTURE(readTokensView, ten, kTenMiB)->Name("ReadToken/10MiB/u16string_view");
// Linear: twice the text takes twice the time.
BENCHMARK_CAPTURE(readTokensOurs, twenty, 2 * kTenMiB)->Name("ReadToken twice as much/20MiB/ours");
BENCHMARK_CAPTURE(readTokensOurs, half, kTenMiB)->Name("ReadToken twice as much/20MiB/half as much");

}  // namespace
