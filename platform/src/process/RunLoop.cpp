#include "platform/host/RunLoop.h"

#include <sys/epoll.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <ctime>
#include <limits>
#include <map>
#include <memory>
#include <system_error>
#include <utility>

namespace platform {

namespace {

constexpr std::uint64_t kTimerToken = 0;
constexpr double kNever = std::numeric_limits<double>::infinity();
constexpr double kFarthestTimer = 1e9;  // seconds; keeps the conversion to timespec within range

double monotonicSeconds() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

itimerspec firingAt(double seconds) {
    itimerspec spec{};  // zero: never
    if (seconds == kNever) return spec;
    const double whole = std::floor(seconds);
    spec.it_value.tv_sec = static_cast<time_t>(whole);
    spec.it_value.tv_nsec = std::min(static_cast<long>((seconds - whole) * 1e9) + 1, 999'999'999L);
    return spec;
}

}  // namespace

struct RunLoop::State {
    using WatchCallback = std::function<void(std::uint32_t)>;

    struct Watcher {
        int fd;
        std::shared_ptr<WatchCallback> callback;
    };
    /// By a token that is never used again: a descriptor's number may be.
    using Watchers = std::map<std::uint64_t, Watcher>;

    int epoll = -1;
    int timerDescriptor = -1;
    double armedFor = kNever;
    Watchers watchers;
    std::uint64_t nextToken = kTimerToken + 1;
    std::map<std::pair<double, TimerId>, std::function<void()>> timers;  // in firing order
    TimerId nextTimer = 1;
    Clock clock;
    std::uint64_t dispatchCount = 0;

    State() {
        epoll = epoll_create1(EPOLL_CLOEXEC);
        timerDescriptor = timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
        epoll_event event{};
        event.events = EPOLLIN;
        event.data.u64 = kTimerToken;
        if (epoll < 0 || timerDescriptor < 0 ||
            epoll_ctl(epoll, EPOLL_CTL_ADD, timerDescriptor, &event) != 0) {
            const int error = errno;
            closeDescriptors();
            throw std::system_error(error, std::generic_category(), "run loop");
        }
    }
    ~State() { closeDescriptors(); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    void closeDescriptors() {
        if (timerDescriptor >= 0) close(timerDescriptor);
        if (epoll >= 0) close(epoll);
    }

    double now() const { return clock ? clock() : monotonicSeconds(); }

    bool somethingIsDue() const { return !timers.empty() && timers.begin()->first.first <= now(); }

    // Makes the descriptor readable when the earliest timer is due. A replaced clock moves unseen by the
    // kernel: only what is due already can be signalled then.
    void arm() {
        double time = kNever;
        if (somethingIsDue()) {
            time = 0;
        } else if (!timers.empty() && !clock) {
            time = timers.begin()->first.first;
        }
        if (time == armedFor) return;
        armedFor = time;
        const itimerspec spec = firingAt(time);
        timerfd_settime(timerDescriptor, TFD_TIMER_ABSTIME, &spec, nullptr);
    }

    int runTimers() {
        const double time = now();
        const TimerId firstNew = nextTimer;  // a timer added by a callback waits for the next dispatch
        int calls = 0;
        while (true) {
            const auto due = std::find_if(timers.begin(), timers.end(),
                                          [&](const auto& timer) { return timer.first.second < firstNew; });
            if (due == timers.end() || due->first.first > time) return calls;
            const auto callback = std::move(due->second);
            timers.erase(due);
            ++calls;
            callback();
        }
    }

    Watchers::iterator watcherOf(int fd) {
        return std::find_if(watchers.begin(), watchers.end(),
                            [fd](const auto& each) { return each.second.fd == fd; });
    }

    int call(std::uint64_t token, std::uint32_t events) {
        const auto found = watchers.find(token);
        if (found == watchers.end()) return 0;         // unwatched since the event happened
        const auto callback = found->second.callback;  // outlives an unwatch from inside
        (*callback)(events);
        return 1;
    }
};

RunLoop& RunLoop::main() {
    static RunLoop* const loop = new RunLoop;  // never destroyed: objects that end at exit may still use it
    return *loop;
}

RunLoop::RunLoop() : state_(new State) {}
RunLoop::~RunLoop() {
    delete state_;
}

int RunLoop::descriptor() const {
    return state_->epoll;
}

void RunLoop::watch(int fd, std::uint32_t events, std::function<void(std::uint32_t)> callback) {
    auto shared = std::make_shared<State::WatchCallback>(std::move(callback));
    const auto known = state_->watcherOf(fd);
    epoll_event event{};
    event.events = events;
    if (known != state_->watchers.end()) {
        event.data.u64 = known->first;
        if (epoll_ctl(state_->epoll, EPOLL_CTL_MOD, fd, &event) == 0) {
            known->second.callback = std::move(shared);
            return;
        }
        unwatch(fd);  // the descriptor may have been closed and opened anew without an unwatch
    }
    event.data.u64 = state_->nextToken++;
    if (epoll_ctl(state_->epoll, EPOLL_CTL_ADD, fd, &event) != 0)
        throw std::system_error(errno, std::generic_category(), "run loop: watch");
    state_->watchers[event.data.u64] = {fd, std::move(shared)};
}

void RunLoop::unwatch(int fd) {
    const auto known = state_->watcherOf(fd);
    if (known == state_->watchers.end()) return;
    epoll_ctl(state_->epoll, EPOLL_CTL_DEL, fd, nullptr);
    state_->watchers.erase(known);
}

RunLoop::TimerId RunLoop::addTimer(double fireTime, std::function<void()> callback) {
    const TimerId id = state_->nextTimer++;
    const double current = state_->now();
    if (std::isnan(fireTime)) fireTime = current;
    fireTime = std::clamp(fireTime, 0.0, current + kFarthestTimer);
    state_->timers.emplace(std::make_pair(fireTime, id), std::move(callback));
    state_->arm();
    return id;
}

void RunLoop::removeTimer(TimerId timer) {
    std::erase_if(state_->timers, [timer](const auto& each) { return each.first.second == timer; });
    state_->arm();
}

double RunLoop::now() const {
    return state_->now();
}

void RunLoop::setClock(Clock clock) {
    state_->clock = std::move(clock);
    state_->arm();
}

int RunLoop::dispatch(int timeoutMs) {
    const std::uint64_t mine = ++state_->dispatchCount;
    std::array<epoll_event, 32> happened{};
    if (state_->somethingIsDue()) timeoutMs = 0;
    const int count =
        epoll_wait(state_->epoll, happened.data(), static_cast<int>(happened.size()), timeoutMs);

    int calls = state_->runTimers();
    // A callback may have run the loop itself (an alert is open). What it dispatched may be stale here, and
    // whatever is still ready comes again.
    for (int i = 0; i < count && state_->dispatchCount == mine; ++i) {
        if (happened[i].data.u64 != kTimerToken)
            calls += state_->call(happened[i].data.u64, happened[i].events);
    }
    state_->arm();
    return calls;
}

}  // namespace platform
