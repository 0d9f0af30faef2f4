#pragma once

#include "platform/src/http/HttpEngine.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace platform::http {

/// One GET request and what comes back: the bytes that have arrived and were not taken yet, at most
/// kBufferSize of them. When they are not taken the server is made to wait, so memory does not grow.
class HttpResponse : public std::enable_shared_from_this<HttpResponse> {
public:
    /// What is taken from the connection at once. Fewer, larger portions cost less processor time than a
    /// buffer that fits the cache saves; so many bytes are written to a file in about a millisecond.
    static constexpr std::size_t kReceiveSize = 1024 * 1024;
    /// With so much in the buffer the server has to wait.
    static constexpr std::size_t kEnough = 16 * 1024;
    static constexpr std::size_t kBufferSize = kEnough + kReceiveSize;

    enum class State { Running, Complete, Failed };

    /// Null when the request cannot be started. `changed` is called, from the run loop and never after this
    /// object's end, whenever one of the observers below may give something new.
    static std::shared_ptr<HttpResponse> start(HttpEngine& engine, const std::string& url,
                                               bool followRedirects, std::function<void()> changed);
    ~HttpResponse();
    HttpResponse(const HttpResponse&) = delete;
    HttpResponse& operator=(const HttpResponse&) = delete;

    bool connected() const { return connected_; }
    State state() const { return state_; }
    std::size_t available() const { return filled_ - taken_; }
    /// Takes at most `count` of the bytes that are there; returns how many.
    std::size_t take(std::uint8_t* target, std::size_t count);
    /// Lets a server that had to wait go on, if there is room.
    void resume();

    static std::size_t running();

private:
    friend class HttpEngine;

    HttpResponse(HttpEngine& engine, std::function<void()> changed);
    bool begin(const std::string& url, bool followRedirects);
    void pause();
    void noteChange();
    void tellChange();
    void finish(bool complete);

    static int connectionOpened(void* response, char* remote, char* local, int remotePort, int localPort);
    static std::size_t bytesArrived(char* bytes, std::size_t size, std::size_t count, void* response);

    HttpEngine& engine_;
    std::function<void()> changed_;
    CURL* easy_ = nullptr;
    curl_slist* headers_ = nullptr;
    curl_slist* connectRules_ = nullptr;
    bool added_ = false;
    bool connected_ = false;
    bool paused_ = false;
    bool changeNoted_ = false;
    State state_ = State::Running;
    std::unique_ptr<std::uint8_t[]> buffer_;
    std::size_t taken_ = 0;
    std::size_t filled_ = 0;
};

}  // namespace platform::http
