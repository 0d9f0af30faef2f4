#pragma once

/// Who the add-on is that the framework runs in. Every add-on defines these for itself, the texts as
/// zero-terminated Encoding_System text; they keep their values while the add-on is loaded.

/// The add-on's name as people read it.
extern char sett_ADDON_NAME[];
/// Base name of its settings file and its marker file.
extern char sett_ADDON_SETTINGS_FILE_NAME[];
/// Whether it keeps its language in its own settings; otherwise it follows the suite's.
extern bool sett_ADDON_HAS_OWN_LANGUAGE;
/// Suffixes of the languages that its language dialog offers; empty for all.
extern char sett_ADDON_SHOWED_LANGUAGES[];
/// Suffixes of the languages with index 5 and above that it supports.
extern char sett_ADDON_SUPP_EXTRA_LANGUAGES[];
/// Whether its update check reads the alternative list of versions.
extern bool sett_ADDON_ONLY_PLUS_VERSION;
