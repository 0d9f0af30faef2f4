#include "platform/CFReadStream.h"

#include "platform/host/Ascii.h"
#include "platform/src/http/CFObjects.h"
#include "platform/src/http/HttpStream.h"

using platform::http::HttpEngine;

struct CFHTTPMessage {
    std::string url;
};

namespace {

const CFString kVersion1_1{"HTTP/1.1"};
const CFString kShouldAutoredirect{"follow redirections"};

}  // namespace

const CFStringRef kCFHTTPVersion1_1 = &kVersion1_1;
const CFStringRef kCFStreamPropertyHTTPShouldAutoredirect = &kShouldAutoredirect;

CFHTTPMessageRef CFHTTPMessageCreateRequest(CFAllocatorRef, CFStringRef method, CFURLRef url,
                                            CFStringRef version) {
    if (method == nullptr || url == nullptr || method->utf8 != "GET" || version != kCFHTTPVersion1_1)
        return nullptr;
    return new CFHTTPMessage{url->text};
}

void CFRelease(CFHTTPMessageRef message) {
    delete message;
}

CFReadStreamRef CFReadStreamCreateForHTTPRequest(CFAllocatorRef, CFHTTPMessageRef message) {
    if (message == nullptr || !platform::isWebAddress(message->url)) return nullptr;
    HttpEngine* const engine = HttpEngine::get();
    if (engine == nullptr) return nullptr;
    return platform::http::streams()
        .insert(std::make_shared<CFReadStream>(*engine, message->url))
        .first->get();
}

bool CFReadStreamSetProperty(CFReadStreamRef stream, CFStringRef property, CFBooleanRef value) {
    if (stream == nullptr || property != kCFStreamPropertyHTTPShouldAutoredirect || value != kCFBooleanTrue) {
        return false;
    }
    return stream->followRedirections();
}

bool CFReadStreamSetClient(CFReadStreamRef stream, CFOptionFlags events, CFReadStreamClientCallBack callBack,
                           const CFStreamClientContext* context) {
    const std::optional<void*> info = infoOf(context);
    if (stream == nullptr || !info) return false;
    stream->setClient(events, callBack, *info);
    return true;
}

void CFReadStreamScheduleWithRunLoop(CFReadStreamRef stream, CFRunLoopRef loop, CFStringRef mode) {
    if (stream == nullptr || loop == nullptr || mode != kCFRunLoopCommonModes) return;
    stream->setScheduled(true);
}

void CFReadStreamUnscheduleFromRunLoop(CFReadStreamRef stream, CFRunLoopRef loop, CFStringRef mode) {
    if (stream == nullptr || loop == nullptr || mode != kCFRunLoopCommonModes) return;
    stream->setScheduled(false);
}

bool CFReadStreamOpen(CFReadStreamRef stream) {
    return stream != nullptr && stream->open();
}

CFIndex CFReadStreamRead(CFReadStreamRef stream, std::uint8_t* buffer, CFIndex count) {
    return stream != nullptr ? stream->read(buffer, count) : -1;
}

void CFReadStreamClose(CFReadStreamRef stream) {
    if (stream != nullptr) stream->close();
}

void CFRelease(CFReadStreamRef stream) {
    if (stream == nullptr) return;
    stream->close();
    platform::http::streams().erase(stream->shared_from_this());
}
