#include "addon/CDlgAbout.h"

#include "files/KW_Location.h"
#include "language/KW_Language.h"
#include "platform/host/LaunchHandling.h"
#include "tests/support/ScriptedPresenter.h"

#include <gmock/gmock.h>
#include <filesystem>
#include <fstream>

namespace {

using platform::DialogControl;
using platform::UserAction;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr short kDialog = 32500;

/// The folder in which the module of this program lies, with documents of the test's own. Documents that are
/// opened are noted instead.
class CDlgAboutTest : public testing::Test {
protected:
    CDlgAboutTest() {
        const KW_Location folder = KW_Location::AddOnLocation(true);
        folder_ = folder.ToCStr(KW_String::Encoding_UTF8).data;
        removeDocuments();
        platform::setLaunchHandler([this](const platform::LaunchRequest& request) {
            opened_.push_back(request.target);
            return 0;
        });
    }
    ~CDlgAboutTest() override {
        platform::setLaunchHandler({});
        gKW_Language = KW_Language_International;
        removeDocuments();
    }

    void removeDocuments() const {
        for (const int part : {1, 2})
            std::filesystem::remove(document(part));
    }
    std::string document(int part) const {
        return folder_ + "/0" + std::to_string(part) + " - Libreria Tessaro.pdf";
    }
    void create(int part) const { std::ofstream(document(part)) << "%PDF"; }
    static std::string itemText(short item) {
        return GS::UniStringToUtf8(DialogControl::instance().find(kDialog)->find(item)->text);
    }

    std::string folder_;
    std::vector<std::string> opened_;
    ScriptedPresenter user_;
};

TEST_F(CDlgAboutTest, ShowsTheDescriptionInTheCurrentLanguageUntilOkOrTheCloseBox) {
    gKW_Language = 0;
    CDlgAbout dialog;
    user_
        .thenLook([&] {
            EXPECT_EQ(dialog.dialogID, kDialog);
            const platform::DialogState& state = *DialogControl::instance().find(kDialog);
            EXPECT_EQ(GS::UniStringToUtf8(state.title), "Informazioni su Libreria Tessaro");
            EXPECT_EQ(state.focus, DG_NO_ITEM);
            EXPECT_EQ(itemText(2), "Annulla");
            EXPECT_EQ(itemText(7), "Documentazione, parte 2");
            EXPECT_THAT(itemText(4),
                        StartsWith("Libreria Tessaro per ArchiCAD 22\n\nLibreria Tessaro \xC3\xA8 "));
            EXPECT_THAT(itemText(4), HasSubstr("Kestrin")) << "the last piece";
        })
        .then(UserAction::click(kDialog, 1));
    EXPECT_TRUE(dialog.ShowDialog());
    EXPECT_EQ(dialog.dialogID, 0);
    user_.then(UserAction::close());
    EXPECT_FALSE(dialog.ShowDialog());
    EXPECT_EQ(dialog.dialogID, 0);
}

TEST_F(CDlgAboutTest, TheButtonsOpenTheDocumentsBesideTheAddOnOrTellThatOneIsMissing) {
    create(1);
    gKW_Language = 0;
    user_.then(UserAction::click(kDialog, 7))
        .then(UserAction::answer(1))
        .thenLook([this] { create(2); })
        .then(UserAction::click(kDialog, 6))
        .then(UserAction::click(kDialog, 7))
        .then(UserAction::click(kDialog, 1));
    EXPECT_TRUE(CDlgAbout().ShowDialog());
    EXPECT_THAT(opened_, ElementsAre(document(1), document(2)));
    ASSERT_EQ(user_.alerts.size(), 1U);
    EXPECT_THAT(user_.log, Contains(StartsWith("alert -1 [|Errore: impossibile aprire il documento.")));
}

TEST_F(CDlgAboutTest, OtherItemsDoNothing) {
    CDlgAbout dialog;
    for (const short item : {-1, 0, 3, 4, 5, 8})
        EXPECT_EQ(dialog.MsgClick(item), 0);
    EXPECT_EQ(dialog.MsgClick(1), 1);
    EXPECT_EQ(dialog.MsgClick(2), 2);
    EXPECT_THAT(opened_, IsEmpty());
}

}  // namespace
