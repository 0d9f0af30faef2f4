#include "host/console/LineSource.h"
#include "platform/host/RunLoop.h"

#include <editline/readline.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <deque>

namespace host {

namespace {

/// The library calls back without context, and there is one terminal.
class TerminalSource* sTerminal = nullptr;

/// Becomes readable with the interrupt signal, so that no wait of the run loop misses it.
int sInterruptDescriptor = -1;

void noteInterrupt(int) {
    const int error = errno;
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(sInterruptDescriptor, &one, sizeof one);
    errno = error;
}

class TerminalSource : public LineSource {
public:
    explicit TerminalSource(std::string prompt) : prompt_(std::move(prompt)) {
        sTerminal = this;
        // The library takes letters apart by the locale; numbers keep that of C. Texts are UTF-8 in any case.
        if (setlocale(LC_CTYPE, "") == nullptr || MB_CUR_MAX == 1) setlocale(LC_CTYPE, "C.UTF-8");
        using_history();
        sInterruptDescriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
        platform::RunLoop::main().watch(sInterruptDescriptor, EPOLLIN, [this](std::uint32_t) {
            interrupted_ = true;
            platform::RunLoop::main().unwatch(sInterruptDescriptor);
        });
        struct sigaction action {};
        action.sa_handler = noteInterrupt;
        action.sa_flags = SA_RESTART;
        sigaction(SIGINT, &action, &previous_);
    }
    ~TerminalSource() override {
        release();
        sigaction(SIGINT, &previous_, nullptr);
        platform::RunLoop::main().unwatch(sInterruptDescriptor);
        close(sInterruptDescriptor);
        sTerminal = nullptr;
    }

    Result next(std::string& line) override {
        while (lines_.empty() && !ended_ && !interrupted_) {
            showPrompt();
            if (!waitForInput(STDIN_FILENO)) return Result::Dispatched;
            rl_callback_read_char();
        }
        if (lines_.empty() || interrupted_) {
            release();
            return Result::End;
        }
        line = std::move(lines_.front());
        lines_.pop_front();
        return Result::Line;
    }

    bool isInteractive() const override { return true; }

    bool isInterrupted() const override { return interrupted_; }

    void clearPrompt() override {
        if (!editing_ || cleared_) return;
        std::fputs("\r\033[K", stdout);
        std::fflush(stdout);
        cleared_ = true;
    }

private:
    static void received(char* line) { sTerminal->take(line); }

    void take(char* line) {
        if (line == nullptr) {
            ended_ = true;
            std::fputc('\n', stdout);
        } else {
            if (*line != 0) add_history(line);
            lines_.emplace_back(line);
            std::free(line);
        }
        release();
    }

    /// Gives the terminal back when an add-on calls exit.
    static void leave() {
        if (sTerminal == nullptr) return;
        sTerminal->clearPrompt();
        sTerminal->release();
    }

    void showPrompt() {
        // Registered this late it comes before the host's own, which ends the program.
        [[maybe_unused]] static const int registered = std::atexit(leave);
        if (!editing_) {
            rl_callback_handler_install(prompt_.c_str(), &TerminalSource::received);
            editing_ = true;
        } else if (cleared_) {
            rl_forced_update_display();
        }
        cleared_ = false;
    }

    /// Gives the terminal back its own mode, in which events are printed.
    void release() {
        if (!editing_) return;
        rl_callback_handler_remove();
        editing_ = false;
        cleared_ = false;
    }

    struct sigaction previous_ {};
    std::string prompt_;
    std::deque<std::string> lines_;
    bool editing_ = false;
    bool cleared_ = false;
    bool ended_ = false;
    bool interrupted_ = false;
};

}  // namespace

std::unique_ptr<LineSource> makeTerminalSource(std::string prompt) {
    return std::make_unique<TerminalSource>(std::move(prompt));
}

}  // namespace host
