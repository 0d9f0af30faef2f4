#pragma once

#include "files/KW_Location.h"
#include "foundation/KW_List.h"
#include "foundation/KW_String.h"

/// The file format of the suite's settings and marker files. Every byte is stored with its two halves
/// exchanged; under that a file is nothing but entries,
///
///     $KEY: VALUE<line feed>
///
/// in Encoding_System, where each line break inside a value (line feed, carriage return, or both) is followed
/// by "#". A key is not empty and holds neither ":" nor a line break; that is the writer's business.

/// One entry. A new one has an empty key and an empty value.
struct KW_Setting {
    KW_String key;
    KW_String value;

    KW_Setting() : key("", KW_String::Encoding_System), value("", KW_String::Encoding_System) {}
    KW_Setting(const KW_String& entryKey, const KW_String& entryValue) : key(entryKey), value(entryValue) {}
};

/// A larger file is not read.
constexpr unsigned long kKW_SettingsFile_MaxFileSize = 99998;
/// A larger image is not written.
constexpr unsigned long kKW_SettingsFile_MaxImageSize = 100000;

enum class KW_SettingsFile_Result {
    Read,       ///< also for a missing file, which holds no entries
    Refused,    ///< the file is too large or cannot be read, or memory ended
    Malformed,  ///< the entries before the fault are in the list
};

/// Exchanges the halves of every byte; the way there and back.
void KW_SettingsFile_ExchangeHalves(char* bytes, unsigned long size);

/// Appends the entries that `bytes` (halves already in order) hold. An entry that the end cuts short is
/// dropped. Malformed at the first fault: an entry that does not begin with "$", has no ":" or no key, or a
/// line break with anything but "#", "$" or the end behind it.
[[nodiscard]] KW_SettingsFile_Result KW_SettingsFile_Parse(const char* bytes, unsigned long size,
                                                           KW_List<KW_Setting>& list);

/// Replaces the list's content by the file's.
[[nodiscard]] KW_SettingsFile_Result KW_SettingsFile_Read(const KW_Location& location,
                                                          KW_List<KW_Setting>& list);

/// Makes the file hold exactly the list's entries, in their order; whoever reads meanwhile finds the old file
/// or the new. False when the list has lost its memory, the image would be too large, or the new file could
/// not take the old one's place: the old file stands.
[[nodiscard]] bool KW_SettingsFile_Write(const KW_Location& location, const KW_List<KW_Setting>& list);

/// Copies a file whose entries are not known to the same name with ".damaged" behind it, replacing an older
/// copy. A file that is empty or missing is not copied. False when the file could not be read or copied.
[[nodiscard]] bool KW_SettingsFile_KeepDamaged(const KW_Location& location);
