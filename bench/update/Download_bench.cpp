// A download of 256 MiB from a server on this machine into a file, beside the curl command doing the same in
// the same run. Prints Markdown tables. usage: download_bench [FOLDER...]   (default: /dev/shm, memory, and
// /var/tmp, a disk)

#include "files/KW_Location.h"
#include "foundation/KW_String.h"
#include "library/KW_General.h"
#include "platform/host/RunLoop.h"
#include "platform/HostInterface.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

// Stands for the bridge into a host, which locations refer to and downloads never ask.
GSErrCode ACAPI_GetOwnLocation(IO::Location&) {
    return kAPIErrNoOwnLocation;
}

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kMebibyte = 1024 * 1024;
constexpr std::size_t kLarge = 256 * kMebibyte;
constexpr int kRounds = 7;

double milliseconds(Clock::duration time) {
    return std::chrono::duration<double, std::milli>(time).count();
}

[[noreturn]] void fail(const std::string& what) {
    std::perror(("download_bench: " + what).c_str());
    std::exit(3);
}

/// Serves "/SIZE": a body of so many bytes. Runs until it is ended.
[[noreturn]] void serve(int listener) {
    const std::vector<char> block(kMebibyte, 'x');
    while (true) {
        const int connection = accept(listener, nullptr, nullptr);
        if (connection < 0) std::exit(0);
        char request[4096] = {};
        if (recv(connection, request, sizeof request - 1, 0) > 5) {
            std::size_t left = std::strtoull(request + 5, nullptr, 10);
            const std::string header =
                "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(left) + "\r\n\r\n";
            bool there = send(connection, header.data(), header.size(), MSG_NOSIGNAL) > 0;
            while (there && left > 0) {
                const ssize_t sent =
                    send(connection, block.data(), std::min(left, block.size()), MSG_NOSIGNAL);
                there = sent > 0;
                if (there) left -= static_cast<std::size_t>(sent);
            }
        }
        close(connection);
    }
}

class Server {
public:
    Server() {
        const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* const generic = reinterpret_cast<sockaddr*>(&address);
        if (bind(listener, generic, size) != 0 || listen(listener, 8) != 0 ||
            getsockname(listener, generic, &size) != 0) {
            fail("server");
        }
        port_ = ntohs(address.sin_port);
        process_ = fork();
        if (process_ == 0) serve(listener);
        close(listener);
    }
    ~Server() {
        kill(process_, SIGTERM);
        waitpid(process_, nullptr, 0);
    }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    std::string url(std::size_t size) const {
        return "http://127.0.0.1:" + std::to_string(port_) + "/" + std::to_string(size);
    }

private:
    pid_t process_ = -1;
    int port_ = 0;
};

struct Cost {
    double processorMs;
    double wallMs;
    long peakKiB;
};

/// Runs a program to its end and tells what it cost.
Cost run(const std::vector<std::string>& command) {
    std::vector<char*> arguments;
    for (const std::string& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    const auto start = Clock::now();
    const pid_t child = fork();
    if (child == 0) {
        execvp(arguments[0], arguments.data());
        fail(command[0]);
    }
    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) != child || status != 0) fail(command[0] + " did not succeed");
    const auto time = [](const timeval& t) {
        return 1e3 * static_cast<double>(t.tv_sec) + 1e-3 * static_cast<double>(t.tv_usec);
    };
    return {time(usage.ru_utime) + time(usage.ru_stime), milliseconds(Clock::now() - start), usage.ru_maxrss};
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// Medians over the rounds.
struct Series {
    std::vector<double> processor, wall, peak;
    void add(const Cost& cost) {
        processor.push_back(cost.processorMs);
        wall.push_back(cost.wallMs);
        peak.push_back(static_cast<double>(cost.peakKiB));
    }
};

// ---- The child: one download in a process of its own ---------------------------------------------------

struct Progress {
    bool ended = false;
    bool failed = false;
};

int progressed(KW_URL_Message message, double, void* userData) {
    auto* const progress = static_cast<Progress*>(userData);
    progress->ended = message == KW_URL_Finished || message == KW_URL_Failed;
    progress->failed = message == KW_URL_Failed;
    return 0;
}

/// How long one turn of the loop took: by the clock, and in processor time of this thread, which tells the
/// same on a busy machine.
struct Turn {
    double wallMs = 0;
    double processorMs = 0;
};

double threadMs() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return 1e3 * static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_nsec);
}

template <typename Action>
Turn timed(Action action) {
    const auto start = Clock::now();
    const double before = threadMs();
    action();
    return {milliseconds(Clock::now() - start), threadMs() - before};
}

