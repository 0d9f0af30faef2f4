// The program: its subcommands and their options.

#include "host/console/Console.h"
#include "host/ExitCodes.h"
#include "host/Printable.h"
#include "platform/host/OwnProgram.h"
#include "tools/Commands.h"
#include "tools/ServeCommand.h"

#include <fcntl.h>
#include <unistd.h>
#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>

namespace {

namespace fs = std::filesystem;

/// The add-on that belongs to this program: beside it in the build, or where it is installed.
std::string defaultBundle() {
    std::error_code error;
    const fs::path prefix = platform::ownProgram().parent_path().parent_path();
    const fs::path installed = prefix / TESSARO_INSTALLED_BUNDLES / "TessaroLibrary.bundle";
    const fs::path built = prefix / "bundles" / "TessaroLibrary.bundle";
    return (fs::exists(installed, error) ? installed : built).string();
}

void addRun(CLI::App& app, tools::Chosen& chosen) {
    CLI::App* const run = app.add_subcommand("run", "Load add-ons and use them");
    static host::ConsoleOptions options;
    static std::string opener = "xdg-open";
    run->add_option("--bundle", options.bundles, "Bundle to load; may be repeated")->type_name("PATH");
    run->add_option("--data-dir", options.dataDir, "Settings folder")->type_name("PATH");
    static std::string ui = "console";
    run->add_option("--ui", ui, "Front end")->check(CLI::IsMember({"console"}))->type_name("NAME");
    run->add_flag("--json", options.json, "Print each event as a JSON object");
    run->add_option("--connect", options.connects,
                    "Send requests for NAME:PORT to ADDRESS:PORT; may be repeated")
        ->type_name("NAME:PORT=ADDRESS:PORT");
    run->add_option("--opener", opener,
                    "Open documents and web pages on the desktop, or print a line for each")
        ->check(CLI::IsMember({"xdg-open", "record"}))
        ->type_name("NAME");
    run->callback([&chosen] {
        chosen = [] {
            options.recordOpened = opener == "record";
            if (options.bundles.empty()) options.bundles.push_back(defaultBundle());
            return host::runConsole(options);
        };
    });
}

void addServe(CLI::App& app, tools::Chosen& chosen) {
    CLI::App* const serve = app.add_subcommand("serve", "Serve a folder as the update server does");
    static tools::ServeOptions options;
    serve->add_option("folder", options.folder, "Folder that contains update_plugins/ and update/")
        ->required()
        ->type_name("DIR");
    serve->add_option("--port", options.port, "Port to listen on; 0 picks a free one")
        ->check(CLI::Range(0, 65535))
        ->capture_default_str()
        ->type_name("NUMBER");
    serve->add_option("--address", options.address, "Address to listen on; 0.0.0.0 for all networks")
        ->capture_default_str()
        ->type_name("ADDRESS");
    serve->callback([&chosen] { chosen = [] { return tools::runServe(options); }; });
}

int runProgram(int argc, char** argv) {
    CLI::App app("Host and tools of the Tessaro suite", "tessaro");
    app.require_subcommand(0, 1);
    app.set_version_flag("--version", "tessaro " TESSARO_VERSION);
    app.failure_message([](const CLI::App*, const CLI::Error& error) {
        return "tessaro: " + host::printable(error.what()) + "; --help explains the options\n";
    });
    tools::Chosen chosen;
    addRun(app, chosen);
    addServe(app, chosen);
    tools::addVersions(app, chosen);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? host::kExitDone : host::kExitUsage;
    }
    if (chosen) return chosen();
    std::cerr << "tessaro: a subcommand is required; --help lists them" << std::endl;
    return host::kExitUsage;
}

/// A standard descriptor that the caller left closed would be given to the next file that is opened.
void openStandardDescriptors() {
    int descriptor = 0;
    while (descriptor >= 0 && descriptor <= STDERR_FILENO)
        descriptor = open("/dev/null", O_RDWR);
    close(descriptor);
}

}  // namespace

int main(int argc, char** argv) {
    openStandardDescriptors();
    try {
        const int code = runProgram(argc, argv);
        if (std::cout.flush() || code != host::kExitDone) return code;
        std::cerr << "tessaro: the output cannot be written" << std::endl;
        return host::kExitUnreadable;
    } catch (const std::exception& error) {
        std::cerr << "tessaro: " << host::printable(error.what()) << std::endl;
        return host::kExitInternal;
    }
}
