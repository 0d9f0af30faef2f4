#pragma once

#include <sys/stat.h>
#include <string>
#include <string_view>

namespace platform {

/// The new content of a regular file, written beside it until it takes its place; or the first content of a
/// file that does not exist.
///
/// The staged file's name is made from the target's name alone, so that the next replacement of the same
/// target finds what a killed process left behind. A lock distinguishes a file being written from one left
/// behind. Results are errno values, 0 for success.
class StagedFile {
public:
    StagedFile() = default;
    ~StagedFile() { discard(); }
    StagedFile(const StagedFile&) = delete;
    StagedFile& operator=(const StagedFile&) = delete;

    /// Stages content for the file `target`; of a symbolic link, for what it leads to.
    int open(const std::string& target);
    bool isOpen() const { return file_ >= 0; }
    /// For writing; -1 when not open.
    int descriptor() const { return file_; }
    /// Puts the content in the target's place, on the disk, and closes. On failure the target is as it was,
    /// except when only the flush of the folder failed.
    /// Without `mayReplace` a file that has come into being meanwhile is in the way: EEXIST.
    int commit(bool mayReplace);
    /// Removes the staged file and closes; the target stays as it was.
    void discard();

    /// Whether a folder's entry of this name is such a file.
    static bool isStagedName(std::string_view name);

private:
    int openSlot(int slot, unsigned int mode);
    void removeLeftOver(int slot) const;
    int takePermissions(const struct stat& old) const;
    void close();

    int folder_ = -1;
    int file_ = -1;
    std::string targetName_;
    std::string stagedName_;
};

}  // namespace platform
