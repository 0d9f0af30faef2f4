#include "addon/ACAPlib.h"
#include "library/KW_General.h"
#include "platform/ProjectInfo.h"
#include "tests/support/RecordingHost.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

namespace {

using support::text;
using support::utf8;

/// A host that answers project and rendering requests.
class KWGeneralHost : public testing::Test {
protected:
    KWGeneralHost() {
        host.environment = [this](API_EnvironmentID request, void* par1, void*, void*) -> GSErrCode {
            if (request == APIEnv_ProjectID) {
                auto& info = *static_cast<API_ProjectInfo*>(par1);
                EXPECT_FALSE(info.untitled);
                EXPECT_TRUE(info.location.IsEmpty()) << "the record comes cleared";
                if (projectAnswer == kNoError) info = project;
                return projectAnswer;
            }
            if (request == APIEnv_GetRenderingEngineID) {
                EXPECT_EQ(*static_cast<API_ModulID*>(par1), API_ModulID{}) << "the identifier comes cleared";
                if (currentAnswer == kNoError) *static_cast<API_ModulID*>(par1) = current;
                return currentAnswer;
            }
            if (request == APIEnv_SetRenderingEngineID) {
                ++changes;
                if (changeAnswer == kNoError) current = *static_cast<const API_ModulID*>(par1);
                return changeAnswer;
            }
            return kAPIErrNoHostFunction;
        };
        host.renderingEngines = {{{1, 1}, "Sketch Engine"}, {{1, 2}, "Photo Engine"}, {{2, 1}, "Photo Pro"}};
    }
    void openProject(const std::string& path) {
        project = {false, IO::Location(GS::UniStringFromUtf8(path))};
    }

    support::RecordingHost host;
    API_ProjectInfo project{true, {}};
    GSErrCode projectAnswer = kNoError;
    API_ModulID current{1, 1};
    GSErrCode currentAnswer = kNoError;
    GSErrCode changeAnswer = kNoError;
    int changes = 0;
};

TEST_F(KWGeneralHost, TheTitleIsTheLastComponentOfTheProjectFile) {
    const std::pair<std::string, std::string> cases[] = {
        {"/Projects/House.pln", "House.pln"},
        {"/a.b/House", "House"},
        {"/Progetti/Citt\xC3\xA0 \xE6\x9D\xB1.pln", "Citt\xC3\xA0 \xE6\x9D\xB1.pln"},
        {"/a/" + std::string(255, 'x') + 'y', std::string(255, 'x')},
    };
    for (const auto& [path, expected] : cases) {
        openProject(path);
        KW_String title = text("old");
        bool untitled = true;
        EXPECT_TRUE(KW_General::ArchiCADProjectTitle(title, &untitled)) << path;
        EXPECT_EQ(utf8(title), expected);
        EXPECT_FALSE(untitled);
        EXPECT_TRUE(KW_General::ArchiCADProjectTitle(title, nullptr));
    }
}

TEST_F(KWGeneralHost, AnUntitledProjectOrNoAnswerGivesAnEmptyTitle) {
    openProject("/ignored/House.pln");
    for (const bool answers : {true, false}) {
        project.untitled = answers;
        projectAnswer = answers ? kNoError : -1;
        KW_String title = text("old");
        bool untitled = false;
        EXPECT_EQ(KW_General::ArchiCADProjectTitle(title, &untitled), answers);
        EXPECT_EQ(utf8(title), "");
        EXPECT_TRUE(untitled);
    }
}

TEST_F(KWGeneralHost, TheCurrentEngineIsKnownByAnyPartOfItsNameInAnyCase) {
    current = {1, 2};
    const std::pair<const char*, short> cases[] = {
        {"photo", 1}, {"gin", 1}, {"PHOTO ENG", 1}, {"sketch", 0}, {"Photo Engines", 0}, {"", 0},
    };
    for (const auto& [part, expected] : cases)
        EXPECT_EQ(KW_General::CheckCurrentRenderingEngine(text(part)), expected) << part;

    current = {9, 9};
    EXPECT_EQ(KW_General::CheckCurrentRenderingEngine(text("photo")), 0) << "an engine without a name";
    currentAnswer = -1;
    EXPECT_EQ(KW_General::CheckCurrentRenderingEngine(text("photo")), -1);
}

TEST_F(KWGeneralHost, TheFirstEngineWithTheNameBecomesTheCurrentOne) {
    EXPECT_TRUE(KW_General::SetRenderingEngine(text("PHOTO")));
    EXPECT_EQ(current, (API_ModulID{1, 2}));
    EXPECT_EQ(changes, 1);
    EXPECT_TRUE(KW_General::SetRenderingEngine(text("photo")));
    EXPECT_EQ(changes, 1) << "it is current already";
    EXPECT_TRUE(KW_General::SetRenderingEngine(text("pro"))) << "the last engine is looked at too";
    EXPECT_EQ(current, (API_ModulID{2, 1}));
    for (const API_ModulID& other : {API_ModulID{1, 3}, API_ModulID{3, 2}}) {
        current = other;
        EXPECT_TRUE(KW_General::SetRenderingEngine(text("photo")));
        EXPECT_EQ(current, (API_ModulID{1, 2})) << "the identifier as a whole tells which is current";
    }
}

TEST_F(KWGeneralHost, AnEngineThatCannotBeSetIsAFailure) {
    EXPECT_FALSE(KW_General::SetRenderingEngine(text("no such engine")));
    EXPECT_FALSE(KW_General::SetRenderingEngine(text("")));
    changeAnswer = -5;
    EXPECT_FALSE(KW_General::SetRenderingEngine(text("photo")));
    currentAnswer = -1;
    EXPECT_FALSE(KW_General::SetRenderingEngine(text("sketch"))) << "the host cannot tell the current one";
    EXPECT_EQ(changes, 1);
    host.renderingEngines.clear();
    currentAnswer = kNoError;
    EXPECT_FALSE(KW_General::SetRenderingEngine(text("photo")));
    host.renderingEngines.assign(32767, {{1, 1}, "Sketch Engine"});
    EXPECT_FALSE(KW_General::SetRenderingEngine(text("photo"))) << "as many engines as can be numbered";
}

TEST_F(KWGeneralHost, AHostWithoutTheseFunctionsHasNoProjectAndNoEngines) {
    const APIImportedFunctions empty{};
    SetImportedFuncAddrs(&empty);
    KW_String title;
    EXPECT_FALSE(KW_General::ArchiCADProjectTitle(title, nullptr));
    EXPECT_FALSE(KW_General::SetRenderingEngine(text("photo")));
    EXPECT_EQ(KW_General::CheckCurrentRenderingEngine(text("photo")), -1);
}

}  // namespace
