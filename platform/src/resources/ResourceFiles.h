#pragma once

#include "platform/host/Resources.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

/// The resource files of a bundle as plain data. A file that cannot be read gives empty data, an entry that
/// is not valid is skipped; both are reported in `problems`.
namespace platform {

using NumberedTexts = std::map<int, std::string>;
using ResourceProblems = std::vector<ResourceProblem>;

/// resources.toml: what the bundle has, whatever the language.
struct ResourceIndex {
    /// The texts of a menu's items: the first `count` strings of string resource `strings`.
    struct MenuItems {
        int count = 0;
        int strings = 0;
    };

    NumberedTexts languages;  ///< name by number
    int fallback = -1;        ///< number of a language; -1 for none
    std::vector<int> stringBases;
    std::map<int, MenuItems> menus;  ///< by base
    NumberedTexts iconLabels;        ///< by resource ID
};

/// texts.LANGUAGE.toml.
struct ResourceTexts {
    std::map<int, NumberedTexts> strings;  ///< by base, then by index
    NumberedTexts menuTitles;              ///< by base
    std::map<int, NumberedTexts> dialogs;  ///< by resource ID, then by item; item 0 is the title
};

/// layouts.toml, by resource ID.
using ResourceLayouts = std::map<int, DialogLayout>;

ResourceIndex readResourceIndex(const std::string& path, ResourceProblems& problems);
ResourceTexts readResourceTexts(const std::string& path, ResourceProblems& problems);
ResourceLayouts readResourceLayouts(const std::string& path, ResourceProblems& problems);

/// Adds what `own` lacks and `other` has. Languages are taken over all together or not at all.
void complete(ResourceIndex& own, ResourceIndex other);
void complete(ResourceTexts& own, ResourceTexts other);

/// The whole content of a regular file; nothing, and a problem, when it cannot be read or is too large to be
/// one of a bundle's resources.
std::optional<std::string> readResourceFile(const std::string& path, ResourceProblems& problems);

}  // namespace platform
