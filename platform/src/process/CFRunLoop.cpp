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
    const void* image;  // that the callback lies in
    bool valid = true;
    std::optional<platform::RunLoop::TimerId> scheduled;
};

namespace {

const CFString kCommonModes{"common modes"};

std::set<CFRunLoopTimerRef>& timers() {
    static auto* const all = new std::set<CFRunLoopTimerRef>;
    return *all;
}

void unschedule(CFRunLoopTimer& timer) {
    if (!timer.scheduled) return;
    platform::RunLoop::main().removeTimer(*timer.scheduled);
    timer.scheduled.reset();
}

void invalidate(CFRunLoopTimer& timer) {
    unschedule(timer);
    timer.valid = false;
}

void invalidateTimersOfImage(const void* image) {
    for (CFRunLoopTimerRef timer : timers()) {
        if (timer->image == image) invalidate(*timer);
    }
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
    if (interval != 0 || flags != 0 || order != 0 || callBack == nullptr) return nullptr;
    void* info = nullptr;
    if (context != nullptr) {
        if (context->version != 0 || context->retain != nullptr || context->release != nullptr ||
            context->copyDescription != nullptr) {
            return nullptr;
        }
        info = context->info;
    }
    static const bool registered = (platform::addImageCleanup(invalidateTimersOfImage), true);
    static_cast<void>(registered);
    auto* timer =
        new CFRunLoopTimer{fireDate, callBack, info, platform::imageOf(callBack), true, std::nullopt};
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
