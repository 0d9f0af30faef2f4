#include "platform/DialogManager.h"

#include "platform/host/Failures.h"
#include "tests/support/ScriptedPresenter.h"

#include <gmock/gmock.h>
#include <stdexcept>

namespace {

using platform::DialogControl;
using platform::DialogItemKind;
using platform::DialogState;
using platform::UserAction;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr short kDialog = 32700;

/// "init 32700 0, click 32700 5": message, dialog and item of each call of the callback.
std::string sMessages;
/// What the callback answers; the default is to close by items 1 and 2.
std::function<short(short message, short dialog, short item)> sAnswer;

short noteMessage(short message, short dialog, short item, DGUserData, DGMessageData data) {
    EXPECT_EQ(data, 0);
    const char* const names[] = {"?", "init", "?", "close", "click", "?", "change"};
    sMessages += (sMessages.empty() ? "" : ", ") + std::string(names[message]) + ' ' +
                 std::to_string(dialog) + ' ' + std::to_string(item);
    if (sAnswer) return sAnswer(message, dialog, item);
    const bool closes = message == DG_MSG_CLICK && (item == 1 || item == 2);
    return closes || message == DG_MSG_CLOSE ? item : short{0};
}

GS::UniString uni(const char* text) {
    return GS::UniStringFromUtf8(text);
}

class DialogManagerTest : public testing::Test {
protected:
    DialogManagerTest() {
        sMessages.clear();
        sAnswer = nullptr;
        layout_.resID = kDialog;
        layout_.width = 300;
        layout_.height = 100;
        layout_.items = {item(1), item(2), item(3, DialogItemKind::List), item(4, DialogItemKind::Text),
                         item(5)};
        control().setLayouts(platform::LayoutSource{
            [this](RSResModule, short resID) { return resID == kDialog ? &layout_ : nullptr; },
            [](RSResModule, short, short number) { return "resource " + std::to_string(number); }});
    }
    ~DialogManagerTest() override {
        control().closeDialogsOfImage(reinterpret_cast<const void*>(&noteMessage));
        control().setLayouts(std::nullopt);
    }

    static DialogControl& control() { return DialogControl::instance(); }
    static platform::LayoutItem item(short number, DialogItemKind kind = DialogItemKind::Button) {
        platform::LayoutItem item;
        item.number = number;
        item.kind = kind;
        item.rect = {short(10 * number), 0, 50, 20};
        return item;
    }
    static short runModal(short resID = kDialog) { return DGModalDialog(1, resID, 1, noteMessage, 0); }
    static short openModeless(bool show = true) {
        const short id = DGModelessInit(1, kDialog, 1, noteMessage, 0);
        if (show) DGShowModelessDialog(id, 0);
        return id;
    }

