#pragma once

#include "platform/host/DialogControl.h"

#include <gtest/gtest.h>
#include <deque>
#include <functional>
#include <string>
#include <vector>

/// A presenter that a test drives: a queue of steps for whatever waits for the user, and a log of what a
/// person would have seen. It is the presenter from its construction to its end. A wait for which no step is
/// left is abandoned, as when a user's input ends, and fails the test.
class ScriptedPresenter : public platform::Presenter {
public:
    ScriptedPresenter() { platform::DialogControl::instance().setPresenter(this); }
    ~ScriptedPresenter() override {
        EXPECT_TRUE(steps_.empty()) << steps_.size() << " steps of the script were not reached";
        platform::DialogControl::instance().setPresenter(nullptr);
    }

    /// The user's next action.
    ScriptedPresenter& then(platform::UserAction action) {
        return thenDo([action] { return action; });
    }
    /// Looks at the state of things at this point, or acts from outside.
    ScriptedPresenter& thenLook(std::function<void()> look) {
        return thenDo([look] {
            look();
            return platform::UserAction{};
        });
    }

    /// What was seen, a line each: "shown 32734", "closed 32734 by 1", "alert -1 [|text|] [OK||]",
    /// "alert answered 1", "chooser save [title] [folder] [name]", "chooser closed", "refused: REASON".
    std::vector<std::string> log;
    /// Number of single changes of dialogs on the screen.
    int changes = 0;
    std::vector<platform::AlertState> alerts;
    std::vector<platform::FileChooserState> choosers;

    void dialogShown(const platform::DialogState& dialog) override {
        log.push_back("shown " + std::to_string(dialog.id));
    }
    void dialogChanged(const platform::DialogState&) override { ++changes; }
    void dialogClosed(short dialogID, short item) override {
        log.push_back("closed " + std::to_string(dialogID) + " by " + std::to_string(item));
    }
    void alertShown(const platform::AlertState& alert) override {
        alerts.push_back(alert);
        log.push_back("alert " + std::to_string(alert.type) + " [" + joined(alert.texts) + "] [" +
                      joined(alert.buttons) + "]");
    }
    void alertClosed(short button) override { log.push_back("alert answered " + std::to_string(button)); }
    void fileChooserShown(const platform::FileChooserState& chooser) override {
        using Kind = platform::FileChooserState::Kind;
        choosers.push_back(chooser);
        const char* const kind = chooser.kind == Kind::Folder     ? "folder"
                                 : chooser.kind == Kind::SaveFile ? "save"
                                                                  : "open";
        log.push_back(std::string("chooser ") + kind + " [" + chooser.title + "] [" + chooser.folder + "] [" +
                      chooser.name + "]");
    }
    void fileChooserClosed() override { log.push_back("chooser closed"); }
    void refused(const std::string& reason) override { log.push_back("refused: " + reason); }

    platform::UserAction waitForAction() override {
        if (steps_.empty()) {
            ADD_FAILURE() << "something waits for the user and the script has no step left";
            return platform::UserAction::abandon();
        }
        const auto act = std::move(steps_.front());
        steps_.pop_front();
        return act();
    }

private:
    ScriptedPresenter& thenDo(std::function<platform::UserAction()> act) {
        steps_.push_back(std::move(act));
        return *this;
    }
    static std::string joined(const GS::UniString (&texts)[3]) {
        return UniStringToUtf8(texts[0]) + '|' + UniStringToUtf8(texts[1]) + '|' + UniStringToUtf8(texts[2]);
    }

    std::deque<std::function<platform::UserAction()>> steps_;
};
