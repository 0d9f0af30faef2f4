#include "platform/src/http/HttpStream.h"

#include "platform/host/ImageCleanup.h"
#include "platform/host/RunLoop.h"
#include "platform/src/http/ConnectRules.h"
#include "platform/src/process/Failures.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr long kMaxRedirections = 10;
constexpr const char* kProtocols = "http,https";
// An empty value keeps libcurl from sending the field; the last one where a URL names a user.
constexpr const char* kSuppressedHeaders[] = {"Accept:", "User-Agent:", "Authorization:"};

}  // namespace

std::set<std::shared_ptr<CFReadStream>>& platform::http::streams() {
    static auto* const all = [] {
        addImageCleanup([](const void* image) {
            for (const auto& stream : streams())
                stream->endCallsInto(image);
        });
        return new std::set<std::shared_ptr<CFReadStream>>;
    }();
    return *all;
}

bool CFReadStream::followRedirections() {
    followRedirections_ = followRedirections_ || state_ == State::New;
    return state_ == State::New;
}

void CFReadStream::setClient(CFOptionFlags events, CFReadStreamClientCallBack callBack, void* info) {
    events_ = callBack != nullptr ? events : 0;
    callBack_ = events_ != 0 ? callBack : nullptr;
    info_ = info;
    deliverSoon();
}

void CFReadStream::setScheduled(bool scheduled) {
    scheduled_ = scheduled;
    deliverSoon();
}

bool CFReadStream::open() {
    if (state_ != State::New) return false;
    state_ = State::Running;
    if (!begin()) close();
    return isOpen();
}

bool CFReadStream::begin() {
    const platform::http::CurlLibrary& curl = engine_.curl();
    easy_ = curl.easyInit();
    if (easy_ == nullptr) return false;
    for (const char* header : kSuppressedHeaders)
        headers_ = curl.slistAppend(headers_, header);
    for (const std::string& rule : platform::http::connectRulesForCurl())
        connectRules_ = curl.slistAppend(connectRules_, rule.c_str());

    bool accepted = true;
    const auto set = [&](CURLoption option, auto value) {
        accepted = curl.easySetopt(easy_, option, value) == CURLE_OK && accepted;
    };
    set(CURLOPT_PRIVATE, static_cast<void*>(this));
    set(CURLOPT_URL, url_.c_str());
    set(CURLOPT_PATH_AS_IS, 1L);
    set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    set(CURLOPT_HTTPHEADER, headers_);
    set(CURLOPT_PROTOCOLS_STR, kProtocols);
    set(CURLOPT_REDIR_PROTOCOLS_STR, kProtocols);
    set(CURLOPT_FOLLOWLOCATION, followRedirections_ ? 1L : 0L);
    set(CURLOPT_MAXREDIRS, kMaxRedirections);
    set(CURLOPT_PROXY, "");  // whatever the environment says
    set(CURLOPT_CONNECT_TO, connectRules_);
    set(CURLOPT_FORBID_REUSE, 1L);  // no connection stays open behind a stream that has ended
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_QUICK_EXIT, 1L);  // closing does not wait for a name that is still being resolved
    set(CURLOPT_BUFFERSIZE, static_cast<long>(kReceiveSize));
    set(CURLOPT_PREREQFUNCTION, &CFReadStream::connectionOpened);
    set(CURLOPT_PREREQDATA, static_cast<void*>(this));
    set(CURLOPT_WRITEFUNCTION, &CFReadStream::bytesArrived);
    set(CURLOPT_WRITEDATA, static_cast<void*>(this));
    return accepted && engine_.add(easy_);
}

int CFReadStream::connectionOpened(void* stream, char*, char*, int, int) {
    auto* const self = static_cast<CFReadStream*>(stream);
    self->connected_ = true;
    self->noteChange();
    return CURL_PREREQFUNC_OK;
}

