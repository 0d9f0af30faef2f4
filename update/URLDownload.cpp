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

/// One running download.
struct URLDownloadParams {
    KW_URL_CallBack callBack = nullptr;  ///< may be null
    void* userData = nullptr;
    CFURLRef url = nullptr;             ///< owned
    CFRunLoopTimerRef timer = nullptr;  ///< the time limit; owned; null once torn down
    CFReadStreamRef stream = nullptr;   ///< owned; null once torn down
    KW_Location destination;
    KW_File file;  ///< empty until the connection is open
    std::int32_t status = 0;
};

// The last state reached.
constexpr std::int32_t kURLStatusOpened = 0;
constexpr std::int32_t kURLStatusReceiving = 50;
constexpr std::int32_t kURLStatusFinished = 101;
constexpr std::int32_t kURLStatusFailed = -1;

/// The record and what keeps it alive: a callback may run the loop (an alert is open), and handlers then fire
/// inside one another.
struct Download : URLDownloadParams {
    unsigned int handlers = 0;  ///< running now
    bool ended = false;         ///< the last message was sent, or the caller cancelled
};

template <typename Reference>
void ReleaseAndForget(Reference& reference) {
    if (reference != nullptr) CFRelease(reference);
    reference = nullptr;
}

void CloseStream(CFReadStreamRef& stream) {
    CFReadStreamSetClient(stream, 0, nullptr, nullptr);
    CFReadStreamUnscheduleFromRunLoop(stream, CFRunLoopGetCurrent(), kCFRunLoopCommonModes);
    CFReadStreamClose(stream);
    ReleaseAndForget(stream);
}

void CloseFile(Download& download) {
    if (download.file.file && download.file.file->IsOpen()) (void)download.file.file->Close();
}

/// Afterwards no handler reaches the record.
void TerminateDownload(Download& download) {
    download.ended = true;
    if (download.stream != nullptr) CloseStream(download.stream);
    CloseFile(download);
    ReleaseAndForget(download.url);
    if (download.timer != nullptr) {
        CFRunLoopRemoveTimer(CFRunLoopGetCurrent(), download.timer, kCFRunLoopCommonModes);
        CFRunLoopTimerInvalidate(download.timer);
        ReleaseAndForget(download.timer);
    }
}

/// The running downloads. They end without a word when the module is unloaded.
class Downloads {
public:
    ~Downloads() {
        for (const auto& download : running_)
            TerminateDownload(*download);
    }

    void Add(std::unique_ptr<Download> download) { running_.push_back(std::move(download)); }
    void Remove(const Download* download) {
        std::erase_if(running_, [&](const auto& each) { return each.get() == download; });
    }

private:
    std::vector<std::unique_ptr<Download>> running_;
};

Downloads& RunningDownloads() {
    static Downloads downloads;
    return downloads;
}

/// Frees the record when the last handler returns from a download that has ended.
class HandlerGuard {
public:
    explicit HandlerGuard(Download& download) : download_(download) { ++download_.handlers; }
    ~HandlerGuard() {
        if (--download_.handlers == 0 && download_.ended) RunningDownloads().Remove(&download_);
    }
    HandlerGuard(const HandlerGuard&) = delete;
    HandlerGuard& operator=(const HandlerGuard&) = delete;

private:
    Download& download_;
};

int Tell(const Download& download, KW_URL_Message message, double value) {
    return download.callBack != nullptr ? download.callBack(message, value, download.userData) : 0;
}

/// Sends the last message. Whatever fires while the callback runs finds the download ended.
void EndDownload(Download& download, KW_URL_Message message, std::int32_t status) {
    download.ended = true;
    CloseFile(download);
    Tell(download, message, 0.0);
    download.status = status;
    TerminateDownload(download);
}

void ConnectionOpened(Download& download) {
    download.status = kURLStatusOpened;
    const bool cancelled = Tell(download, KW_URL_Opened, 0.0) == 1;
    if (download.ended) return;  // the time limit ran out during the callback
    if (cancelled) {
        TerminateDownload(download);
    } else if (download.file.Open(download.destination, OpenMode_Write) != 0) {
        EndDownload(download, KW_URL_Failed, kURLStatusFailed);
    }
}

void WriteChunk(KW_File& destination, const char* bytes, std::uint64_t count) {
    if (!destination.file || !destination.file->IsOpen()) return;
    // A chunk that cannot be written is lost; the download goes on.
    if (destination.file->Write(bytes, count, nullptr) != kNoError) {
        (void)destination.file->RecoverFromFailedWrite();
    }
}

