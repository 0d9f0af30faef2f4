#include "host/console/Console.h"

#include "host/console/JsonPrinter.h"
#include "host/console/Session.h"
#include "host/console/TextPrinter.h"
#include "host/console/Texts.h"
#include "platform/FileSystem.h"
#include "platform/host/HttpOptions.h"
#include "platform/host/LaunchHandling.h"
#include "platform/host/SettingsFolder.h"

#include <unistd.h>
#include <cstdlib>
#include <filesystem>
#include <iostream>

namespace host {

namespace {

int fail(ExitCode code, const std::string& line) {
    std::cerr << "tessaro: " << line << std::endl;
    return code;
}

bool setConnects(const std::vector<std::string>& texts, std::string& wrong) {
    std::vector<platform::ConnectRule> rules;
    for (const std::string& text : texts) {
        const auto rule = platform::parseConnectRule(text);
        if (!rule) {
            wrong = text;
            return false;
        }
        rules.push_back(*rule);
    }
    platform::setConnectRules(std::move(rules));
    return true;
}

std::unique_ptr<LineSource> makeLineSource(bool json) {
    const bool terminal = isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0;
    return terminal && !json ? makeTerminalSource("tessaro> ") : makeScriptSource(STDIN_FILENO);
}

}  // namespace

int runConsole(const ConsoleOptions& options) {
    std::string wrong;
    if (!setConnects(options.connects, wrong)) {
        return fail(kExitUsage, "--connect " + inQuotes(wrong) + " is not NAME:PORT=ADDRESS:PORT");
    }
    if (!options.dataDir.empty()) {
        const std::string absolute = std::filesystem::absolute(options.dataDir).string();
        setenv("TESSARO_DATA_DIR", absolute.c_str(), 1);
    }
    if (const auto failure = platform::createSettingsFolder()) {
        return fail(kExitUnreadable, "the folder of settings and marker files " + inQuotes(failure->path) +
                                         " cannot be created: " + failure->reason);
    }

    std::unique_ptr<EventPrinter> printer;
    if (options.json) {
        printer = std::make_unique<JsonPrinter>(std::cout);
    } else {
        printer = std::make_unique<TextPrinter>(std::cout);
    }
    Host host;
    const std::unique_ptr<LineSource> lines = makeLineSource(options.json);
    Session session(host, *lines, *printer);
    if (options.recordOpened) {
        platform::setLaunchHandler([&session](const platform::LaunchRequest& request) {
            session.print(event::Opened{request});
            return 0;
        });
    }
    for (const std::string& bundle : options.bundles) {
        if (const auto refusal = session.load(bundle)) {
            return fail(kExitUnreadable, "cannot load " + inQuotes(bundle) + ": " + *refusal);
        }
    }
    session.run();
    platform::setLaunchHandler(nullptr);
    return kExitDone;
}

}  // namespace host
