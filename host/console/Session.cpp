#include "host/console/Session.h"

#include "platform/host/Diagnostics.h"
#include "platform/host/DialogControl.h"
#include "platform/host/HttpOptions.h"
#include "platform/host/Resources.h"
#include "platform/host/RunLoop.h"

#include <algorithm>
#include <chrono>

namespace host {

using platform::DialogControl;
using platform::UserAction;
using Change = event::DialogShown::Change;

Session::Session(Host& host, LineSource& lines, EventPrinter& printer)
    : host_(host), lines_(lines), printer_(printer), trace_(host, [this](const event::Call& call) {
          lines_.clearPrompt();
          printer_.print(call);
      }) {
    addGeneralCommands(commands_);
    addMenuCommands(commands_);
    addDialogCommands(commands_);
    addAddOnCommands(commands_);
    addProjectCommands(commands_);
    addLibraryCommands(commands_);
    host_.setMenuListener([this] { menusChanged_ = true; });
    platform::setDiagnosticPrinter([this](const std::string& text) { diagnose(text); });
    platform::setResourceProblemSink(
        [this](const platform::ResourceProblem& problem) { print(event::Problem{describe(problem)}); });
    DialogControl::instance().setPresenter(this);
}

Session::~Session() {
    DialogControl::instance().setPresenter(nullptr);
    platform::setResourceProblemSink(nullptr);
    platform::setDiagnosticPrinter(nullptr);
    host_.setMenuListener(nullptr);
}

Host::Refusal Session::load(const std::string& path) {
    const auto loaded = host_.load(path);
    if (const auto* const error = std::get_if<LoadError>(&loaded)) return error->reason;
    const AddOn& addOn = *std::get<AddOn*>(loaded);
    print(event::Loaded{addOn.name(), UniStringToUtf8(addOn.info.name),
                        UniStringToUtf8(addOn.info.description)});
    flush();
    return std::nullopt;
}

void Session::run() {
    while (!quitting_) {
        DialogControl::instance().perform(nextAction());
    }
    flush();
    for (const short dialog : DialogControl::instance().openDialogs()) {
        const platform::DialogState* const state = DialogControl::instance().find(dialog);
        if (state != nullptr && state->visible) DialogControl::instance().perform(UserAction::close(dialog));
    }
    while (!host_.addOns().empty()) {
        if (const Host::Refusal refusal = host_.unload(*host_.addOns().back())) return refuse(*refusal);
    }
}

UserAction Session::nextAction() {
    flush();
    std::string line;
    switch (lines_.next(line)) {
        case LineSource::Result::Dispatched:
            return {};
        case LineSource::Result::End:
            quit();
            return {};
        case LineSource::Result::Line:
            break;
    }
    if (!lines_.isInteractive()) print(event::Command{line});
    return commands_.run(*this, line);
}

UserAction Session::waitForAction() {
    const UserAction action = quitting_ ? UserAction{} : nextAction();
    return quitting_ ? UserAction::abandon() : action;
}

bool Session::wait(double seconds) {
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    platform::RunLoop& loop = platform::RunLoop::main();
    constexpr int kSliceMs = 50;
    while (true) {
        const int calls = loop.dispatch(0);
        if (calls == 0 && platform::transfersUnderWay() == 0) return true;
        const double waited = std::chrono::duration<double>(Clock::now() - start).count();
        if ((seconds >= 0 && waited >= seconds) || lines_.isInterrupted()) return false;
        if (calls == 0) loop.dispatch(kSliceMs);
    }
}

void Session::print(const Event& event) {
    trace_.flush();
    flushDialogs();
    lines_.clearPrompt();
    printer_.print(event);
}

std::vector<Session::NumberedMenu> Session::menus() const {
    std::vector<NumberedMenu> all;
    for (const auto& addOn : host_.addOns()) {
        for (const Menu& menu : addOn->menus.all())
            all.push_back({addOn.get(), &menu});
    }
    return all;
}

void Session::showMenus() {
    forgetMenus();
    flushMenus();
    if (shownMenus_.empty()) print(event::Note{"no add-on has a menu"});
}

void Session::showAll() {
    const DialogControl& control = DialogControl::instance();
    bool anything = control.isModal();
    for (const short id : control.openDialogs()) {
        const platform::DialogState* const dialog = control.find(id);
        if (dialog == nullptr || !dialog->visible) continue;
        anything = true;
        print(event::DialogShown{Change::Listed, *dialog});
    }
    if (control.activeAlert() != nullptr) print(event::AlertShown{*control.activeAlert()});
    if (control.activeFileChooser() != nullptr) print(event::ChooserShown{*control.activeFileChooser()});
    if (!anything) showMenus();
}

void Session::flush() {
    trace_.flush();
    flushDialogs();
    if (menusChanged_) flushMenus();
    flushTransfers();
}

void Session::flushDialogs() {
    const auto changed = std::move(changedDialogs_);
    changedDialogs_.clear();
    for (const auto& [id, change] : changed) {
        const platform::DialogState* const dialog = DialogControl::instance().find(id);
        if (dialog == nullptr) continue;
        lines_.clearPrompt();
        printer_.print(event::DialogShown{change, *dialog});
    }
}

void Session::flushMenus() {
    menusChanged_ = false;
    std::map<int, std::pair<std::string, Menu>> current;
    int number = 0;
    for (const NumberedMenu& each : menus()) {
        auto& entry = current[++number];
        entry = {each.addOn->name(), *each.menu};
        const auto shown = shownMenus_.find(number);
        const bool same = shown != shownMenus_.end() && shown->second.first == entry.first &&
                          shown->second.second.resID == each.menu->resID &&
                          shown->second.second.items == each.menu->items;
        if (!same) print(event::MenuShown{number, entry.first, entry.second});
    }
    shownMenus_ = std::move(current);
}

void Session::flushTransfers() {
    const bool underWay = platform::transfersUnderWay() != 0;
    if (underWay == transfersShown_) return;
    transfersShown_ = underWay;
    print(event::Transfers{underWay});
}

void Session::diagnose(const std::string& text) {
    diagnosticLine_ += text;
    std::size_t end = 0;
    while ((end = diagnosticLine_.find('\n')) != std::string::npos) {
        print(event::Diagnostic{diagnosticLine_.substr(0, end)});
        diagnosticLine_.erase(0, end + 1);
    }
}

void Session::dialogShown(const platform::DialogState& dialog) {
    std::erase_if(changedDialogs_, [&dialog](const auto& each) { return each.first == dialog.id; });
    changedDialogs_.emplace_back(dialog.id, Change::Shown);
}

void Session::dialogChanged(const platform::DialogState& dialog) {
    for (const auto& each : changedDialogs_) {
        if (each.first == dialog.id) return;
    }
    changedDialogs_.emplace_back(dialog.id, Change::Changed);
}

void Session::dialogClosed(short dialogID, short item) {
    std::erase_if(changedDialogs_, [dialogID](const auto& each) { return each.first == dialogID; });
    print(event::DialogClosed{dialogID, item});
}

void Session::alertShown(const platform::AlertState& alert) {
    print(event::AlertShown{alert});
}

void Session::alertClosed(short button) {
    print(event::AlertAnswered{button});
}

void Session::fileChooserShown(const platform::FileChooserState& chooser) {
    print(event::ChooserShown{chooser});
}

void Session::fileChooserClosed() {
    print(event::ChooserClosed{});
}

void Session::refused(const std::string& reason) {
    print(event::Refused{reason});
}

}  // namespace host
