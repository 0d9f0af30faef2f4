#pragma once

#include "host/console/CommandSet.h"
#include "host/console/Events.h"
#include "host/console/LineSource.h"
#include "host/console/TraceRecorder.h"

#include <map>

namespace host {

/// A console session: reads commands, carries them out, shows what happens. It is the dialog manager's
/// presenter while it exists.
class Session : public platform::Presenter {
public:
    /// None of the three is owned.
    Session(Host& host, LineSource& lines, EventPrinter& printer);
    ~Session() override;

    /// Loads a bundle and shows what comes of it. Returns why it failed, if it did.
    Host::Refusal load(const std::string& path);
    /// Reads and carries out commands until the user quits or the input ends; then closes what is open.
    void run();

    Host& host() { return host_; }
    const CommandSet& commands() const { return commands_; }
    CommandSet& commands() { return commands_; }
    TraceRecorder& trace() { return trace_; }

    void print(const Event& event);
    void refuse(const std::string& reason) { print(event::Refused{reason}); }
    void quit() { quitting_ = true; }
    /// Lets the run loop go on until no transfer is left, at most `seconds` (no limit when negative). Returns
    /// whether that is so.
    bool wait(double seconds);

    /// A menu by the number under which the user sees it (from 1); no add-on when there is none.
    struct NumberedMenu {
        AddOn* addOn = nullptr;
        const Menu* menu = nullptr;
    };
    std::vector<NumberedMenu> menus() const;
    void showMenus();
    /// Shows everything that is open, the menus when nothing is.
    void showAll();
    /// Forgets what was shown of the menus, so that the next flush shows those that are there.
    void forgetMenus() { shownMenus_.clear(); }

    void dialogShown(const platform::DialogState& dialog) override;
    void dialogChanged(const platform::DialogState& dialog) override;
    void dialogClosed(short dialogID, short item) override;
    void alertShown(const platform::AlertState& alert) override;
    void alertClosed(short button) override;
    void fileChooserShown(const platform::FileChooserState& chooser) override;
    void fileChooserClosed() override;
    platform::UserAction waitForAction() override;
    void refused(const std::string& reason) override;

private:
    /// Shows what has changed since the last time: dialogs, menus, transfers.
    void flush();
    void flushDialogs();
    void flushMenus();
    void flushTransfers();
    void diagnose(const std::string& text);
    /// Reads a line and carries it out. None when there is nothing for the dialog manager to do.
    platform::UserAction nextAction();

    Host& host_;
    LineSource& lines_;
    EventPrinter& printer_;
    CommandSet commands_;
    TraceRecorder trace_;
    bool quitting_ = false;
    bool menusChanged_ = false;
    bool transfersShown_ = false;
    std::vector<std::pair<short, event::DialogShown::Change>> changedDialogs_;
    std::map<int, std::pair<std::string, Menu>> shownMenus_;
    std::string diagnosticLine_;
};

}  // namespace host