void BytesAvailable(Download& download) {
    std::uint8_t chunk[kURLReadChunkSize];
    const CFIndex count = CFReadStreamRead(download.stream, chunk, kURLReadChunkSize);
    if (count > 0) {
        WriteChunk(download.file, reinterpret_cast<const char*>(chunk), static_cast<std::uint64_t>(count));
        download.status = kURLStatusReceiving;
        Tell(download, KW_URL_Progress, 0.5);
    } else if (count == 0) {
        EndDownload(download, KW_URL_Finished, kURLStatusFinished);
    } else {
        EndDownload(download, KW_URL_Failed, kURLStatusFailed);
    }
}

void ReadStreamClientCallBack(CFReadStreamRef, CFStreamEventType event, void* info) {
    Download& download = *static_cast<Download*>(info);
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
            EndDownload(download, KW_URL_Failed, kURLStatusFailed);
            break;
        case kCFStreamEventEndEncountered:
            EndDownload(download, KW_URL_Finished, kURLStatusFinished);
            break;
        default:
            break;
    }
}

void NetworkTimerProc(CFRunLoopTimerRef, void* info) {
    Download& download = *static_cast<Download*>(info);
    if (download.ended) return;
    const HandlerGuard guard(download);
    EndDownload(download, KW_URL_Failed, kURLStatusFailed);
}

/// The URL with every escape decoded and then only what needs it escaped. Null when the text can be no URL.
CFURLRef CreateURL(const KW_String& text) {
    const KW_CString bytes = text.ToCStr(KW_String::Encoding_System);
    CFStringRef given =
        CFStringCreateWithCString(kCFAllocatorDefault, bytes.data, CFStringGetSystemEncoding());
    CFStringRef nothing = CFStringCreateWithCString(kCFAllocatorDefault, "", CFStringGetSystemEncoding());
    CFStringRef decoded = CFURLCreateStringByReplacingPercentEscapes(kCFAllocatorDefault, given, nothing);
    CFStringRef escaped =
        CFURLCreateStringByAddingPercentEscapes(kCFAllocatorDefault, decoded, nullptr, nullptr, 0x08000100);
    const CFURLRef url = CFURLCreateWithString(kCFAllocatorDefault, escaped, nullptr);
    for (CFStringRef* string : {&given, &nothing, &decoded, &escaped})
        ReleaseAndForget(*string);
    return url;
}

CFHTTPMessageRef CreateRequest(CFURLRef url) {
    CFStringRef method = CFStringCreateWithCString(kCFAllocatorDefault, "GET", CFStringGetSystemEncoding());
    const CFHTTPMessageRef request =
        CFHTTPMessageCreateRequest(kCFAllocatorDefault, method, url, kCFHTTPVersion1_1);
    ReleaseAndForget(method);
    return request;
}

bool OpenStream(Download& download) {
    const CFStreamClientContext context{0, &download, nullptr, nullptr, nullptr};
    if (!CFReadStreamSetClient(download.stream, kURLStreamEvents, &ReadStreamClientCallBack, &context))
        return false;
    CFReadStreamScheduleWithRunLoop(download.stream, CFRunLoopGetMain(), kCFRunLoopCommonModes);
    return CFReadStreamOpen(download.stream);
}

bool StartTimeLimit(Download& download) {
    const CFRunLoopTimerContext context{0, &download, nullptr, nullptr, nullptr};
    download.timer =
        CFRunLoopTimerCreate(kCFAllocatorDefault, CFAbsoluteTimeGetCurrent() + kURLDownloadTimeLimit, 0, 0, 0,
                             &NetworkTimerProc, &context);
    CFRunLoopAddTimer(CFRunLoopGetMain(), download.timer, kCFRunLoopCommonModes);
    return download.timer != nullptr;
}

/// Starts the download of the record's URL; what it has made is in the record, also on failure.
bool StartDownload(Download& download) {
    CFHTTPMessageRef request = CreateRequest(download.url);
    download.stream = CFReadStreamCreateForHTTPRequest(kCFAllocatorDefault, request);
    ReleaseAndForget(request);
    return download.stream != nullptr &&
           CFReadStreamSetProperty(download.stream, kCFStreamPropertyHTTPShouldAutoredirect,
                                   kCFBooleanTrue) &&
           OpenStream(download) && StartTimeLimit(download);
}

}  // namespace

bool KW_General::URLDownload(const KW_String& url, const KW_Location& destination, KW_URL_CallBack callBack,
                             void* userData) {
    if (url.data == nullptr) return false;
    auto download = std::make_unique<Download>();
    download->callBack = callBack;
    download->userData = userData;
    download->url = CreateURL(url);
    download->destination = destination;
    if (!StartDownload(*download)) {
        TerminateDownload(*download);
        return false;
    }
    RunningDownloads().Add(std::move(download));
    return true;
}
