#pragma once

#include "platform/src/http/CurlLibrary.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>

namespace platform::http {

class HttpResponse;

/// Runs every HTTP transfer on the main run loop, with libcurl's multi interface: no thread of ours, no
/// waiting. (Names that are no addresses are resolved by a thread that libcurl keeps for itself.) Nothing is
/// told to a response's owner while libcurl is on the stack, so the owner may do what it likes, also run the
/// loop.
class HttpEngine {
public:
    /// Null when there is no HTTP library.
    static HttpEngine* get();

    HttpEngine(const HttpEngine&) = delete;
    HttpEngine& operator=(const HttpEngine&) = delete;

    const CurlLibrary& curl() const { return curl_; }

    bool add(CURL* easy);
    void remove(CURL* easy);
    /// Has the response tell its owner that it changed, once libcurl has returned.
    void noteChange(const std::shared_ptr<HttpResponse>& response);

private:
    HttpEngine(const CurlLibrary& curl, CURLM* multi, int timerDescriptor);
    static HttpEngine* create();

    static int socketChanged(CURL* easy, curl_socket_t socket, int what, void* engine, void* unused);
    static int timeoutChanged(CURLM* multi, long timeoutMs, void* engine);

    void act(curl_socket_t socket, int what);
    void onSocket(curl_socket_t socket, std::uint32_t events);
    void onTimer();

    const CurlLibrary& curl_;
    CURLM* multi_;
    int timerDescriptor_;  // libcurl's own time limits follow the real clock, whatever the run loop's says
    std::deque<std::weak_ptr<HttpResponse>> changed_;
};

}  // namespace platform::http
