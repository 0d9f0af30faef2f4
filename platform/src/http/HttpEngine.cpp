#include "platform/src/http/HttpEngine.h"

#include "platform/RunLoop.h"
#include "platform/src/http/HttpResponse.h"

#include <sys/epoll.h>
#include <sys/timerfd.h>
#include <unistd.h>

namespace platform::http {

HttpEngine* HttpEngine::get() {
    static HttpEngine* const engine =
        create();  // never destroyed: streams may end after the statics of this library
    return engine;
}

HttpEngine* HttpEngine::create() {
    const CurlLibrary* const curl = CurlLibrary::get();
    if (curl == nullptr) return nullptr;
    CURLM* const multi = curl->multiInit();
    const int timerDescriptor = timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
    if (multi == nullptr || timerDescriptor < 0) return nullptr;
    return new HttpEngine(*curl, multi, timerDescriptor);
}

HttpEngine::HttpEngine(const CurlLibrary& curl, CURLM* multi, int timerDescriptor)
    : curl_(curl), multi_(multi), timerDescriptor_(timerDescriptor) {
    curl_.multiSetopt(multi_, CURLMOPT_SOCKETFUNCTION, &HttpEngine::socketChanged);
    curl_.multiSetopt(multi_, CURLMOPT_SOCKETDATA, this);
    curl_.multiSetopt(multi_, CURLMOPT_TIMERFUNCTION, &HttpEngine::timeoutChanged);
    curl_.multiSetopt(multi_, CURLMOPT_TIMERDATA, this);
    RunLoop::main().watch(timerDescriptor_, EPOLLIN, [this](std::uint32_t) { onTimer(); });
}

bool HttpEngine::add(CURL* easy) {
    return curl_.multiAddHandle(multi_, easy) == CURLM_OK;
}

void HttpEngine::remove(CURL* easy) {
    curl_.multiRemoveHandle(multi_, easy);
}

void HttpEngine::noteChange(const std::shared_ptr<HttpResponse>& response) {
    changed_.push_back(response);
}

int HttpEngine::socketChanged(CURL*, curl_socket_t socket, int what, void* engine, void*) {
    auto* const self = static_cast<HttpEngine*>(engine);
    if (what == CURL_POLL_REMOVE) {
        RunLoop::main().unwatch(socket);
        return 0;
    }
    const std::uint32_t events =
        ((what & CURL_POLL_IN) != 0 ? EPOLLIN : 0U) | ((what & CURL_POLL_OUT) != 0 ? EPOLLOUT : 0U);
    RunLoop::main().watch(socket, events,
                          [self, socket](std::uint32_t happened) { self->onSocket(socket, happened); });
    return 0;
}

int HttpEngine::timeoutChanged(CURLM*, long timeoutMs, void* engine) {
    itimerspec spec{};  // stays zero, which disarms, for "no timeout"
    if (timeoutMs == 0) spec.it_value.tv_nsec = 1;
    if (timeoutMs > 0) {
        spec.it_value.tv_sec = timeoutMs / 1000;
        spec.it_value.tv_nsec = timeoutMs % 1000 * 1'000'000;
    }
    timerfd_settime(static_cast<HttpEngine*>(engine)->timerDescriptor_, 0, &spec, nullptr);
    return 0;
}

void HttpEngine::onTimer() {
    std::uint64_t expirations = 0;
    if (read(timerDescriptor_, &expirations, sizeof expirations) < 0)
        return;  // moved on by a nested run of the loop
    act(CURL_SOCKET_TIMEOUT, 0);
}

void HttpEngine::onSocket(curl_socket_t socket, std::uint32_t events) {
    int what = 0;
    if ((events & (EPOLLIN | EPOLLHUP)) != 0) what |= CURL_CSELECT_IN;
    if ((events & EPOLLOUT) != 0) what |= CURL_CSELECT_OUT;
    if ((events & EPOLLERR) != 0) what |= CURL_CSELECT_ERR;
    act(socket, what);
}

void HttpEngine::act(curl_socket_t socket, int what) {
    int running = 0;
    curl_.multiSocketAction(multi_, socket, what, &running);
    int queued = 0;
    while (const CURLMsg* message = curl_.multiInfoRead(multi_, &queued)) {
        if (message->msg != CURLMSG_DONE) continue;
        void* response = nullptr;
        curl_.easyGetinfo(message->easy_handle, CURLINFO_PRIVATE, &response);
        static_cast<HttpResponse*>(response)->finish(message->data.result == CURLE_OK);
    }
    while (!changed_.empty()) {
        const auto response = changed_.front().lock();
        changed_.pop_front();
        if (response) response->tellChange();
    }
}

}  // namespace platform::http
