#include "platform/src/http/HttpResponse.h"

#include "platform/src/http/ConnectRules.h"

#include <algorithm>
#include <cstring>

namespace platform::http {

namespace {

constexpr long kMaxRedirections = 10;
constexpr const char* kProtocols = "http,https";
// An empty value keeps libcurl from sending the field; the last one where a URL names a user.
constexpr const char* kSuppressedHeaders[] = {"Accept:", "User-Agent:", "Authorization:"};

std::size_t runningCount = 0;

}  // namespace

std::shared_ptr<HttpResponse> HttpResponse::start(HttpEngine& engine, const std::string& url,
                                                  bool followRedirects, std::function<void()> changed) {
    std::shared_ptr<HttpResponse> response(new HttpResponse(engine, std::move(changed)));
    return response->begin(url, followRedirects) ? response : nullptr;
}

HttpResponse::HttpResponse(HttpEngine& engine, std::function<void()> changed)
    : engine_(engine), changed_(std::move(changed)) {
    ++runningCount;
}

HttpResponse::~HttpResponse() {
    if (state_ == State::Running) --runningCount;
    const CurlLibrary& curl = engine_.curl();
    if (added_) engine_.remove(easy_);
    if (easy_ != nullptr) curl.easyCleanup(easy_);
    curl.slistFreeAll(headers_);
    curl.slistFreeAll(connectRules_);
}

std::size_t HttpResponse::running() {
    return runningCount;
}

bool HttpResponse::begin(const std::string& url, bool followRedirects) {
    const CurlLibrary& curl = engine_.curl();
    easy_ = curl.easyInit();
    if (easy_ == nullptr) return false;
    for (const char* header : kSuppressedHeaders)
        headers_ = curl.slistAppend(headers_, header);
    for (const std::string& rule : connectRulesForCurl()) {
        connectRules_ = curl.slistAppend(connectRules_, rule.c_str());
    }

    bool accepted = true;
    const auto set = [&](CURLoption option, auto value) {
        accepted = curl.easySetopt(easy_, option, value) == CURLE_OK && accepted;
    };
    set(CURLOPT_PRIVATE, static_cast<void*>(this));
    set(CURLOPT_URL, url.c_str());
    set(CURLOPT_PATH_AS_IS, 1L);
    set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    set(CURLOPT_HTTPHEADER, headers_);
    set(CURLOPT_PROTOCOLS_STR, kProtocols);
    set(CURLOPT_REDIR_PROTOCOLS_STR, kProtocols);
    set(CURLOPT_FOLLOWLOCATION, followRedirects ? 1L : 0L);
    set(CURLOPT_MAXREDIRS, kMaxRedirections);
    set(CURLOPT_PROXY, "");  // whatever the environment says
    set(CURLOPT_CONNECT_TO, connectRules_);
    set(CURLOPT_FORBID_REUSE, 1L);  // no connection stays open behind a stream that has ended
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_QUICK_EXIT, 1L);  // closing does not wait for a name that is still being resolved
    set(CURLOPT_BUFFERSIZE, static_cast<long>(kReceiveSize));
    set(CURLOPT_PREREQFUNCTION, &HttpResponse::connectionOpened);
    set(CURLOPT_PREREQDATA, static_cast<void*>(this));
    set(CURLOPT_WRITEFUNCTION, &HttpResponse::bytesArrived);
    set(CURLOPT_WRITEDATA, static_cast<void*>(this));
    added_ = accepted && engine_.add(easy_);
    return added_;
}

int HttpResponse::connectionOpened(void* response, char*, char*, int, int) {
    auto* const self = static_cast<HttpResponse*>(response);
    self->connected_ = true;
    self->noteChange();
    return CURL_PREREQFUNC_OK;
}

std::size_t HttpResponse::bytesArrived(char* bytes, std::size_t size, std::size_t count, void* response) {
    auto* const self = static_cast<HttpResponse*>(response);
    const std::size_t arrived = size * count;
    if (self->filled_ + arrived > kBufferSize) {
        self->paused_ = true;
        return CURL_WRITEFUNC_PAUSE;
    }
    if (!self->buffer_) self->buffer_ = std::make_unique_for_overwrite<std::uint8_t[]>(kBufferSize);
    std::memcpy(self->buffer_.get() + self->filled_, bytes, arrived);
    self->filled_ += arrived;
    self->noteChange();
    // libcurl would otherwise go on to receive as long as the server sends, and hold the loop.
    if (self->filled_ >= kEnough) self->pause();
    return arrived;
}

std::size_t HttpResponse::take(std::uint8_t* target, std::size_t count) {
    count = std::min(count, available());
    if (count == 0) return 0;
    std::memcpy(target, buffer_.get() + taken_, count);
    taken_ += count;
    if (taken_ == filled_) taken_ = filled_ = 0;
    return count;
}

void HttpResponse::pause() {
    if (paused_) return;
    paused_ = true;
    engine_.curl().easyPause(easy_, CURLPAUSE_RECV);
}

void HttpResponse::resume() {
    if (!paused_ || filled_ != 0) return;
    paused_ = false;
    engine_.curl().easyPause(easy_, CURLPAUSE_CONT);
}

void HttpResponse::finish(bool complete) {
    state_ = complete ? State::Complete : State::Failed;
    --runningCount;
    noteChange();
}

void HttpResponse::noteChange() {
    if (changeNoted_) return;
    changeNoted_ = true;
    engine_.noteChange(shared_from_this());
}

void HttpResponse::tellChange() {
    changeNoted_ = false;
    changed_();
}

}  // namespace platform::http
