#include "platform/CFRunLoop.h"

#include "platform/host/ImageCleanup.h"
#include "platform/host/RunLoop.h"
#include "platform/src/http/CFObjects.h"
#include "platform/src/process/Failures.h"

#include <optional>
#include <set>

struct CFRunLoop {};

struct CFRunLoopTimer {
    double fireDate;
    CFRunLoopTimerCallBack callBack;
    void* info;
    const void* image;  // that contains the callback
    bool valid = true;
    std::optional<platform::RunLoop::TimerId> scheduled;
};

namespace {

const CFString kCommonModes{"common modes"};

void unschedule(CFRunLoopTimer& timer) {
    if (!timer.scheduled) return;
    platform::RunLoop::main().removeTimer(*timer.scheduled);
    timer.scheduled.reset();
}

void invalidate(CFRunLoopTimer& timer) {
    unschedule(timer);
    timer.valid = false;
}

std::set<CFRunLoopTimerRef>& timers() {
    static auto* const all = [] {
        platform::addImageCleanup([](const void* image) {
            for (CFRunLoopTimerRef timer : timers()) {
                if (timer->image == image) invalidate(*timer);
            }
        });
        return new std::set<CFRunLoopTimerRef>;
    }();
    return *all;
}

}  // namespace

const CFStringRef kCFRunLoopCommonModes = &kCommonModes;

CFRunLoopRef CFRunLoopGetMain() {
    static CFRunLoop loop;
    return &loop;
}

CFRunLoopRef CFRunLoopGetCurrent() {
    return CFRunLoopGetMain();
}

CFAbsoluteTime CFAbsoluteTimeGetCurrent() {
    return platform::RunLoop::main().now();
}

CFRunLoopTimerRef CFRunLoopTimerCreate(CFAllocatorRef, CFAbsoluteTime fireDate, CFTimeInterval interval,
                                       CFOptionFlags flags, CFIndex order, CFRunLoopTimerCallBack callBack,
                                       const CFRunLoopTimerContext* context) {
    const std::optional<void*> info = infoOf(context);
    if (interval != 0 || flags != 0 || order != 0 || callBack == nullptr || !info) return nullptr;
    auto* timer =
        new CFRunLoopTimer{fireDate, callBack, *info, platform::imageOf(callBack), true, std::nullopt};
    timers().insert(timer);
    return timer;
}

void CFRunLoopAddTimer(CFRunLoopRef loop, CFRunLoopTimerRef timer, CFStringRef mode) {
    if (loop == nullptr || timer == nullptr || mode != kCFRunLoopCommonModes) return;
    if (!timer->valid || timer->scheduled) return;
    timer->scheduled = platform::RunLoop::main().addTimer(timer->fireDate, [timer] {
        invalidate(*timer);
        platform::callAddOn("timer callback", timer->callBack, timer, timer->info);  // may release the timer
    });
}

void CFRunLoopRemoveTimer(CFRunLoopRef loop, CFRunLoopTimerRef timer, CFStringRef mode) {
    if (loop == nullptr || timer == nullptr || mode != kCFRunLoopCommonModes) return;
    unschedule(*timer);
}

void CFRunLoopTimerInvalidate(CFRunLoopTimerRef timer) {
    if (timer != nullptr) invalidate(*timer);
}

void CFRelease(CFRunLoopTimerRef timer) {
    if (timer == nullptr) return;
    invalidate(*timer);
    timers().erase(timer);
    delete timer;
}
