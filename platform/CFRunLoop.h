#pragma once

#include "platform/CFBase.h"

/// The operating system's run loop and its timers, for add-ons. There is one run loop, that of the main
/// thread (platform/host/RunLoop.h); the host drives it.

struct CFRunLoop;
using CFRunLoopRef = CFRunLoop*;

/// The main run loop, and that of the calling thread, which is the same one.
CFRunLoopRef CFRunLoopGetMain();
CFRunLoopRef CFRunLoopGetCurrent();

/// The only mode: handlers are called whenever the loop runs, also while a modal dialog runs it.
extern const CFStringRef kCFRunLoopCommonModes;

/// Seconds on the run loop's clock. They count from no particular day.
using CFAbsoluteTime = double;
using CFTimeInterval = double;
CFAbsoluteTime CFAbsoluteTimeGetCurrent();

struct CFRunLoopTimer;
using CFRunLoopTimerRef = CFRunLoopTimer*;
using CFRunLoopTimerCallBack = void (*)(CFRunLoopTimerRef timer, void* info);

/// `info` is handed to the callback. `version` is 0 and the three functions are null.
struct CFRunLoopTimerContext {
    CFIndex version;
    void* info;
    const void* (*retain)(const void* info);
    void (*release)(const void* info);
    CFStringRef (*copyDescription)(const void* info);
};

/// A timer that fires once, at `fireDate`, after it was added to the run loop. Null when `interval`, `flags`
/// or `order` is not 0, without a callback, or with a context that is not as described above (it may be null;
/// what it holds is copied).
CFRunLoopTimerRef CFRunLoopTimerCreate(CFAllocatorRef allocator, CFAbsoluteTime fireDate,
                                       CFTimeInterval interval, CFOptionFlags flags, CFIndex order,
                                       CFRunLoopTimerCallBack callBack, const CFRunLoopTimerContext* context);

/// Does nothing for a timer that was added before and not removed, that has fired, or that is invalid.
void CFRunLoopAddTimer(CFRunLoopRef loop, CFRunLoopTimerRef timer, CFStringRef mode);
void CFRunLoopRemoveTimer(CFRunLoopRef loop, CFRunLoopTimerRef timer, CFStringRef mode);
/// The timer never fires again.
void CFRunLoopTimerInvalidate(CFRunLoopTimerRef timer);
/// Invalidates the timer and ends it. Null is ignored.
void CFRelease(CFRunLoopTimerRef timer);
