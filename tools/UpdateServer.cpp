#include "tools/UpdateServer.h"

#include "host/ExitCodes.h"
#include "host/Printable.h"

#include <httplib.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace tools {

namespace {

namespace fs = std::filesystem;

constexpr const char* kVersionsFiles[] = {"update_plugins/versions16.txt",
                                          "update_plugins/versions_plus.txt"};

using host::printable;

int fail(int code, const std::string& what) {
    std::cerr << "tessaro serve: " << printable(what) << std::endl;
    return code;
}

void printRequest(const httplib::Request& request, const httplib::Response& answer) {
    static std::mutex mutex;  // several clients may be served at once
    const std::lock_guard lock(mutex);
    std::cout << printable(request.method) << ' ' << printable(request.target) << ' ' << answer.status << ' '
              << answer.body.size() << " bytes to " << request.remote_addr << std::endl;
}

/// Blocks the signals that end the server, in this thread and those that it starts, and waits for one of
/// them.
class EndSignals {
public:
    EndSignals() {
        sigemptyset(&signals_);
        for (const int signal : {SIGINT, SIGTERM})
            sigaddset(&signals_, signal);
        pthread_sigmask(SIG_BLOCK, &signals_, &before_);
    }
    ~EndSignals() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

    void wait() const {
        int received = 0;
        sigwait(&signals_, &received);
    }

private:
    sigset_t signals_{};
    sigset_t before_{};
};

void configure(httplib::Server& server) {
    server.set_keep_alive_timeout(1);  // an idle connection delays the end of the server by as much
    server.set_read_timeout(std::chrono::seconds(2));
    // Not SO_REUSEPORT, which would let two servers share a port unnoticed.
    server.set_socket_options([](socket_t socket) {
        const int yes = 1;
        setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    });
    server.set_file_extension_and_mimetype_mapping("htm", "text/html");
    server.set_default_headers({{"Cache-Control", "no-cache"}});
    server.set_logger(printRequest);
    server.set_error_handler([](const httplib::Request&, httplib::Response& answer) {
        if (answer.status == 404) answer.set_content("There is no such file here.\n", "text/plain");
    });
}

/// The port listened on; nothing when that cannot be done, with the reason in errno.
std::optional<int> listenOn(httplib::Server& server, const ServeOptions& options) {
    errno = 0;
    if (options.port != 0) {
        if (!server.bind_to_port(options.address, options.port)) return std::nullopt;
        return options.port;
    }
    const int port = server.bind_to_any_port(options.address);
    if (port <= 0) return std::nullopt;
    return port;
}

int serve(const ServeOptions& options) {
    std::error_code error;
    const fs::path folder = fs::canonical(options.folder, error);
    if (error) return fail(host::kExitUnreadable, options.folder + ": " + error.message());
    if (!fs::is_directory(folder, error))
        return fail(host::kExitUnreadable, options.folder + " is not a folder");
    if (access(folder.c_str(), R_OK | X_OK) != 0) {
        return fail(host::kExitUnreadable, options.folder + ": " + std::strerror(errno));
    }
    if (options.port < 0 || options.port > 65535)
        return fail(host::kExitUsage, "a port is a number from 0 to 65535");

    httplib::Server server;
    configure(server);
    if (!server.set_mount_point("/", folder.string())) {
        return fail(host::kExitUnreadable, options.folder + " cannot be served");
    }
    const EndSignals signals;
    const std::optional<int> port = listenOn(server, options);
    if (!port) {
        const std::string reason = errno != 0 ? std::strerror(errno) : "no such address";
        return fail(host::kExitUnreadable, "cannot listen on " + options.address + " port " +
                                               std::to_string(options.port) + ": " + reason);
    }
    const bool hasColon = options.address.find(':') != std::string::npos;  // IPv6
    const std::string authority =
        (hasColon ? "[" + options.address + "]" : options.address) + ":" + std::to_string(*port);
    for (const char* file : kVersionsFiles) {
        if (!fs::exists(folder / file, error))
            std::cerr << "tessaro serve: note: there is no " << file << '\n';
    }
    std::cout << "serving " << printable(folder.string()) << " at http://" << authority << "/ (ctrl-C ends)"
              << std::endl;
    if (!std::cout) return fail(host::kExitUnreadable, "the output cannot be written");

    std::thread listener([&server] { server.listen_after_bind(); });
    while (!server.is_running())
        std::this_thread::yield();  // before that it would not hear a stop
    signals.wait();
    server.stop();
    listener.join();
    std::cout << "stopped" << std::endl;
    return host::kExitDone;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) int tessaroServe(const ServeOptions* options) try {
    return serve(*options);
} catch (const std::exception& error) {
    return fail(host::kExitInternal, error.what());
}

}  // namespace tools
