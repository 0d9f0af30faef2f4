// Listing 100,000 files in 1,000 subfolders, against the standard library's directory iterator. Both sides
// own the paths that they found.

#include "files/KW_Location.h"
#include "platform/HostInterface.h"

#include <benchmark/benchmark.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

constexpr int kFolders = 1000;
constexpr int kFilesEach = 100;

class Tree {
public:
    Tree() : root_(std::filesystem::temp_directory_path() / "tessaro-listing-bench") {
        std::filesystem::remove_all(root_);
        for (int folder = 0; folder < kFolders; ++folder) {
            const std::filesystem::path inside = root_ / ("folder " + std::to_string(folder));
            std::filesystem::create_directories(inside);
            for (int file = 0; file < kFilesEach; ++file) {
                std::ofstream(inside /
                              ("library part " + std::to_string(file) + (file % 4 == 0 ? ".txt" : ".gsm")));
            }
        }
    }
    ~Tree() { std::filesystem::remove_all(root_); }
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;

    const std::filesystem::path& root() const { return root_; }

private:
    std::filesystem::path root_;
};

const std::filesystem::path& root() {
    static const Tree tree;
    return tree.root();
}

KW_String text(const std::string& ascii) {
    return KW_String(ascii.c_str(), KW_String::Encoding_UTF8);
}

void listOurs(benchmark::State& state, const char* extension) {
    const KW_Location folder(text(root().string()));
    KW_List<KW_String> extensions;
    if (extension != nullptr) extensions.AddData(text(extension), -1);
    for (auto _ : state) {
        KW_List<KW_Location> files;
        if (!folder.GetFilesInFolder(&extensions, true, &files) || files.count == 0) {
            state.SkipWithError("the listing failed");
        }
        benchmark::DoNotOptimize(files.data);
    }
}

void listByIterator(benchmark::State& state, const char* extension) {
    const std::string wanted = extension != nullptr ? std::string(".") + extension : "";
    for (auto _ : state) {
        std::vector<std::filesystem::path> files;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root())) {
            if (entry.is_directory()) continue;
            if (wanted.empty() || entry.path().extension() == wanted) files.push_back(entry.path());
        }
        benchmark::DoNotOptimize(files.data());
    }
}

BENCHMARK_CAPTURE(listOurs, every, nullptr)->Name("List 100000 files/ours")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(listByIterator, every, nullptr)
    ->Name("List 100000 files/recursive_directory_iterator")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(listOurs, one, "gsm")
    ->Name("List 100000 files by extension/ours")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(listByIterator, one, "gsm")
    ->Name("List 100000 files by extension/recursive_directory_iterator")
    ->Unit(benchmark::kMillisecond);

}  // namespace

GSErrCode ACAPI_GetOwnLocation(IO::Location&) {
    return kAPIErrNoOwnLocation;
}
