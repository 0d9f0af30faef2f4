#pragma once

#include <cstdint>
#include <functional>

namespace platform {

/// The main run loop: descriptors and timers on one epoll descriptor, so that a console program can wait on
/// it and a desktop toolkit can watch it. Main thread only. A callback may add and remove anything, itself
/// included.
class RunLoop {
public:
    using TimerId = std::uint64_t;
    using Clock = std::function<double()>;

    static RunLoop& main();

    RunLoop();
    ~RunLoop();
    RunLoop(const RunLoop&) = delete;
    RunLoop& operator=(const RunLoop&) = delete;

    /// Readable when dispatch has something to do.
    int descriptor() const;

    /// Calls `callback` with the epoll events that happened on `fd` (EPOLLIN, EPOLLOUT, ...). The descriptor
    /// stays the caller's; watching one a second time replaces its events and callback. Throws
    /// std::system_error for what cannot be waited for, a regular file above all.
    void watch(int fd, std::uint32_t events, std::function<void(std::uint32_t)> callback);
    void unwatch(int fd);

    /// Calls `callback` once when the clock reaches `fireTime` (seconds, on the scale of now()).
    TimerId addTimer(double fireTime, std::function<void()> callback);
    /// Removing a timer that has fired or never was does nothing.
    void removeTimer(TimerId timer);

    /// Seconds on the loop's clock (monotonic unless replaced).
    double now() const;
    /// Replaces the clock, for tests of time limits; an empty function restores the real one. Timers are
    /// due by the replaced clock at the next dispatch.
    void setClock(Clock clock);

    /// Waits at most `timeoutMs` milliseconds (-1: without limit, 0: not at all) and calls what is due.
    /// Returns the number of callbacks made.
    int dispatch(int timeoutMs);

private:
    struct State;
    State* state_;
};

}  // namespace platform
