#pragma once

#include "host/LibraryFolder.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// A part of a loaded library, under the number by which add-ons know it.
struct LoadedPart {
    std::int32_t index = 0;  ///< from 1; kept as long as the library is loaded and holds the file
    PartFile file;

    /// Whether the file says so, or is no longer there.
    bool isMissing() const;
};

struct LoadedLibrary {
    std::string path;  ///< absolute, without trailing "/"
    std::vector<LoadedPart> parts;
    std::vector<LibraryProblem> problems;
};

/// The libraries that the host has loaded, in the order of loading; one of them may be the open project's
/// embedded library. The functions answer an error code, 0 for success.
class Libraries {
public:
    /// Loads the parts of a folder. A library that is loaded already is read again: its parts keep their
    /// numbers.
    GSErrCode add(const IO::Location& folder);
    /// Loads a folder, if it is not loaded yet, as the project's embedded library.
    GSErrCode setEmbedded(const IO::Location& folder);
    /// The project has no embedded library any more; a folder that was one stays loaded.
    void setNoEmbedded() { embedded_ = -1; }
    /// Unloads a library. kErrNotFound when it is not loaded.
    GSErrCode remove(const IO::Location& folder);

    const std::vector<LoadedLibrary>& all() const { return libraries_; }
    /// Position in all(); -1 when the project has none.
    std::int32_t embedded() const { return embedded_; }
    /// The first part with a definition, else the first without; null when there is none. Letter case does
    /// not count from A to Z.
    const LoadedPart* find(std::string_view name, API_LibTypeID type) const;

    /// What the functions of the same names in platform/LibraryPart.h answer.
    GSErrCode search(API_LibPart* part, bool createIfMissing, bool onlyPlaceable);
    GSErrCode get(API_LibPart* part);

private:
    GSErrCode load(const IO::Location& folder, std::size_t& position);

    std::vector<LoadedLibrary> libraries_;
    std::int32_t embedded_ = -1;
    std::int32_t lastIndex_ = 0;
};

}  // namespace host
