#include "addon/ACAPlib.h"

#include "platform/FileSystem.h"
#include "platform/host/HttpOptions.h"
#include "platform/host/Resources.h"
#include "platform/host/RunLoop.h"
#include "platform/LibraryPart.h"
#include "platform/Rendering.h"
#include "tests/support/DataFolder.h"
#include "tests/support/RecordingHost.h"
#include "tests/support/ScriptedPresenter.h"
#include "tests/support/SettingsBytes.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <utility>

namespace {

using support::RecordingHost;

/// A built bundle, loaded anew: nothing was handed over to it yet.
class LoadedBundle {
public:
    explicit LoadedBundle(const std::filesystem::path& bundle = TESSARO_TEST_BUNDLE)
        : handle_(dlopen((bundle / bundle.stem()).concat(".so").c_str(), RTLD_NOW | RTLD_LOCAL)) {
        if (handle_ == nullptr) throw std::runtime_error(dlerror());
        exportedFunction<APIGetExportedFuncAddrsProc>(kAPIGetExportedFuncAddrsName)(&record);
    }
    ~LoadedBundle() { unload(); }

    void handOver(const APIImportedFunctions& table) {
        EXPECT_EQ(0, exportedFunction<APISetImportedFuncAddrsProc>(kAPISetImportedFuncAddrsName)(&table));
    }
    void unload() {
        if (handle_ != nullptr) dlclose(handle_);
        handle_ = nullptr;
    }

