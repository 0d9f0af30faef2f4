#pragma once

/// This build of the add-on, as its line in the maker's versions file would read.
constexpr char kAddonVersionLine[] = "TessaroLibrary 22.0.4.2200 (AC220) 03/08/2018";
