#pragma once

#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace support {

/// One accepted connection. Everything ends early when the server is destroyed.
class Connection {
public:
    Connection(int socket, int stop);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// What the client sent up to and with the empty line; shorter when it stopped before.
    std::string readRequest();
    /// False when the client is gone or the server ends.
    bool send(std::string_view bytes);
    void pause(std::chrono::milliseconds time);
    /// Says nothing more until the client goes away.
    void stall();
    /// Ends the connection without the usual farewell, which the client sees as an error.
    void reset();

private:
    bool waitFor(short events);

    int socket_;
    int stop_;  // readable once the server ends
};

/// What a server does with a connection after it has read the request; the connection is closed afterwards.
using Script = std::function<void(Connection& connection, const std::string& request)>;

/// A server on the loopback interface that misbehaves in exactly one way. Each connection has a thread of its
/// own.
class FaultServer {
public:
    /// Without a script the port refuses connections.
    explicit FaultServer(Script script, int port = 0);
    ~FaultServer();
    FaultServer(const FaultServer&) = delete;
    FaultServer& operator=(const FaultServer&) = delete;

    int port() const { return port_; }
    /// "127.0.0.1:PORT"
    std::string authority() const;
    /// "http://127.0.0.1:PORT" and the path, which starts with "/".
    std::string url(const std::string& path = "/file") const;
    /// The requests so far, byte for byte.
    std::vector<std::string> requests() const;

private:
    void acceptConnections();
    void serve(int socket);

    Script script_;
    int listener_ = -1;
    int port_ = 0;
    int stop_[2] = {-1, -1};
    mutable std::mutex mutex_;
    std::vector<std::string> requests_;
    std::vector<std::thread> connections_;
    std::thread acceptor_;
};

/// A complete response with the body's length, status 200 unless another status line is given.
std::string response(std::string_view body, std::string_view headers = "",
                     std::string_view status = "200 OK");
/// Serves the same response to everyone.
Script serving(std::string responseText);

/// A named way to misbehave.
struct Fault {
    const char* name;
    Script script;  ///< empty: the server refuses connections
};

/// Every fault there is.
const std::vector<Fault>& faults();
/// The script of the fault of that name, which must exist.
Script faultNamed(std::string_view name);

/// The body that the faults send whole or in part.
inline constexpr std::string_view kFaultBody =
    "* versions of the Tessaro suite\n"
    "TessaroLibrary 22.0.5.2210 (AC220) 15/10/2018 ita int fra ger spa jap rus\n"
    "# A new version.\n"
    "Tessaro 01/10/2018\n";
/// A body of `size` bytes in which every position tells itself apart.
std::string patternedBody(std::size_t size);

}  // namespace support
