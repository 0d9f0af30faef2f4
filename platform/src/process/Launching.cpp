#include "platform/Launching.h"

#include "platform/Bundle.h"
#include "platform/host/Ascii.h"
#include "platform/host/LaunchHandling.h"
#include "platform/src/process/DesktopOpener.h"
#include "platform/src/text/SystemText.h"
#include "platform/UniString.h"

#include <cstring>
#include <set>
#include <string_view>
#include <utility>

namespace {

using platform::LaunchRequest;

constexpr int kDefaultPatienceMs = 5000;
constexpr const char* kDefaultOpener = "xdg-open";

struct Launcher {
    platform::LaunchHandler handler;
    std::string opener = kDefaultOpener;
    int patienceMs = kDefaultPatienceMs;
    std::set<ICInstance> services;
    ICInstance lastService = 0;
};

Launcher& launcher() {
    static Launcher instance;
    return instance;
}

/// The path as an argument that no opener takes for an option or an address.
std::string pathArgument(const std::string& path) {
    const std::string firstComponent = path.substr(0, path.find('/'));
    const bool ambiguous =
        !path.empty() && (path.front() == '-' || firstComponent.find(':') != std::string::npos);
    return ambiguous ? "./" + path : path;
}

int launch(const LaunchRequest& request) {
    Launcher& state = launcher();
    if (state.handler) return state.handler(request);
    const std::string argument = request.kind == LaunchRequest::Kind::Document
                                     ? pathArgument(request.target)
                                     : platform::percentEscaped(request.target, "%");
    const int error = platform::runOpener(state.opener, argument, state.patienceMs);
    if (error != 0) DBPrintf("cannot start \"%s\": %s\n", state.opener.c_str(), std::strerror(error));
    return error;
}

}  // namespace

int OpenDocument(const char* path) {
    return launch({LaunchRequest::Kind::Document, path != nullptr ? path : ""});
}

int ICStart(ICInstance* instance, std::uint32_t) {
    if (instance == nullptr) return kICBadArgument;
    *instance = ++launcher().lastService;
    launcher().services.insert(*instance);
    return 0;
}

int ICLaunchURL(ICInstance instance, const unsigned char*, const char* data, long length,
                long* selectionStart, long* selectionEnd) {
    const bool valid = launcher().services.contains(instance) && data != nullptr &&
                       selectionStart != nullptr && selectionEnd != nullptr && 0 <= *selectionStart &&
                       *selectionStart <= *selectionEnd && *selectionEnd <= length;
    if (!valid) return kICBadArgument;
    const std::string_view text(data + *selectionStart,
                                static_cast<std::size_t>(*selectionEnd - *selectionStart));
    if (!platform::isWebAddress(text) || text.find('\0') != std::string_view::npos) return kICNoAddress;
    return launch({LaunchRequest::Kind::WebAddress,
                   GS::UniStringToUtf8(platform::uniStringFromSystemText(text))}) == 0
               ? 0
               : kICNoOpener;
}

int ICStop(ICInstance instance) {
    return launcher().services.erase(instance) != 0 ? 0 : kICBadArgument;
}

namespace platform {

void setLaunchHandler(LaunchHandler handler) {
    launcher().handler = std::move(handler);
}

void setOpenerProgram(std::string program) {
    launcher().opener = program.empty() ? kDefaultOpener : std::move(program);
}

void setOpenerPatience(int milliseconds) {
    launcher().patienceMs = milliseconds < 0 ? kDefaultPatienceMs : milliseconds;
}

}  // namespace platform