    APIExportedFunctions record;

private:
    template <typename Function>
    Function exportedFunction(const char* name) {
        return reinterpret_cast<Function>(dlsym(handle_, name));
    }
    void* handle_;
};

TEST(ExportedRecord, HoldsTheTwoStampsAndTheFourEntryPointsAndZeroElsewhere) {
    std::array<std::uint32_t, 30> words;
    words.fill(0xFFFFFFFF);
    APIExportedFunctions record;
    static_assert(sizeof record == sizeof words);
    std::memcpy(&record, words.data(), sizeof words);
    GetExportedFuncAddrs(&record);
    std::memcpy(words.data(), &record, sizeof words);
    EXPECT_EQ(0x00160001u, std::exchange(words[0], 0));
    EXPECT_EQ(22000u, std::exchange(words[10], 0));
    for (const std::size_t entryPoint : {2, 4, 6, 8})
        EXPECT_NE(0u, std::exchange(words[entryPoint], 0) | std::exchange(words[entryPoint + 1], 0));
    EXPECT_THAT(words, testing::Each(0));
}

// What the entry points answer too early, and the line that names a bundle, are in the console's transcripts.

TEST(Unloading, ReleasesTheResourcesAndCallsTheHookWhenFreeDataWasNotCalled) {
    const RSResModule ours = RSOpenResourceFile(TESSARO_TEST_BUNDLE);
    const RSResModule itsOwn = ours + 1;
    LoadedBundle bundle;
    EXPECT_NE(platform::findIcon(itsOwn, 32758), nullptr);
    bundle.unload();
    EXPECT_EQ(-1, RSCloseResourceFile(itsOwn)) << "it is closed already";
    EXPECT_EQ(0, RSRemoveModuleImageCache(ours)) << "both have the same images";
    RSCloseResourceFile(ours);

    const auto endWithoutFreeData = [] {
        ACAPI_SetDllTermHookProc([] { std::fputs("the hook", stderr); });
        const APIImportedFunctions table{};
        SetImportedFuncAddrs(&table);
        APIExportedFunctions record;
        GetExportedFuncAddrs(&record);
        record.initialize(&record);
        std::exit(0);
    };
    EXPECT_EXIT(endWithoutFreeData(), testing::ExitedWithCode(0),
                "addon_test.bundle\"\\), calling custom DllTermHookProc\nthe hook");
}

TEST(AddOns, RegisterInTheirHostOnlyAndLeaveTheCommandsOfOtherMenusAlone) {
    const struct {
        const char* bundle;
        const char* name;
        const char* description;
    } addOns[] = {{TESSARO_TEST_BUNDLE, "TessaroLibrary 22.0 (AC220)", "TessaroLibrary"},
                  {TESSARO_TEST_EXAMPLE, "TessaroParts 22.0 (AC220)", "TessaroParts"},
                  {TESSARO_TEST_FIRST_ADDON, "Hello 1.0", "A first add-on"}};
    for (const auto& each : addOns) {
        SCOPED_TRACE(each.name);
        const DataFolder data;
        const ScriptedPresenter nobody;
        RecordingHost host;
        LoadedBundle bundle(each.bundle);
        bundle.handOver(RecordingHost::table());
        for (const std::uint32_t application : {0u, 2u, 0xFFFFFFFFu, 1u}) {
            API_EnvirParams params{};
            params.serverInfo.serverApplication = application;
            const bool known = application == 1;
            EXPECT_EQ(known ? 2 : 0, bundle.record.checkEnvironment(&params));
            EXPECT_EQ(known ? each.name : "", GS::UniStringToUtf8(params.addOnInfo.name));
            EXPECT_EQ(known ? each.description : "", GS::UniStringToUtf8(params.addOnInfo.description));
        }
        EXPECT_EQ(0, bundle.record.registerInterface());
        EXPECT_EQ(0, bundle.record.initialize(&bundle));
        EXPECT_EQ((std::set<APIClient>{nullptr, &bundle}), host.clients) << "none before it was handed over";
        EXPECT_FALSE(host.handlers.empty());
        host.calls.clear();
        for (const auto& [menu, handler] : host.handlers) {
            for (std::int16_t other = 32490; other < 32510; ++other) {
                const API_MenuParams params{{other, 1}};
                EXPECT_EQ(0, other == menu ? 0 : handler(&params));
            }
        }
        EXPECT_TRUE(host.calls.empty());
        bundle.record.freeData();
    }
}

TEST(FirstCommand, ReadsTheLanguageAnewAndIsFollowedByTheAutomaticCheckUnlessItIsTheManualOne) {
    constexpr const char* kSettings = "TessaroLibrary_220.cfg";
    platform::setConnectRules({{"update.tessaro.example", 80, "127.0.0.1", 1}});
    for (const int item : {2, 3}) {
        const DataFolder data;
        RecordingHost host;
        ScriptedPresenter user;
        data.write(kSettings, std::string(200'000, 'x'));  // too large to be read at the beginning
        LoadedBundle bundle;
        bundle.handOver(RecordingHost::table());
        EXPECT_EQ(0, bundle.record.registerInterface());
        EXPECT_EQ(0, bundle.record.initialize(&bundle));
        data.write(kSettings, exchanged("$Language_str: ita\n"));

        if (item == 2) {
            user.thenLook([] { EXPECT_EQ(1, DGListGetSelected(32734, 3, 1)) << "Italian"; })
                .then(platform::UserAction::click(32734, 2));
        }
        for (const int chosen : {item, 0}) {
            const API_MenuParams params{{32501, chosen}};
            EXPECT_EQ(0, host.handlers.at(32501)(&params));
        }
        const std::string stored = exchanged(data.read(kSettings));
        const std::string expected = item == 2 ? "AutoUpdate: 1\n" : "LastUpdateCheck_220: ";
        EXPECT_TRUE(stored.starts_with("$Language_str: ita\n$" + expected)) << stored;
        EXPECT_EQ(2, std::ranges::count(stored, '$')) << "no automatic check after the manual one";
        EXPECT_EQ(item == 3, platform::transfersUnderWay() == 1);

        for (const short id : platform::DialogControl::instance().openDialogs())
            DGModelessClose(id);
        bundle.record.freeData();
        bundle.unload();
        EXPECT_EQ(0u, platform::transfersUnderWay()) << "a module takes its downloads with it";
        platform::RunLoop::main().setClock([] { return 1e9; });  // the time limit would be over
        platform::RunLoop::main().dispatch(0);
        platform::RunLoop::main().setClock({});
    }
    platform::setConnectRules({});
}

TEST(Forwarders, HandTheClientAndTheArgumentsToTheHost) {
    RecordingHost host;
    APIExportedFunctions record;
    GetExportedFuncAddrs(&record);
    record.initialize(&host);
    host.calls.clear();
    host.clients.clear();
    EXPECT_EQ(0, ACAPI_Register_Menu(32501, 7, 13, 5));
    EXPECT_EQ(0, ACAPI_KeepInMemory(true));
    EXPECT_EQ(0, ACAPI_RegisterModelessWindow(3, nullptr, 7, GS::NULLGuid));
    EXPECT_EQ(0, ACAPI_UnregisterModelessWindow(4));
    EXPECT_EQ(0, EXPGetRendCount());
    ACAPI_GetReleaseNumber(nullptr);
    API_ServerApplicationInfo info{};
    ACAPI_GetReleaseNumber(&info);
    EXPECT_EQ(22, info.mainVersion);
    EXPECT_EQ((std::vector<std::string>{"Register_Menu 32501 7 13 5", "KeepInMemory true",
                                        "RegisterModelessWindow 3 7 no callback null guid",
                                        "UnregisterModelessWindow 4"}),
              host.calls);
    EXPECT_EQ(std::set<APIClient>{&host}, host.clients);
    record.freeData();
    host.clients.clear();
    ACAPI_KeepInMemory(true);
    EXPECT_EQ(std::set<APIClient>{nullptr}, host.clients);
}

TEST(Forwarders, AnswerThatTheFunctionIsMissingWhenItsSlotIsEmpty) {
    RecordingHost host;
    const APIImportedFunctions empty{};
    SetImportedFuncAddrs(&empty);
    for (const GSErrCode answer :
         {ACAPI_Register_Menu(32500, 0, 13, 0), ACAPI_Register_BuiltInLibrary(),
          ACAPI_Install_MenuHandler(32500, nullptr), ACAPI_KeepInMemory(true),
          ACAPI_Environment(APIEnv_ProjectID, nullptr, nullptr, nullptr),
          ACAPI_Interface(APIIo_SetMenuItemTextID, nullptr, nullptr, nullptr),
          ACAPI_RegisterModelessWindow(1, nullptr, 7, GS::NULLGuid), ACAPI_UnregisterModelessWindow(1),
          ACAPI_LibPart_Search(nullptr, false, false), ACAPI_LibPart_Get(nullptr),
          ACAPI_Command_Test(nullptr, 0, 0)})
        EXPECT_EQ(hostError(0x81060387), answer);
    EXPECT_EQ(0, EXPGetRendCount());
    API_ServerApplicationInfo info{1, 99, 0, 0};
    ACAPI_GetReleaseNumber(&info);
    EXPECT_EQ(99, info.mainVersion) << "left alone";
    EXPECT_TRUE(host.calls.empty());
}

}  // namespace
