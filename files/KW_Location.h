#pragma once

#include "foundation/KW_List.h"
#include "foundation/KW_String.h"
#include "platform/FileSystem.h"

/// A file or folder: its path, components separated by "/", in the host's form. The string is the path, and
/// every operation of KW_String applies to it; the null string means no location.
///
/// A path that Set stored has lost one trailing "/". So the root of the file system is the empty string:
/// right for appending "/" and a name, but not a location that the host can open.
class KW_Location : public KW_String {
public:
    using KW_String::Set;
    using KW_String::operator=;

    KW_Location() = default;
    explicit KW_Location(const KW_String& path);
    explicit KW_Location(const IO::Location& location);

    /// Takes the path, without one trailing "/". Null gives no location.
    void Set(const KW_String& path);
    /// Takes the host's path, without one trailing "/"; no location when the host has none.
    void Set(const IO::Location& location);
    /// Without a path for the null and the empty string.
    operator IO::Location() const;
    operator IO::Location();

    /// Replaces everything after the last "/" (the whole path if there is none) by the name, given in
    /// Encoding_System. Nothing happens to no location.
    void SetLastName(const char* name);

    /// What stands behind the last "/" (everything, when there is none); null for no location.
    KW_String LastName() const;
    /// What stands behind the last "." of the last name, empty when there is none; null for no location.
    KW_String Extension() const;

    /// The folder of settings, marker files and downloads. 0, or the host's error code with `location`
    /// unchanged.
    static GSErrCode SettingsFolder(KW_Location& location);
    /// Where the add-on's bundle is, or with `parent` the folder that contains it. No location if the host
    /// does not know.
    static KW_Location AddOnLocation(bool parent);

    /// Whether there is a folder, or a link to one, at this location.
    bool IsFolder() const;
    /// Whether there is something else than a folder at this location.
    bool IsFile() const;

    /// The path in the bytes of the file system, one unit for each byte: ToCStr(Encoding_System) of the
    /// result gives the bytes. Null when there is no location or no bytes can represent it.
    KW_String GetPOSIXPath() const;

    /// Appends the files of this folder, with `recursive` also those of all folders below, in the file
    /// system's order. `extensions` (may be null) lists the extensions wanted, without the dot, in any case;
    /// an empty list means every file. False, with what was found so far in the list, when a folder could not
    /// be opened or read.
    bool GetFilesInFolder(KW_List<KW_String>* extensions, bool recursive, KW_List<KW_Location>* files) const;
    /// Appends the subfolders of this folder, with `recursive` also those below, each before its own. Result
    /// as above.
    bool GetSubFolders(bool recursive, KW_List<KW_Location>* folders) const;
};
