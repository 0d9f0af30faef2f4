#pragma once

#include "platform/FixedCapacityString.h"
#include "platform/HostError.h"
#include "platform/UniString.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// The host's file system. All calls on the main thread; each blocks until done. Failures are error codes, 0
/// is success.
namespace IO {

/// A file or folder, or a folder on the way to it, does not exist.
constexpr GSErrCode kErrNotFound = hostError(0x81010100);
/// Reading or writing is not permitted, or the volume is read-only.
constexpr GSErrCode kErrAccessDenied = hostError(0x81010102);
/// The volume is full, or the file would become larger than is allowed.
constexpr GSErrCode kErrNoSpace = hostError(0x81010103);
/// The system cannot serve the request now: in use, out of memory, too many files open.
constexpr GSErrCode kErrBusy = hostError(0x81000100);
/// The location or name is empty, too long, or cannot denote a file.
constexpr GSErrCode kErrBadLocation = hostError(0x81010104);
/// There is a folder where a file is expected, or a file where a folder is expected.
constexpr GSErrCode kErrWrongType = hostError(0x81010105);
/// Fewer bytes are left than were asked for.
constexpr GSErrCode kErrEndOfFile = hostError(0x81010106);
/// The file is not open, or not for this.
constexpr GSErrCode kErrNotOpen = hostError(0x81010107);
/// A callback ended the enumeration.
constexpr GSErrCode kErrStopped = hostError(0x81010108);
/// The file has 4 GiB or more.
constexpr GSErrCode kErrTooLarge = hostError(0x81010109);
/// Anything else, a failing device above all.
constexpr GSErrCode kErrOther = hostError(0x810101FF);

/// The name of one entry of a folder.
class Name {
public:
    Name() = default;
    explicit Name(const GS::UniString& text) : text_(text) {}
    const GS::UniString& ToUniString() const { return text_; }
    bool IsEmpty() const { return text_.IsEmpty(); }
    friend bool operator==(const Name&, const Name&) = default;

private:
    GS::UniString text_;
};

/// Where a file or folder is: a path whose components are separated by "/", UTF-16. It need not exist. A
/// path that does not start with "/" is relative to the working directory. Without a path it means no
/// location.
///
/// The file system's names are bytes, UTF-8 as a rule. A byte that is not part of valid UTF-8 appears in the
/// path as the lone unit U+DC80 to U+DCFF with that byte as its lower half, and becomes the byte again on the
/// way back: every file that a listing gives can be opened.
class Location {
public:
    Location() = default;
    explicit Location(const GS::UniString& path) : path_(path) {}
    /// The entry `name` of `folder`.
    Location(const Location& folder, const Name& name);
    /// From the file system's own bytes.
    static Location FromPosixPath(std::string_view bytes);

    void Clear() { path_ = GS::UniString(); }
    bool IsEmpty() const { return path_.IsEmpty(); }

    /// The path as it was given. `*path` is set only on success; no location is an error.
    GSErrCode ToPath(GS::UniString* path) const;
    /// The bytes by which the file system knows the path. `*path` is set only on success; no location is an
    /// error, and so is a path that no bytes can represent (a zero unit, or another lone surrogate).
    GSErrCode ToUTF8POSIXPath(GS::FixedCapacityString<256>* path) const;
    /// Cuts the last component off: this becomes the folder, `*name` (may be null) the name. A single
    /// component leaves "." (or "/"). Nothing changes when there is none.
    GSErrCode MoveLastLocalName(Name* name);

    friend bool operator==(const Location&, const Location&) = default;

private:
    GS::UniString path_;
};

/// What an operation does when access is denied.
enum AccessDeniedTreatment : int {
    ReportAccessDenied = 2,  ///< it ends with kErrAccessDenied; the user is not asked
};

/// An existing folder.
class Folder {
public:
    enum OnNotFound : int {
        Fail = 0,    ///< the status shows it
        Create = 1,  ///< created, with the folders above it
    };
    enum EntryType : int {
        IsFile = 0,    ///< everything that is no folder
        IsFolder = 1,  ///< also a link to a folder
    };
    enum DataSafety : int {
        DeleteForGood = 0,  ///< nothing is kept
    };
    /// `isFolder` as in EntryType. False ends the enumeration.
    using EnumerationCallback = bool (*)(Folder& folder, const Name& name, bool isFolder, void* context);

