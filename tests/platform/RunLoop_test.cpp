#include "platform/host/RunLoop.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cmath>
#include <string>

namespace platform {
namespace {

/// A descriptor that is readable from fill() to drain().
struct Event {
    ~Event() { close(descriptor); }
    void fill() const { EXPECT_EQ(eventfd_write(descriptor, 1), 0); }
    void drain() const {
        eventfd_t count = 0;
        EXPECT_EQ(eventfd_read(descriptor, &count), 0);
    }
    const int descriptor = eventfd(0, EFD_NONBLOCK);
};

bool readable(int descriptor, int timeoutMs) {
    pollfd waiting{descriptor, POLLIN, 0};
    return poll(&waiting, 1, timeoutMs) == 1;
}

TEST(RunLoop, TimersFireOnceInTheOrderOfTheirTimes) {
    RunLoop loop;
    double time = 100;
    loop.setClock([&] { return time; });
    std::string order;
    loop.addTimer(103, [&] { order += 'c'; });
    loop.addTimer(101, [&] { order += 'a'; });
    loop.addTimer(101, [&] { order += 'b'; });
    const auto removed = loop.addTimer(101, [&] { order += 'x'; });
    loop.removeTimer(removed);
    loop.removeTimer(removed);

    EXPECT_EQ(loop.dispatch(0), 0);
    time = 102.9;
    EXPECT_EQ(loop.dispatch(-1), 2) << "a due timer must not wait";
    EXPECT_EQ(order, "ab");
    time = 103;
    EXPECT_EQ(loop.dispatch(-1), 1);
    EXPECT_EQ(order, "abc");
    EXPECT_EQ(loop.dispatch(0), 0);
}

TEST(RunLoop, TheDescriptorIsReadableWhenATimerIsDueOnTheRealClock) {
    RunLoop loop;
    int fired = 0;
    loop.addTimer(loop.now() + 0.03, [&] { ++fired; });
    loop.addTimer(loop.now() + 3600, [&] { ++fired; });
    EXPECT_FALSE(readable(loop.descriptor(), 0));
    EXPECT_TRUE(readable(loop.descriptor(), 2000));
    EXPECT_EQ(loop.dispatch(0), 1);
    EXPECT_EQ(fired, 1);
    EXPECT_FALSE(readable(loop.descriptor(), 0)) << "the timer of an hour from now is not due";
}

TEST(RunLoop, OddFireTimesAreSafeAndATimerThatAddsADueTimerDoesNotHoldTheLoop) {
    RunLoop loop;
    loop.setClock([] { return 100.0; });
    int fired = 0;
    for (const double time : {std::nan(""), -1e300, 0.0, 1e300, HUGE_VAL})
        loop.addTimer(time, [&fired, far = time > 1] { fired += far ? 100 : 1; });
    EXPECT_EQ(loop.dispatch(0), 3);
    EXPECT_EQ(fired, 3);

    std::function<void()> again = [&] {
        ++fired;
        loop.addTimer(loop.now(), again);  // due at once
    };
    again();
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(readable(loop.descriptor(), 1000));
        EXPECT_EQ(loop.dispatch(0), 1);
    }
    EXPECT_EQ(fired, 6);
}

TEST(RunLoop, CallbacksMayAddAndRemoveAnythingThemselvesIncluded) {
    RunLoop loop;
    Event first, second;
    const auto onlyOne = [&](std::uint32_t events) {
        EXPECT_EQ(events, static_cast<std::uint32_t>(EPOLLIN));
        loop.unwatch(first.descriptor);
        loop.unwatch(second.descriptor);
    };
    loop.watch(first.descriptor, EPOLLIN, onlyOne);
    loop.watch(second.descriptor, EPOLLIN, onlyOne);
    first.fill();
    second.fill();
    EXPECT_EQ(loop.dispatch(1000), 1) << "the one called first unwatches the other";
    EXPECT_EQ(loop.dispatch(0), 0);
}

TEST(RunLoop, WatchingAgainReplacesEventsAndCallbackAlsoOfADescriptorThatWasClosedMeanwhile) {
    RunLoop loop;
    std::string order;
    const int number = eventfd(0, 0);
    loop.watch(number, EPOLLIN, [&](std::uint32_t) { order += 'x'; });
    close(number);
    const Event event;
    ASSERT_EQ(event.descriptor, number);
    loop.watch(number, EPOLLIN, [&](std::uint32_t) { order += 'a'; });
    EXPECT_EQ(loop.dispatch(0), 0) << "nothing to read";
    event.fill();
    EXPECT_EQ(loop.dispatch(1000), 1);
    loop.watch(number, EPOLLIN, [&](std::uint32_t) { order += 'b'; });
    EXPECT_EQ(loop.dispatch(1000), 1);
    loop.watch(number, 0, [&](std::uint32_t) { order += 'c'; });
    EXPECT_EQ(loop.dispatch(0), 0);
    EXPECT_EQ(order, "ab");
}

TEST(RunLoop, ADispatchInsideACallbackLeavesNoStaleEventBehind) {
    RunLoop loop;
    Event opener, input;
    int lines = 0;
    loop.watch(opener.descriptor, EPOLLIN, [&](std::uint32_t) {
        opener.drain();
        while (loop.dispatch(0) > 0) {
        }
    });
    loop.watch(input.descriptor, EPOLLIN, [&](std::uint32_t) {
        input.drain();  // a second call without new input would fail here
        ++lines;
    });
    opener.fill();
    input.fill();
    while (loop.dispatch(0) > 0) {
    }
    EXPECT_EQ(lines, 1);
}

}  // namespace
}  // namespace platform
