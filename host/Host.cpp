#include "host/Host.h"

#include "host/ErrorCodes.h"
#include "host/ExitCodes.h"
#include "host/HostFunctions.h"
#include "host/Printable.h"
#include "host/Requests.h"
#include "platform/host/DialogControl.h"
#include "platform/host/Failures.h"
#include "platform/host/ImageCleanup.h"

#include <execinfo.h>
#include <unistd.h>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <iostream>

namespace host {

namespace {

Host* sCurrent = nullptr;

constexpr APIImportedFunctions kEmptyTable{};
constexpr const char* kBusy = "an add-on is waiting for the user; close what is open first";

std::string threw(const std::string& what, const std::string& exception) {
    return what + " threw an exception" + (exception.empty() ? "" : ": " + exception);
}

/// A host that is still there when the program ends was not asked: an add-on has called exit.
void nameWhoEndsTheProgram() {
    if (sCurrent == nullptr) return;
    std::string name = "an add-on";
    std::array<void*, 64> frames{};
    const int count = backtrace(frames.data(), static_cast<int>(frames.size()));
    for (int index = count - 1; index >= 0; --index) {
        const AddOn* const addOn = sCurrent->findByAddress(frames[static_cast<std::size_t>(index)]);
        if (addOn != nullptr) name = addOn->name();
    }
    std::cerr << "tessaro: " << printable(name) << " has ended the program" << std::endl;
    _exit(kExitInternal);
}

}  // namespace

/// While it exists, `addOn` is the one that is being called.
class Host::CallScope {
public:
    CallScope(Host& host, AddOn& addOn) : host_(host) { host_.running_.push_back(&addOn); }
    ~CallScope() { host_.running_.pop_back(); }
    CallScope(const CallScope&) = delete;
    CallScope& operator=(const CallScope&) = delete;

private:
    Host& host_;
};

Host::Host() {
    sCurrent = this;
    [[maybe_unused]] static const int registered = std::atexit(nameWhoEndsTheProgram);
    platform::setCallbackFailureHandler([this](const platform::CallbackFailure& failure) {
        const AddOn* const addOn = findByAddress(failure.function);
        tellProblem(addOn != nullptr ? addOn->name() : "an add-on",
                    threw("the " + failure.callback, failure.reason));
    });
}

Host::~Host() {
    menuListener_ = nullptr;
    while (!addOns_.empty())
        discard(*addOns_.back(), FreeDataCall::Made);
    platform::setCallbackFailureHandler(nullptr);
    sCurrent = nullptr;
}

Host* Host::current() {
    return sCurrent;
}

std::variant<AddOn*, LoadError> Host::open(const std::string& path) {
    if (isBusy()) return LoadError{kBusy};
    std::error_code error;
    const std::string canonical = std::filesystem::canonical(path, error).string();
    for (const auto& each : addOns_) {
        if (!error && each->bundle->canonicalPath() == canonical) return LoadError{"it is already loaded"};
    }
    auto opened = Bundle::open(path);
    if (auto* const problem = std::get_if<LoadError>(&opened)) return *problem;
    auto bundle = std::move(std::get<std::unique_ptr<Bundle>>(opened));
    if (find(bundle->name()) != nullptr) return LoadError{"an add-on with this name is already loaded"};
    addOns_.push_back(std::make_unique<AddOn>(std::move(bundle)));
    AddOn& addOn = *addOns_.back();
    addOn.resources = RSOpenResourceFile(addOn.bundle->canonicalPath().c_str());
    return &addOn;
}

std::variant<AddOn*, LoadError> Host::load(const std::string& path) {
    auto opened = open(path);
    if (auto* const addOn = std::get_if<AddOn*>(&opened)) {
        if (const Refusal problem = start(**addOn)) {
            discard(**addOn, FreeDataCall::Made);
            return LoadError{*problem};
        }
        menusChanged();
    }
    return opened;
}

Host::Refusal Host::start(AddOn& addOn) {
    const CallScope scope(*this, addOn);
    const Bundle& bundle = *addOn.bundle;
    const auto failed = [](const char* name, const Answer& answer) -> Refusal {
        if (!answer.code) return threw(name, answer.exception);
        if (*answer.code != kNoError) return std::string(name) + " returned error " + errorText(*answer.code);
        return std::nullopt;
    };
    if (const Refusal problem = failed("SetImportedFuncAddrs", bundle.handOver(functionTable())))
        return problem;
    const Answer type = bundle.checkEnvironment(applicationInfo(), addOn.info);
    if (!type.code) return threw("CheckEnvironment", type.exception);
    if (*type.code <= kAPIAddonDontRegister) {
        return "the add-on does not register in this host: CheckEnvironment returned " +
               std::to_string(*type.code);
    }
    if (const Refusal problem = failed("RegisterInterface", bundle.registerInterface())) return problem;
    addOn.initializeCalled = true;
    return failed("Initialize", bundle.initialize(&addOn));
}

std::variant<std::vector<EntryPointAnswer>, LoadError> Host::probe(const std::string& path,
                                                                   ProbeTable table) {
    auto opened = open(path);
    if (auto* const problem = std::get_if<LoadError>(&opened)) return *problem;
    AddOn& addOn = *std::get<AddOn*>(opened);
    std::vector<EntryPointAnswer> answers;
    {
        const CallScope scope(*this, addOn);
        const Bundle& bundle = *addOn.bundle;
        const auto note = [&answers](const char* name, const Answer& answer) {
            answers.push_back({name, answer.code});
        };
        if (table == ProbeTable::Empty) note("SetImportedFuncAddrs", bundle.handOver(kEmptyTable));
        note("CheckEnvironment", bundle.checkEnvironment(applicationInfo(), addOn.info));
        note("RegisterInterface", bundle.registerInterface());
        note("Initialize", bundle.initialize(&addOn));
        note("FreeData", bundle.freeData());
    }
    discard(addOn, FreeDataCall::LeftOut);
    return answers;
}

Host::Refusal Host::unload(AddOn& addOn, FreeDataCall freeData) {
    if (isBusy()) return kBusy;
    discard(addOn, freeData);
    menusChanged();
    return std::nullopt;
}

void Host::discard(AddOn& addOn, FreeDataCall freeData) {
    {
        const CallScope scope(*this, addOn);
        platform::endCallsIntoImage(addOn.bundle->image());
        if (freeData == FreeDataCall::Made && addOn.initializeCalled) {
            const Answer answer = addOn.bundle->freeData();
            if (!answer.code) tellProblem(addOn.name(), threw("FreeData", answer.exception));
        }
        platform::endCallsIntoImage(addOn.bundle->image());  // the add-on may have begun anew meanwhile
    }
    if (addOn.resources != kNoResModule) RSCloseResourceFile(addOn.resources);
    std::erase_if(addOns_, [&addOn](const auto& each) { return each.get() == &addOn; });
}

Host::Refusal Host::choose(AddOn& addOn, short menuResID, int item) {
    if (isBusy()) return kBusy;
    const Menu* const menu = addOn.menus.find(menuResID);
    if (menu == nullptr) return "there is no menu " + std::to_string(menuResID);
    if (item < 1 || static_cast<std::size_t>(item) > menu->items.size()) {
        return "the menu has no item " + std::to_string(item);
    }
    const auto handler = addOn.handlers.find(menuResID);
    if (handler == addOn.handlers.end() || handler->second == nullptr) {
        return addOn.name() + " has installed no handler for menu " + std::to_string(menuResID);
    }
    const CallScope scope(*this, addOn);
    const Answer answer = Bundle::callHandler(handler->second, {{menuResID, item}});
    if (!answer.code) {
        tellProblem(addOn.name(), threw("the menu handler", answer.exception));
    } else if (*answer.code != kNoError) {
        return "the menu handler returned error " + errorText(*answer.code);
    }
    return std::nullopt;
}

AddOn* Host::find(const std::string& name) const {
    for (const auto& each : addOns_) {
        if (each->name() == name) return each.get();
    }
    return nullptr;
}

AddOn* Host::findByAddress(const void* address) const {
    const void* const image = platform::imageOf(address);
    for (const auto& each : addOns_) {
        if (each->bundle->image() == image) return each.get();
    }
    return nullptr;
}

bool Host::isBusy() const {
    return !running_.empty() || platform::DialogControl::instance().isModal();
}

AddOn* Host::caller(APIClient client) const {
    if (client == nullptr) return running();
    for (const auto& each : addOns_) {
        if (each.get() == client) return each.get();
    }
    return nullptr;
}

void Host::menusChanged() const {
    if (menuListener_) menuListener_();
}

void Host::tellProblem(const std::string& addOn, const std::string& problem) const {
    if (problemListener_) problemListener_(addOn + ": " + problem);
}

}  // namespace host
