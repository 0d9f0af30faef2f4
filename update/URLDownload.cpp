#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "files/KW_File.h"
#include "files/KW_Location.h"
#include "foundation/KW_String.h"
#include "library/KW_General.h"
#include "platform/CFReadStream.h"
#include "platform/CFRunLoop.h"
#include "platform/CFURL.h"

namespace {

constexpr CFTimeInterval kURLDownloadTimeLimit = 60.0;  // the whole transfer
constexpr CFIndex kURLReadChunkSize = 16384;            // one read

constexpr CFOptionFlags kURLStreamEvents = kCFStreamEventOpenCompleted | kCFStreamEventHasBytesAvailable |
                                           kCFStreamEventErrorOccurred | kCFStreamEventEndEncountered;

/// One running download and what keeps its record alive: a callback may run the loop (an alert is open), and
/// handlers then fire inside one another.
struct URLDownloadParams {
    KW_URL_CallBack callBack;  ///< may be null
    void* userData;
    KW_Location destination;
    CFRunLoopTimerRef timer = nullptr;  ///< the time limit; owned; null once torn down
    CFReadStreamRef stream = nullptr;   ///< owned; null once torn down
    KW_File file = {};                  ///< empty until the connection is open
    unsigned int handlers = 0;          ///< running now
    bool ended = false;                 ///< the last message was sent, or the caller cancelled
};

/// A reference that is released at the end.
struct Release {
    template <typename Object>
    void operator()(Object* object) const {
        CFRelease(object);
    }
};
template <typename Reference>
using Owned = std::unique_ptr<std::remove_pointer_t<Reference>, Release>;

void CloseStream(CFReadStreamRef& stream) {
    CFReadStreamSetClient(stream, 0, nullptr, nullptr);
    CFReadStreamUnscheduleFromRunLoop(stream, CFRunLoopGetCurrent(), kCFRunLoopCommonModes);
    CFReadStreamClose(stream);
    CFRelease(std::exchange(stream, nullptr));
}

/// Afterwards no handler reaches the record.
void TerminateDownload(URLDownloadParams& download) {
    download.ended = true;
    if (download.stream != nullptr) CloseStream(download.stream);
    download.file.file.reset();
    if (download.timer != nullptr) {
        CFRunLoopRemoveTimer(CFRunLoopGetCurrent(), download.timer, kCFRunLoopCommonModes);
        CFRunLoopTimerInvalidate(download.timer);
        CFRelease(std::exchange(download.timer, nullptr));
    }
}

/// The running downloads. They end without a word when the module is unloaded.
class Downloads {
public:
    ~Downloads() {
        for (const auto& download : running_)
            TerminateDownload(*download);
    }

