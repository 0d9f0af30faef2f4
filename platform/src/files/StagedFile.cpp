#include "platform/src/files/StagedFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <filesystem>

namespace platform {

namespace {

constexpr std::string_view kPrefix = ".tessaro-";
constexpr std::string_view kSuffix = ".staged";
/// How many processes can replace one file at the same moment.
constexpr int kSlots = 10;

/// FNV-1a: the same in every process and every version.
std::uint64_t hashOfName(std::string_view name) {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char byte : name)
        hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
    return hash;
}

std::string stagedName(std::string_view target, int slot) {
    std::array<char, 20> middle{};
    std::snprintf(middle.data(), middle.size(), "%016llx-%d",
                  static_cast<unsigned long long>(hashOfName(target)), slot);
    return std::string(kPrefix) + middle.data() + std::string(kSuffix);
}

enum class Lock { Taken, HeldByAnother, Unknown };

/// Unknown on file systems without locks.
Lock takeLock(int file) {
    if (flock(file, LOCK_EX | LOCK_NB) == 0) return Lock::Taken;
    return errno == EWOULDBLOCK ? Lock::HeldByAnother : Lock::Unknown;
}

/// Where the file is, or comes to be when it is missing: a symbolic link stands for what it leads to.
std::filesystem::path linksFollowed(std::filesystem::path path) {
    constexpr int kMostLinks = 40;  // as the system's own limit
    for (int links = 0; links < kMostLinks; ++links) {
        std::error_code notALink;
        const std::filesystem::path target = std::filesystem::read_symlink(path, notALink);
        if (notALink) break;
        path = path.parent_path() / target;
    }
    return path;
}

/// Whether `name` still denotes this file: between opening and locking it may have moved on.
bool standsUnder(int file, int folder, const std::string& name) {
    struct stat opened {};
    struct stat named {};
    return fstat(file, &opened) == 0 && fstatat(folder, name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

}  // namespace

bool StagedFile::isStagedName(std::string_view name) {
    return name.starts_with(kPrefix) && name.ends_with(kSuffix) &&
           name.size() == kPrefix.size() + 18 + kSuffix.size();
}

int StagedFile::open(const std::string& target) {
    discard();
    const std::filesystem::path path = linksFollowed(target);
    targetName_ = path.filename().string();
    if (targetName_.empty()) return EISDIR;
    const std::string folder = path.has_parent_path() ? path.parent_path().string() : ".";
    folder_ = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder_ < 0) return errno;

    struct stat old {};
    const bool exists = fstatat(folder_, targetName_.c_str(), &old, 0) == 0;
    int error = EBUSY;
    int slot = 0;
    while (slot < kSlots && error == EBUSY)
        error = openSlot(slot++, exists ? 0600 : 0666);
    if (error == 0 && exists) error = takePermissions(old);
    if (error != 0) {
        discard();
        return error;
    }
    for (; slot < kSlots; ++slot)
        removeLeftOver(slot);
    return 0;
}

/// EBUSY when the slot is in use.
int StagedFile::openSlot(int slot, unsigned int mode) {
    stagedName_ = stagedName(targetName_, slot);
    constexpr int kAttempts = 3;  // another process may clear the name away between two of our steps
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        constexpr int kFlags = O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
        file_ = openat(folder_, stagedName_.c_str(), kFlags, mode);
        if (file_ >= 0) {
            if (takeLock(file_) != Lock::HeldByAnother && standsUnder(file_, folder_, stagedName_)) return 0;
            ::close(file_);
            file_ = -1;
        } else if (errno == EEXIST) {
            removeLeftOver(slot);
        } else {
            return errno;
        }
    }
    return EBUSY;
}

/// A staged file that nobody holds the lock of was left by a process that ended before its time.
void StagedFile::removeLeftOver(int slot) const {
    const std::string name = stagedName(targetName_, slot);
    const int file = openat(folder_, name.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (file < 0) return;
    if (takeLock(file) == Lock::Taken && standsUnder(file, folder_, name)) unlinkat(folder_, name.c_str(), 0);
    ::close(file);
}

int StagedFile::takePermissions(const struct stat& old) const {
    struct stat staged {};
    if (fstat(file_, &staged) != 0) return errno;
    mode_t mode = old.st_mode & 07777;
    const bool sameOwner = old.st_uid == staged.st_uid && old.st_gid == staged.st_gid;
    // Who may not give files away keeps the staged one, without the rights of the other owner.
    if (!sameOwner && fchown(file_, old.st_uid, old.st_gid) != 0) mode &= 0777;
    return fchmod(file_, mode) == 0 ? 0 : errno;
}

int StagedFile::commit(bool mayReplace) {
    const auto rename = [this](unsigned int flags) {
        return renameat2(folder_, stagedName_.c_str(), folder_, targetName_.c_str(), flags) == 0;
    };
    bool done = fsync(file_) == 0;
    // Some file systems cannot rename with a condition and say so with EINVAL.
    if (done) done = mayReplace ? rename(0) : rename(RENAME_NOREPLACE) || (errno == EINVAL && rename(0));
    int error = done ? 0 : errno;
    if (!done) {
        discard();
        return error;
    }
    // Some file systems cannot flush a folder and say so with EINVAL.
    if (fsync(folder_) != 0 && errno != EINVAL) error = errno;
    close();
    return error;
}

void StagedFile::discard() {
    if (file_ >= 0) unlinkat(folder_, stagedName_.c_str(), 0);
    close();
}

void StagedFile::close() {
    if (file_ >= 0) ::close(file_);
    if (folder_ >= 0) ::close(folder_);
    file_ = folder_ = -1;
}

}  // namespace platform
