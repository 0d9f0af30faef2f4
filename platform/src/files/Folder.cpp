#include "platform/FileSystem.h"
#include "platform/src/files/PosixPath.h"
#include "platform/src/files/StagedFile.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <cerrno>
#include <memory>

namespace IO {

namespace {

struct Entry {
    std::string name;
    bool isFolder;
};

struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
};

/// Whether the folder that `link` refers to is `path` itself or one above it.
bool leadsBack(const std::string& path, const struct stat& link) {
    std::string above = path;
    while (!above.empty()) {
        struct stat status {};
        if (stat(above.c_str(), &status) == 0 && status.st_dev == link.st_dev &&
            status.st_ino == link.st_ino) {
            return true;
        }
        const std::size_t slash = above.find_last_of('/');
        if (slash == std::string::npos || above == "/") break;
        above.resize(slash == 0 ? 1 : slash);
    }
    return false;
}

/// Reads all entries; errno value of the failure that ended it.
int readEntries(const std::string& path, std::vector<Entry>& entries) {
    const std::unique_ptr<DIR, CloseDirectory> directory(opendir(path.c_str()));
    if (!directory) return errno;
    for (;;) {
        errno = 0;
        const dirent* found = readdir(directory.get());
        if (found == nullptr) return errno;
        const std::string_view name = found->d_name;
        if (name == "." || name == ".." || platform::StagedFile::isStagedName(name)) continue;

        bool isFolder = found->d_type == DT_DIR;
        if (found->d_type == DT_LNK || found->d_type == DT_UNKNOWN) {
            struct stat own {};
            struct stat target {};
            const int folder = dirfd(directory.get());
            isFolder = fstatat(folder, found->d_name, &target, 0) == 0 && S_ISDIR(target.st_mode);
            const bool isLink =
                fstatat(folder, found->d_name, &own, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(own.st_mode);
            if (isFolder && isLink && leadsBack(path, target)) continue;
        }
        entries.push_back({std::string(name), isFolder});
    }
}

/// The bytes of one component; false when `name` cannot be one.
bool entryName(const Name& name, std::string& bytes) {
    return !name.IsEmpty() && platform::posixBytesOfText(name.ToUniString(), bytes) &&
           bytes.find('/') == std::string::npos;
}

std::string entryPath(const std::string& folder, const std::string& name) {
    return folder.ends_with('/') ? folder + name : folder + '/' + name;
}

}  // namespace

Folder::Folder(const Location& location, OnNotFound onNotFound) : location_(location) {
    GS::FixedCapacityString<256> bytes;
    status_ = location.ToUTF8POSIXPath(&bytes);
    if (status_ != kNoError) return;
    path_ = bytes.ToCStr();
    if (onNotFound == Create) {
        status_ = platform::errorOfErrno(platform::createFolders(path_, 0777));
        if (status_ != kNoError) return;
    }
    struct stat status {};
    if (stat(path_.c_str(), &status) != 0) {
        status_ = platform::errorOfErrno(errno);
    } else if (!S_ISDIR(status.st_mode)) {
        status_ = kErrWrongType;
    }
}

GSErrCode Folder::Enumerate(EnumerationCallback callback, void* context) {
    if (status_ != kNoError) return status_;
    std::vector<Entry> entries;
    const int error = readEntries(path_, entries);
    for (const Entry& entry : entries) {
        const Name name(platform::textOfPosixBytes(entry.name));
        if (!callback(*this, name, entry.isFolder, context)) return kErrStopped;
    }
    return platform::errorOfErrno(error);
}

GSErrCode Folder::GetType(const Name& name, EntryType* type) const {
    if (status_ != kNoError) return status_;
    std::string bytes;
    if (!entryName(name, bytes)) return kErrBadLocation;
    struct stat status {};
    if (stat(entryPath(path_, bytes).c_str(), &status) != 0) return platform::errorOfErrno(errno);
    *type = S_ISDIR(status.st_mode) ? IsFolder : IsFile;
    return kNoError;
}

GSErrCode Folder::Delete(const Name& name, DataSafety, AccessDeniedTreatment) {
    if (status_ != kNoError) return status_;
    std::string bytes;
    if (!entryName(name, bytes)) return kErrBadLocation;
    return unlink(entryPath(path_, bytes).c_str()) == 0 ? kNoError : platform::errorOfErrno(errno);
}

}  // namespace IO
