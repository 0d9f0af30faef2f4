#include "platform/DialogManager.h"

#include "platform/host/Failures.h"
#include "tests/support/ScriptedPresenter.h"

#include <gmock/gmock.h>
#include <map>
#include <optional>
#include <stdexcept>

namespace {

using platform::DialogControl;
using platform::DialogItemKind;
using platform::DialogState;
using platform::UserAction;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr short kDialog = 32700;

struct Message {
    short message;
    short dialog;
    short item;
    friend bool operator==(const Message&, const Message&) = default;
};

void PrintTo(const Message& message, std::ostream* out) {
    *out << "{" << message.message << ", " << message.dialog << ", " << message.item << "}";
}

std::vector<Message> sMessages;
/// What the callback does at a message, beyond noting it; the default is to close by items 1 and 2.
std::function<short(const Message&)> sAnswer;

short noteMessage(short message, short dialogID, short item, DGUserData, DGMessageData data) {
    EXPECT_EQ(data, 0);
    const Message received{message, dialogID, item};
    sMessages.push_back(received);
    if (sAnswer) return sAnswer(received);
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
        layout_.items = {item(1, DialogItemKind::Button), item(2, DialogItemKind::Button),
                         item(3, DialogItemKind::List), item(4, DialogItemKind::Text),
                         item(5, DialogItemKind::Button)};
        control().setLayouts(platform::LayoutSource{
            [this](RSResModule, short resID) -> const platform::DialogLayout* {
                return resID == kDialog ? &layout_ : nullptr;
            },
            [](RSResModule, short, short number) { return "resource " + std::to_string(number); }});
    }
    ~DialogManagerTest() override {
        control().closeDialogsOfImage(reinterpret_cast<const void*>(&noteMessage));
        control().setLayouts(std::nullopt);
    }

    static DialogControl& control() { return DialogControl::instance(); }
    static platform::LayoutItem item(short number, DialogItemKind kind) {
        platform::LayoutItem resource;
        resource.number = number;
        resource.kind = kind;
        resource.rect = {short(10 * number), 0, 50, 20};
        return resource;
    }
    static short runModal(short resID = kDialog) { return DGModalDialog(1, resID, 1, noteMessage, 0); }
    static short openModeless(bool show = true) {
        const short id = DGModelessInit(1, kDialog, 1, noteMessage, 0);
        if (show) DGShowModelessDialog(id, 0);
        return id;
    }
    static void fillList(short dialogID, int rows) {
        for (int row = 0; row < rows; ++row)
            DGListInsertItem(dialogID, 3, DG_LIST_BOTTOM);
    }

    platform::DialogLayout layout_;
};

TEST_F(DialogManagerTest, AModalDialogReturnsWhatItsCallbackAnswersToTheCloseThatItsAnswerToAClickAskedFor) {
    ScriptedPresenter user;
    user.then(UserAction::click(kDialog, 5)).then(UserAction::click(0, 1));
    sAnswer = [](const Message& received) -> short {
        if (received.message == DG_MSG_CLOSE) return 77;
        return received.message == DG_MSG_CLICK && received.item == 1 ? short{9} : short{0};
    };
    EXPECT_EQ(runModal(), 77);
    EXPECT_THAT(sMessages, ElementsAre(Message{DG_MSG_INIT, kDialog, 0}, Message{DG_MSG_CLICK, kDialog, 5},
                                       Message{DG_MSG_CLICK, kDialog, 1}, Message{DG_MSG_CLOSE, kDialog, 9}));
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
    EXPECT_THAT(sMessages, IsEmpty());

    user.thenLook([] { EXPECT_EQ(runModal(), 0); }).then(UserAction::click(kDialog, 1));
    EXPECT_EQ(runModal(), 1);
    EXPECT_EQ(sMessages.size(), 3U);
}

