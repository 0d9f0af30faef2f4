#include "library/KW_General.h"
#include "platform/ProjectInfo.h"
#include "tests/support/RecordingHost.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <map>

namespace {

using support::text;
using support::utf8;

/// A host that answers project and rendering requests.
class KWGeneralHost : public testing::Test {
protected:
    KWGeneralHost() {
        host.environment = [this](API_EnvironmentID request, void* par1, void*, void*) {
            const GSErrCode answer = answers[request];
            auto& engine = *static_cast<API_ModulID*>(par1);
            if (request == APIEnv_ProjectID) {
                auto& info = *static_cast<API_ProjectInfo*>(par1);
                EXPECT_TRUE(!info.untitled && info.location.IsEmpty()) << "the record comes cleared";
                if (answer == kNoError) info = project;
            } else if (request == APIEnv_GetRenderingEngineID) {
                EXPECT_EQ(engine, API_ModulID{}) << "the identifier comes cleared";
                if (answer == kNoError) engine = current;
            } else {
                EXPECT_EQ(request, APIEnv_SetRenderingEngineID);
                ++changes;
                if (answer == kNoError) current = engine;
            }
            return answer;
        };
        host.renderingEngines = {{{1, 1}, "Sketch Engine"}, {{1, 2}, "Photo Engine"}, {{2, 1}, "Photo Pro"}};
    }

    support::RecordingHost host;
    API_ProjectInfo project{true, {}};
    API_ModulID current{1, 1};
    std::map<API_EnvironmentID, GSErrCode> answers;  ///< kNoError where nothing else is said
    int changes = 0;
};

TEST_F(KWGeneralHost, TheTitleIsTheLastComponentOfTheProjectFileIfThereIsOne) {
    const struct {
        GSErrCode answer;
        bool untitled;
        std::string path;
        std::string title;
    } cases[] = {
        {kNoError, false, "/Projects/House.pln", "House.pln"},
        {kNoError, false, "/Progetti/Citt\xC3\xA0 \xE6\x9D\xB1.pln", "Citt\xC3\xA0 \xE6\x9D\xB1.pln"},
        {kNoError, false, "/a/" + std::string(255, 'x') + 'y', std::string(255, 'x')},
        {kNoError, true, "/Projects/House.pln", ""},
        {-1, false, "/Projects/House.pln", ""},
    };
    for (const auto& each : cases) {
        answers[APIEnv_ProjectID] = each.answer;
        project = {each.untitled, IO::Location(GS::UniStringFromUtf8(each.path))};
        KW_String title = text("old");
        bool untitled = !each.title.empty();
        EXPECT_EQ(KW_General::ArchiCADProjectTitle(title, &untitled), each.answer == kNoError);
        EXPECT_EQ(utf8(title), each.title);
        EXPECT_EQ(untitled, each.title.empty());
        EXPECT_EQ(KW_General::ArchiCADProjectTitle(title, nullptr), each.answer == kNoError);
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
    answers[APIEnv_GetRenderingEngineID] = -1;
    EXPECT_EQ(KW_General::CheckCurrentRenderingEngine(text("photo")), -1);
}

TEST_F(KWGeneralHost, TheFirstEngineWithTheNameBecomesTheCurrentOne) {
    const struct {
        const char* part;
        API_ModulID before;
        API_ModulID after;
    } cases[] = {
        {"PHOTO", {1, 1}, {1, 2}}, {"photo", {1, 2}, {1, 2}},
        {"pro", {1, 2}, {2, 1}},  // the last engine is looked at too
        {"photo", {1, 3}, {1, 2}}, {"photo", {3, 2}, {1, 2}},
    };
    for (const auto& each : cases) {
        current = each.before;
        changes = 0;
        EXPECT_TRUE(KW_General::SetRenderingEngine(text(each.part)));
        EXPECT_EQ(current, each.after);
        EXPECT_EQ(changes, each.before == each.after ? 0 : 1) << each.part;
    }
}

TEST_F(KWGeneralHost, AnEngineThatCannotBeSetIsAFailure) {
    for (const char* const part : {"no such engine", ""})
        EXPECT_FALSE(KW_General::SetRenderingEngine(text(part)));
    answers[APIEnv_SetRenderingEngineID] = -5;
    EXPECT_FALSE(KW_General::SetRenderingEngine(text("photo")));
    answers[APIEnv_GetRenderingEngineID] = -1;
    EXPECT_FALSE(KW_General::SetRenderingEngine(text("sketch"))) << "the host cannot tell the current one";
    EXPECT_EQ(changes, 1);
    host.renderingEngines.assign(32767, {{1, 1}, "Sketch Engine"});
    EXPECT_FALSE(KW_General::SetRenderingEngine(text("photo"))) << "as many engines as can be numbered";
}

}  // namespace
