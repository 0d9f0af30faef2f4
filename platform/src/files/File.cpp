#include "platform/FileSystem.h"
#include "platform/src/files/PosixPath.h"
#include "platform/src/files/QuietWrite.h"
#include "platform/src/files/StagedFile.h"
#include "platform/src/process/Failures.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <algorithm>
#include <cerrno>
#include <limits>

namespace IO {

using platform::errorOfErrno;

struct File::State {
    GS::FixedCapacityString<256> path;
    GSErrCode status = kNoError;

    int descriptor = -1;  // owned by `staged` when that is open
    OpenMode mode = ReadMode;
    bool regular = false;
    platform::StagedFile staged;
    bool isNew = false;  // staged since the constructor found no file

    bool someWriteSucceeded = false;
    int writeError = 0;  // of the last write that failed
    // Of the failed write that recovery has not taken back yet.
    bool toBeRecovered = false;
    off_t positionBefore = 0;
    off_t lengthBefore = 0;
    bool placeKnown = false;     // both are those of the next write, which asks the system for nothing
    std::uint64_t heldBack = 0;  // bytes of which the disk has not been told

    int stage();
    int openDirectly();
    GSErrCode noteBefore();
    int recover();
    int settle();
    GSErrCode finish();
};

/// errno value, 0 for success.
int File::State::stage() {
    const int error = staged.open(path.ToCStr());
    if (error != 0) platform::noteReplacement(path.ToCStr(), error);
    return error;
}

/// Opens the file itself. errno value, 0 for success.
int File::State::openDirectly() {
    constexpr int kAccess[] = {O_RDONLY, O_WRONLY, O_WRONLY, O_RDWR, O_WRONLY | O_APPEND};  // by mode
    // A pipe without an other end would wait for one.
    const int flags = kAccess[mode] | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    descriptor = ::open(path.ToCStr(), flags);
    if (descriptor < 0) return errno;
    fcntl(descriptor, F_SETFL, flags & O_APPEND);
    return 0;
}

/// Notes where a write begins, for recovery.
GSErrCode File::State::noteBefore() {
    if (placeKnown) return kNoError;
    struct stat information {};
    positionBefore = lseek(descriptor, 0, SEEK_CUR);
    if (positionBefore < 0 || fstat(descriptor, &information) != 0) return errorOfErrno(errno);
    lengthBefore = information.st_size;
    return kNoError;
}

/// errno value, 0 for success.
int File::State::recover() {
    if (!toBeRecovered) return 0;
    toBeRecovered = false;
    if (!regular) return 0;
    const bool cut = ftruncate(descriptor, lengthBefore) == 0;
    const bool moved = lseek(descriptor, positionBefore, SEEK_SET) >= 0;
    return cut && moved ? 0 : errno;
}

/// Lets the staged content take its place, or drops it. errno value, 0 for success.
int File::State::settle() {
    int error = recover();
    descriptor = -1;
    if (error == 0 && (someWriteSucceeded || writeError == 0)) {
        error = staged.commit(mode == WriteEmptyMode || !isNew);
        platform::noteReplacement(path.ToCStr(), error);
    } else {
        staged.discard();
        platform::noteReplacement(path.ToCStr(), error != 0 ? error : writeError);
    }
    return error;
}

GSErrCode File::State::finish() {
    if (staged.isOpen()) return errorOfErrno(settle());
    int error = recover();
    if (regular && someWriteSucceeded && fsync(descriptor) != 0) error = errno;
    if (::close(descriptor) != 0 && error == 0) error = errno;
    descriptor = -1;
    return errorOfErrno(error);
}

File::File(const Location& location, OnNotFound onNotFound) : state_(std::make_unique<State>()) {
    state_->status = location.ToUTF8POSIXPath(&state_->path);
    if (state_->status != kNoError) return;
    struct stat information {};
    if (stat(state_->path.ToCStr(), &information) == 0) {
        if (S_ISDIR(information.st_mode)) state_->status = kErrWrongType;
    } else if (errno == ENOENT && onNotFound == Create) {
        state_->isNew = true;
        state_->status = errorOfErrno(state_->stage());
    } else {
        state_->status = errorOfErrno(errno);
    }
}

File::~File() {
    if (IsOpen() || state_->staged.isOpen()) (void)state_->finish();
}

GSErrCode File::GetStatus() const {
    return state_->status;
}

bool File::IsOpen() const {
    return state_->descriptor >= 0;
}

GSErrCode File::Open(OpenMode mode, AccessDeniedTreatment) {
    if (state_->status != kNoError) return state_->status;
    if (IsOpen()) return kErrBusy;
    state_->mode = mode;
    state_->someWriteSucceeded = state_->toBeRecovered = state_->placeKnown = false;
    state_->writeError = 0;
    state_->heldBack = 0;
    if (!state_->staged.isOpen()) {
        state_->isNew = false;
        struct stat information {};
        if (stat(state_->path.ToCStr(), &information) != 0) return errorOfErrno(errno);
        if (S_ISDIR(information.st_mode)) return kErrWrongType;
        state_->regular = S_ISREG(information.st_mode);
        if (mode != WriteEmptyMode || !state_->regular) return errorOfErrno(state_->openDirectly());
        if (faccessat(AT_FDCWD, state_->path.ToCStr(), W_OK, AT_EACCESS) != 0) {
            const int error = errno;
            platform::noteReplacement(state_->path.ToCStr(), error);
            return errorOfErrno(error);
        }
        if (const int error = state_->stage()) return errorOfErrno(error);
    }
    state_->regular = true;
    state_->descriptor = state_->staged.descriptor();
    if (mode == WriteAppendMode) fcntl(state_->descriptor, F_SETFL, O_APPEND);
    return kNoError;
}

GSErrCode File::Close() {
    if (!IsOpen()) return kErrNotOpen;
    return state_->finish();
}

GSErrCode File::GetLength(std::uint32_t* length) const {
    if (!IsOpen()) return kErrNotOpen;
    struct stat information {};
    if (fstat(state_->descriptor, &information) != 0) return errorOfErrno(errno);
    if (information.st_size > std::numeric_limits<std::uint32_t>::max()) return kErrTooLarge;
    *length = static_cast<std::uint32_t>(information.st_size);
    return kNoError;
}

GSErrCode File::GetRemainingLength(std::uint64_t* length) const {
    if (!IsOpen()) return kErrNotOpen;
    *length = 0;
    if (!state_->regular) return kNoError;
    struct stat information {};
    const off_t position = lseek(state_->descriptor, 0, SEEK_CUR);
    if (position < 0 || fstat(state_->descriptor, &information) != 0) return errorOfErrno(errno);
    if (position < information.st_size) *length = static_cast<std::uint64_t>(information.st_size - position);
    return kNoError;
}

GSErrCode File::SetPosition(std::uint64_t position) {
    if (!IsOpen()) return kErrNotOpen;
    if (position > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max())) return kErrEndOfFile;
    state_->placeKnown = false;
    return lseek(state_->descriptor, static_cast<off_t>(position), SEEK_SET) < 0 ? errorOfErrno(errno)
                                                                                 : kNoError;
}

