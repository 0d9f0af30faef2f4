#pragma once

#include "platform/src/http/CurlLibrary.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <unordered_map>

struct CFReadStream;

namespace platform::http {

/// Runs every HTTP transfer on the main run loop, with libcurl's multi interface: no thread of ours, no
/// waiting. (Names that are no addresses are resolved by a thread that libcurl keeps for itself.) Nothing is
/// told to a stream's client while libcurl is on the stack, so the client may do what it likes, also run the
/// loop.
///
/// libcurl changes its mind about sockets and timeouts many times while data streams in. What costs a system
/// call is therefore done only when it matters: a wish for more events at once, a wish for fewer when an
/// unwanted one arrives; an earlier timeout at once, a later one when the earlier has passed.
class HttpEngine {
public:
    /// Null when there is no HTTP library.
    static HttpEngine* get();

    HttpEngine(const HttpEngine&) = delete;
    HttpEngine& operator=(const HttpEngine&) = delete;

    const CurlLibrary& curl() const { return curl_; }

    bool add(CURL* easy);
    void remove(CURL* easy);
    /// Has the stream tell its client what changed, once libcurl has returned.
    void noteChange(const std::shared_ptr<CFReadStream>& stream);

private:
    using Clock = std::chrono::steady_clock;
    using Deadline = std::optional<Clock::time_point>;

    struct Socket {
        std::uint32_t wanted = 0;
        std::uint32_t watched = 0;
    };

    HttpEngine(const CurlLibrary& curl, CURLM* multi, int timerDescriptor);
    static HttpEngine* create();

    static int socketChanged(CURL* easy, curl_socket_t socket, int what, void* engine, void* unused);
    static int timeoutChanged(CURLM* multi, long timeoutMs, void* engine);
    static int closeSocket(void* engine, curl_socket_t socket);

    CFReadStream* streamOf(CURL* easy) const;
    void watch(curl_socket_t socket, Socket& state);
    void forget(curl_socket_t socket);
    void arm(Clock::time_point deadline);
    void onSocket(curl_socket_t socket, std::uint32_t events);
    void onTimer();
    void act(curl_socket_t socket, int what);

    const CurlLibrary& curl_;
    CURLM* multi_;
    int timerDescriptor_;  // libcurl's time limits follow the real clock, whatever the run loop's says
    Deadline deadline_;
    Deadline armedFor_;
    std::unordered_map<curl_socket_t, Socket> sockets_;
    std::deque<std::weak_ptr<CFReadStream>> changed_;
};

}  // namespace platform::http
