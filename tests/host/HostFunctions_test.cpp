#include "host/HostFunctions.h"

#include "host/ErrorCodes.h"
#include "host/Host.h"
#include "platform/ProjectInfo.h"

#include <gtest/gtest.h>
#include <filesystem>
#include <stdexcept>

namespace {

using host::Host;

/// The host's functions as an add-on calls them.
class HostFunctionsTest : public testing::Test {
protected:
    HostFunctionsTest() {
        const auto result = host_.load(std::string(TEST_BUNDLES) + "/Sample.bundle");
        client_ = std::get<host::AddOn*>(result);
    }

    template <typename Function>
    static Function slot(HostSlot number) {
        return reinterpret_cast<Function>(host::functionTable().slots[static_cast<std::size_t>(number)]);
    }
    GSErrCode interfaceRequest(API_InterfaceID code, void* par1, void* par2, void* par3) {
        return slot<HostFunction::Interface>(HostSlot::Interface)(client_, code, par1, par2, par3);
    }
    GSErrCode environment(GSType code, void* par1) {
        const auto request = static_cast<API_EnvironmentID>(code);
        return slot<HostFunction::Environment>(HostSlot::Environment)(client_, request, par1, nullptr,
                                                                      nullptr);
    }
    std::string menuName(const API_ModulID& engine) {
        GS::UniString name;
        const auto ask = slot<HostFunction::RenderingEngineMenuName>(HostSlot::RenderingEngineMenuName);
        return ask(client_, &engine, &name) == kNoError ? GS::UniStringToUtf8(name) : "error";
    }

