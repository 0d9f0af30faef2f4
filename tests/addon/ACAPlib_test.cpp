#include "addon/ACAPlib.h"

#include "platform/FileSystem.h"
#include "platform/LibraryPart.h"
#include "tests/support/RecordingHost.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <algorithm>
#include <cstring>
#include <string>

namespace {

using support::RecordingHost;

/// The built bundle, loaded anew: nothing was handed over to it yet.
class LoadedBundle {
public:
    LoadedBundle() : handle_(dlopen(TESSARO_TEST_BUNDLE "/TessaroLibrary.so", RTLD_NOW | RTLD_LOCAL)) {
        if (handle_ == nullptr) throw std::runtime_error(dlerror());
        exportedFunction<APIGetExportedFuncAddrsProc>(kAPIGetExportedFuncAddrsName)(&record);
    }
    ~LoadedBundle() { unload(); }
    LoadedBundle(const LoadedBundle&) = delete;
    LoadedBundle& operator=(const LoadedBundle&) = delete;

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
    unsigned char bytes[120];
    std::memset(bytes, 0xFF, sizeof bytes);
    APIExportedFunctions record;
    std::memcpy(&record, bytes, sizeof record);
    GetExportedFuncAddrs(&record);
    std::memcpy(bytes, &record, sizeof bytes);

    const unsigned char interfaceVersion[] = {0x01, 0x00, 0x16, 0x00};
    EXPECT_EQ(0, std::memcmp(bytes, interfaceVersion, 4));
    const unsigned char hostVersion[] = {0xF0, 0x55, 0, 0};  // 22000
    EXPECT_EQ(0, std::memcmp(bytes + 40, hostVersion, 4));
    const auto isZero = [&](int from, int to) {
        return std::count(bytes + from, bytes + to, 0) == to - from;
    };
    for (const int offset : {8, 16, 24, 32})
        EXPECT_FALSE(isZero(offset, offset + 8));
    EXPECT_TRUE(isZero(4, 8));
    EXPECT_TRUE(isZero(44, 120));
}

TEST(EntryPoints, AnswerWithoutReachingTheAddOnUntilTheTableIsThere) {
    LoadedBundle bundle;
    API_EnvirParams params{};
    params.serverInfo.serverApplication = 1;
    EXPECT_EQ(0, bundle.record.checkEnvironment(&params));
    EXPECT_TRUE(params.addOnInfo.name.IsEmpty());
    EXPECT_EQ(hostError(0x81060001), bundle.record.registerInterface());
    EXPECT_EQ(hostError(0x81060001), bundle.record.initialize(&bundle));
    EXPECT_EQ(hostError(0x81060001), bundle.record.freeData());
    testing::internal::CaptureStderr();
    bundle.unload();
    EXPECT_EQ("", testing::internal::GetCapturedStderr()) << "the client pointer was never taken";

    LoadedBundle withTable;
    withTable.handOver(APIImportedFunctions{});
    EXPECT_EQ(2, withTable.record.checkEnvironment(&params));
    EXPECT_EQ(hostError(0x81060387), withTable.record.registerInterface()) << "its slots are empty";
    EXPECT_EQ(hostError(0x81060387), withTable.record.initialize(&withTable));
    EXPECT_EQ(0, withTable.record.freeData());
}

TEST(Unloading, WithoutFreeDataPrintsTheAbnormalTerminationWithTheBundlePath) {
    for (const bool freeData : {false, true}) {
        LoadedBundle bundle;
        bundle.handOver(APIImportedFunctions{});
        bundle.record.initialize(&bundle);
        if (freeData) bundle.record.freeData();
        testing::internal::CaptureStderr();
        bundle.unload();
        EXPECT_EQ(freeData ? "" : "Abnormal add-on termination (\"" TESSARO_TEST_BUNDLE "\")\n",
                  testing::internal::GetCapturedStderr());
    }
}

TEST(Forwarders, HandTheClientAndTheArgumentsToTheHost) {
    RecordingHost host;
    EXPECT_EQ(0, ACAPI_Register_Menu(32501, 7, 13, 5));
    EXPECT_EQ(0, ACAPI_KeepInMemory(true));
    EXPECT_EQ(0, ACAPI_RegisterModelessWindow(3, nullptr, 7, GS::NULLGuid));
    EXPECT_EQ(0, ACAPI_UnregisterModelessWindow(3));
    EXPECT_EQ((std::vector<std::string>{"Register_Menu 32501 7 13 5", "KeepInMemory true",
                                        "RegisterModelessWindow 7 no callback null guid",
                                        "UnregisterModelessWindow"}),
              host.calls);
}

TEST(Forwarders, AnswerThatTheFunctionIsMissingWhenItsSlotIsEmpty) {
    RecordingHost host;
    const APIImportedFunctions empty{};
    SetImportedFuncAddrs(&empty);
    const GSErrCode missing = hostError(0x81060387);
    EXPECT_EQ(missing, ACAPI_Register_Menu(32500, 0, 13, 0));
    EXPECT_EQ(missing, ACAPI_Register_BuiltInLibrary());
    EXPECT_EQ(missing, ACAPI_Install_MenuHandler(32500, nullptr));
    EXPECT_EQ(missing, ACAPI_KeepInMemory(true));
    EXPECT_EQ(missing, ACAPI_Environment(APIEnv_ProjectID, nullptr, nullptr, nullptr));
    EXPECT_EQ(missing, ACAPI_Interface(APIIo_SetMenuItemTextID, nullptr, nullptr, nullptr));
    EXPECT_EQ(missing, ACAPI_RegisterModelessWindow(1, nullptr, 7, GS::NULLGuid));
    EXPECT_EQ(missing, ACAPI_UnregisterModelessWindow(1));
    EXPECT_EQ(missing, ACAPI_LibPart_Search(nullptr, false, false));
    EXPECT_EQ(missing, ACAPI_LibPart_Get(nullptr));
    EXPECT_EQ(missing, ACAPI_Command_Test(nullptr, 0, 0));
    EXPECT_TRUE(host.calls.empty());
}

TEST(ReleaseNumber, ComesFromTheEnvironmentAndLeavesTheRecordAloneWithoutIt) {
    RecordingHost host;
    API_ServerApplicationInfo info{};
    ACAPI_GetReleaseNumber(&info);
    EXPECT_EQ(22, info.mainVersion);
    ACAPI_GetReleaseNumber(nullptr);

    const APIImportedFunctions withoutEnvironment = RecordingHost::table({HostSlot::Environment});
    SetImportedFuncAddrs(&withoutEnvironment);
    info.mainVersion = 99;
    ACAPI_GetReleaseNumber(&info);
    EXPECT_EQ(99, info.mainVersion);
}

TEST(OwnLocation, IsTheBundleFolder) {
    IO::Location location;
    ASSERT_EQ(0, ACAPI_GetOwnLocation(location));
    GS::UniString path;
    ASSERT_EQ(0, location.ToPath(&path));
    EXPECT_THAT(GS::UniStringToUtf8(path), testing::EndsWith("/addon_test.bundle"));
}

}  // namespace