    void Add(std::unique_ptr<URLDownloadParams> download) { running_.push_back(std::move(download)); }
    void Remove(const URLDownloadParams* download) {
        std::erase_if(running_, [&](const auto& each) { return each.get() == download; });
    }

private:
    std::vector<std::unique_ptr<URLDownloadParams>> running_;
};

Downloads& RunningDownloads() {
    static Downloads downloads;
    return downloads;
}

/// Frees the record when the last handler returns from a download that has ended.
class HandlerGuard {
public:
    explicit HandlerGuard(URLDownloadParams& download) : download_(download) { ++download_.handlers; }
    ~HandlerGuard() {
        if (--download_.handlers == 0 && download_.ended) RunningDownloads().Remove(&download_);
    }
    HandlerGuard(const HandlerGuard&) = delete;
    HandlerGuard& operator=(const HandlerGuard&) = delete;

private:
    URLDownloadParams& download_;
};

int Tell(const URLDownloadParams& download, KW_URL_Message message) {
    const double value = message == KW_URL_Progress ? 0.5 : 0.0;
    return download.callBack != nullptr ? download.callBack(message, value, download.userData) : 0;
}

/// Sends the last message. Whatever fires while the callback runs finds the download ended.
void EndDownload(URLDownloadParams& download, KW_URL_Message message) {
    download.ended = true;
    download.file.file.reset();
    Tell(download, message);
    TerminateDownload(download);
}

void ConnectionOpened(URLDownloadParams& download) {
    const bool cancelled = Tell(download, KW_URL_Opened) == 1;
    if (download.ended) return;  // the time limit ran out during the callback
    if (cancelled) {
        TerminateDownload(download);
    } else if (download.file.Open(download.destination, OpenMode_Write) != 0) {
        EndDownload(download, KW_URL_Failed);
    }
}

void BytesAvailable(URLDownloadParams& download) {
    std::uint8_t chunk[kURLReadChunkSize];
    const CFIndex count = CFReadStreamRead(download.stream, chunk, kURLReadChunkSize);
    if (count > 0) {
        // A chunk that cannot be written is lost; the download continues.
        IO::File* const file = download.file.file.get();
        const auto* const bytes = reinterpret_cast<const char*>(chunk);
        if (file != nullptr && file->Write(bytes, static_cast<std::uint64_t>(count), nullptr) != kNoError)
            (void)file->RecoverFromFailedWrite();
        Tell(download, KW_URL_Progress);
    } else {
        EndDownload(download, count == 0 ? KW_URL_Finished : KW_URL_Failed);
    }
}

void ReadStreamClientCallBack(CFReadStreamRef, CFStreamEventType event, void* info) {
    URLDownloadParams& download = *static_cast<URLDownloadParams*>(info);
    if (download.ended) return;
    const HandlerGuard guard(download);
    switch (event) {
        case kCFStreamEventOpenCompleted:
            ConnectionOpened(download);
            break;
        case kCFStreamEventHasBytesAvailable:
            BytesAvailable(download);
            break;
        case kCFStreamEventErrorOccurred:
            EndDownload(download, KW_URL_Failed);
            break;
        case kCFStreamEventEndEncountered:
            EndDownload(download, KW_URL_Finished);
            break;
        default:
            break;
    }
}

void NetworkTimerProc(CFRunLoopTimerRef, void* info) {
    URLDownloadParams& download = *static_cast<URLDownloadParams*>(info);
    if (download.ended) return;
    const HandlerGuard guard(download);
    EndDownload(download, KW_URL_Failed);
}

Owned<CFStringRef> CreateString(const char* bytes) {
    return Owned<CFStringRef>(
        CFStringCreateWithCString(kCFAllocatorDefault, bytes, CFStringGetSystemEncoding()));
}

/// The URL with every escape decoded and then only what needs it escaped. Null when the text can be no URL.
Owned<CFURLRef> CreateURL(const KW_String& text) {
    const Owned<CFStringRef> given = CreateString(text.ToCStr(KW_String::Encoding_System).data);
    const Owned<CFStringRef> decoded(
        CFURLCreateStringByReplacingPercentEscapes(kCFAllocatorDefault, given.get(), CreateString("").get()));
    const Owned<CFStringRef> escaped(CFURLCreateStringByAddingPercentEscapes(
        kCFAllocatorDefault, decoded.get(), nullptr, nullptr, 0x08000100));
    return Owned<CFURLRef>(CFURLCreateWithString(kCFAllocatorDefault, escaped.get(), nullptr));
}

Owned<CFHTTPMessageRef> CreateRequest(const KW_String& url) {
    return Owned<CFHTTPMessageRef>(CFHTTPMessageCreateRequest(kCFAllocatorDefault, CreateString("GET").get(),
                                                              CreateURL(url).get(), kCFHTTPVersion1_1));
}

bool OpenStream(URLDownloadParams& download) {
    const CFStreamClientContext context{0, &download, nullptr, nullptr, nullptr};
    if (!CFReadStreamSetClient(download.stream, kURLStreamEvents, &ReadStreamClientCallBack, &context))
        return false;
    CFReadStreamScheduleWithRunLoop(download.stream, CFRunLoopGetMain(), kCFRunLoopCommonModes);
    return CFReadStreamOpen(download.stream);
}

bool StartTimeLimit(URLDownloadParams& download) {
    const CFRunLoopTimerContext context{0, &download, nullptr, nullptr, nullptr};
    download.timer =
        CFRunLoopTimerCreate(kCFAllocatorDefault, CFAbsoluteTimeGetCurrent() + kURLDownloadTimeLimit, 0, 0, 0,
                             &NetworkTimerProc, &context);
    CFRunLoopAddTimer(CFRunLoopGetMain(), download.timer, kCFRunLoopCommonModes);
    return download.timer != nullptr;
}

/// What it has made is in the record, also on failure.
bool StartDownload(URLDownloadParams& download, const KW_String& url) {
    download.stream = CFReadStreamCreateForHTTPRequest(kCFAllocatorDefault, CreateRequest(url).get());
    return download.stream != nullptr &&
           CFReadStreamSetProperty(download.stream, kCFStreamPropertyHTTPShouldAutoredirect,
                                   kCFBooleanTrue) &&
           OpenStream(download) && StartTimeLimit(download);
}

}  // namespace

bool KW_General::URLDownload(const KW_String& url, const KW_Location& destination, KW_URL_CallBack callBack,
                             void* userData) {
    if (url.data == nullptr) return false;
    auto download = std::make_unique<URLDownloadParams>(URLDownloadParams{callBack, userData, destination});
    if (!StartDownload(*download, url)) {
        TerminateDownload(*download);
        return false;
    }
    RunningDownloads().Add(std::move(download));
    return true;
}
