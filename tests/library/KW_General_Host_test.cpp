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
        project = {false, IO::Location(GS::UniStringFromUtf8(path))};
        KW_String title = text("old");
        bool untitled = true;
        EXPECT_TRUE(KW_General::ArchiCADProjectTitle(title, &untitled)) << path;
        EXPECT_EQ(utf8(title), expected);
        EXPECT_FALSE(untitled);
        EXPECT_TRUE(KW_General::ArchiCADProjectTitle(title, nullptr));
    }
}

TEST_F(KWGeneralHost, AnUntitledProjectOrNoAnswerGivesAnEmptyTitle) {
    for (const bool answers : {true, false}) {
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
    const struct {
        const char* part;
        API_ModulID before;
        API_ModulID after;
        int changes;
    } cases[] = {
        {"PHOTO", {1, 1}, {1, 2}, 1}, {"photo", {1, 2}, {1, 2}, 0},
        {"pro", {1, 2}, {2, 1}, 1},  // the last engine is looked at too
        {"photo", {1, 3}, {1, 2}, 1}, {"photo", {3, 2}, {1, 2}, 1},
    };
    for (const auto& each : cases) {
        current = each.before;
        changes = 0;
        EXPECT_TRUE(KW_General::SetRenderingEngine(text(each.part)));
        EXPECT_EQ(current, each.after);
        EXPECT_EQ(changes, each.changes) << each.part;
    }
}

TEST_F(KWGeneralHost, AnEngineThatCannotBeSetIsAFailure) {
    for (const char* const part : {"no such engine", ""})
        EXPECT_FALSE(KW_General::SetRenderingEngine(text(part)));
    changeAnswer = -5;
    EXPECT_FALSE(KW_General::SetRenderingEngine(text("photo")));
    currentAnswer = -1;
    EXPECT_FALSE(KW_General::SetRenderingEngine(text("sketch"))) << "the host cannot tell the current one";
    EXPECT_EQ(changes, 1);
    host.renderingEngines.assign(32767, {{1, 1}, "Sketch Engine"});
    EXPECT_FALSE(KW_General::SetRenderingEngine(text("photo"))) << "as many engines as can be numbered";
}

}  // namespace