    platform::DialogLayout layout_;
};

TEST_F(DialogManagerTest, AModalDialogReturnsWhatItsCallbackAnswersToTheCloseThatItsAnswerToAClickAskedFor) {
    ScriptedPresenter user;
    user.then(UserAction::click(kDialog, 5)).then(UserAction::click(0, 1));
    sAnswer = [](short message, short, short item) -> short {
        if (message == DG_MSG_CLOSE) return 77;
        return message == DG_MSG_CLICK && item == 1 ? short{9} : short{0};
    };
    EXPECT_EQ(runModal(), 77);
    EXPECT_EQ(sMessages, "init 32700 0, click 32700 5, click 32700 1, close 32700 9");
    EXPECT_THAT(user.log, ElementsAre("shown 32700", "closed 32700 by 9"));
    EXPECT_EQ(control().find(kDialog), nullptr);
}

TEST_F(DialogManagerTest, NoDialogOpensWithoutALayoutACallbackAPresenterOrUnderAnIDInUse) {
    EXPECT_EQ(runModal(), 0) << "nobody looks";
    EXPECT_EQ(DGAlert(-1, uni(""), uni(""), uni(""), uni("OK")), 1);
    ScriptedPresenter user;
    EXPECT_EQ(runModal(123), 0);
    EXPECT_EQ(DGModalDialog(1, kDialog, 1, nullptr, 0), 0);
    EXPECT_EQ(DGModelessInit(1, 123, 1, noteMessage, 0), 0);
    EXPECT_EQ(sMessages, "");
    user.thenLook([] { EXPECT_EQ(runModal(), 0); }).then(UserAction::click(kDialog, 1));
    EXPECT_EQ(runModal(), 1);
    EXPECT_EQ(sMessages, "init 32700 0, click 32700 1, close 32700 1");
}

TEST_F(DialogManagerTest, TheCloseBoxClicksTheCancelItemOrElseTheOkItemAndAbandoningClosesInAnyCase) {
    const struct {
        std::vector<short> items;
        UserAction action;
        bool callbackCloses;
        const char* messages;
    } cases[] = {
        {{1, 2}, UserAction::close(), true, "click 32700 2, close 32700 2"},
        {{1}, UserAction::close(kDialog), true, "click 32700 1, close 32700 1"},
        {{7}, UserAction::close(), true, "close 32700 2"},
        {{1, 2}, UserAction::abandon(), false, "click 32700 2, close 32700 2"},
        {{7}, UserAction::abandon(), false, "close 32700 2"},
    };
    for (const auto& each : cases) {
        ScriptedPresenter user;
        layout_.items.clear();
        for (const short number : each.items)
            layout_.items.push_back(item(number));
        user.thenLook([] { DGHideItem(kDialog, 2); }).then(each.action);  // also when it is hidden
        sAnswer = [&each](short, short, short item) { return each.callbackCloses ? item : short{0}; };
        sMessages.clear();
        EXPECT_EQ(runModal() != 0, each.callbackCloses);
        EXPECT_EQ(sMessages, std::string("init 32700 0, ") + each.messages);
    }
}

TEST_F(DialogManagerTest, ActionsThatAreNotPossibleAreRefusedWithOneLineAndReachNoCallback) {
    const short modeless = openModeless();
    const std::string id = std::to_string(modeless);
    const std::pair<UserAction, std::string> cases[] = {
        {UserAction::click(kDialog, 5), "dialog 32700: item 5 is hidden"},
        {UserAction::close(), "dialog 32700: item 2 is disabled"},
        {UserAction::selectRow(0, 1, 1), "dialog 32700: item 1 is not a list"},
        {UserAction::selectRow(0, 3, 0), "dialog 32700: list 3 has no row 0"},
        {UserAction::click(8, 1), "dialog 8 is not open"},
        {UserAction::click(modeless, 5), "dialog " + id + " waits until dialog 32700 is closed"},
    };
    ScriptedPresenter user;
    user.thenLook([] {
        DGHideItem(kDialog, 5);
        DGDisableItem(kDialog, 2);
        sMessages.clear();
    });
    std::vector<std::string> seen = {"shown 32700"};
    for (const auto& [action, refusal] : cases) {
        user.then(action);
        seen.push_back("refused: " + refusal);
    }
    user.then(UserAction::abandon());
    seen.push_back("closed 32700 by 2");
    runModal();
    EXPECT_EQ(sMessages, "close 32700 2") << "not even a click on item 2";
    EXPECT_EQ(user.log, seen);
    control().perform(UserAction::click(0, 5));
    EXPECT_EQ(sMessages, "close 32700 2, click " + id + " 5") << "it waits no longer";
}

TEST_F(DialogManagerTest, ModelessDialogsHaveNumbersOfTheirOwnAndAreInvisibleUntilShown) {
    ScriptedPresenter user;
    const short first = openModeless(false);
    const short second = openModeless(false);
    const std::string id = std::to_string(first);
    EXPECT_GE(first, 1);
    control().perform(UserAction::click(first, 5));
    for (const short each : {first, second, first})
        EXPECT_TRUE(DGShowModelessDialog(each, 0));
    EXPECT_THAT(control().openDialogs(), ElementsAre(first, second));
    DGModelessClose(first);
    EXPECT_FALSE(DGShowModelessDialog(first, 0));
    EXPECT_THAT(user.log,
                ElementsAre("refused: dialog " + id + " is not open", "shown " + id,
                            "shown " + std::to_string(second), "shown " + id, "closed " + id + " by 0"));
}

TEST_F(DialogManagerTest, AModelessDialogIsToldOnceThatItClosesHoweverItDoes) {
    ScriptedPresenter user;
    std::string id = std::to_string(openModeless());
    control().perform(UserAction::close(0));
    EXPECT_EQ(sMessages, "init " + id + " 0, close " + id + " 0");

    id = std::to_string(openModeless());
    sMessages.clear();
    sAnswer = [](short, short dialog, short item) {
        DGModelessClose(dialog);
        return item;
    };
    control().perform(UserAction::click(0, 5));
    EXPECT_EQ(sMessages, "click " + id + " 5, close " + id + " 0");
    EXPECT_EQ(openModeless(false), 0) << "closed while it was initialised";
    EXPECT_THAT(control().openDialogs(), IsEmpty());
}

TEST_F(DialogManagerTest, AnAlertInACallbackLetsNothingElseBeUsedUntilItIsAnswered) {
    ScriptedPresenter user;
    std::vector<short> answers;
    sAnswer = [&answers](short message, short, short item) -> short {
        if (message == DG_MSG_CLICK && item == 5) {
            answers.push_back(DGAlert(-1, uni(""), uni("Save?"), uni(""), uni("Yes"), uni("No"), uni("")));
            answers.push_back(DGAlert(-1, uni(""), uni(""), uni(""), uni("OK")));
        }
        return message == DG_MSG_CLICK && item == 1 ? short{1} : short{0};
    };
    user.then(UserAction::click(0, 5)).then(UserAction::click(0, 1)).then(UserAction::close());
    user.then(UserAction::abandon()).then(UserAction::click(0, 1));
    runModal();
    EXPECT_THAT(answers, ElementsAre(2, 1)) << "closing answers the cancel button or the only one";
    EXPECT_EQ(user.log[2], "refused: an alert is waiting for an answer");
}

TEST_F(DialogManagerTest, AnEmptyTextOfTheAddOnIsNotReplacedByTheOneOfItsResources) {
    sAnswer = [](short, short dialog, short) -> short {
        DGSetItemText(dialog, 5, uni(""));
        return 0;
    };
    EXPECT_TRUE(control().find(openModeless())->find(5)->text.IsEmpty());
}

TEST_F(DialogManagerTest, ItemsFollowTheEdgesThatTheyAreAnchoredTo) {
    layout_.items[0].anchors = platform::kAnchorRight | platform::kAnchorBottom;
    layout_.items[1].anchors = platform::kAnchorLeft | platform::kAnchorRight;
    const short id = openModeless();
    const DialogState& dialog = *control().find(id);
    DGSetDialogClientSize(id, 340, 90, 0, true);
    EXPECT_THAT((std::vector{dialog.width, dialog.height}), ElementsAre(340, 90));
    const platform::ItemRect& corner = dialog.find(1)->rect;
    EXPECT_THAT((std::vector{corner.left, corner.top, corner.width}), ElementsAre(50, -10, 50));
    EXPECT_EQ(dialog.find(2)->rect.width, 90);
    EXPECT_EQ(dialog.find(3)->rect.left, 30);
    DGSetDialogClientSize(id, 400, 200, 0, false);
    EXPECT_EQ(corner.left, 50);
    DGSetDialogClientSize(id, 0, -1, 0, true);
    EXPECT_EQ(dialog.width, 400);
}

TEST_F(DialogManagerTest, NothingIsDrawnInsideABracketOrWhileAListDoesNotDraw) {
    ScriptedPresenter user;
    const short id = openModeless();
    DGBeginMoveGrowItems(id);
    DGSetDialogTitle(id, uni("a"));
    DGHideItem(id, 1);
    EXPECT_EQ(user.changes, 0);
    DGEndMoveGrowItems(id);
    EXPECT_EQ(user.changes, 1);
    DGListDisableDraw(id, 3);
    DGListInsertItem(id, 3, DG_LIST_BOTTOM);
    EXPECT_EQ(user.changes, 1);
    DGListEnableDraw(id, 3);
    EXPECT_EQ(user.changes, 2);
}

TEST_F(DialogManagerTest, ListRowsAreInsertedFilledSelectedAndDeletedByNumber) {
    const short id = openModeless();
    DGListSetTabFieldCount(id, 3, 2);
    const std::pair<short, short> insertions[] = {
        {DG_LIST_BOTTOM, 1}, {1, 1}, {3, 3}, {0, 0}, {5, 0}, {-2, 0}, {30000, 0}};
    for (const auto& [before, number] : insertions)
        EXPECT_EQ(DGListInsertItem(id, 3, before), number) << before;
    DGListSetTabItemText(id, 3, 2, 2, uni("two"));
    for (const auto& [row, field] : {std::pair<short, short>{2, 3}, {4, 1}, {2, 0}})
        DGListSetTabItemText(id, 3, row, field, uni("beyond"));
    const auto& rows = control().find(id)->find(3)->list.rows;
    EXPECT_EQ(rows[1].cells[1].text, uni("two"));

    DGListSelectItem(id, 3, 3);
    DGListSelectItem(id, 3, 2);
    EXPECT_EQ(DGListGetSelected(id, 3, 1), 2);
    EXPECT_EQ(DGListGetSelected(id, 3, 3), 0);
    DGListSelectItem(id, 3, DG_ALL_ITEMS);
    DGListDeselectItem(id, 3, 1);
    EXPECT_EQ(DGListGetSelected(id, 3, -5), 2);
    EXPECT_EQ(DGListGetSelected(id, 3, 3), 3);
    DGListDeleteItem(id, 3, 2);
    EXPECT_EQ(rows.size(), 2U);
    DGListDeselectItem(id, 3, DG_ALL_ITEMS);
    EXPECT_EQ(DGListGetSelected(id, 3, 1), 0);
    DGListDeleteItem(id, 3, DG_ALL_ITEMS);
    EXPECT_THAT(rows, IsEmpty());
}

TEST_F(DialogManagerTest, FunctionsOnUnknownDialogsAndItemsDoNothing) {
    const short open = openModeless();
    const short closed = openModeless();
    DGModelessClose(closed);
    const std::pair<short, short> unknown[] = {{closed, 3}, {0, 3}, {-1, 3}, {open, 99}, {open, -3}};
    for (const auto& [id, number] : unknown) {
        DGSetItemText(id, number, uni("x"));
        for (auto* const function : {DGShowItem, DGHideItem, DGEnableItem, DGDisableItem, DGSetFocus,
                                     DGRedrawItem, DGListDisableDraw, DGListEnableDraw})
            function(id, number);
        for (auto* const function : {DGListSetTabFieldCount, DGListSetItemHeight, DGListSelectItem})
            function(id, number, 3);
        for (auto* const function : {DGListDeleteItem, DGListDeselectItem})
            function(id, number, DG_ALL_ITEMS);
        DGListSetTabFieldData(id, number, 1, 5, 285, 0, 0x1000, false, true);
        EXPECT_EQ(DGListInsertItem(id, number, DG_LIST_BOTTOM), 0);
        EXPECT_EQ(DGListGetSelected(id, number, 1), 0);
        DGListSetTabItemText(id, number, 1, 1, uni("x"));
        DGListSetTabItemIcon(id, number, 1, 1, DG::Icon(1, 5));
    }
    DGSetDialogTitle(closed, uni("x"));
    DGSetDialogClientSize(closed, 10, 10, 0, true);
    DGBeginMoveGrowItems(closed);
    DGEndMoveGrowItems(closed);
    DGEndMoveGrowItems(open);
    EXPECT_EQ(DGListInsertItem(open, 4, DG_LIST_BOTTOM), 0) << "a text is not a list";
    EXPECT_EQ(control().find(open)->focus, DG_NO_ITEM);
    EXPECT_EQ(control().find(open)->title, uni("resource 0"));
}

TEST_F(DialogManagerTest, AnExceptionOfACallbackStopsAtTheManagerAndIsTold) {
    ScriptedPresenter user;
    std::string told;
    platform::setCallbackFailureHandler([&told](const platform::CallbackFailure& failure) {
        told += failure.callback + ": " + failure.reason + "\n";
        EXPECT_EQ(failure.function, reinterpret_cast<const void*>(&noteMessage));
    });
    user.then(UserAction::click(0, 1)).then(UserAction::close());
    sAnswer = [](short message, short, short item) -> short {
        if (message == DG_MSG_CLICK && item == 1) throw std::runtime_error("lost");
        return item;
    };
    EXPECT_EQ(runModal(), 2);
    EXPECT_EQ(told, "callback of dialog 32700 at message click: lost\n");
    platform::setCallbackFailureHandler(nullptr);

    user.thenLook([] { throw std::bad_alloc(); });
    EXPECT_THROW(runModal(), std::bad_alloc);
    EXPECT_FALSE(control().isModal());
    EXPECT_THAT(control().openDialogs(), IsEmpty());
}

}  // namespace