TEST_F(DialogManagerTest, TheCloseBoxClicksTheCancelItemOrElseTheOkItemAndAbandoningClosesInAnyCase) {
    const struct {
        std::vector<short> items;
        UserAction action;
        bool callbackCloses;
        short clicked;  // 0 for no click
        short closedBy;
    } cases[] = {
        {{1, 2}, UserAction::close(), true, 2, 2},    {{1}, UserAction::close(kDialog), true, 1, 1},
        {{7}, UserAction::close(), true, 0, 2},       {{1, 2}, UserAction::abandon(), true, 2, 2},
        {{1, 2}, UserAction::abandon(), false, 2, 2}, {{7}, UserAction::abandon(), false, 0, 2},
    };
    for (const auto& each : cases) {
        ScriptedPresenter user;
        layout_.items.clear();
        for (const short number : each.items)
            layout_.items.push_back(item(number, DialogItemKind::Button));
        user.thenLook([] { DGHideItem(kDialog, 2); }).then(each.action);  // also when it is hidden
        sAnswer = [&each](const Message& received) { return each.callbackCloses ? received.item : short{0}; };
        sMessages.clear();
        EXPECT_EQ(runModal(), each.callbackCloses ? each.closedBy : 0);
        std::vector<Message> expected = {{DG_MSG_INIT, kDialog, 0}};
        if (each.clicked != 0) expected.push_back({DG_MSG_CLICK, kDialog, each.clicked});
        expected.push_back({DG_MSG_CLOSE, kDialog, each.closedBy});
        EXPECT_EQ(sMessages, expected);
    }
}

TEST_F(DialogManagerTest, ActionsThatAreNotPossibleAreRefusedWithOneLineAndReachNoCallback) {
    const short modeless = openModeless();
    const std::pair<UserAction, std::string> cases[] = {
        {UserAction::click(kDialog, 9), "dialog 32700 has no item 9"},
        {UserAction::click(kDialog, 5), "dialog 32700: item 5 is hidden"},
        {UserAction::click(kDialog, 1), "dialog 32700: item 1 is disabled"},
        {UserAction::close(), "dialog 32700: item 2 is disabled"},
        {UserAction::click(kDialog, 4), "dialog 32700: item 4 is not a button"},
        {UserAction::selectRow(0, 1, 1), "dialog 32700: item 1 is not a list"},
        {UserAction::selectRow(0, 3, 1), "dialog 32700: list 3 has no row 1"},
        {UserAction::selectRow(0, 3, 0), "dialog 32700: list 3 has no row 0"},
        {UserAction::click(8, 1), "dialog 8 is not open"},
        {UserAction::click(modeless, 5),
         "dialog " + std::to_string(modeless) + " waits until dialog 32700 is closed"},
        {UserAction::answer(1), "no alert is open"},
        {UserAction::chooseFile("/a"), "no file chooser is open"},
    };
    ScriptedPresenter user;
    user.thenLook([] {
        DGHideItem(kDialog, 5);
        DGDisableItem(kDialog, 1);
        DGDisableItem(kDialog, 2);
        sMessages.clear();
    });
    for (const auto& [action, refusal] : cases) {
        user.then(action).thenLook(
            [&user, refusal = std::string("refused: ") + refusal] { EXPECT_EQ(user.log.back(), refusal); });
    }
    user.then(UserAction::abandon());
    runModal();
    EXPECT_THAT(sMessages, ElementsAre(Message{DG_MSG_CLOSE, kDialog, 2})) << "not even a click on item 2";
    EXPECT_EQ(user.log.size(), std::size(cases) + 2) << "shown, a line each, closed";
    control().perform(UserAction::click(0, 5));
    EXPECT_EQ(sMessages.back(), (Message{DG_MSG_CLICK, modeless, 5})) << "it waits no longer";
}

TEST_F(DialogManagerTest, SelectingARowSendsAChangeOnlyWhenTheSelectionDiffers) {
    ScriptedPresenter user;
    sAnswer = [](const Message& received) -> short {
        if (received.message == DG_MSG_INIT) {
            fillList(received.dialog, 3);
            DGListSelectItem(received.dialog, 3, 2);
        }
        return received.message == DG_MSG_CHANGE ? short{0} : received.item;
    };
    user.then(UserAction::selectRow(0, 3, 2)).then(UserAction::selectRow(0, 3, 3));
    user.thenLook([] {
        EXPECT_EQ(DGListGetSelected(kDialog, 3, 1), 3);
        EXPECT_EQ(DGListGetSelected(kDialog, 3, 4), 0);
    });
    user.then(UserAction::doubleClick(0, 3, 1));
    EXPECT_EQ(runModal(), 3);
    EXPECT_THAT(sMessages, ElementsAre(Message{DG_MSG_INIT, kDialog, 0}, Message{DG_MSG_CHANGE, kDialog, 3},
                                       Message{DG_MSG_CHANGE, kDialog, 3}, Message{DG_MSG_CLICK, kDialog, 3},
                                       Message{DG_MSG_CLOSE, kDialog, 3}));
}

