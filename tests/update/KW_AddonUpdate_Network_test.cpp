#include "platform/host/HttpOptions.h"
#include "platform/host/RunLoop.h"
#include "tests/support/FaultServer.h"
#include "tests/update/UpdateFixture.h"

#include <chrono>

namespace {

/// The check over a real connection; what servers do wrong is the download's to answer.
TEST_F(UpdateFixture, AsksTheServerInThePlainestWayAndTellsTheUserWhatCameOfIt) {
    const struct {
        support::Script script;
        short status;
        bool alert;
    } cases[] = {
        {support::faultNamed("refuse"), kUpdateStatus_Running, true},
        {support::serving(support::response(kNewerLine)), kUpdateStatus_Available, false},
        {support::serving(support::response("<h1>Not found</h1>", "", "404 Not Found")),
         kUpdateStatus_UpToDate, false},
        {support::serving(support::response(kNewerLine)), kUpdateStatus_Available, false},
    };
    for (const auto& each : cases) {
        const support::FaultServer server(each.script);
        platform::setConnectRules({{"update.tessaro.example", 80, "127.0.0.1", server.port()}});
        presenter_.alerts.clear();
        if (each.alert) presenter_.then(platform::UserAction::answer(1));
        EXPECT_TRUE(check(true));
        const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (sUpdateDownloading && std::chrono::steady_clock::now() < limit)
            platform::RunLoop::main().dispatch(20);
        EXPECT_FALSE(sUpdateDownloading);
        EXPECT_EQ(presenter_.alerts.size(), each.alert ? 1u : 0u);
        EXPECT_EQ(sUpdateStatus, each.status);
        EXPECT_EQ(dialog() != nullptr && dialog()->visible, !each.alert);
        EXPECT_EQ(folder_.count(), 1) << "the settings; the versions file is deleted once it was read";
        if (each.alert) continue;
        EXPECT_EQ(server.requests(),
                  std::vector<std::string>{"GET /update_plugins/versions16.txt HTTP/1.1\r\n"
                                           "Host: update.tessaro.example\r\n\r\n"});
    }
    EXPECT_EQ(platform::DialogControl::instance().openDialogs().size(), 1u);
    platform::setConnectRules({});
}

}  // namespace
