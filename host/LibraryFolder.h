#pragma once

#include "platform/LibraryPart.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// What the file of one library part says. Texts are UTF-8, paths the file system's bytes.
struct PartFile {
    std::string path;
    std::string name;
    API_LibTypeID type = APILib_Object;
    bool missingDefinition = false;
};

/// A file or folder of a library that could not be used.
struct LibraryProblem {
    std::string path;
    std::string reason;
};

struct LibraryContent {
    std::vector<PartFile> parts;  ///< by path
    std::vector<LibraryProblem> problems;
};

/// Reads the parts in a folder and all folders below it. Every folder is read once, whatever links lead to
/// it. What cannot be read is a problem and left out; nothing is thrown.
///
/// A part is a regular file with the extension "gsm" that begins with these lines, an empty line or the end
/// of the file after them, in at most 4096 bytes:
///
///     Tessaro library part
///     name: Window 1
///     type: window
///     definition: present
///
/// A name that is left out is the file's own, a type "object", a definition "present" (the other value is
/// "missing"). What follows is the part's own and is not read.
LibraryContent readLibraryFolder(const std::string& path);

/// "window", "door", ...; "any" for APILib_Any.
const char* partTypeName(API_LibTypeID type);
std::optional<API_LibTypeID> partTypeOfName(std::string_view name);

}  // namespace host
