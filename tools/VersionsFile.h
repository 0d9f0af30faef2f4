#pragma once

#include "foundation/KW_String.h"
#include "foundation/KW_Units.h"

#include <string>
#include <vector>

/// A versions file as the add-ons read it, with the numbers of its lines.
namespace tools {

/// A line that publishes an add-on or a library.
struct VersionsEntry {
    int line = 0;  ///< from 1
    bool isLibrary = false;
    std::string name;
    std::string version;  ///< empty for a library, as the next ones
    std::string hostTag;  ///< as written: "(AC220)"
    std::string major;    ///< the first number as written, by which the check compares
    short host = 0;
    std::string date;  ///< yyyymmdd

    bool sameProduct(const VersionsEntry& other) const;
    friend bool operator==(const VersionsEntry&, const VersionsEntry&) = default;
};

/// What the two readers of the add-ons make of the same bytes.
struct VersionsTexts {
    KW_String read;          ///< KW_AddonUpdate_ReadVersionsFile: UTF-8, unless a mark tells another encoding
    KW_String checked;       ///< the check for updates: by what the bytes look like
    bool isDecoded = false;  ///< `read` is all that the bytes hold
};

/// Reads a regular file of at most 16 MiB, the limit of the check. Returns an exit code, with `problem` set
/// unless that is 0. Pipes and devices are not waited for.
int readVersionsFile(const std::string& path, std::string& bytes, std::string& problem);

VersionsTexts decodeVersions(const std::string& bytes);
std::vector<VersionsEntry> versionsEntries(const KW_String& text);

std::string utf8Of(KW_Units units);

}  // namespace tools
