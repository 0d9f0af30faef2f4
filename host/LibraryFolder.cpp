#include "host/LibraryFolder.h"

#include "platform/host/Ascii.h"
#include "platform/UniString.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <utility>
#include <variant>

namespace host {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kFirstLine = "Tessaro library part";
constexpr std::size_t kHeaderBytes = 4096;
constexpr std::size_t kMostFolders =
    100'000;  // the root of a disk, chosen by mistake, must not hold the host up

constexpr std::pair<const char*, API_LibTypeID> kTypes[] = {
    {"any", APILib_Any},           {"window", APILib_Window}, {"door", APILib_Door},
    {"object", APILib_Object},     {"lamp", APILib_Lamp},     {"room", APILib_Room},
    {"property", APILib_Property}, {"label", APILib_Label},   {"macro", APILib_Macro},
    {"picture", APILib_Picture},
};

struct Unusable {
    std::string reason;
};

bool isPartFile(const fs::path& path) {
    std::string extension = path.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(), platform::asciiLower);
    return extension == ".gsm";
}

/// Cuts the next line, without its end, off the text.
std::string_view takeLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

/// Takes one "key: value" line. Returns what is wrong with it, or nothing.
std::string readLine(std::string_view line, PartFile& part) {
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos) return "a header line has no colon";
    const std::string_view key = trimmed(line.substr(0, colon));
    const std::string_view value = trimmed(line.substr(colon + 1));
    if (key == "name") {
        part.name = value;
    } else if (key == "type") {
        const std::optional<API_LibTypeID> type = partTypeOfName(value);
        if (!type || *type == APILib_Any) return "its type is unknown";
        part.type = *type;
    } else if (key == "definition") {
        if (value != "present" && value != "missing") return "its definition is neither present nor missing";
        part.missingDefinition = value == "missing";
    }
    return {};
}

std::variant<PartFile, Unusable> readPart(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::string bytes(kHeaderBytes + 1, '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (file.bad() || (!file.is_open())) return Unusable{"it cannot be read"};
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    const bool goesOn = bytes.size() > kHeaderBytes;

    PartFile part;
    part.path = path.string();
    part.name = path.stem().string();
    std::string_view rest = bytes;
    if (takeLine(rest) != kFirstLine) return Unusable{"it is not a library part"};
    bool ended = false;
    while (!rest.empty()) {
        const std::string_view line = takeLine(rest);
        ended = line.empty();
        if (ended) break;
        if (goesOn && rest.empty()) break;
        const std::string problem = readLine(line, part);
        if (!problem.empty()) return Unusable{problem};
    }
    if (goesOn && !ended) return Unusable{"its header is longer than 4096 bytes"};
    const unsigned int units = GS::UniStringFromUtf8(part.name).GetLength();
    if (units == 0 || units >= kAPIPartNameUnits || part.name.find('\0') != std::string::npos) {
        return Unusable{"its name is empty, too long or not text"};
    }
    return part;
}

/// One reading of a folder and its subfolders.
class Reader {
public:
    LibraryContent read(const fs::path& folder) {
        waiting_.push_back(folder);
        while (!waiting_.empty()) {
            const fs::path next = std::move(waiting_.back());
            waiting_.pop_back();
            readFolder(next);
        }
        std::sort(content_.parts.begin(), content_.parts.end(),
                  [](const PartFile& a, const PartFile& b) { return a.path < b.path; });
        std::sort(content_.problems.begin(), content_.problems.end(),
                  [](const LibraryProblem& a, const LibraryProblem& b) { return a.path < b.path; });
        return std::move(content_);
    }

private:
    void readFolder(const fs::path& folder) {
        if (seen_.size() == kMostFolders) {
            waiting_.clear();
            return problem(folder, "this and all further folders are skipped: the library has too many");
        }
        std::error_code error;
        const fs::path canonical = fs::canonical(folder, error);
        if (!error && !seen_.insert(canonical).second) return;
        std::vector<fs::path> entries;
        fs::directory_iterator entry;
        if (!error) entry = fs::directory_iterator(folder, error);
        for (; !error && entry != fs::directory_iterator(); entry.increment(error))
            entries.push_back(entry->path());
        if (error) problem(folder, "the folder cannot be read");
        // The order decides which way leads to a folder that several links refer to.
        std::sort(entries.begin(), entries.end(), std::greater<>());
        for (const fs::path& path : entries)
            readEntry(path);
    }

    void readEntry(const fs::path& path) {
        std::error_code error;
        const fs::file_status status = fs::status(path, error);
        if (fs::is_directory(status)) {
            waiting_.push_back(path);
        } else if (!isPartFile(path)) {
            return;
        } else if (!fs::is_regular_file(status)) {
            problem(path, "it is not a readable file");
        } else {
            std::variant<PartFile, Unusable> part = readPart(path);
            if (auto* usable = std::get_if<PartFile>(&part)) {
                content_.parts.push_back(std::move(*usable));
            } else {
                problem(path, std::get<Unusable>(part).reason);
            }
        }
    }

    void problem(const fs::path& path, std::string reason) {
        content_.problems.push_back({path.string(), std::move(reason)});
    }

    std::vector<fs::path> waiting_;
    std::set<fs::path> seen_;
    LibraryContent content_;
};

}  // namespace

LibraryContent readLibraryFolder(const std::string& path) {
    return Reader().read(path);
}

const char* partTypeName(API_LibTypeID type) {
    for (const auto& [name, each] : kTypes)
        if (each == type) return name;
    return "unknown";
}

std::optional<API_LibTypeID> partTypeOfName(std::string_view name) {
    for (const auto& [each, type] : kTypes)
        if (name == each) return type;
    return std::nullopt;
}

}  // namespace host