TEST_F(DialogManagerTest, ModelessDialogsHaveNumbersOfTheirOwnAndAreInvisibleUntilShown) {
    ScriptedPresenter user;
    const short first = openModeless(false);
    const short second = openModeless(false);
    EXPECT_GE(first, 1);
    EXPECT_NE(first, second);
    EXPECT_THAT(user.log, IsEmpty());
    control().perform(UserAction::click(first, 5));
    EXPECT_TRUE(DGShowModelessDialog(first, 0));
    EXPECT_TRUE(DGShowModelessDialog(second, 0));
    EXPECT_TRUE(DGShowModelessDialog(first, 0));
    EXPECT_THAT(control().openDialogs(), ElementsAre(first, second));
    DGModelessClose(first);
    DGModelessClose(first);
    EXPECT_FALSE(DGShowModelessDialog(first, 0));
    EXPECT_THAT(user.log,
                ElementsAre("refused: dialog " + std::to_string(first) + " is not open",
                            "shown " + std::to_string(first), "shown " + std::to_string(second),
                            "shown " + std::to_string(first), "closed " + std::to_string(first) + " by 0"));
}

TEST_F(DialogManagerTest, AModelessDialogIsToldOnceThatItClosesHoweverItDoes) {
    ScriptedPresenter user;
    const short closedByHost = openModeless();
    control().perform(UserAction::close(closedByHost));
    EXPECT_THAT(sMessages,
                ElementsAre(Message{DG_MSG_INIT, closedByHost, 0}, Message{DG_MSG_CLOSE, closedByHost, 0}));

    const short id = openModeless();
    sMessages.clear();
    sAnswer = [](const Message& received) -> short {
        DGModelessClose(received.dialog);
        return received.item;
    };
    control().perform(UserAction::click(id, 5));
    EXPECT_THAT(sMessages, ElementsAre(Message{DG_MSG_CLICK, id, 5}, Message{DG_MSG_CLOSE, id, 0}));
    EXPECT_EQ(openModeless(false), 0) << "closed while it was initialised";
    EXPECT_THAT(control().openDialogs(), IsEmpty());
}

TEST_F(DialogManagerTest, AnAlertInACallbackLetsNothingElseBeUsedUntilItIsAnswered) {
    ScriptedPresenter user;
    std::vector<short> answers;
    sAnswer = [&answers](const Message& received) -> short {
        if (received.message == DG_MSG_CLICK && received.item == 5) {
            answers.push_back(DGAlert(-1, uni(""), uni("Save?"), uni(""), uni("Yes"), uni("No"), uni("")));
            answers.push_back(DGAlert(-1, uni(""), uni(""), uni(""), uni("OK")));
        }
        return received.message == DG_MSG_CLICK && received.item == 1 ? short{1} : short{0};
    };
    user.then(UserAction::click(0, 5)).then(UserAction::click(0, 1)).then(UserAction::answer(3));
    user.then(UserAction::answer(1)).then(UserAction::close());
    user.then(UserAction::click(0, 5)).then(UserAction::close()).then(UserAction::abandon());
    user.then(UserAction::click(0, 1));
    runModal();
    EXPECT_THAT(answers, ElementsAre(1, 1, 2, 1)) << "closing answers the cancel button or the only one";
    const std::vector<std::string> begin(user.log.begin(), user.log.begin() + 5);
    EXPECT_THAT(begin, ElementsAre("shown 32700", "alert -1 [|Save?|] [Yes|No|]",
                                   "refused: an alert waits for its answer",
                                   "refused: the alert has no button 3", "alert answered 1"));
}

TEST_F(DialogManagerTest, TextsThatTheAddOnLeavesAloneComeFromItsResources) {
    sAnswer = [](const Message& received) -> short {
        DGSetItemText(received.dialog, 1, uni("mine"));
        DGSetItemText(received.dialog, 5, uni(""));
        return 0;
    };
    const DialogState* dialog = control().find(openModeless());
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->title, uni("resource 0"));
    EXPECT_EQ(dialog->find(1)->text, uni("mine"));
    EXPECT_EQ(dialog->find(2)->text, uni("resource 2"));
    EXPECT_TRUE(dialog->find(5)->text.IsEmpty());
}

