#include "host/Host.h"

#include "platform/host/DialogControl.h"
#include "platform/host/HttpOptions.h"
#include "platform/host/RunLoop.h"
#include "tests/support/ScriptedPresenter.h"

#include <dlfcn.h>
#include <gmock/gmock.h>

namespace {

using host::Host;
using platform::DialogControl;

std::string bundlePath(const std::string& name) {
    return std::string(TEST_BUNDLES) + '/' + name + ".bundle";
}

host::AddOn& loaded(Host& host, const std::string& name) {
    return *std::get<host::AddOn*>(host.load(bundlePath(name)));
}

bool isInMemory(const std::string& name) {
    void* const handle = dlopen((bundlePath(name) + '/' + name + ".so").c_str(), RTLD_LAZY | RTLD_NOLOAD);
    if (handle != nullptr) dlclose(handle);
    return handle != nullptr;
}

TEST(Host, WhatIsRefusedUnloadedOrLeftWhenTheHostEndsLeavesMemory) {
    {
        Host host;
        for (const char* const fault :
             {"NO_GET_EXPORTED", "WRONG_INTERFACE_VERSION", "DOES_NOT_REGISTER", "REGISTRATION_FAILS",
              "REGISTRATION_THROWS", "INITIALISATION_FAILS"}) {
            EXPECT_TRUE(std::holds_alternative<host::LoadError>(host.load(bundlePath(fault)))) << fault;
            EXPECT_FALSE(isInMemory(fault)) << fault;
        }
        EXPECT_THAT(host.addOns(), testing::IsEmpty());
        host::AddOn& first = loaded(host, "Sample");
        loaded(host, "Second");
        EXPECT_FALSE(host.unload(first));
        EXPECT_FALSE(isInMemory("Sample"));
        EXPECT_TRUE(isInMemory("Second"));
    }
    EXPECT_FALSE(isInMemory("Second"));
    EXPECT_EQ(Host::current(), nullptr);
}

TEST(Host, AChoiceThatNoMenuOffersIsRefused) {
    Host host;
    host::AddOn& addOn = loaded(host, "Sample");
    EXPECT_EQ(host.choose(addOn, 1000, 1), "there is no menu 1000");
    addOn.handlers.clear();
    EXPECT_EQ(host.choose(addOn, 1001, 1), "Sample has installed no handler for menu 1001");
}

TEST(Host, UnloadingEndsModelessDialogsAndTransfers) {
    ScriptedPresenter user;
    Host host;
    host::AddOn& addOn = loaded(host, "Sample");
    EXPECT_FALSE(host.choose(addOn, 1001, 3));
    EXPECT_FALSE(host.choose(addOn, 1001, 8));
    EXPECT_EQ(addOn.modelessWindows.size(), 1U);
    EXPECT_EQ(platform::transfersUnderWay(), 1U);
    EXPECT_FALSE(host.unload(addOn));
    EXPECT_THAT(DialogControl::instance().openDialogs(), testing::IsEmpty());
    EXPECT_EQ(platform::transfersUnderWay(), 0U);
    EXPECT_FALSE(isInMemory("Sample"));
    platform::RunLoop::main().dispatch(0);

    host::AddOn& fetchesAtClose = loaded(host, "Second");
    EXPECT_FALSE(host.choose(fetchesAtClose, 1001, 3));
    EXPECT_FALSE(host.unload(fetchesAtClose, host::FreeDataCall::LeftOut));
    EXPECT_EQ(platform::transfersUnderWay(), 0U);
}

}  // namespace
