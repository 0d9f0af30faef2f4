#include "host/Libraries.h"

#include "host/ErrorCodes.h"
#include "platform/host/Ascii.h"

#include <algorithm>
#include <filesystem>
#include <map>

namespace host {

namespace fs = std::filesystem;

namespace {

bool sameName(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return platform::asciiLower(x) == platform::asciiLower(y); });
}

/// The absolute path of a folder without "." and trailing "/". Empty if it means no folder.
std::string absolutePath(const IO::Location& folder) {
    GS::FixedCapacityString<256> bytes;
    if (folder.ToUTF8POSIXPath(&bytes) != kNoError) return {};
    std::error_code error;
    const fs::path path = fs::absolute(bytes.ToCStr(), error).lexically_normal();
    return error ? std::string() : (path.has_filename() ? path : path.parent_path()).string();
}

auto findLibrary(std::vector<LoadedLibrary>& libraries, const std::string& path) {
    return std::find_if(libraries.begin(), libraries.end(), [&path](const LoadedLibrary& library) {
        std::error_code error;
        return library.path == path || fs::equivalent(library.path, path, error);
    });
}

void fill(API_LibPart& record, const LoadedPart& part) {
    record = API_LibPart{};
    record.typeID = part.file.type;
    record.index = part.index;
    record.missingDef = part.isMissing();
    const GS::UniString name = GS::UniStringFromUtf8(part.file.name);
    std::copy_n(name.ToUStr(), std::min<std::size_t>(name.GetLength(), kAPIPartNameUnits - 1), record.name);
    record.location = new IO::Location(IO::Location::FromPosixPath(part.file.path));
}

}  // namespace

bool LoadedPart::isMissing() const {
    std::error_code error;
    return file.missingDefinition || !fs::is_regular_file(file.path, error);
}

GSErrCode Libraries::load(const IO::Location& folder, std::size_t& position) {
    const GSErrCode status = IO::Folder(folder).GetStatus();
    if (status != kNoError) return status;
    const std::string path = absolutePath(folder);
    auto library = findLibrary(libraries_, path);
    if (library == libraries_.end()) library = libraries_.insert(library, LoadedLibrary{path, {}, {}});

    std::map<std::string, std::int32_t> known;
    for (const LoadedPart& part : library->parts)
        known.emplace(part.file.path, part.index);
    LibraryContent content = readLibraryFolder(library->path);
    library->parts.clear();
    for (PartFile& file : content.parts) {
        const auto before = known.find(file.path);
        const std::int32_t index = before != known.end() ? before->second : ++lastIndex_;
        library->parts.push_back({index, std::move(file)});
    }
    library->problems = std::move(content.problems);
    position = static_cast<std::size_t>(library - libraries_.begin());
    return kNoError;
}

GSErrCode Libraries::add(const IO::Location& folder) {
    std::size_t position = 0;
    return load(folder, position);
}

GSErrCode Libraries::setEmbedded(const IO::Location& folder) {
    std::size_t position = 0;
    const GSErrCode result = load(folder, position);
    if (result == kNoError) embedded_ = static_cast<std::int32_t>(position);
    return result;
}

GSErrCode Libraries::remove(const IO::Location& folder) {
    const auto library = findLibrary(libraries_, absolutePath(folder));
    if (library == libraries_.end()) return kErrNotFound;
    const auto position = static_cast<std::int32_t>(library - libraries_.begin());
    libraries_.erase(library);
    if (position == embedded_) {
        embedded_ = -1;
    } else if (position < embedded_) {
        --embedded_;
    }
    return kNoError;
}

const LoadedPart* Libraries::find(std::string_view name, API_LibTypeID type) const {
    const LoadedPart* missing = nullptr;
    for (const LoadedLibrary& library : libraries_) {
        for (const LoadedPart& part : library.parts) {
            if (type != APILib_Any && part.file.type != type) continue;
            if (!sameName(part.file.name, name)) continue;
            if (!part.isMissing()) return &part;
            if (missing == nullptr) missing = &part;
        }
    }
    return missing;
}

GSErrCode Libraries::search(API_LibPart* part, bool, bool) {
    if (part == nullptr) return kErrBadParameter;
    part->name[kAPIPartNameUnits - 1] = 0;
    const LoadedPart* const found = find(GS::UniStringToUtf8(GS::UniString(part->name)), part->typeID);
    if (found == nullptr) return kAPIErrNoSuchPart;
    fill(*part, *found);
    return kNoError;
}

GSErrCode Libraries::get(API_LibPart* part) {
    if (part == nullptr) return kErrBadParameter;
    for (const LoadedLibrary& library : libraries_) {
        for (const LoadedPart& each : library.parts) {
            if (each.index != part->index) continue;
            fill(*part, each);
            return kNoError;
        }
    }
    return kAPIErrNoSuchPart;
}

}  // namespace host