TEST_F(DialogManagerTest, ItemsFollowTheEdgesThatTheyAreAnchoredTo) {
    layout_.items[0].anchors = platform::kAnchorRight | platform::kAnchorBottom;
    layout_.items[1].anchors = platform::kAnchorLeft | platform::kAnchorRight;
    const short id = openModeless();
    DGSetDialogClientSize(id, 340, 90, 0, true);
    const DialogState* dialog = control().find(id);
    EXPECT_EQ(dialog->width, 340);
    EXPECT_EQ(dialog->height, 90);
    EXPECT_EQ(dialog->find(1)->rect.left, 50);
    EXPECT_EQ(dialog->find(1)->rect.top, -10);
    EXPECT_EQ(dialog->find(1)->rect.width, 50);
    EXPECT_EQ(dialog->find(2)->rect.width, 90);
    EXPECT_EQ(dialog->find(3)->rect.left, 30);
    DGSetDialogClientSize(id, 400, 200, 0, false);
    EXPECT_EQ(dialog->find(1)->rect.left, 50);
    DGSetDialogClientSize(id, 0, -1, 0, true);
    EXPECT_EQ(dialog->width, 400);
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
    fillList(id, 2);
    EXPECT_EQ(user.changes, 1);
    DGListEnableDraw(id, 3);
    EXPECT_EQ(user.changes, 2);
}

TEST_F(DialogManagerTest, ListRowsAreInsertedFilledSelectedAndDeletedByNumber) {
    const short id = openModeless();
    DGListSetTabFieldCount(id, 3, 2);
    EXPECT_EQ(DGListInsertItem(id, 3, DG_LIST_BOTTOM), 1);
    EXPECT_EQ(DGListInsertItem(id, 3, 1), 1);
    EXPECT_EQ(DGListInsertItem(id, 3, 3), 3);
    for (short wrong : {0, 5, -2, 30000})
        EXPECT_EQ(DGListInsertItem(id, 3, wrong), 0) << wrong;
    DGListSetTabItemText(id, 3, 2, 2, uni("two"));
    DGListSetTabItemIcon(id, 3, 2, 1, DG::Icon(1, 32758));
    DGListSetTabItemText(id, 3, 2, 3, uni("beyond"));
    DGListSetTabItemText(id, 3, 4, 1, uni("beyond"));
    const auto& rows = control().find(id)->find(3)->list.rows;
    EXPECT_EQ(rows[1].cells[1].text, uni("two"));
    EXPECT_EQ(rows[1].cells[0].icon.resID(), 32758);

    DGListSelectItem(id, 3, 3);
    DGListSelectItem(id, 3, 2);
    EXPECT_EQ(DGListGetSelected(id, 3, 1), 2);
    EXPECT_EQ(DGListGetSelected(id, 3, 3), 0);
    DGListSelectItem(id, 3, DG_ALL_ITEMS);
    EXPECT_EQ(DGListGetSelected(id, 3, 3), 3);
    DGListDeselectItem(id, 3, 1);
    EXPECT_EQ(DGListGetSelected(id, 3, -5), 2);
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
    for (const auto& [id, number] :
         {std::pair<short, short>{closed, 3}, {0, 3}, {-1, 3}, {open, 99}, {open, -3}}) {
        DGSetItemText(id, number, uni("x"));
        DGShowItem(id, number);
        DGHideItem(id, number);
        DGEnableItem(id, number);
        DGDisableItem(id, number);
        DGSetFocus(id, number);
        DGRedrawItem(id, number);
        DGListSetTabFieldCount(id, number, 3);
        DGListSetItemHeight(id, number, 30);
        DGListSetTabFieldData(id, number, 1, 5, 285, 0, 0x1000, false, true);
        DGListDisableDraw(id, number);
        DGListEnableDraw(id, number);
        EXPECT_EQ(DGListInsertItem(id, number, DG_LIST_BOTTOM), 0);
        DGListDeleteItem(id, number, DG_ALL_ITEMS);
        DGListSelectItem(id, number, 1);
        DGListDeselectItem(id, number, DG_ALL_ITEMS);
        EXPECT_EQ(DGListGetSelected(id, number, 1), 0);
        DGListSetTabItemText(id, number, 1, 1, uni("x"));
        DGListSetTabItemIcon(id, number, 1, 1, DG::Icon(1, 5));
    }
    DGSetDialogTitle(closed, uni("x"));
    DGSetDialogClientSize(closed, 10, 10, 0, true);
    DGBeginMoveGrowItems(closed);
    DGEndMoveGrowItems(closed);
    DGEndMoveGrowItems(open);
    EXPECT_EQ(DGListInsertItem(open, 4, DG_LIST_BOTTOM), 0);  // a text is not a list
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
    bool thrown = false;
    sAnswer = [&thrown](const Message& received) -> short {
        if (received.message == DG_MSG_CLICK && !thrown) {
            thrown = true;
            throw std::runtime_error("lost");
        }
        return received.item;
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
