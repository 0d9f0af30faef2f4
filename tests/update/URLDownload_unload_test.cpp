#include <dlfcn.h>

#include "platform/host/ImageCleanup.h"
#include "tests/update/DownloadFixture.h"

namespace {

TEST(URLDownloadUnload, AModuleThatIsUnloadedTakesItsDownloadsWithIt) {
    const TemporaryFolder folder;
    const std::string path = folder.path("file");
    // The host ends what calls into a module before it unloads it; a careless one does not.
    for (const bool careful : {true, false}) {
        SCOPED_TRACE(careful ? "a careful host" : "a careless host");
        const support::FaultServer server(support::faultNamed("stall-half-way"));
        void* const module = dlopen(DOWNLOADER_MODULE, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(module, nullptr) << dlerror();
        const auto start =
            reinterpret_cast<bool (*)(const char*, const char*, int*)>(dlsym(module, "startDownload"));
        ASSERT_NE(start, nullptr);
        int chunks = 0;
        ASSERT_TRUE(start(server.url().c_str(), path.c_str(), &chunks));
        EXPECT_TRUE(runLoopUntil([&] { return chunks > 0; }));

        if (careful) platform::endCallsIntoImage(platform::imageOf(start));
        EXPECT_EQ(dlclose(module), 0);
        ASSERT_EQ(dlopen(DOWNLOADER_MODULE, RTLD_NOW | RTLD_NOLOAD), nullptr) << "it is gone";
        EXPECT_EQ(platform::transfersUnderWay(), 0U);
        platform::RunLoop::main().setClock([] { return 1e9; });  // the time limit would be over
        runLoopFor(std::chrono::milliseconds(30));
        platform::RunLoop::main().setClock({});
        EXPECT_GT(chunks, 0) << "no last message came";
        EXPECT_EQ(folder.read("file"), support::kFaultBody.substr(0, support::kFaultBody.size() / 2));
        EXPECT_EQ(folder.count(), 1) << "nothing is left beside the destination";
    }
}

}  // namespace
