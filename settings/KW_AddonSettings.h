#pragma once

#include "files/KW_Location.h"
#include "foundation/KW_String.h"
#include "platform/HostError.h"
#include "settings/KW_SettingsFile.h"

/// Small values that outlive a session: texts under keys, in two sets. Each set is a list in memory, mirrored
/// in one file of the host's settings folder.
///
/// Only Load, Save, LoadSetSave, and the Get functions with `load` on a set that is not loaded yet touch the
/// disk; the rest works on memory. Keys are compared exactly. A file may hold a key twice: every function
/// means the first entry of a key.
///
/// No file is lost that is not known: one that was too large or could not be read, for whatever reason, is
/// not saved over until the set has been loaded or cleared; one that is damaged is copied to NAME.cfg.damaged
/// before it is saved over; and a set that lost its memory is not saved at all.

enum KW_AddonSettings_Type : int {
    KW_AddonSettings_AllAddons = 0,  ///< shared by all add-ons of the suite: TessaroPlugins.cfg
    KW_AddonSettings_ThisAddon = 1,  ///< this add-on's own: sett_ADDON_SETTINGS_FILE_NAME and .cfg
};

/// Location of the set's file. 0, or the host's error code with `location` unchanged.
GSErrCode KW_AddonSettings_GetLocation(KW_AddonSettings_Type type, KW_Location& location);

/// Reads the set from its file, dropping unsaved changes; with `onlyIfNotLoaded` nothing happens to a set
/// that is loaded. A missing file is an empty set. Whether the set is loaded; on false it holds nothing or,
/// from a damaged file, the entries before the damage.
bool KW_AddonSettings_Load(KW_AddonSettings_Type type, bool onlyIfNotLoaded);
/// Writes the set to its file, in one step. True when the new file has taken the old one's place; otherwise
/// the old one stands.
bool KW_AddonSettings_Save(KW_AddonSettings_Type type);

/// Whether the key is there; `*value` (may be null) is set only then.
bool KW_AddonSettings_Get(KW_AddonSettings_Type type, const KW_String& key, KW_String* value, bool load);
/// The value, or the empty string.
KW_String KW_AddonSettings_Get(KW_AddonSettings_Type type, const KW_String& key, bool load);
KW_String KW_AddonSettings_Get(KW_AddonSettings_Type type, const KW_String& key, KW_String* value) = delete;
/// The value as KW_String::ToLong reads it; `*value` is set only when the key is there.
bool KW_AddonSettings_GetLong(KW_AddonSettings_Type type, const KW_String& key, long* value, bool load);
/// The same, or 0.
long KW_AddonSettings_GetLong(KW_AddonSettings_Type type, const KW_String& key, bool load);
long KW_AddonSettings_GetLong(KW_AddonSettings_Type type, const KW_String& key, long* value) = delete;
/// The value as KW_String::ToDouble reads it; `*value` is set only when the key is there.
bool KW_AddonSettings_GetDouble(KW_AddonSettings_Type type, const KW_String& key, double* value, bool load);
/// The same, or what an empty text gives.
double KW_AddonSettings_GetDouble(KW_AddonSettings_Type type, const KW_String& key, bool load);
double KW_AddonSettings_GetDouble(KW_AddonSettings_Type type, const KW_String& key, double* value) = delete;

/// Replaces the value of the key; a missing one is added at the end with `addIfMissing`, else nothing
/// changes. Always true.
bool KW_AddonSettings_Set(KW_AddonSettings_Type type, const KW_String& key, const KW_String& value,
                          bool addIfMissing);
bool KW_AddonSettings_SetLong(KW_AddonSettings_Type type, const KW_String& key, long value,
                              bool addIfMissing);
/// Six significant digits, with a point in every locale: what is read back may differ.
bool KW_AddonSettings_SetDouble(KW_AddonSettings_Type type, const KW_String& key, double value,
                                bool addIfMissing);
/// Loads the set if it is not loaded, sets the value and saves; the results are not reported.
void KW_AddonSettings_LoadSetSave(KW_AddonSettings_Type type, const KW_String& key, const KW_String& value,
                                  bool addIfMissing);

/// Whether there was an entry to remove.
bool KW_AddonSettings_Remove(KW_AddonSettings_Type type, const KW_String& key);
/// Removes all entries. A loaded set stays loaded.
void KW_AddonSettings_Clear(KW_AddonSettings_Type type);

/// Number of entries in memory.
long KW_AddonSettings_GetCount(KW_AddonSettings_Type type);
/// Entry `index`, from 0. False, with both (each may be null) untouched, when there is none.
bool KW_AddonSettings_Get(KW_AddonSettings_Type type, long index, KW_String* key, KW_String* value);