    Host host_;
    host::AddOn* client_ = nullptr;
};

TEST_F(HostFunctionsTest, OnlyAddOnsThatAreLoadedAreServedAndOnlyWithParameters) {
    const auto keep = slot<HostFunction::KeepInMemory>(HostSlot::KeepInMemory);
    EXPECT_EQ(keep(client_, true), 0);
    EXPECT_TRUE(client_->keepInMemory);
    EXPECT_EQ(keep(nullptr, true), host::kErrBadClient);
    EXPECT_EQ(keep(this, true), host::kErrBadClient);
    EXPECT_EQ(slot<HostFunction::LibPartGet>(HostSlot::LibPartGet)(client_, nullptr), host::kErrBadParameter);
}

TEST_F(HostFunctionsTest, MenuItemsAreReachedByMenuAndNumberOthersAreErrors) {
    GS::UniString text = GS::UniStringFromUtf8("Nuovo testo");
    std::uint32_t flags = 0xFFFF;
    API_MenuItemRef item{1001, 2};
    EXPECT_EQ(interfaceRequest(APIIo_SetMenuItemTextID, &item, nullptr, &text), 0);
    EXPECT_EQ(client_->menus.all()[0].items[1].text, "Nuovo testo");
    EXPECT_EQ(interfaceRequest(APIIo_GetMenuItemFlagsID, &item, &flags, nullptr), 0);
    EXPECT_EQ(flags, 0U);
    flags = kAPIMenuItemChecked;
    EXPECT_EQ(interfaceRequest(APIIo_SetMenuItemFlagsID, &item, &flags, nullptr), 0);
    EXPECT_TRUE(client_->menus.all()[0].items[1].checked());

    for (API_MenuItemRef wrong : {API_MenuItemRef{1000, 1}, {1001, 0}, {1001, 9}, {1001, -1}}) {
        EXPECT_EQ(interfaceRequest(APIIo_SetMenuItemTextID, &wrong, nullptr, &text), host::kErrNoSuchMenu);
        EXPECT_EQ(interfaceRequest(APIIo_GetMenuItemFlagsID, &wrong, &flags, nullptr), host::kErrNoSuchMenu);
        EXPECT_EQ(interfaceRequest(APIIo_SetMenuItemFlagsID, &wrong, &flags, nullptr), host::kErrNoSuchMenu);
    }
    EXPECT_EQ(interfaceRequest(APIIo_SetMenuItemTextID, &item, nullptr, nullptr), host::kErrBadParameter);
    EXPECT_EQ(interfaceRequest(APIIo_GetMenuItemFlagsID, nullptr, &flags, nullptr), host::kErrBadParameter);
    EXPECT_EQ(interfaceRequest(static_cast<API_InterfaceID>(1), &item, &flags, nullptr),
              host::kErrNotSupported);
}

TEST_F(HostFunctionsTest, AMenuIsRegisteredOnceAndOnlyWhenTheResourcesHaveItItsHandlerAnyTime) {
    const auto registerMenu = slot<HostFunction::RegisterMenu>(HostSlot::RegisterMenu);
    const APIMenuRegistration again{1001, 0, 13, 0};
    const APIMenuRegistration missing{1002, 0, 13, 0};
    EXPECT_EQ(registerMenu(client_, &again), host::kErrAlreadyThere);
    EXPECT_EQ(registerMenu(client_, &missing), host::kErrNoResource);
    EXPECT_EQ(registerMenu(client_, nullptr), host::kErrBadParameter);
    const auto install = slot<HostFunction::InstallMenuHandler>(HostSlot::InstallMenuHandler);
    EXPECT_EQ(install(client_, 4242, [](const API_MenuParams*) { return kNoError; }), 0);
    EXPECT_EQ(install(client_, 4242, nullptr), host::kErrBadParameter);
}

TEST_F(HostFunctionsTest, TheReleaseNumberIsThatOfTheHost) {
    API_ServerApplicationInfo info{};
    EXPECT_EQ(environment(APIEnv_ApplicationID, &info), 0);
    EXPECT_EQ(info.serverApplication, 1U);
    EXPECT_EQ(info.mainVersion, 22);
    EXPECT_EQ(environment(APIEnv_ApplicationID, nullptr), host::kErrBadParameter);
    EXPECT_EQ(environment(0x3F3F3F3F, &info), host::kErrNotSupported);
}

TEST_F(HostFunctionsTest, AWindowIsRegisteredAndUnregisteredOnce) {
    const auto add = slot<HostFunction::RegisterModelessWindow>(HostSlot::RegisterModelessWindow);
    const auto remove = slot<HostFunction::UnregisterModelessWindow>(HostSlot::UnregisterModelessWindow);
    EXPECT_EQ(add(client_, 5, nullptr, 7, &GS::NULLGuid), 0);
    EXPECT_EQ(add(client_, 5, nullptr, 7, &GS::NULLGuid), host::kErrAlreadyThere);
    EXPECT_EQ(add(client_, 6, nullptr, 7, nullptr), host::kErrBadParameter);
    EXPECT_EQ(remove(client_, 5), 0);
    EXPECT_EQ(remove(client_, 5), host::kErrNotFound);
}

TEST_F(HostFunctionsTest, AModuleCommandIsAnsweredWhileItsAddOnIsLoaded) {
    const auto test = slot<HostFunction::CommandTest>(HostSlot::CommandTest);
    const auto second = host_.load(std::string(TEST_BUNDLES) + "/Second.bundle");
    host::AddOn* const asker = std::get<host::AddOn*>(second);
    constexpr GSType kCommand = 0x54455354;
    const API_ModulID module{0x1234, 0x5678};
    const API_ModulID other{0x1234, 0x5679};
    EXPECT_EQ(test(asker, &module, kCommand, 0), 0);
    EXPECT_EQ(test(asker, &other, kCommand, 0), host::kErrNotFound);
    EXPECT_EQ(test(asker, &module, kCommand + 1, 0), host::kErrNotFound);
    EXPECT_EQ(test(asker, &module, kCommand, 1), host::kErrNotFound);
    EXPECT_EQ(test(asker, nullptr, kCommand, 0), host::kErrBadParameter);
    asker->commands.clear();
    host_.unload(*client_);
    EXPECT_EQ(test(asker, &module, kCommand, 0), host::kErrNotFound);
}

TEST_F(HostFunctionsTest, WhatTheHostThrowsBecomesAnErrorCode) {
    host_.setMenuListener([] { throw std::runtime_error("host fault"); });
    API_MenuItemRef item{1001, 2};
    std::uint32_t flags = kAPIMenuItemChecked;
    EXPECT_EQ(interfaceRequest(APIIo_SetMenuItemFlagsID, &item, &flags, nullptr), host::kErrInternal);
}

TEST_F(HostFunctionsTest, TheProjectIsUntitledUntilItHasAFile) {
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

TEST_F(HostFunctionsTest, AddOnsListTheEnginesAndChangeTheCurrentOne) {
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

TEST_F(HostFunctionsTest, WithoutACurrentEngineTheHostCannotTell) {
    API_ModulID engine{};
    host_.renderingEngines().clearCurrent();
    EXPECT_EQ(environment(APIEnv_GetRenderingEngineID, &engine), host::kErrNotFound);
    host_.renderingEngines().replace({});
    EXPECT_EQ(environment(APIEnv_GetRenderingEngineID, &engine), host::kErrNotFound);
    EXPECT_FALSE(host_.renderingEngines().setCurrent(1));
}

TEST_F(HostFunctionsTest, ANewListDoesNotReuseIdentifiers) {
    API_ModulID before{};
    API_ModulID after{};
    ASSERT_EQ(environment(APIEnv_GetRenderingEngineID, &before), kNoError);
    host_.renderingEngines().replace({"Other"});
    ASSERT_EQ(environment(APIEnv_GetRenderingEngineID, &after), kNoError);
    EXPECT_NE(before, after);
    EXPECT_EQ(menuName(before), "error");
}

}  // namespace
