#include "language/KW_Dlg_Language.h"

#include "language/KW_Language.h"
#include "platform/DialogManager.h"
#include "platform/UniString.h"
#include "tests/language/LanguageFixture.h"
#include "tests/support/RecordingHost.h"
#include "tests/support/ScriptedPresenter.h"

namespace {

using platform::DialogControl;
using platform::DialogState;
using platform::UserAction;

constexpr short kDialog = 32734;

class KW_Dlg_Language_Test : public LanguageFixture {
protected:
    static const DialogState& dialog() { return *DialogControl::instance().find(kDialog); }
    static const platform::ListState& list() { return dialog().find(3)->list; }
    static short selectedRow() { return DGListGetSelected(kDialog, 3, 1); }
    static UserAction ok() { return UserAction::click(kDialog, 1); }
    static UserAction row(short number) { return UserAction::selectRow(kDialog, 3, number); }

    support::RecordingHost host_;
    ScriptedPresenter user_;
};

TEST_F(KW_Dlg_Language_Test, OpensFilledAndCancelTakesBackWhatWasSelected) {
    user_
        .thenLook([] {
            EXPECT_EQ(dialog().focus, DG_NO_ITEM);
            EXPECT_EQ(GS::UniStringToUtf8(dialog().find(1)->text), "OK");
            EXPECT_EQ(list().fields.size(), 1u);
            EXPECT_TRUE(list().drawing);
            ASSERT_EQ(list().rows.size(), kSharesLanguage ? 7u : 2u);
            for (short language = 0; const platform::ListRow& row : list().rows) {
                EXPECT_EQ(row.cells.at(0).icon.resID(), 32758 + language++);
                EXPECT_TRUE(row.cells.at(0).text.IsEmpty());
            }
            EXPECT_EQ(selectedRow(), 2) << "the row of international";
        })
        .then(row(1))
        .thenLook([] { EXPECT_EQ(gKW_Language, 0); })
        .then(UserAction::click(kDialog, 2));
    EXPECT_FALSE(KW_Dlg_Language());
    EXPECT_EQ(gKW_Language, 1) << "as it was";
}

TEST_F(KW_Dlg_Language_Test, OkStoresALanguageOnlyWhenItIsAnother) {
    user_.then(row(1)).then(row(2)).then(ok());
    EXPECT_TRUE(KW_Dlg_Language());
    user_.then(row(1)).thenLook([] { DGListDeselectItem(kDialog, 3, DG_ALL_ITEMS); }).then(ok());
    EXPECT_TRUE(KW_Dlg_Language());
    EXPECT_EQ(gKW_Language, 1) << "no row, no change";
    EXPECT_EQ(folder_.count(), 0);
    user_.then(row(1)).then(ok());
    EXPECT_TRUE(KW_Dlg_Language());
    EXPECT_EQ(gKW_Language, 0);
    EXPECT_EQ(settings(languageFile()), "$Language_str: ita\n");
    user_.thenLook([] { EXPECT_EQ(selectedRow(), 1); }).then(row(kSharesLanguage ? 7 : 2)).then(ok());
    EXPECT_TRUE(KW_Dlg_Language());
    EXPECT_EQ(settings(languageFile()), kSharesLanguage ? "$Language_str: rus\n" : "$Language_str: int\n");
    if (kSharesLanguage) return;
    gKW_Language = 2;  // not offered: the first row is selected
    user_.thenLook([] { EXPECT_EQ(selectedRow(), 1); }).then(ok());
    EXPECT_TRUE(KW_Dlg_Language());
    EXPECT_EQ(settings(languageFile()), "$Language_str: ita\n");
}

}  // namespace
