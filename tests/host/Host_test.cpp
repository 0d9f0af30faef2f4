#include "host/Host.h"

#include "host/ErrorCodes.h"
#include "platform/host/DialogControl.h"
#include "platform/host/HttpOptions.h"
#include "platform/host/ImageCleanup.h"
#include "platform/host/RunLoop.h"
#include "tests/support/ScriptedPresenter.h"
#include "tests/support/TemporaryFolder.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <fstream>

namespace {

using host::AddOn;
using host::Host;
using platform::DialogControl;
using platform::UserAction;
using testing::ElementsAre;
using testing::HasSubstr;

std::string bundlePath(const std::string& name) {
    return std::string(TEST_BUNDLES) + '/' + name + ".bundle";
}

AddOn* loaded(Host& host, const std::string& name) {
    const auto result = host.load(bundlePath(name));
    const auto* const error = std::get_if<host::LoadError>(&result);
    EXPECT_EQ(error, nullptr) << error->reason;
    return error == nullptr ? std::get<AddOn*>(result) : nullptr;
}

std::string failure(Host& host, const std::string& path) {
    const auto result = host.load(path);
    const auto* const error = std::get_if<host::LoadError>(&result);
    return error != nullptr ? error->reason : "loaded";
}

bool isInMemory(const std::string& name) {
    void* const handle = dlopen((bundlePath(name) + '/' + name + ".so").c_str(), RTLD_LAZY | RTLD_NOLOAD);
    if (handle != nullptr) dlclose(handle);
    return handle != nullptr;
}

TEST(Host, ABundleThatCannotBeUsedIsRefusedWithOneLineThatSaysWhyAndLeavesNothingBehind) {
    const std::pair<const char*, const char*> cases[] = {
        {"NO_GET_EXPORTED", "NO_GET_EXPORTED.so does not export GetExportedFuncAddrs"},
        {"NO_SET_IMPORTED", "NO_SET_IMPORTED.so does not export SetImportedFuncAddrs"},
        {"WRONG_INTERFACE_VERSION",
         "its record names interface version 0x00150003, this host has 0x00160001"},
        {"WRONG_HOST_VERSION", "its record names host version 21000, this host has 22000"},
        {"NO_ENTRY_POINT", "its record lacks the entry point for initialisation"},
        {"DOES_NOT_REGISTER", "the add-on does not register in this host: CheckEnvironment answered 0"},
        {"REGISTRATION_FAILS", "RegisterInterface answered error 4711"},
        {"REGISTRATION_THROWS", "RegisterInterface threw an exception"},
        {"INITIALISATION_FAILS", "Initialize answered error 0x81060999"},
    };
    Host host;
    for (const auto& [bundle, reason] : cases) {
        EXPECT_EQ(failure(host, bundlePath(bundle)), reason);
        EXPECT_FALSE(isInMemory(bundle)) << bundle;
    }
    EXPECT_THAT(failure(host, bundlePath("UNRESOLVED")), HasSubstr("nobodyDefinesThis"));
    EXPECT_THAT(host.addOns(), testing::IsEmpty());
}

TEST(Host, APathThatIsNoBundleIsRefused) {
    const TemporaryFolder folder;
    folder.makeFolder("Empty.bundle");
    folder.write("Text.bundle/Text.so", "this is no shared object\n");
    folder.write("File.bundle", "\n");
    std::ifstream whole(bundlePath("Sample") + "/Sample.so", std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(whole), {}};
    folder.write("Cut.bundle/Cut.so", bytes.substr(0, bytes.size() / 8));
    Host host;
    EXPECT_EQ(failure(host, folder.path("Missing.bundle")), "there is no such folder");
    EXPECT_EQ(failure(host, ""), "there is no such folder");
    EXPECT_EQ(failure(host, folder.path("File.bundle")), "not a bundle: it is not a folder");
    EXPECT_EQ(failure(host, folder.path("Empty.bundle")), "not a bundle: it holds no shared object Empty.so");
    EXPECT_THAT(failure(host, folder.path("Text.bundle")), HasSubstr("its shared object cannot be loaded: "));
    EXPECT_EQ(failure(host, folder.path("Cut.bundle")), "its shared object Cut.so is cut short");
}

TEST(Host, AnAddOnGoesThroughItsLifeAndLeavesMemory) {
    Host host;
    AddOn* const addOn = loaded(host, "Sample");
    ASSERT_NE(addOn, nullptr);
    EXPECT_EQ(GS::UniStringToUtf8(addOn->info.name), "Sample 1.0");
    ASSERT_EQ(addOn->menus.all().size(), 1U);
    EXPECT_EQ(addOn->menus.all()[0].title, "Sample");
    EXPECT_EQ(addOn->menus.all()[0].items[2].text, "Status");
    EXPECT_EQ(failure(host, bundlePath("Sample")), "it is loaded already");
    EXPECT_EQ(failure(host, bundlePath("../bundles/Sample")), "it is loaded already");
    EXPECT_FALSE(host.unload(*addOn));
    EXPECT_FALSE(isInMemory("Sample"));
    EXPECT_NE(loaded(host, "Sample"), nullptr);
}

TEST(Host, SeveralAddOnsHaveEachTheirOwnMenusComeAndGoInAnyOrderAndEndWithTheHost) {
    {
        Host host;
        AddOn* const first = loaded(host, "Sample");
        AddOn* const second = loaded(host, "Second");
        ASSERT_TRUE(first != nullptr && second != nullptr);
        EXPECT_FALSE(host.choose(*second, 1001, 4));
        EXPECT_TRUE(second->menus.all()[0].items[3].checked());
        EXPECT_FALSE(first->menus.all()[0].items[3].checked());
        EXPECT_FALSE(host.unload(*first));
        EXPECT_FALSE(host.choose(*second, 1001, 4));
        EXPECT_FALSE(second->menus.all()[0].items[3].checked());
        EXPECT_NE(loaded(host, "Sample"), nullptr);
    }
    EXPECT_FALSE(isInMemory("Sample"));
    EXPECT_FALSE(isInMemory("Second"));
    EXPECT_EQ(Host::current(), nullptr);
}

TEST(Host, AChoiceThatCannotBeCarriedOutIsRefused) {
    Host host;
    AddOn* const addOn = loaded(host, "Sample");
    ASSERT_NE(addOn, nullptr);
    EXPECT_EQ(host.choose(*addOn, 1000, 1), "there is no menu 1000");
    EXPECT_EQ(host.choose(*addOn, 1001, 0), "the menu has no item 0");
    EXPECT_EQ(host.choose(*addOn, 1001, 9), "the menu has no item 9");
    addOn->handlers.clear();
    EXPECT_EQ(host.choose(*addOn, 1001, 1), "Sample has installed no handler for menu 1001");
}

TEST(Host, UnloadingEndsModelessDialogsAndTransfersAndWaitsForModalOnes) {
    ScriptedPresenter user;
    Host host;
    AddOn* const addOn = loaded(host, "Sample");
    ASSERT_NE(addOn, nullptr);
    user.thenLook([&] { EXPECT_TRUE(host.unload(*addOn)); }).then(UserAction::close());
    EXPECT_FALSE(host.choose(*addOn, 1001, 1));
    EXPECT_FALSE(host.choose(*addOn, 1001, 3));
    EXPECT_FALSE(host.choose(*addOn, 1001, 8));
    EXPECT_EQ(addOn->modelessWindows.size(), 1U);
    EXPECT_EQ(DialogControl::instance().openDialogs().size(), 1U);
    EXPECT_EQ(platform::transfersUnderWay(), 1U);
    EXPECT_FALSE(host.unload(*addOn));
    EXPECT_THAT(DialogControl::instance().openDialogs(), testing::IsEmpty());
    EXPECT_EQ(platform::transfersUnderWay(), 0U);
    EXPECT_FALSE(isInMemory("Sample"));
    platform::RunLoop::main().dispatch(0);
}

TEST(Host, AProbeCallsEveryEntryPointWithoutTheHostsFunctions) {
    Host host;
    for (const bool withTable : {false, true}) {
        const auto result =
            host.probe(bundlePath("Sample"), withTable ? host::ProbeTable::Empty : host::ProbeTable::None);
        const auto* const answers = std::get_if<std::vector<host::EntryPointAnswer>>(&result);
        ASSERT_NE(answers, nullptr);
        std::vector<GSErrCode> codes;
        for (const host::EntryPointAnswer& each : *answers)
            codes.push_back(each.result.value_or(-1));
        if (withTable) {
            EXPECT_THAT(codes, ElementsAre(0, 2, kAPIErrNoHostFunction, kAPIErrNoHostFunction, 0));
        } else {
            EXPECT_THAT(codes, ElementsAre(2, kAPIErrNotInitialised, kAPIErrNotInitialised, 0));
        }
        EXPECT_FALSE(isInMemory("Sample"));
    }
}

}  // namespace