std::size_t CFReadStream::bytesArrived(char* bytes, std::size_t size, std::size_t count, void* stream) {
    auto* const self = static_cast<CFReadStream*>(stream);
    const std::size_t arrived = size * count;
    if (self->filled_ + arrived > kBufferSize) {
        self->paused_ = true;
        return CURL_WRITEFUNC_PAUSE;
    }
    if (!self->buffer_) self->buffer_ = std::make_unique_for_overwrite<std::uint8_t[]>(kBufferSize);
    std::memcpy(self->buffer_.get() + self->filled_, bytes, arrived);
    self->filled_ += arrived;
    self->noteChange();
    // Otherwise libcurl would keep receiving as long as the server sends, and block the loop.
    if (self->filled_ >= kEnough && !self->paused_) {
        self->paused_ = true;
        self->engine_.curl().easyPause(self->easy_, CURLPAUSE_RECV);
    }
    return arrived;
}

CFIndex CFReadStream::read(std::uint8_t* target, CFIndex count) {
    if (!isOpen() || target == nullptr || count <= 0) return -1;
    const std::size_t taken = std::min(static_cast<std::size_t>(count), filled_ - taken_);
    bytesOffered_ = false;
    if (taken == 0) return state_ == State::Complete ? 0 : -1;
    std::memcpy(target, buffer_.get() + taken_, taken);
    taken_ += taken;
    if (taken_ == filled_) taken_ = filled_ = 0;
    return static_cast<CFIndex>(taken);
}

/// Lets a waiting server continue if there is room.
void CFReadStream::resume() {
    if (!paused_ || filled_ != 0) return;
    paused_ = false;
    engine_.curl().easyPause(easy_, CURLPAUSE_CONT);
}

void CFReadStream::close() {
    if (state_ != State::New) state_ = State::Closed;
    if (easy_ == nullptr) return;
    const platform::http::CurlLibrary& curl = engine_.curl();
    engine_.remove(easy_);
    curl.easyCleanup(easy_);
    curl.slistFreeAll(headers_);
    curl.slistFreeAll(connectRules_);
    easy_ = nullptr;
    buffer_.reset();
}

void CFReadStream::endCallsInto(const void* image) {
    if (callBack_ == nullptr || platform::imageOf(callBack_) != image) return;
    callBack_ = nullptr;
    close();
}

void CFReadStream::finish(bool complete) {
    state_ = complete ? State::Complete : State::Failed;
    noteChange();
}

void CFReadStream::noteChange() {
    if (changeNoted_) return;
    changeNoted_ = true;
    engine_.noteChange(shared_from_this());
}

void CFReadStream::deliver() {
    changeNoted_ = false;
    if (delivering_) return;  // the client runs the loop in its callback: the rest comes when it returns
    delivering_ = true;
    const auto self = shared_from_this();
    while (isOpen() && scheduled_ && callBack_ != nullptr) {
        const CFStreamEventType event = nextEvent();
        if (event == 0) break;
        if ((event & events_) != 0) platform::callAddOn("stream callback", callBack_, this, event, info_);
        if (isOpen()) resume();
    }
    delivering_ = false;
}

CFStreamEventType CFReadStream::nextEvent() {
    if (connected_ && !openTold_) {
        openTold_ = true;
        return kCFStreamEventOpenCompleted;
    }
    if (filled_ != taken_) {
        if (bytesOffered_) return 0;
        bytesOffered_ = true;
        return kCFStreamEventHasBytesAvailable;
    }
    if (state_ == State::Running || endTold_) return 0;
    endTold_ = true;
    return state_ == State::Complete ? kCFStreamEventEndEncountered : kCFStreamEventErrorOccurred;
}

/// For what happened while nobody could be told.
void CFReadStream::deliverSoon() {
    if (!isOpen()) return;
    auto& loop = platform::RunLoop::main();
    loop.addTimer(loop.now(), [weak = weak_from_this()] {
        if (const auto stream = weak.lock()) stream->deliver();
    });
}
