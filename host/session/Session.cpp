#include "host/session/Session.h"

#include "platform/host/Diagnostics.h"
#include "platform/host/DialogControl.h"
#include "platform/host/Failures.h"
#include "platform/host/HttpOptions.h"

#include <algorithm>

namespace host {

using platform::DialogControl;
using platform::UserAction;
using Change = event::DialogShown::Change;

Session::Session(Host& host, Face& face)
    : host_(host), face_(face), trace_(host, [this](const event::Call& call) { face_.show(call); }) {
    host_.setMenuListener([this] { menusChanged_ = true; });
    const auto tellProblem = [this](const std::string& problem) { tell(event::Problem{problem}); };
    host_.setProblemListener(tellProblem);
    platform::setReplacementFailureHandler([tellProblem](const platform::PathFailure& failure) {
        tellProblem(failure.path + ": it could not be written: " + failure.reason);
    });
    platform::setDiagnosticPrinter([this](const std::string& text) { diagnose(text); });
    platform::setResourceProblemSink(
        [tellProblem](const platform::ResourceProblem& problem) { tellProblem(describe(problem)); });
    DialogControl::instance().setPresenter(this);
}

Session::~Session() {
    platform::setLaunchHandler(nullptr);
    DialogControl::instance().setPresenter(nullptr);
    platform::setResourceProblemSink(nullptr);
    platform::setDiagnosticPrinter(nullptr);
    platform::setReplacementFailureHandler(nullptr);
    host_.setProblemListener(nullptr);
    host_.setMenuListener(nullptr);
}

void Session::end() {
    quit();
    settle();
    while (!host_.addOns().empty()) {
        if (const Refusal refusal = host_.unload(*host_.addOns().back())) {
            return tell(event::Refused{*refusal});
        }
    }
    if (!diagnosticLine_.empty()) diagnose("\n");
}

void Session::tell(const Event& event) {
    trace_.flush();
    settleDialogs();
    face_.show(event);
}

void Session::settle() {
    trace_.flush();
    settleDialogs();
    if (menusChanged_) settleMenus();
    const bool underWay = platform::transfersUnderWay() != 0;
    if (underWay == transfersShown_) return;
    transfersShown_ = underWay;
    tell(event::Transfers{underWay});
}

void Session::settleDialogs() {
    const auto changed = std::exchange(changedDialogs_, {});
    for (const auto& [id, change] : changed) {
        const platform::DialogState* const dialog = DialogControl::instance().find(id);
        if (dialog != nullptr) face_.show(event::DialogShown{change, *dialog});
    }
}

void Session::settleMenus() {
    menusChanged_ = false;
    std::vector<event::MenuShown> current;
    for (const auto& [addOn, menu] : menus()) {
        const event::MenuShown& now = current.emplace_back(
            event::MenuShown{static_cast<int>(current.size() + 1), addOn->name(), *menu});
        const bool known = current.size() <= shownMenus_.size();
        if (!known || shownMenus_[current.size() - 1] != now) tell(now);
    }
    shownMenus_ = std::move(current);
}

void Session::diagnose(const std::string& text) {
    diagnosticLine_ += text;
    std::size_t end = 0;
    while ((end = diagnosticLine_.find('\n')) != std::string::npos) {
        tell(event::Diagnostic{diagnosticLine_.substr(0, end)});
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
    tell(event::DialogClosed{dialogID, item});
}

void Session::alertShown(const platform::AlertState& alert) {
    tell(event::AlertShown{alert});
}

void Session::alertClosed(short button) {
    tell(event::AlertAnswered{button});
}

void Session::fileChooserShown(const platform::FileChooserState& chooser) {
    tell(event::ChooserShown{chooser});
}

void Session::fileChooserClosed() {
    tell(event::ChooserClosed{});
}

void Session::refused(const std::string& reason) {
    if (refusal_ != nullptr) *refusal_ = reason;
}

UserAction Session::waitForAction() {
    if (!quitting_) {
        settle();
        face_.waitForUser();
    }
    return quitting_ ? UserAction::abandon() : UserAction{};
}

}  // namespace host
