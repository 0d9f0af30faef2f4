#include "settings/KW_AddonSettings.h"

#include "platform/FileSystem.h"
#include "settings/AddonIdentity.h"

namespace {

constexpr auto kEncoding = KW_String::Encoding_System;

/// What saving has to mind about the file on the disk.
enum class FileState {
    Replaceable,
    Unread,   // not to be lost
    Damaged,  // to be copied first
};

KW_List<KW_Setting> sAllAddonsSettings;
KW_List<KW_Setting> sAddonSettings;
bool sAllSettingsLoaded = false;
bool sSettingsLoaded = false;
FileState sAllSettingsFile = FileState::Replaceable;
FileState sSettingsFile = FileState::Replaceable;

struct SettingsSet {
    KW_List<KW_Setting>& list;
    bool& loaded;
    FileState& file;
};

SettingsSet setOf(KW_AddonSettings_Type type) {
    if (type == KW_AddonSettings_AllAddons) return {sAllAddonsSettings, sAllSettingsLoaded, sAllSettingsFile};
    return {sAddonSettings, sSettingsLoaded, sSettingsFile};
}

/// Index of the first entry of the key, or -1.
long indexOf(const KW_List<KW_Setting>& list, const KW_String& key) {
    for (long i = 0; i < list.count; ++i) {
        if (KW_String::Compare(list[i].key, 0, key, 0, 0) == 0) return i;
    }
    return -1;
}

/// The value of the key, or null.
const KW_String* valueOf(KW_AddonSettings_Type type, const KW_String& key, bool load) {
    const SettingsSet set = setOf(type);
    if (load && !set.loaded && !KW_AddonSettings_Load(type, true)) return nullptr;
    const long index = indexOf(set.list, key);
    return index >= 0 ? &set.list[index].value : nullptr;
}

long toLong(const KW_String& value) {
    return KW_String::ToLong(value.ToCStr(kEncoding).data);
}

double toDouble(const KW_String& value) {
    return KW_String::ToDouble(value.ToCStr(kEncoding).data);
}

}  // namespace

GSErrCode KW_AddonSettings_GetLocation(KW_AddonSettings_Type type, KW_Location& location) {
    const GSErrCode error = KW_Location::SettingsFolder(location);
    if (error != kNoError) return error;
    location += "/";
    location += type == KW_AddonSettings_AllAddons ? "TessaroPlugins" : sett_ADDON_SETTINGS_FILE_NAME;
    location += ".cfg";
    return kNoError;
}

bool KW_AddonSettings_Load(KW_AddonSettings_Type type, bool onlyIfNotLoaded) {
    const SettingsSet set = setOf(type);
    if (onlyIfNotLoaded && set.loaded) return true;
    set.list.SetSize(0, false);
    set.file = FileState::Unread;
    KW_Location location;
    if (KW_AddonSettings_GetLocation(type, location) != kNoError) return false;
    const KW_SettingsFile_Result result = KW_SettingsFile_Read(location, set.list);
    if (result == KW_SettingsFile_Result::Malformed) set.file = FileState::Damaged;
    if (result != KW_SettingsFile_Result::Read) return false;
    set.file = FileState::Replaceable;
    set.loaded = true;
    return true;
}

bool KW_AddonSettings_Save(KW_AddonSettings_Type type) {
    const SettingsSet set = setOf(type);
    KW_Location location;
    if (KW_AddonSettings_GetLocation(type, location) != kNoError) return false;
    if (set.file == FileState::Unread && IO::File(location, IO::File::Fail).GetStatus() != IO::kErrNotFound) {
        return false;
    }
    if (set.file == FileState::Damaged && !KW_SettingsFile_KeepDamaged(location)) return false;
    if (!KW_SettingsFile_Write(location, set.list)) return false;
    set.file = FileState::Replaceable;
    return true;
}

bool KW_AddonSettings_Get(KW_AddonSettings_Type type, const KW_String& key, KW_String* value, bool load) {
    const KW_String* found = valueOf(type, key, load);
    if (found != nullptr && value != nullptr) *value = *found;
    return found != nullptr;
}

KW_String KW_AddonSettings_Get(KW_AddonSettings_Type type, const KW_String& key, bool load) {
    const KW_String* found = valueOf(type, key, load);
    return found != nullptr ? *found : KW_String("", kEncoding);
}

bool KW_AddonSettings_GetLong(KW_AddonSettings_Type type, const KW_String& key, long* value, bool load) {
    const KW_String* found = valueOf(type, key, load);
    if (found != nullptr && value != nullptr) *value = toLong(*found);
    return found != nullptr;
}

long KW_AddonSettings_GetLong(KW_AddonSettings_Type type, const KW_String& key, bool load) {
    return toLong(KW_AddonSettings_Get(type, key, load));
}

bool KW_AddonSettings_GetDouble(KW_AddonSettings_Type type, const KW_String& key, double* value, bool load) {
    const KW_String* found = valueOf(type, key, load);
    if (found != nullptr && value != nullptr) *value = toDouble(*found);
    return found != nullptr;
}

double KW_AddonSettings_GetDouble(KW_AddonSettings_Type type, const KW_String& key, bool load) {
    return toDouble(KW_AddonSettings_Get(type, key, load));
}

bool KW_AddonSettings_Set(KW_AddonSettings_Type type, const KW_String& key, const KW_String& value,
                          bool addIfMissing) {
    KW_List<KW_Setting>& list = setOf(type).list;
    const long index = indexOf(list, key);
    if (index >= 0) {
        list[index].value = value;
    } else if (addIfMissing) {
        list.AddData(KW_Setting(key, value), -1);
    }
    return true;
}

bool KW_AddonSettings_SetLong(KW_AddonSettings_Type type, const KW_String& key, long value,
                              bool addIfMissing) {
    return KW_AddonSettings_Set(type, key, KW_String::LongToString(value, 0), addIfMissing);
}

bool KW_AddonSettings_SetDouble(KW_AddonSettings_Type type, const KW_String& key, double value,
                                bool addIfMissing) {
    return KW_AddonSettings_Set(type, key, KW_String::DoubleToString(value, 0u, 0u), addIfMissing);
}

void KW_AddonSettings_LoadSetSave(KW_AddonSettings_Type type, const KW_String& key, const KW_String& value,
                                  bool addIfMissing) {
    (void)KW_AddonSettings_Load(type, true);
    (void)KW_AddonSettings_Set(type, key, value, addIfMissing);
    (void)KW_AddonSettings_Save(type);
}

bool KW_AddonSettings_Remove(KW_AddonSettings_Type type, const KW_String& key) {
    KW_List<KW_Setting>& list = setOf(type).list;
    const long index = indexOf(list, key);
    if (index >= 0) list.DeleteData(index);
    return index >= 0;
}

void KW_AddonSettings_Clear(KW_AddonSettings_Type type) {
    const SettingsSet set = setOf(type);
    set.list.SetSize(0, false);
    if (set.file == FileState::Unread) set.file = FileState::Replaceable;
}

long KW_AddonSettings_GetCount(KW_AddonSettings_Type type) {
    return setOf(type).list.count;
}

bool KW_AddonSettings_Get(KW_AddonSettings_Type type, long index, KW_String* key, KW_String* value) {
    const KW_List<KW_Setting>& list = setOf(type).list;
    if (index < 0 || index >= list.count) return false;
    if (key != nullptr) *key = list[index].key;
    if (value != nullptr) *value = list[index].value;
    return true;
}
