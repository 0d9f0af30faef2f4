#include "host/ErrorCodes.h"
#include "host/Host.h"
#include "host/HostFunctions.h"
#include "platform/ProjectInfo.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

/// The open project and the rendering engines as an add-on sees them.
class ProjectAndEnginesTest : public testing::Test {
protected:
    ProjectAndEnginesTest() {
        client_ = std::get<host::AddOn*>(host_.load(std::string(TEST_BUNDLES) + "/Sample.bundle"));
    }

    template <typename Function>
    static Function slot(HostSlot number) {
        return reinterpret_cast<Function>(host::functionTable().slots[static_cast<std::size_t>(number)]);
    }
    GSErrCode environment(API_EnvironmentID code, void* par1) {
        return slot<HostFunction::Environment>(HostSlot::Environment)(client_, code, par1, nullptr, nullptr);
    }
    std::string menuName(const API_ModulID& engine) {
        GS::UniString name;
        const auto ask = slot<HostFunction::RenderingEngineMenuName>(HostSlot::RenderingEngineMenuName);
        return ask(client_, &engine, &name) == kNoError ? GS::UniStringToUtf8(name) : "error";
    }

    host::Host host_;
    host::AddOn* client_ = nullptr;
};

TEST_F(ProjectAndEnginesTest, TheProjectIsUntitledUntilItHasAFile) {
    host::Project& project = host_.project();
    API_ProjectInfo info{};
    ASSERT_EQ(environment(APIEnv_ProjectID, &info), kNoError);
    EXPECT_TRUE(info.untitled);
    EXPECT_TRUE(info.location.IsEmpty());

    ASSERT_TRUE(project.setFile("/Projects/Caff\xC3\xA8.pln"));
    ASSERT_EQ(environment(APIEnv_ProjectID, &info), kNoError);
    EXPECT_FALSE(info.untitled);
    EXPECT_EQ(info.location, IO::Location(GS::UniStringFromUtf8("/Projects/Caff\xC3\xA8.pln")));

    for (const char* const noFile : {"", "/", "/Projects/"})
        EXPECT_FALSE(project.setFile(noFile));
    EXPECT_EQ(project.path(), "/Projects/Caff\xC3\xA8.pln");
    ASSERT_TRUE(project.setFile("House.pln"));
    EXPECT_EQ(project.path(), std::filesystem::current_path() / "House.pln");

    project.startNew();
    ASSERT_EQ(environment(APIEnv_ProjectID, &info), kNoError);
    EXPECT_TRUE(info.untitled);
    EXPECT_TRUE(info.location.IsEmpty());
    EXPECT_EQ(environment(APIEnv_ProjectID, nullptr), host::kErrBadParameter);
}

TEST_F(ProjectAndEnginesTest, AddOnsListTheEnginesAndChangeTheCurrentOne) {
    host_.renderingEngines().replace({"Uno", "Due"});
    const auto identifier = slot<HostFunction::RenderingEngineID>(HostSlot::RenderingEngineID);
    EXPECT_EQ(slot<HostFunction::RenderingEngineCount>(HostSlot::RenderingEngineCount)(client_), 2);
    API_ModulID first{};
    API_ModulID second{};
    API_ModulID current{};
    ASSERT_EQ(identifier(client_, 1, &first), kNoError);
    ASSERT_EQ(identifier(client_, 2, &second), kNoError);
    EXPECT_NE(first, second);
    for (const int wrong : {-1, 0, 3})
        EXPECT_EQ(identifier(client_, wrong, &current), host::kErrNotFound);
    EXPECT_EQ(menuName(first), "Uno");
    EXPECT_EQ(menuName(second), "Due");
    EXPECT_EQ(menuName({7, 7}), "error");

    ASSERT_EQ(environment(APIEnv_GetRenderingEngineID, &current), kNoError);
    EXPECT_EQ(current, first);
    ASSERT_EQ(environment(APIEnv_SetRenderingEngineID, &second), kNoError);
    ASSERT_EQ(environment(APIEnv_GetRenderingEngineID, &current), kNoError);
    EXPECT_EQ(current, second);
    API_ModulID unknown{7, 7};
    EXPECT_EQ(environment(APIEnv_SetRenderingEngineID, &unknown), host::kErrNotFound);
    EXPECT_EQ(host_.renderingEngines().current(), 2);
}

TEST_F(ProjectAndEnginesTest, WithoutACurrentEngineTheHostCannotTell) {
    API_ModulID engine{};
    host_.renderingEngines().clearCurrent();
    EXPECT_EQ(environment(APIEnv_GetRenderingEngineID, &engine), host::kErrNotFound);
    host_.renderingEngines().replace({});
    EXPECT_EQ(environment(APIEnv_GetRenderingEngineID, &engine), host::kErrNotFound);
    EXPECT_FALSE(host_.renderingEngines().setCurrent(1));
}

TEST_F(ProjectAndEnginesTest, ANewListDoesNotReuseIdentifiers) {
    API_ModulID before{};
    API_ModulID after{};
    ASSERT_EQ(environment(APIEnv_GetRenderingEngineID, &before), kNoError);
    host_.renderingEngines().replace({"Other"});
    ASSERT_EQ(environment(APIEnv_GetRenderingEngineID, &after), kNoError);
    EXPECT_NE(before, after);
    EXPECT_EQ(menuName(before), "error");
}

}  // namespace