    Folder(const Location& location, OnNotFound onNotFound = Fail);

    /// 0 when the folder exists.
    GSErrCode GetStatus() const { return status_; }
    const Location& GetLocation() const { return location_; }
    /// Calls `callback` for every entry that the folder had at the beginning, in the file system's order; it
    /// may create and delete entries. kErrStopped when it answered false. Left out are "." and "..", links
    /// that lead back to this folder or one above it (walking down ends), and files staged to replace another
    /// (File::Open).
    GSErrCode Enumerate(EnumerationCallback callback, void* context);
    /// `*type` is set only on success.
    GSErrCode GetType(const Name& name, EntryType* type) const;
    /// Deletes a file, or a link as such. A folder is not deleted: kErrWrongType.
    GSErrCode Delete(const Name& name, DataSafety dataSafety, AccessDeniedTreatment accessDenied);

private:
    Location location_;
    std::string path_;  // empty for a location that no folder can have
    GSErrCode status_ = kNoError;
};

/// A file: one object opens it at most once at a time.
class File {
public:
    enum OnNotFound : int {
        Fail = 0,    ///< the status shows it
        Create = 1,  ///< its name appears with its content when it is closed, or this object ends; the
                     ///< file is readable and writable as the process's mask allows
    };
    enum OpenMode : int {
        ReadMode = 0,
        WriteMode = 1,        ///< in place, from the beginning; the content stays otherwise
        WriteEmptyMode = 2,   ///< replacing; see Open
        ReadWriteMode = 3,    ///< in place
        WriteAppendMode = 4,  ///< every write goes to the end
    };

    explicit File(const Location& location, OnNotFound onNotFound = Fail);
    /// Closes the file; its result is lost.
    ~File();
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    /// 0 when the file exists and is not a folder, or can be created.
    GSErrCode GetStatus() const;

    /// Opens the file at its beginning.
    ///
    /// In WriteEmptyMode what is written goes to a file staged in the same folder, and Close puts that in the
    /// place of this one in one step: who reads, also after a kill or a power cut, finds the old content or
    /// the new. Permissions are kept; of a symbolic link the target is replaced. A staged file that a kill
    /// left behind is removed when the same file is replaced the next time. A file that did not exist is
    /// staged so in every mode. Devices, pipes and the like are written to directly, without waiting for a
    /// reader.
    GSErrCode Open(OpenMode mode, AccessDeniedTreatment accessDenied);
    bool IsOpen() const;
    /// Writes to the disk what the system still holds, replaces the file if it was opened for that, and
    /// closes. When this fails a file to be replaced keeps its old content. A replacement whose writes have
    /// all failed leaves the old file alone, and no file where there was none; one to which nothing was to be
    /// written empties the file.
    GSErrCode Close();

    /// The whole length in bytes; kErrTooLarge from 4 GiB.
    GSErrCode GetLength(std::uint32_t* length) const;
    /// The bytes from the position to the end: the whole length right after opening.
    GSErrCode GetRemainingLength(std::uint64_t* length) const;
    /// From the file's beginning; it may be beyond the end.
    GSErrCode SetPosition(std::uint64_t position);
    /// Reads `count` bytes; with fewer kErrEndOfFile or the error met. `*bytesRead` (may be null) is always
    /// set.
    GSErrCode Read(char* buffer, std::uint32_t count, std::uint32_t* bytesRead);
    /// Writes `count` bytes. `*bytesWritten` (may be null) is always set, to what reached the file.
    GSErrCode Write(const char* bytes, std::uint64_t count, std::uint64_t* bytesWritten);
    /// After a failed Write: takes back what it wrote, if anything; the file can be written to again. Does
    /// nothing after a successful one.
    GSErrCode RecoverFromFailedWrite();

private:
    struct State;
    std::unique_ptr<State> state_;
};

/// The folders that the host offers to every add-on.
class FileSystem {
public:
    enum SpecLocId : int {
        SuiteSettingsFolder = 14,  ///< settings, marker files and downloads of the suite
    };

    /// $TESSARO_DATA_DIR, else $XDG_CONFIG_HOME/Tessaro, else ~/.config/Tessaro, unless the
    /// host has set another; it may not exist yet. `*location` is set only on success. kErrNotFound for other
    /// numbers, and without a home folder.
    static GSErrCode GetSpecialLocation(SpecLocId id, Location* location);
};

}  // namespace IO
