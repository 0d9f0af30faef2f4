#include "platform/CFReadStream.h"

#include "platform/host/ImageCleanup.h"
#include "platform/host/RunLoop.h"
#include "platform/src/http/CFObjects.h"
#include "platform/src/http/HttpResponse.h"
#include "platform/src/process/Failures.h"

#include <algorithm>
#include <memory>
#include <set>
#include <string>
#include <string_view>

using platform::http::HttpEngine;
using platform::http::HttpResponse;

struct CFHTTPMessage {
    std::string url;
};

namespace {

const CFString kVersion1_1{"HTTP/1.1"};
const CFString kShouldAutoredirect{"follow redirections"};

/// What a stream does, apart from the object that its creator holds: an event that is being told may outlive
/// that.
class Stream : public std::enable_shared_from_this<Stream> {
public:
    Stream(CFReadStreamRef reference, HttpEngine& engine, std::string url)
        : reference_(reference), engine_(engine), url_(std::move(url)) {}

    bool followRedirects() {
        if (opened_) return false;
        followRedirects_ = true;
        return true;
    }

    void setClient(CFOptionFlags events, CFReadStreamClientCallBack callBack, void* info) {
        events_ = callBack != nullptr ? events : 0;
        callBack_ = events_ != 0 ? callBack : nullptr;
        info_ = info;
        deliverSoon();
    }

    void setScheduled(bool scheduled) {
        scheduled_ = scheduled;
        deliverSoon();
    }

    bool open() {
        if (opened_) return false;
        opened_ = true;
        response_ = HttpResponse::start(engine_, url_, followRedirects_, [this] { deliver(); });
        return response_ != nullptr;
    }

    CFIndex read(std::uint8_t* buffer, CFIndex count) {
        if (!response_ || buffer == nullptr || count <= 0) return -1;
        const std::size_t taken = response_->take(buffer, static_cast<std::size_t>(count));
        bytesOffered_ = false;
        if (taken != 0) return static_cast<CFIndex>(taken);
        return response_->state() == HttpResponse::State::Complete ? 0 : -1;
    }

    void close() { response_.reset(); }

    void endCallsInto(const void* image) {
        if (callBack_ == nullptr || platform::imageOf(callBack_) != image) return;
        callBack_ = nullptr;
        close();
    }

private:
    // Tells the client what has happened, event by event, until nothing is left or the client ended the
    // stream.
    void deliver() {
        if (delivering_)
            return;  // the client runs the loop inside its callback: the rest comes when it returns
        delivering_ = true;
        const auto self = shared_from_this();
        while (response_ && scheduled_ && callBack_ != nullptr) {
            const CFStreamEventType event = nextEvent();
            if (event == 0) break;
            if ((event & events_) != 0)
                platform::callAddOn("stream callback", callBack_, reference_, event, info_);
            if (response_) response_->resume();
        }
        delivering_ = false;
    }

    CFStreamEventType nextEvent() {
        if (response_->connected() && !openTold_) {
            openTold_ = true;
            return kCFStreamEventOpenCompleted;
        }
        if (response_->available() != 0) {
            if (bytesOffered_) return 0;
            bytesOffered_ = true;
            return kCFStreamEventHasBytesAvailable;
        }
        if (response_->state() == HttpResponse::State::Running || endTold_) return 0;
        endTold_ = true;
        return response_->state() == HttpResponse::State::Complete ? kCFStreamEventEndEncountered
                                                                   : kCFStreamEventErrorOccurred;
    }

    // For what happened while nobody could be told.
    void deliverSoon() {
        if (!response_) return;
        auto& loop = platform::RunLoop::main();
        loop.addTimer(loop.now(), [weak = weak_from_this()] {
            if (const auto stream = weak.lock()) stream->deliver();
        });
    }

