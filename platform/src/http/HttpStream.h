#pragma once

#include "platform/CFReadStream.h"
#include "platform/src/http/HttpEngine.h"

#include <set>
#include <string>

/// One GET request, what comes back, and the client who is told of it. The bytes that have arrived and were
/// not read yet are at most kBufferSize: when they are not read the server is made to wait, so memory does
/// not grow.
///
/// Its creator holds one reference until CFRelease; an event that is being reported may outlive that.
struct CFReadStream : std::enable_shared_from_this<CFReadStream> {
public:
    enum class State { New, Running, Complete, Failed, Closed };

    CFReadStream(platform::http::HttpEngine& engine, std::string url)
        : engine_(engine), url_(std::move(url)) {}
    ~CFReadStream() { close(); }
    CFReadStream(const CFReadStream&) = delete;
    CFReadStream& operator=(const CFReadStream&) = delete;

    State state() const { return state_; }
    bool followRedirections();
    void setClient(CFOptionFlags events, CFReadStreamClientCallBack callBack, void* info);
    void setScheduled(bool scheduled);
    bool open();
    CFIndex read(std::uint8_t* target, CFIndex count);
    void close();
    void endCallsInto(const void* image);

    // For the engine.
    bool isPaused() const { return paused_; }
    void finish(bool complete);
    /// Tells the client what has happened, event by event, until nothing is left or the client ended the
    /// stream.
    void deliver();

private:
    /// What is taken from the connection at once. Fewer, larger portions cost less processor time than a
    /// buffer that fits the cache saves; so many bytes are written to a file in about a millisecond.
    static constexpr std::size_t kReceiveSize = 1024 * 1024;
    /// With so much in the buffer the server has to wait.
    static constexpr std::size_t kEnough = 16 * 1024;
    static constexpr std::size_t kBufferSize = kEnough + kReceiveSize;

    bool isOpen() const { return state_ != State::New && state_ != State::Closed; }
    bool begin();
    void resume();
    void noteChange();
    void deliverSoon();
    CFStreamEventType nextEvent();

    static int connectionOpened(void* stream, char* remote, char* local, int remotePort, int localPort);
    static std::size_t bytesArrived(char* bytes, std::size_t size, std::size_t count, void* stream);

    platform::http::HttpEngine& engine_;
    std::string url_;
    State state_ = State::New;
    bool followRedirections_ = false;

    CURL* easy_ = nullptr;
    curl_slist* headers_ = nullptr;
    curl_slist* connectRules_ = nullptr;
    bool paused_ = false;
    bool changeNoted_ = false;
    std::unique_ptr<std::uint8_t[]> buffer_;
    std::size_t taken_ = 0;
    std::size_t filled_ = 0;

    CFOptionFlags events_ = 0;
    CFReadStreamClientCallBack callBack_ = nullptr;
    void* info_ = nullptr;
    bool scheduled_ = false;
    bool delivering_ = false;
    bool connected_ = false;
    bool openTold_ = false;
    bool bytesOffered_ = false;
    bool endTold_ = false;
};

namespace platform::http {

/// All streams that their creators hold.
std::set<std::shared_ptr<CFReadStream>>& streams();

}  // namespace platform::http
