#include "host/HostFunctions.h"

#include "host/ErrorCodes.h"
#include "host/Host.h"
#include "platform/ProjectInfo.h"

#include <gtest/gtest.h>
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

TEST_F(HostFunctionsTest, ARequestThatIsWrongIsAnErrorAndTouchesNothing) {
    GS::UniString text;
    std::uint32_t flags = 0;
    API_MenuItemRef item{1001, 2};
    for (const API_InterfaceID code :
         {APIIo_SetMenuItemTextID, APIIo_GetMenuItemFlagsID, APIIo_SetMenuItemFlagsID}) {
        for (API_MenuItemRef wrong :
             {API_MenuItemRef{1000, 1}, {1001, 0}, {1001, 9}, {1001, -1}, {1001, INT32_MIN}})
            EXPECT_EQ(interfaceRequest(code, &wrong, &flags, &text), host::kErrNoSuchMenu);
        EXPECT_EQ(interfaceRequest(code, &item, nullptr, nullptr), host::kErrBadParameter);
        EXPECT_EQ(interfaceRequest(code, nullptr, &flags, &text), host::kErrBadParameter);
    }
    for (const GSType code : {APIEnv_ApplicationID, APIEnv_GetLibrariesID, APIEnv_AddLibraryID,
                              APIEnv_ProjectID, APIEnv_GetRenderingEngineID, APIEnv_SetRenderingEngineID})
        EXPECT_EQ(environment(code, nullptr), host::kErrBadParameter);
    EXPECT_EQ(environment(0x3F3F3F3F, &item), host::kErrNotSupported);
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

TEST_F(HostFunctionsTest, AWindowIsRegisteredAndUnregisteredOnce) {
    const auto add = slot<HostFunction::RegisterModelessWindow>(HostSlot::RegisterModelessWindow);
    const auto remove = slot<HostFunction::UnregisterModelessWindow>(HostSlot::UnregisterModelessWindow);
    EXPECT_EQ(add(client_, 5, nullptr, 7, &GS::NULLGuid), 0);
    EXPECT_EQ(add(client_, 5, nullptr, 7, &GS::NULLGuid), host::kErrAlreadyThere);
    EXPECT_EQ(add(client_, 6, nullptr, 7, nullptr), host::kErrBadParameter);
    EXPECT_EQ(remove(client_, 5), 0);
    EXPECT_EQ(remove(client_, 5), host::kErrNotFound);
}

TEST_F(HostFunctionsTest, AModuleCommandIsAnsweredOnlyAsItWasPublished) {
    const auto test = slot<HostFunction::CommandTest>(HostSlot::CommandTest);
    constexpr GSType kCommand = 0x54455354;
    const API_ModulID module{0x1234, 0x5678};
    const API_ModulID other{0x1234, 0x5679};
    EXPECT_EQ(test(client_, &module, kCommand, 0), 0);
    EXPECT_EQ(test(client_, &other, kCommand, 0), host::kErrNotFound);
    EXPECT_EQ(test(client_, &module, kCommand + 1, 0), host::kErrNotFound);
    EXPECT_EQ(test(client_, &module, kCommand, 1), host::kErrNotFound);
    EXPECT_EQ(test(client_, nullptr, kCommand, 0), host::kErrBadParameter);
}

TEST_F(HostFunctionsTest, WhatTheHostThrowsBecomesAnErrorCode) {
    host_.setMenuListener([] { throw std::runtime_error("host fault"); });
    API_MenuItemRef item{1001, 2};
    std::uint32_t flags = kAPIMenuItemChecked;
    EXPECT_EQ(interfaceRequest(APIIo_SetMenuItemFlagsID, &item, &flags, nullptr), host::kErrInternal);
}

TEST_F(HostFunctionsTest, TheProjectIsUntitledUntilItHasAFile) {
    API_ProjectInfo info{};
    for (const char* const path : {"", "/Projects/Caff\xC3\xA8.pln"}) {
        host_.project().setFile(path);
        ASSERT_EQ(environment(APIEnv_ProjectID, &info), kNoError);
        EXPECT_EQ(info.untitled, *path == 0);
        EXPECT_EQ(info.location, IO::Location::FromPosixPath(path));
    }
}

TEST_F(HostFunctionsTest, AddOnsListTheEnginesAndChangeTheCurrentOne) {
    API_ModulID old{};
    ASSERT_EQ(environment(APIEnv_GetRenderingEngineID, &old), kNoError);
    host_.renderingEngines().replace({"Uno", "Due"});
    const auto identifier = slot<HostFunction::RenderingEngineID>(HostSlot::RenderingEngineID);
    EXPECT_EQ(slot<HostFunction::RenderingEngineCount>(HostSlot::RenderingEngineCount)(client_), 2);
    API_ModulID engines[2] = {};
    API_ModulID current{};
    for (const int number : {1, 2}) {
        API_ModulID& engine = engines[number - 1];
        ASSERT_EQ(identifier(client_, number, &engine), kNoError);
        EXPECT_EQ(menuName(engine), number == 1 ? "Uno" : "Due");
        ASSERT_EQ(environment(APIEnv_SetRenderingEngineID, &engine), kNoError);
        ASSERT_EQ(environment(APIEnv_GetRenderingEngineID, &current), kNoError);
        EXPECT_EQ(current, engine);
    }
    EXPECT_NE(engines[0], engines[1]);
    for (const int wrong : {-1, 0, 3})
        EXPECT_EQ(identifier(client_, wrong, &current), host::kErrNotFound);
    EXPECT_EQ(menuName(old), "error") << "an identifier is not used again";
    EXPECT_EQ(environment(APIEnv_SetRenderingEngineID, &old), host::kErrNotFound);
    EXPECT_EQ(host_.renderingEngines().current(), 2);
    host_.renderingEngines().clearCurrent();
    EXPECT_EQ(environment(APIEnv_GetRenderingEngineID, &current), host::kErrNotFound);
    host_.renderingEngines().replace({});
    EXPECT_EQ(environment(APIEnv_GetRenderingEngineID, &current), host::kErrNotFound);
}

}  // namespace
