#include "platform/src/files/QuietWrite.h"

#include <sys/resource.h>
#include <unistd.h>
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <optional>

namespace platform {

namespace {

/// Holds SIGPIPE and SIGXFSZ back in this thread, and takes away those that came up meanwhile.
class SignalsHeldBack {
public:
    SignalsHeldBack() {
        sigemptyset(&signals_);
        sigaddset(&signals_, SIGPIPE);
        sigaddset(&signals_, SIGXFSZ);
        sigset_t pending;
        sigpending(&pending);
        for (const int signal : {SIGPIPE, SIGXFSZ}) {
            if (sigismember(&pending, signal) == 1) sigdelset(&signals_, signal);  // someone else's
        }
        pthread_sigmask(SIG_BLOCK, &signals_, &before_);
    }
    ~SignalsHeldBack() {
        if (cameUp_) {
            const timespec noWait{};
            while (sigtimedwait(&signals_, nullptr, &noWait) > 0) {
            }
        }
        pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    SignalsHeldBack(const SignalsHeldBack&) = delete;
    SignalsHeldBack& operator=(const SignalsHeldBack&) = delete;

    void noteError(int error) { cameUp_ = cameUp_ || error == EPIPE || error == EFBIG; }

private:
    sigset_t signals_{};
    sigset_t before_{};
    bool cameUp_ = false;
};

bool fileSizeIsLimited() {
    rlimit limit{};
    return getrlimit(RLIMIT_FSIZE, &limit) != 0 || limit.rlim_cur != RLIM_INFINITY;
}

}  // namespace

int writeQuietly(int descriptor, bool regular, const char* bytes, std::uint64_t count, std::uint64_t& done) {
    constexpr std::uint64_t kStep = std::uint64_t{1} << 30;  // the system writes less than 2 GiB at a time
    std::optional<SignalsHeldBack> signals;
    if (!regular || fileSizeIsLimited()) signals.emplace();  // nothing else sends a signal
    done = 0;
    while (done < count) {
        const ssize_t step = ::write(descriptor, bytes + done, std::min(count - done, kStep));
        if (step < 0 && errno == EINTR) continue;
        if (step < 0) {
            const int error = errno;
            if (signals) signals->noteError(error);
            return error;
        }
        if (step == 0) return EIO;
        done += static_cast<std::uint64_t>(step);
    }
    return 0;
}

}  // namespace platform
