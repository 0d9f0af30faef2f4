#pragma once

#include "tools/VersionsFile.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// What in a versions file does not do what its author meant.
namespace tools {

enum class Severity { Error, Warning, Note };

struct VersionsRule {
    std::string_view id;
    Severity severity;
    std::string_view explanation;
};

struct VersionsFinding {
    const VersionsRule* rule;
    int line;    ///< from 1; 0 for the whole file
    int column;  ///< in characters, from 1; 0 for the whole file
    std::string message;
};

std::span<const VersionsRule> versionsRules();
std::string_view severityName(Severity severity);
/// In the order of the lines, those on the whole file first.
std::vector<VersionsFinding> lintVersions(const VersionsTexts& texts);

}  // namespace tools
