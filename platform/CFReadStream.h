#pragma once

#include "platform/CFRunLoop.h"
#include "platform/CFURL.h"

/// HTTP responses as streams on the run loop. Nothing here waits: events are reported to the stream's client
/// while the run loop runs.

// ---- Request ------------------------------------------------------------------------------------------

struct CFHTTPMessage;
using CFHTTPMessageRef = CFHTTPMessage*;

extern const CFStringRef kCFHTTPVersion1_1;

/// A request without header fields of its own and without a body. Null when a part is null, for another
/// method than "GET" and another version than kCFHTTPVersion1_1. The URL stays the caller's.
CFHTTPMessageRef CFHTTPMessageCreateRequest(CFAllocatorRef allocator, CFStringRef method, CFURLRef url,
                                            CFStringRef version);
/// Null is ignored.
void CFRelease(CFHTTPMessageRef message);

// ---- Stream -------------------------------------------------------------------------------------------

struct CFReadStream;
using CFReadStreamRef = CFReadStream*;

using CFStreamEventType = CFOptionFlags;
/// The connection to the server is open; reported once, before anything but an error. Redirections do not
/// repeat it.
constexpr CFStreamEventType kCFStreamEventOpenCompleted = 1;
/// Bytes can be read. Reported again only after a read, as long as there are more.
constexpr CFStreamEventType kCFStreamEventHasBytesAvailable = 2;
/// The connection or the response failed; the last event. What had arrived was offered for reading before.
constexpr CFStreamEventType kCFStreamEventErrorOccurred = 8;
/// The response has ended as its own framing says; the last event.
constexpr CFStreamEventType kCFStreamEventEndEncountered = 16;

/// While the client runs the loop itself from inside its callback, the stream's next event waits for its
/// return.
using CFReadStreamClientCallBack = void (*)(CFReadStreamRef stream, CFStreamEventType event, void* info);

/// `info` is handed to the callback. `version` is 0 and the three functions are null.
struct CFStreamClientContext {
    CFIndex version;
    void* info;
    void* (*retain)(void* info);
    void (*release)(void* info);
    CFStringRef (*copyDescription)(void* info);
};

/// The response to the request, not yet asked for. The request that goes out has the line and the Host field,
/// nothing else. The body comes as the server sent it, without its transfer coding; the status is not looked
/// at. The message stays the caller's. Null for a null message, for a URL that is not http or https or names
/// no server, and when the system's HTTP library cannot be loaded.
CFReadStreamRef CFReadStreamCreateForHTTPRequest(CFAllocatorRef allocator, CFHTTPMessageRef message);

/// The one property: with kCFBooleanTrue redirections are followed, at most 10 and to http and https only;
/// without it the redirection is itself the response.
extern const CFStringRef kCFStreamPropertyHTTPShouldAutoredirect;
/// False for another property or value, and once the stream was opened.
bool CFReadStreamSetProperty(CFReadStreamRef stream, CFStringRef property, CFBooleanRef value);

/// Registers the one client of the stream for the events in the mask `events`; null for `callBack` or no
/// events ends its registration. What the context holds is copied. False, and nothing changes, when the
/// context is not as described above.
bool CFReadStreamSetClient(CFReadStreamRef stream, CFOptionFlags events, CFReadStreamClientCallBack callBack,
                           const CFStreamClientContext* context);

/// The client is called only while its stream is scheduled.
void CFReadStreamScheduleWithRunLoop(CFReadStreamRef stream, CFRunLoopRef loop, CFStringRef mode);
void CFReadStreamUnscheduleFromRunLoop(CFReadStreamRef stream, CFRunLoopRef loop, CFStringRef mode);

/// Starts the request; once. False when it cannot be started.
bool CFReadStreamOpen(CFReadStreamRef stream);
/// Reads what is there, at most `count` bytes. Returns how many; 0 at the end; -1 after an error, on a stream
/// that is not open, and while nothing is there (it never waits).
CFIndex CFReadStreamRead(CFReadStreamRef stream, std::uint8_t* buffer, CFIndex count);
/// Ends the request. There are no more events.
void CFReadStreamClose(CFReadStreamRef stream);
/// Closes the stream and ends it; allowed inside the client's callback. Null is ignored.
void CFRelease(CFReadStreamRef stream);
