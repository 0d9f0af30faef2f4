#include "tests/support/FaultServer.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <system_error>

namespace support {

namespace {

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

}  // namespace

Connection::Connection(int socket, int stop) : socket_(socket), stop_(stop) {
    fcntl(socket_, F_SETFL, O_NONBLOCK);
}

Connection::~Connection() {
    if (socket_ >= 0) close(socket_);
}

/// False when the server ends.
bool Connection::waitFor(short events) {
    pollfd waiting[2] = {{stop_, POLLIN, 0}, {socket_, events, 0}};
    return poll(waiting, 2, -1) > 0 && waiting[0].revents == 0;
}

std::string Connection::readRequest() {
    std::string request;
    char byte = 0;  // one at a time: nothing behind the empty line is taken
    while (!request.ends_with("\r\n\r\n")) {
        const ssize_t count = recv(socket_, &byte, 1, 0);
        if (count == 1) {
            request += byte;
        } else if (count == 0 || errno != EAGAIN || !waitFor(POLLIN)) {
            break;
        }
    }
    return request;
}

bool Connection::send(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno != EAGAIN || !waitFor(POLLOUT)) {
            return false;
        }
    }
    return true;
}

void Connection::pause(std::chrono::milliseconds time) {
    pollfd stop{stop_, POLLIN, 0};
    poll(&stop, 1, static_cast<int>(time.count()));
}

void Connection::stall() {
    char byte = 0;
    while (waitFor(POLLIN) && recv(socket_, &byte, 1, 0) > 0) {
    }
}

void Connection::reset() {
    const linger atOnce{1, 0};
    setsockopt(socket_, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    close(socket_);
    socket_ = -1;
}

FaultServer::FaultServer(Script script, int port) : script_(std::move(script)) {
    listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (listener_ < 0 || pipe2(stop_, O_CLOEXEC) != 0) fail("fault server");
    const int reuse = 1;
    setsockopt(listener_, SOL_SOCKET, SO_REUSEADDR, &reuse, sizeof reuse);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (bind(listener_, generic, size) != 0 || getsockname(listener_, generic, &size) != 0)
        fail("fault server");
    port_ = ntohs(address.sin_port);
    if (!script_) return;  // bound but not listening: the port refuses and nobody else gets it
    if (listen(listener_, 64) != 0) fail("fault server");
    acceptor_ = std::thread([this] { acceptConnections(); });
}

FaultServer::~FaultServer() {
    close(stop_[1]);
    if (acceptor_.joinable()) acceptor_.join();
    for (std::thread& connection : connections_)
        connection.join();
    close(stop_[0]);
    close(listener_);
}

std::string FaultServer::authority() const {
    return "127.0.0.1:" + std::to_string(port_);
}

std::string FaultServer::url(const std::string& path) const {
    return "http://" + authority() + path;
}

std::vector<std::string> FaultServer::requests() const {
    const std::lock_guard lock(mutex_);
    return requests_;
}

void FaultServer::acceptConnections() {
    while (true) {
        pollfd waiting[2] = {{stop_[0], POLLIN, 0}, {listener_, POLLIN, 0}};
        if (poll(waiting, 2, -1) < 0 && errno != EINTR) return;
        if (waiting[0].revents != 0) return;
        const int accepted = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (accepted >= 0) connections_.emplace_back([this, accepted] { serve(accepted); });
    }
}

void FaultServer::serve(int socket) {
    Connection connection(socket, stop_[0]);
    const std::string request = connection.readRequest();
    {
        const std::lock_guard lock(mutex_);
        requests_.push_back(request);
    }
    script_(connection, request);
}

std::string response(std::string_view body, std::string_view headers, std::string_view status) {
    std::string text = "HTTP/1.1 ";
    text.append(status).append("\r\n").append(headers);
    text.append("Content-Length: ").append(std::to_string(body.size())).append("\r\n\r\n").append(body);
    return text;
}

Script serving(std::string responseText) {
    return [text = std::move(responseText)](Connection& connection, const std::string&) {
        connection.send(text);
    };
}

std::string patternedBody(std::size_t size) {
    std::string body(size, '\0');
    for (std::size_t i = 0; i < size; ++i)
        body[i] = static_cast<char>((i * 2654435761U) >> 24);
    return body;
}

}  // namespace support
