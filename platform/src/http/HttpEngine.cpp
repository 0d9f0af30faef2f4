#include "platform/src/http/HttpEngine.h"

#include "platform/host/RunLoop.h"
#include "platform/src/http/HttpStream.h"

#include <sys/epoll.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>

namespace platform::http {

HttpEngine* HttpEngine::get() {
    static HttpEngine* engine = nullptr;  // never destroyed: streams may outlive this library's statics
    if (engine == nullptr) engine = create();
    return engine;
}

HttpEngine* HttpEngine::create() {
    const CurlLibrary* const curl = CurlLibrary::get();
    if (curl == nullptr) return nullptr;
    const int timerDescriptor = timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
    if (timerDescriptor < 0) return nullptr;
    CURLM* const multi = curl->multiInit();
    if (multi == nullptr) {
        close(timerDescriptor);
        return nullptr;
    }
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
    curl_.easySetopt(easy, CURLOPT_CLOSESOCKETFUNCTION, &HttpEngine::closeSocket);
    curl_.easySetopt(easy, CURLOPT_CLOSESOCKETDATA, this);
    return curl_.multiAddHandle(multi_, easy) == CURLM_OK;
}

void HttpEngine::remove(CURL* easy) {
    curl_.multiRemoveHandle(multi_, easy);
}

void HttpEngine::noteChange(const std::shared_ptr<CFReadStream>& stream) {
    changed_.push_back(stream);
}

int HttpEngine::socketChanged(CURL* easy, curl_socket_t socket, int what, void* engine, void*) {
    auto* const self = static_cast<HttpEngine*>(engine);
    // Of a paused transfer the socket stays open and is wanted again soon. Others are closed next, some
    // without a word.
    const CFReadStream* const stream = self->streamOf(easy);
    if (what == CURL_POLL_REMOVE && (stream == nullptr || !stream->isPaused())) {
        self->forget(socket);
        return 0;
    }
    Socket& state = self->sockets_[socket];
    state.wanted = 0;
    if (what == CURL_POLL_IN || what == CURL_POLL_INOUT) state.wanted |= EPOLLIN;
    if (what == CURL_POLL_OUT || what == CURL_POLL_INOUT) state.wanted |= EPOLLOUT;
    if ((state.wanted & ~state.watched) != 0) self->watch(socket, state);
    return 0;
}

CFReadStream* HttpEngine::streamOf(CURL* easy) const {
    void* stream = nullptr;  // libcurl has handles of its own, which have none
    curl_.easyGetinfo(easy, CURLINFO_PRIVATE, &stream);
    return static_cast<CFReadStream*>(stream);
}

void HttpEngine::forget(curl_socket_t socket) {
    const auto known = sockets_.find(socket);
    if (known == sockets_.end()) return;
    known->second.wanted = 0;
    watch(socket, known->second);
    sockets_.erase(known);
}

void HttpEngine::watch(curl_socket_t socket, Socket& state) {
    if (state.watched == state.wanted) return;
    state.watched = state.wanted;
    if (state.wanted == 0) {
        RunLoop::main().unwatch(socket);
    } else {
        RunLoop::main().watch(socket, state.wanted,
                              [this, socket](std::uint32_t happened) { onSocket(socket, happened); });
    }
}

int HttpEngine::closeSocket(void* engine, curl_socket_t socket) {
    static_cast<HttpEngine*>(engine)->forget(socket);
    return close(socket);
}

void HttpEngine::onSocket(curl_socket_t socket, std::uint32_t events) {
    Socket& state = sockets_[socket];
    if (state.wanted == 0 || (events & (state.wanted | EPOLLERR | EPOLLHUP)) == 0) {
        watch(socket, state);
        return;
    }
    int what = 0;
    if ((events & (EPOLLIN | EPOLLHUP)) != 0) what |= CURL_CSELECT_IN;
    if ((events & EPOLLOUT) != 0) what |= CURL_CSELECT_OUT;
    if ((events & EPOLLERR) != 0) what |= CURL_CSELECT_ERR;
    act(socket, what);
}

int HttpEngine::timeoutChanged(CURLM*, long timeoutMs, void* engine) {
    auto* const self = static_cast<HttpEngine*>(engine);
    self->deadline_.reset();
    if (timeoutMs < 0) return 0;
    self->deadline_ = Clock::now() + std::chrono::milliseconds(timeoutMs);
    if (!self->armedFor_ || *self->deadline_ < *self->armedFor_) self->arm(*self->deadline_);
    return 0;
}

void HttpEngine::arm(Clock::time_point deadline) {
    armedFor_ = deadline;
    const auto left = std::max<Clock::duration>(deadline - Clock::now(), std::chrono::nanoseconds(1));
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(left);
    itimerspec spec{};
    spec.it_value.tv_sec = seconds.count();
    spec.it_value.tv_nsec = std::chrono::nanoseconds(left - seconds).count();
    timerfd_settime(timerDescriptor_, 0, &spec, nullptr);
}

void HttpEngine::onTimer() {
    std::uint64_t expirations = 0;
    if (read(timerDescriptor_, &expirations, sizeof expirations) < 0) return;
    armedFor_.reset();
    if (!deadline_) return;
    if (Clock::now() < *deadline_) {
        arm(*deadline_);
        return;
    }
    deadline_.reset();
    act(CURL_SOCKET_TIMEOUT, 0);
}

void HttpEngine::act(curl_socket_t socket, int what) {
    int running = 0;
    curl_.multiSocketAction(multi_, socket, what, &running);
    int queued = 0;
    while (const CURLMsg* message = curl_.multiInfoRead(multi_, &queued)) {
        if (message->msg != CURLMSG_DONE) continue;
        streamOf(message->easy_handle)->finish(message->data.result == CURLE_OK);
    }
    while (!changed_.empty()) {
        const auto stream = changed_.front().lock();
        changed_.pop_front();
        if (stream) stream->deliver();
    }
}

}  // namespace platform::http