GSErrCode File::Read(char* buffer, std::uint32_t count, std::uint32_t* bytesRead) {
    if (bytesRead != nullptr) *bytesRead = 0;
    const bool readable = state_->mode == ReadMode || state_->mode == ReadWriteMode;
    if (!IsOpen() || (count > 0 && !readable)) return kErrNotOpen;
    state_->placeKnown = false;
    std::uint32_t done = 0;
    while (done < count) {
        const ssize_t step = ::read(state_->descriptor, buffer + done, count - done);
        if (step == 0) return kErrEndOfFile;
        if (step < 0 && errno == EINTR) continue;
        if (step < 0) return errorOfErrno(errno);
        done += static_cast<std::uint32_t>(step);
        if (bytesRead != nullptr) *bytesRead = done;
    }
    return kNoError;
}

GSErrCode File::Write(const char* bytes, std::uint64_t count, std::uint64_t* bytesWritten) {
    if (bytesWritten != nullptr) *bytesWritten = 0;
    if (!IsOpen() || state_->mode == ReadMode) return kErrNotOpen;
    if (state_->regular && !state_->toBeRecovered) {
        const GSErrCode failed = state_->noteBefore();
        if (failed != kNoError) return failed;
    }
    std::uint64_t done = 0;
    const int error = platform::writeQuietly(state_->descriptor, state_->regular, bytes, count, done);
    // The disk begins early, so that closing has little left to wait for.
    constexpr std::uint64_t kFlushStep = 1 << 20;
    state_->heldBack += done;
    if (state_->staged.isOpen() && state_->heldBack >= kFlushStep) {
        const off_t end = state_->lengthBefore + static_cast<off_t>(done);
        const off_t start = std::max<off_t>(end - static_cast<off_t>(state_->heldBack), 0);
        sync_file_range(state_->descriptor, start, 0, SYNC_FILE_RANGE_WRITE);
        state_->heldBack = 0;
    }
    if (bytesWritten != nullptr) *bytesWritten = done;
    if (error == 0) {
        state_->someWriteSucceeded = true;
        // Nobody else changes a staged file; what is appended may not begin at the position.
        state_->placeKnown =
            state_->staged.isOpen() && state_->mode != WriteAppendMode && !state_->toBeRecovered;
        if (state_->placeKnown) {
            state_->positionBefore += static_cast<off_t>(done);
            state_->lengthBefore = std::max(state_->lengthBefore, state_->positionBefore);
        }
        return kNoError;
    }
    state_->placeKnown = false;
    state_->writeError = error;
    state_->toBeRecovered = true;
    return errorOfErrno(error);
}

GSErrCode File::RecoverFromFailedWrite() {
    return IsOpen() ? errorOfErrno(state_->recover()) : kErrNotOpen;
}

}  // namespace IO
