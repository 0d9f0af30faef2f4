#include "files/KW_Location.h"

#include "foundation/KW_Units.h"
#include "platform/HostInterface.h"

#include <utility>

namespace {

constexpr unsigned short kSlash = '/';

/// What one listing carries through all its folders.
struct FilesEnumeration {
    bool recursive;
    bool foldersMode;
    KW_List<KW_String>* extensions;  // null for every file
    KW_List<KW_Location>* result;
};

/// Where the path's last name begins.
unsigned int nameStart(const KW_String& path) {
    return static_cast<unsigned int>(path.LastIndexOf('/') + 1);
}

/// Where the extension of the path's last name begins; the path's end when it has none.
unsigned int extensionStart(const KW_String& path) {
    const auto start = static_cast<unsigned int>(path.LastIndexOf('.') + 1);
    return start > nameStart(path) ? start : path.length;
}

bool isWanted(const KW_Location& file, const KW_List<KW_String>* extensions) {
    if (extensions == nullptr || extensions->count == 0) return true;
    const unsigned int start = extensionStart(file);
    for (long i = 0; i < extensions->count; ++i) {
        if (KW_String::CompareIgnoreCase(file, start, (*extensions)[i], 0, 0) == 0) return true;
    }
    return false;
}

bool KW_FilesEnumeration_CallBack(IO::Folder& folder, const IO::Name& name, bool isFolder, void* context) {
    const FilesEnumeration& enumeration = *static_cast<FilesEnumeration*>(context);
    if (!isFolder && enumeration.foldersMode) return true;

    const IO::Location entry(folder.GetLocation(), name);
    if (isFolder == enumeration.foldersMode) {
        KW_Location location(entry);
        if (isFolder || isWanted(location, enumeration.extensions)) {
            enumeration.result->AddData(std::move(location), -1);
        }
    }
    if (!isFolder || !enumeration.recursive) return true;
    IO::Folder inside(entry, IO::Folder::Fail);
    return inside.GetStatus() == kNoError &&
           inside.Enumerate(KW_FilesEnumeration_CallBack, context) == kNoError;
}

bool enumerate(const KW_Location& location, FilesEnumeration enumeration) {
    if (enumeration.result == nullptr) return false;
    IO::Folder folder(location, IO::Folder::Fail);
    return folder.GetStatus() == kNoError &&
           folder.Enumerate(KW_FilesEnumeration_CallBack, &enumeration) == kNoError;
}

}  // namespace

KW_Location::KW_Location(const KW_String& path) {
    Set(path);
}

KW_Location::KW_Location(const IO::Location& location) {
    Set(location);
}

void KW_Location::Set(const KW_String& path) {
    const bool trailing = path.length > 0 && path.data[path.length - 1] == kSlash;
    THIS_CopyString(path, 0, trailing ? path.length - 1 : path.length);
}

void KW_Location::Set(const IO::Location& location) {
    SetToNullString();
    GS::UniString path;
    if (location.ToPath(&path) != kNoError) return;
    const KW_Units units = KW_UnitsOf(path);
    const bool trailing = !units.empty() && units.back() == kSlash;
    KW_SetUnits(*this, trailing ? units.first(units.size() - 1) : units);
}

KW_Location::operator IO::Location() const {
    return IO::Location(KW_UniStringOf(*this));
}

KW_Location::operator IO::Location() {
    return std::as_const(*this);
}

void KW_Location::SetLastName(const char* name) {
    if (data == nullptr) return;
    const KW_String lastName(name, Encoding_System);
    const unsigned int start = nameStart(*this);
    THIS_CopyString(start == 0 ? lastName : Substring(0, start) + lastName);
}

KW_String KW_Location::LastName() const {
    return Substring(nameStart(*this));
}

KW_String KW_Location::Extension() const {
    return Substring(extensionStart(*this));
}

GSErrCode KW_Location::SettingsFolder(KW_Location& location) {
    IO::Location folder;
    const GSErrCode error = IO::FileSystem::GetSpecialLocation(IO::FileSystem::SuiteSettingsFolder, &folder);
    if (error == kNoError) location.Set(folder);
    return error;
}

KW_Location KW_Location::AddOnLocation(bool parent) {
    IO::Location own;
    KW_Location result;
    if (ACAPI_GetOwnLocation(own) == kNoError) result.Set(own);
    if (parent && result.data != nullptr) {
        const int slash = result.LastIndexOf('/');
        result.THIS_CopyString(result, 0, slash < 0 ? 0 : static_cast<unsigned int>(slash));
    }
    return result;
}

bool KW_Location::IsFolder() const {
    if (data == nullptr) return false;
    const KW_Units path = KW_UnitsOf(*this);
    const std::size_t start = nameStart(*this);
    // What precedes the first "/" of an absolute path is the root of the file system.
    const KW_Units parent = path.first(start > 1 ? start - 1 : start);

    const IO::Folder folder(IO::Location(KW_UniStringOf(parent)), IO::Folder::Fail);
    const IO::Name name(KW_UniStringOf(path.subspan(start)));
    IO::Folder::EntryType type = IO::Folder::IsFile;
    return folder.GetStatus() == kNoError && folder.GetType(name, &type) == kNoError &&
           type == IO::Folder::IsFolder;
}

bool KW_Location::IsFile() const {
    return IO::File(*this, IO::File::Fail).GetStatus() == kNoError;
}

KW_String KW_Location::GetPOSIXPath() const {
    const IO::Location location = *this;
    GS::FixedCapacityString<256> bytes;
    if (location.ToUTF8POSIXPath(&bytes) != kNoError || bytes.IsEmpty()) return KW_String();
    return KW_String(bytes.ToCStr(), Encoding_System);
}

bool KW_Location::GetFilesInFolder(KW_List<KW_String>* extensions, bool recursive,
                                   KW_List<KW_Location>* files) const {
    return enumerate(*this, {recursive, false, extensions, files});
}

bool KW_Location::GetSubFolders(bool recursive, KW_List<KW_Location>* folders) const {
    return enumerate(*this, {recursive, true, nullptr, folders});
}
