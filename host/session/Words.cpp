// The words: what a person can do.

#include "host/ErrorCodes.h"
#include "host/Printable.h"
#include "host/session/Session.h"
#include "platform/host/DialogControl.h"
#include "platform/host/HttpOptions.h"
#include "platform/host/RunLoop.h"

#include <chrono>

namespace host {

using platform::DialogControl;
using platform::UserAction;
using Refusal = Session::Refusal;

void Session::show() {
    const DialogControl& control = DialogControl::instance();
    bool anything = control.isModal();
    for (const short id : control.openDialogs()) {
        const platform::DialogState* const dialog = control.find(id);
        if (dialog == nullptr || !dialog->visible) continue;
        anything = true;
        tell(event::DialogShown{event::DialogShown::Change::Listed, *dialog});
    }
    if (control.activeAlert() != nullptr) tell(event::AlertShown{*control.activeAlert()});
    if (control.activeFileChooser() != nullptr) tell(event::ChooserShown{*control.activeFileChooser()});
    if (!anything) showMenus();
}

// ---- Menus and dialogs ----------------------------------------------------------------------------------

std::vector<std::pair<AddOn*, const Menu*>> Session::menus() const {
    std::vector<std::pair<AddOn*, const Menu*>> all;
    for (const auto& addOn : host_.addOns()) {
        for (const Menu& menu : addOn->menus.all())
            all.emplace_back(addOn.get(), &menu);
    }
    return all;
}

void Session::showMenus() {
    shownMenus_.clear();
    settleMenus();
    if (shownMenus_.empty()) tell(event::Note{"no add-on has a menu"});
}

Refusal Session::choose(int menu, int item) {
    const auto all = menus();
    if (menu < 1 || static_cast<std::size_t>(menu) > all.size()) {
        return "there is no menu " + std::to_string(menu);
    }
    const auto& [addOn, chosen] = all[static_cast<std::size_t>(menu - 1)];
    return host_.choose(*addOn, chosen->resID, item);
}

Refusal Session::act(const UserAction& action) {
    Refusal refusal;
    Refusal* const outer = std::exchange(refusal_, &refusal);
    DialogControl::instance().perform(action);
    refusal_ = outer;
    return refusal;
}

Refusal Session::chooseFile(const std::string& path, int filter) {
    const auto* const chooser = DialogControl::instance().activeFileChooser();
    if (chooser != nullptr && chooser->kind == platform::FileChooserState::Kind::Folder) {
        return "the chooser expects a folder, not a file";
    }
    return act(UserAction::chooseFile(path, filter - 1));
}

Refusal Session::chooseFolder(const std::string& path) {
    const auto* const chooser = DialogControl::instance().activeFileChooser();
    if (chooser != nullptr && chooser->kind != platform::FileChooserState::Kind::Folder) {
        return "the chooser expects a file, not a folder";
    }
    return act(UserAction::chooseFile(path));
}

// ---- The session ----------------------------------------------------------------------------------------

void Session::wait(double seconds) {
    using Clock = std::chrono::steady_clock;
    constexpr int kSliceMs = 50;
    const auto start = Clock::now();
    while (true) {
        const int calls = platform::RunLoop::main().dispatch(0);
        if (calls == 0 && platform::transfersUnderWay() == 0) return;
        const double waited = std::chrono::duration<double>(Clock::now() - start).count();
        if ((seconds >= 0 && waited >= seconds) || !face_.pause(calls == 0 ? kSliceMs : 0)) break;
    }
    tell(event::Note{"the transfer has not finished"});
}

void Session::recordOpened() {
    platform::setLaunchHandler([this](const platform::LaunchRequest& request) {
        tell(event::Opened{request});
        return 0;
    });
}

// ---- Add-ons --------------------------------------------------------------------------------------------

namespace {

std::string loadFailure(const std::string& path, const LoadError& error) {
    return "cannot load " + inQuotes(path) + ": " + error.reason;
}

}  // namespace

void Session::listAddOns() {
    for (const auto& addOn : host_.addOns()) {
        tell(event::AddOnListed{
            addOn->name(), UniStringToUtf8(addOn->info.name), UniStringToUtf8(addOn->info.description),
            static_cast<int>(addOn->menus.all().size()), static_cast<int>(addOn->modelessWindows.size()),
            addOn->keepInMemory, addOn->builtInLibrary});
    }
    if (host_.addOns().empty()) tell(event::Note{"no add-on is loaded"});
}

Refusal Session::load(const std::string& path) {
    const auto loaded = host_.load(path);
    if (const auto* const error = std::get_if<LoadError>(&loaded)) return loadFailure(path, *error);
    const AddOn& addOn = *std::get<AddOn*>(loaded);
    tell(event::Loaded{addOn.name(), UniStringToUtf8(addOn.info.name),
                       UniStringToUtf8(addOn.info.description)});
    settle();
    return std::nullopt;
}

Refusal Session::probe(const std::string& path, ProbeTable table) {
    const auto answers = host_.probe(path, table);
    if (const auto* const error = std::get_if<LoadError>(&answers)) return loadFailure(path, *error);
    tell(event::Note{table == ProbeTable::None ? "called without a function table:"
                                               : "called with an empty function table:"});
    for (const EntryPointAnswer& answer : std::get<std::vector<EntryPointAnswer>>(answers))
        tell(event::EntryPointAnswered{answer.entryPoint, answer.result});
    return std::nullopt;
}

AddOn* Session::findAddOn(const std::string& name, Refusal& refusal) const {
    const auto& addOns = host_.addOns();
    if (name.empty() && addOns.size() == 1) return addOns.front().get();
    AddOn* const found = host_.find(name);
    if (found == nullptr) {
        refusal = !name.empty()    ? "no add-on " + inQuotes(name) + " is loaded"
                  : addOns.empty() ? "no add-on is loaded"
                                   : "several add-ons are loaded; name one";
    }
    return found;
}

Refusal Session::unload(const std::string& name, FreeDataCall freeData) {
    Refusal refusal;
    AddOn* const addOn = findAddOn(name, refusal);
    if (addOn == nullptr) return refusal;
    const std::string unloaded = addOn->name();
    refusal = host_.unload(*addOn, freeData);
    if (!refusal) tell(event::Unloaded{unloaded});
    return refusal;
}

Refusal Session::reload(const std::string& name) {
    Refusal refusal;
    const AddOn* const addOn = findAddOn(name, refusal);
    if (addOn == nullptr) return refusal;
    const std::string path = addOn->bundle->path();
    refusal = unload(addOn->name(), FreeDataCall::Made);
    if (refusal) return refusal;
    shownMenus_.clear();
    return load(path);
}

// ---- The project and the rendering engines --------------------------------------------------------------

void Session::showProject() {
    tell(event::ProjectShown{host_.project().untitled(), host_.project().path()});
}

void Session::startProject() {
    host_.project().startNew();
    showProject();
}

Refusal Session::setProject(const std::string& path) {
    if (!host_.project().setFile(path)) return "the path of a project file is missing or not valid";
    showProject();
    return std::nullopt;
}

Refusal Session::saveProject() {
    return setProject(host_.project().path());
}

void Session::showEngine(int number) {
    const RenderingEngines& engines = host_.renderingEngines();
    const std::string& name = engines.all()[static_cast<std::size_t>(number - 1)].menuName;
    tell(event::EngineListed{number, name, engines.current() == number});
}

void Session::listEngines() {
    for (int number = 1; number <= host_.renderingEngines().count(); ++number)
        showEngine(number);
}

void Session::replaceEngines(const std::vector<std::string>& names) {
    host_.renderingEngines().replace(names);
    listEngines();
}

Refusal Session::setEngine(int number) {
    if (!host_.renderingEngines().setCurrent(number)) return "there is no rendering engine with this number";
    showEngine(number);
    return std::nullopt;
}

void Session::setNoEngine() {
    host_.renderingEngines().clearCurrent();
    tell(event::Note{"no rendering engine is current"});
}

// ---- Libraries ------------------------------------------------------------------------------------------

void Session::listLibraries() {
    const Libraries& libraries = host_.libraries();
    int position = 0;
    for (const LoadedLibrary& library : libraries.all()) {
        tell(event::LibraryListed{library.path, static_cast<int>(library.parts.size()),
                                  position++ == libraries.embedded(), library.problems});
    }
    if (libraries.all().empty()) tell(event::Note{"no library is loaded"});
}

Refusal Session::librariesChanged(GSErrCode result, const std::string& path) {
    if (result == kErrNotFound) return "the library " + inQuotes(path) + " is not loaded";
    if (result != kNoError) return "there is no folder " + inQuotes(path) + " that can be read";
    listLibraries();
    return std::nullopt;
}

Refusal Session::addLibrary(const std::string& path) {
    return librariesChanged(host_.libraries().add(IO::Location::FromPosixPath(path)), path);
}

Refusal Session::removeLibrary(const std::string& path) {
    return librariesChanged(host_.libraries().remove(IO::Location::FromPosixPath(path)), path);
}

Refusal Session::embedLibrary(const std::string& path) {
    return librariesChanged(host_.libraries().setEmbedded(IO::Location::FromPosixPath(path)), path);
}

void Session::embedNoLibrary() {
    host_.libraries().setNoEmbedded();
    listLibraries();
}

void Session::showPart(const LoadedPart& part) {
    tell(event::PartListed{part.index, part.file.name, partTypeName(part.file.type), part.file.path,
                           part.isMissing()});
}

void Session::listParts(const std::string& text) {
    bool any = false;
    for (const LoadedLibrary& library : host_.libraries().all()) {
        for (const LoadedPart& part : library.parts) {
            if (part.file.name.find(text) == std::string::npos) continue;
            showPart(part);
            any = true;
        }
    }
    if (!any) tell(event::Note{"no part"});
}

Refusal Session::showPart(const std::string& name, const std::string& type) {
    const auto wanted = type.empty() ? APILib_Any : partTypeOfName(type);
    if (!wanted) return "there is no type " + inQuotes(type);
    const LoadedPart* const found = host_.libraries().find(name, *wanted);
    if (found != nullptr) {
        showPart(*found);
    } else {
        tell(event::Note{"no part"});
    }
    return std::nullopt;
}

void Session::listCommands() {
    bool any = false;
    for (const auto& addOn : host_.addOns()) {
        for (const PublishedCommand& command : addOn->commands) {
            tell(event::CommandListed{addOn->name(), command});
            any = true;
        }
    }
    if (!any) tell(event::Note{"no module command is published"});
}

}  // namespace host