    CFReadStreamRef reference_;
    HttpEngine& engine_;
    std::string url_;
    bool followRedirects_ = false;
    bool opened_ = false;
    bool scheduled_ = false;
    bool delivering_ = false;
    bool openTold_ = false;
    bool bytesOffered_ = false;
    bool endTold_ = false;
    CFOptionFlags events_ = 0;
    CFReadStreamClientCallBack callBack_ = nullptr;
    void* info_ = nullptr;
    std::shared_ptr<HttpResponse> response_;  // only while open
};

std::set<CFReadStreamRef>& streams() {
    static auto* const all = new std::set<CFReadStreamRef>;
    return *all;
}

bool startsWithIgnoringCase(std::string_view text, std::string_view lowerCasePrefix) {
    return text.size() >= lowerCasePrefix.size() &&
           std::equal(
               lowerCasePrefix.begin(), lowerCasePrefix.end(), text.begin(), [](char lower, char character) {
                   return lower == (character >= 'A' && character <= 'Z' ? character - 'A' + 'a' : character);
               });
}

bool namesHttpServer(std::string_view url) {
    for (const std::string_view scheme : {"http://", "https://"}) {
        if (!startsWithIgnoringCase(url, scheme)) continue;
        url.remove_prefix(scheme.size());
        return !url.substr(0, url.find_first_of("/?#")).empty();
    }
    return false;
}

}  // namespace

struct CFReadStream {
    std::shared_ptr<Stream> stream;
};

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
    if (message == nullptr || !namesHttpServer(message->url)) return nullptr;
    HttpEngine* const engine = HttpEngine::get();
    if (engine == nullptr) return nullptr;
    static const bool registered = [] {
        platform::addImageCleanup([](const void* image) {
            for (CFReadStreamRef stream : streams())
                stream->stream->endCallsInto(image);
        });
        return true;
    }();
    static_cast<void>(registered);
    auto* const reference = new CFReadStream;
    reference->stream = std::make_shared<Stream>(reference, *engine, message->url);
    streams().insert(reference);
    return reference;
}

bool CFReadStreamSetProperty(CFReadStreamRef stream, CFStringRef property, CFBooleanRef value) {
    if (stream == nullptr || property != kCFStreamPropertyHTTPShouldAutoredirect || value != kCFBooleanTrue) {
        return false;
    }
    return stream->stream->followRedirects();
}

bool CFReadStreamSetClient(CFReadStreamRef stream, CFOptionFlags events, CFReadStreamClientCallBack callBack,
                           const CFStreamClientContext* context) {
    if (stream == nullptr) return false;
    void* info = nullptr;
    if (context != nullptr) {
        if (context->version != 0 || context->retain != nullptr || context->release != nullptr ||
            context->copyDescription != nullptr) {
            return false;
        }
        info = context->info;
    }
    stream->stream->setClient(events, callBack, info);
    return true;
}

void CFReadStreamScheduleWithRunLoop(CFReadStreamRef stream, CFRunLoopRef loop, CFStringRef mode) {
    if (stream == nullptr || loop == nullptr || mode != kCFRunLoopCommonModes) return;
    stream->stream->setScheduled(true);
}

void CFReadStreamUnscheduleFromRunLoop(CFReadStreamRef stream, CFRunLoopRef loop, CFStringRef mode) {
    if (stream == nullptr || loop == nullptr || mode != kCFRunLoopCommonModes) return;
    stream->stream->setScheduled(false);
}

bool CFReadStreamOpen(CFReadStreamRef stream) {
    return stream != nullptr && stream->stream->open();
}

CFIndex CFReadStreamRead(CFReadStreamRef stream, std::uint8_t* buffer, CFIndex count) {
    return stream != nullptr ? stream->stream->read(buffer, count) : -1;
}

void CFReadStreamClose(CFReadStreamRef stream) {
    if (stream != nullptr) stream->stream->close();
}

void CFRelease(CFReadStreamRef stream) {
    if (stream == nullptr) return;
    stream->stream->setClient(0, nullptr, nullptr);
    stream->stream->close();
    streams().erase(stream);
    delete stream;
}
