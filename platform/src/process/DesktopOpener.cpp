#include "platform/src/process/DesktopOpener.h"

#include "platform/host/RunLoop.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/epoll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <system_error>

namespace platform {
namespace {

/// What the opener inherits: standard error, no other descriptor, default signals.
class SpawnSetup {
public:
    SpawnSetup() {
        posix_spawn_file_actions_init(&actions_);
        posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);

        posix_spawnattr_init(&attributes_);
        sigset_t signals;
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes_, &signals);
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&attributes_, &signals);
        posix_spawnattr_setflags(&attributes_,
                                 POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID);
    }
    ~SpawnSetup() {
        posix_spawn_file_actions_destroy(&actions_);
        posix_spawnattr_destroy(&attributes_);
    }
    SpawnSetup(const SpawnSetup&) = delete;
    SpawnSetup& operator=(const SpawnSetup&) = delete;

    const posix_spawn_file_actions_t* actions() const { return &actions_; }
    const posix_spawnattr_t* attributes() const { return &attributes_; }

private:
    posix_spawn_file_actions_t actions_;
    posix_spawnattr_t attributes_;
};

void collect(pid_t process) {
    while (waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
    }
}

/// Whether the process behind `descriptor` ended within `patienceMs`.
bool endsWithin(int descriptor, int patienceMs) {
    using Clock = std::chrono::steady_clock;
    const auto deadline = Clock::now() + std::chrono::milliseconds(patienceMs);
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        pollfd ended{descriptor, POLLIN, 0};
        const int result = poll(&ended, 1, static_cast<int>(std::max<decltype(left)>(left, 0)));
        if (result > 0) return true;
        if (result == 0 || errno != EINTR) return false;
    }
}

/// A process that is still running is reaped later; one that cannot be watched, when the host exits.
void waitFor(pid_t process, int patienceMs) {
    const int descriptor = static_cast<int>(syscall(SYS_pidfd_open, process, 0));
    if (descriptor < 0) return;
    if (endsWithin(descriptor, patienceMs)) {
        collect(process);
        close(descriptor);
        return;
    }
    try {
        RunLoop::main().watch(descriptor, EPOLLIN, [descriptor, process](std::uint32_t) {
            collect(process);
            RunLoop::main().unwatch(descriptor);
            close(descriptor);
        });
    } catch (const std::system_error&) {
        close(descriptor);
    }
}

}  // namespace

int runOpener(const std::string& program, const std::string& argument, int patienceMs) {
    const SpawnSetup setup;
    std::string name = program;
    std::string target = argument;
    char* const arguments[] = {name.data(), target.data(), nullptr};
    pid_t process = 0;
    const int error =
        posix_spawnp(&process, program.c_str(), setup.actions(), setup.attributes(), arguments, environ);
    if (error == 0) waitFor(process, patienceMs);
    return error;
}

}  // namespace platform
