#pragma once

#include "host/session/Events.h"
#include "host/session/TraceRecorder.h"

namespace host {

/// What a person sees and types into. Does for the session what needs a terminal or windows.
class Face {
public:
    Face() = default;
    virtual ~Face() = default;
    Face(const Face&) = delete;
    Face& operator=(const Face&) = delete;

    virtual void show(const Event& event) = 0;
    /// Waits until the user has given a word, and carries it out, or until the main run loop had something to
    /// do. Called over and over while an add-on waits for the user.
    virtual void waitForUser() = 0;
    /// Lets time pass until the main run loop has something to do, at most so long. False when the user wants
    /// to wait no longer.
    virtual bool pause(int milliseconds) = 0;
};

/// What a person can do with the host: the words, and one stream of events that reports what comes of them.
/// Any face may drive it. A word never waits for the user itself and shows nothing: while an add-on asks him
/// something, the face is let wait, and carries out further words meanwhile. A word that is refused returns
/// why, in one line; nothing has changed then.
///
/// The session is the dialog manager's presenter while it exists.
class Session : private platform::Presenter {
public:
    using Refusal = Host::Refusal;

    /// Neither is owned.
    Session(Host& host, Face& face);
    ~Session() override;

    Host& host() { return host_; }
    /// Sends an event after all that happened before it.
    void tell(const Event& event);
    /// Sends what has changed since the last time: dialogs, menus, transfers. For a face that is about to
    /// wait.
    void settle();

    /// Everything that is open; the menus when nothing is.
    void show();
    void showMenus();
    /// An item of a menu, by the number under which the menu was shown.
    [[nodiscard]] Refusal choose(int menu, int item);
    /// What the user does in a dialog, an alert or a chooser.
    [[nodiscard]] Refusal act(const platform::UserAction& action);
    [[nodiscard]] Refusal chooseFile(const std::string& path, int filter);
    [[nodiscard]] Refusal chooseFolder(const std::string& path);
    /// Runs the run loop until no transfer is left, at most for `seconds`; no limit if negative.
    void wait(double seconds);
    void startTrace() { trace_.start(); }
    void stopTrace() { trace_.stop(); }
    /// From now on, documents and web pages are reported instead of opened.
    void recordOpened();

    void listAddOns();
    [[nodiscard]] Refusal load(const std::string& path);
    [[nodiscard]] Refusal probe(const std::string& path, ProbeTable table);
    /// An empty name means the only add-on.
    [[nodiscard]] Refusal unload(const std::string& name, FreeDataCall freeData);
    [[nodiscard]] Refusal reload(const std::string& name);

    void showProject();
    void startProject();
    [[nodiscard]] Refusal setProject(const std::string& path);
    [[nodiscard]] Refusal saveProject();
    void listEngines();
    void replaceEngines(const std::vector<std::string>& names);
    [[nodiscard]] Refusal setEngine(int number);
    void setNoEngine();

    void listLibraries();
    [[nodiscard]] Refusal addLibrary(const std::string& path);
    [[nodiscard]] Refusal removeLibrary(const std::string& path);
    [[nodiscard]] Refusal embedLibrary(const std::string& path);
    void embedNoLibrary();
    /// The parts with `text` in their names.
    void listParts(const std::string& text);
    /// The part that add-ons find by this name; an empty type means any.
    [[nodiscard]] Refusal showPart(const std::string& name, const std::string& type);
    void listCommands();

    /// Whatever an add-on asks from now on is cancelled.
    void quit() { quitting_ = true; }
    bool isQuitting() const { return quitting_; }
    /// Unloads the add-ons, which closes what is open.
    void end();

private:
    void dialogShown(const platform::DialogState& dialog) override;
    void dialogChanged(const platform::DialogState& dialog) override;
    void dialogClosed(short dialogID, short item) override;
    void alertShown(const platform::AlertState& alert) override;
    void alertClosed(short button) override;
    void fileChooserShown(const platform::FileChooserState& chooser) override;
    void fileChooserClosed() override;
    platform::UserAction waitForAction() override;
    void refused(const std::string& reason) override;

    std::vector<std::pair<AddOn*, const Menu*>> menus() const;
    void settleDialogs();
    void settleMenus();
    void diagnose(const std::string& text);
    /// The add-on of this name, or the only one without a name; else null and why.
    AddOn* findAddOn(const std::string& name, Refusal& refusal) const;
    void showEngine(int number);
    void showPart(const LoadedPart& part);
    Refusal librariesChanged(GSErrCode result, const std::string& path);

    Host& host_;
    Face& face_;
    TraceRecorder trace_;
    bool quitting_ = false;
    bool menusChanged_ = false;
    bool transfersShown_ = false;
    Refusal* refusal_ = nullptr;  ///< of the action that is being carried out
    std::vector<std::pair<short, event::DialogShown::Change>> changedDialogs_;
    std::vector<event::MenuShown> shownMenus_;
    std::string diagnosticLine_;
};

}  // namespace host
