#include "host/console/Console.h"

#include "host/console/LineSource.h"
#include "host/console/Printers.h"
#include "host/console/TypedWords.h"
#include "host/ExitCodes.h"
#include "host/Printable.h"
#include "platform/host/HttpOptions.h"
#include "platform/host/RunLoop.h"
#include "platform/host/SettingsFolder.h"

#include <unistd.h>
#include <cstdlib>
#include <filesystem>
#include <iostream>

namespace host {

namespace {

int fail(ExitCode code, const std::string& line) {
    std::cerr << "tessaro: " << printable(line) << std::endl;
    return code;
}

std::unique_ptr<LineSource> makeLineSource(bool json) {
    const bool terminal = isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0;
    return terminal && !json ? makeTerminalSource("tessaro> ") : makeScriptSource(STDIN_FILENO);
}

/// A session in lines: words are read from the source, events are printed.
class Console : public Face {
public:
    Console(LineSource& lines, EventPrinter print) : lines_(lines), print_(print), session_(host_, *this) {}

    Session& session() { return session_; }

    /// Reads and carries out words until the user quits or the input ends; then closes what is open.
    ExitCode run() {
        while (!session_.isQuitting()) {
            session_.settle();
            waitForUser();
        }
        session_.end();
        return exitCode_;
    }

    void show(const Event& event) override {
        lines_.clearPrompt();
        print_(std::cout, event);
        if (!std::cout) session_.quit();  // main tells why
    }
    void waitForUser() override {
        std::string line;
        switch (lines_.next(line)) {
            case LineSource::Result::Dispatched:
                return;
            case LineSource::Result::End:
                return session_.quit();
            case LineSource::Result::Unreadable:
                session_.tell(event::Refused{line});
                exitCode_ = kExitUnreadable;
                return session_.quit();
            case LineSource::Result::Line:
                break;
        }
        if (!lines_.isInteractive()) session_.tell(event::Command{line});
        carryOut(session_, line);
    }
    bool pause(int milliseconds) override {
        platform::RunLoop::main().dispatch(milliseconds);
        return !lines_.isInterrupted();
    }

private:
    LineSource& lines_;
    EventPrinter print_;
    Host host_;
    Session session_;
    ExitCode exitCode_ = kExitDone;
};

}  // namespace

int runConsole(const ConsoleOptions& options) {
    std::vector<platform::ConnectRule> rules;
    for (const std::string& text : options.connects) {
        const auto rule = platform::parseConnectRule(text);
        if (!rule) return fail(kExitUsage, "--connect " + inQuotes(text) + " is not NAME:PORT=ADDRESS:PORT");
        rules.push_back(*rule);
    }
    platform::setConnectRules(std::move(rules));
    if (!options.dataDir.empty()) {
        std::error_code error;
        const std::filesystem::path absolute = std::filesystem::absolute(options.dataDir, error);
        if (error) return fail(kExitUnreadable, "the working directory does not exist: " + error.message());
        setenv("TESSARO_DATA_DIR", absolute.c_str(), 1);
    }
    if (const auto failure = platform::createSettingsFolder()) {
        return fail(kExitUnreadable, "the settings folder " + inQuotes(failure->path) +
                                         " cannot be created: " + failure->reason);
    }

    const std::unique_ptr<LineSource> lines = makeLineSource(options.json);
    Console console(*lines, options.json ? printJson : printText);
    if (options.recordOpened) console.session().recordOpened();
    for (const std::string& bundle : options.bundles) {
        if (const auto refusal = console.session().load(bundle)) return fail(kExitUnreadable, *refusal);
    }
    return console.run();
}

}  // namespace host