/// Downloads and, with `tell`, prints how long the loop was held: by the start, by the longest turn while the
/// data came, and by the last turn, in which the file is flushed to the disk.
int downloadOnce(const std::string& url, const std::string& path, bool tell) {
    auto& loop = platform::RunLoop::main();
    Progress progress;
    bool started = false;
    const Turn start = timed([&] {
        const KW_Location destination(KW_String(path.c_str(), KW_String::Encoding_UTF8));
        started = KW_General::URLDownload(KW_String(url.c_str(), KW_String::Encoding_System), destination,
                                          &progressed, &progress);
    });
    if (!started) return 1;
    Turn longest, last;
    pollfd ready{loop.descriptor(), POLLIN, 0};
    while (!progress.ended) {
        if (!tell) {
            loop.dispatch(-1);
            continue;
        }
        poll(&ready, 1, -1);
        longest.wallMs = std::max(longest.wallMs, last.wallMs);
        longest.processorMs = std::max(longest.processorMs, last.processorMs);
        last = timed([&] { loop.dispatch(0); });
    }
    if (tell) {
        for (const Turn& turn : {start, longest, last})
            std::printf("%f %f ", turn.wallMs, turn.processorMs);
    }
    return progress.failed ? 1 : 0;
}

// ---- The tables ------------------------------------------------------------------------------------------

void row(const char* what, double ours, double theirs, const char* unit) {
    std::printf("| %s | %.0f %s | %.0f %s | %.2f |\n", what, ours, unit, theirs, unit, ours / theirs);
}

void compare(const Server& server, const std::string& self, const std::string& folder, bool flush) {
    const std::string file = folder + "/download_bench.tmp";
    const std::string url = server.url(kLarge);
    Series ours, theirs;
    for (int round = 0; round <= kRounds; ++round) {
        for (const bool own : {true, false}) {
            unlink(file.c_str());
            const std::vector<std::string> curl = {"curl", "-s", "-o", file, url};
            const std::vector<std::string> curlAndSync = {
                "sh", "-c", "curl -s -o \"$0\" \"$1\" && sync \"$0\"", file, url};
            const Cost cost =
                run(own ? std::vector<std::string>{self, "--once", url, file} : (flush ? curlAndSync : curl));
            if (round > 0) (own ? ours : theirs).add(cost);  // the first round warms up
        }
    }
    unlink(file.c_str());
    const char* const other = flush ? "curl, then sync" : "curl";
    std::printf("\n256 MiB into %s, medians of %d rounds in turn\n\n", folder.c_str(), kRounds);
    std::printf("| | URLDownload | %s | ratio |\n|---|---|---|---|\n", other);
    row("processor time", median(ours.processor), median(theirs.processor), "ms");
    row("wall time", median(ours.wall), median(theirs.wall), "ms");
}

void peakMemory(const Server& server, const std::string& self, const std::string& folder) {
    const std::string file = folder + "/download_bench.tmp";
    std::printf("\n| download of | peak memory |\n|---|---|\n");
    double small = 0;
    for (const std::size_t size : {kMebibyte, kLarge}) {
        std::vector<double> peaks;
        for (int round = 0; round < kRounds; ++round) {
            peaks.push_back(static_cast<double>(run({self, "--once", server.url(size), file}).peakKiB));
            unlink(file.c_str());
        }
        std::printf("| %zu MiB | %.0f KiB |\n", size / kMebibyte, median(peaks));
        if (size == kMebibyte) small = median(peaks);
        if (size == kLarge) std::printf("| difference | %.0f KiB |\n", median(peaks) - small);
    }
}

void holds(const Server& server, const std::string& self, const std::string& folder) {
    const std::string file = folder + "/download_bench.tmp";
    constexpr int kValues = 6;
    std::vector<double> series[kValues];
    for (int round = 0; round < kRounds; ++round) {
        const std::string command = "'" + self + "' --once " + server.url(kLarge) + " '" + file + "' tell";
        std::FILE* const output = popen(command.c_str(), "r");
        for (auto& values : series) {
            double value = 0;
            if (output == nullptr || std::fscanf(output, "%lf", &value) != 1) fail("child");
            values.push_back(value);
        }
        pclose(output);
        unlink(file.c_str());
    }
    std::printf("\nThe loop was held, 256 MiB into %s, medians of %d rounds (the worst)\n\n", folder.c_str(),
                kRounds);
    std::printf("| | by the clock | processor time |\n|---|---|---|\n");
    const char* const rows[] = {"by starting (loads the HTTP library)", "by the longest turn while data came",
                                "by the last turn (flushes the file)"};
    for (int i = 0; i < kValues; i += 2) {
        std::printf("| %s |", rows[i / 2]);
        for (const auto& values : {series[i], series[i + 1]}) {
            std::printf(" %.2f ms (%.2f) |", median(values), *std::max_element(values.begin(), values.end()));
        }
        std::printf("\n");
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc >= 4 && std::string(argv[1]) == "--once") return downloadOnce(argv[2], argv[3], argc > 4);
    const std::string self = "/proc/self/exe";
    char path[4096] = {};
    if (readlink(self.c_str(), path, sizeof path - 1) < 0) fail("own path");
    const Server server;
    std::vector<std::string> folders(argv + 1, argv + argc);
    if (folders.empty()) folders = {"/dev/shm", "/var/tmp"};
    for (const std::string& folder : folders) {
        compare(server, path, folder, false);
        if (folder != "/dev/shm") compare(server, path, folder, true);
        holds(server, path, folder);
    }
    peakMemory(server, path, folders[0]);
    return 0;
}
