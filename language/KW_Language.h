#pragma once

#include "foundation/KW_String.h"

/// The language that the suite speaks, and where it is stored: under the key "Language_str" in the settings
/// of this add-on or of the whole suite, as sett_ADDON_HAS_OWN_LANGUAGE says. Main thread only.

constexpr short KW_Language_Count = 7;
/// International (English): the language when nothing else is known, and the fallback of every text.
constexpr short KW_Language_International = 1;

/// Index of the current language: 0 ita, 1 int, 2 fra, 3 ger, 4 spa, 5 jap, 6 rus; 1 until the first
/// KW_Language_Read. Read it anew for every text, since the language dialog changes it while it is
/// open.
extern short gKW_Language;

/// The three-letter names of the languages, by index, as they are written in the settings and the add-on's
/// identity.
extern KW_String gKW_Languages_Suffixes[KW_Language_Count];

/// Makes the stored language the current one; international when there is none, an unknown one, or one that
/// this add-on does not support. `reload` reads the suite's shared settings again from their file first.
/// Returns whether a language is stored, known or not.
bool KW_Language_Read(bool reload);

/// Stores the current language in the settings file; a failure to save is not reported. An index outside the
/// table counts as international. A language that this add-on does not support is stored, and the current one
/// is then international.
void KW_Language_Write();

/// Makes international current in the place of a language that this add-on does not support. The first five
/// are always supported, the others when sett_ADDON_SUPP_EXTRA_LANGUAGES names them.
void KW_Language_CheckSupportedLanguage();

/// Whether a language is stored, in the present or the older form.
bool KW_Language_Exists();
