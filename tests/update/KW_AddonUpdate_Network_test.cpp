#include "platform/host/HttpOptions.h"
#include "platform/host/RunLoop.h"
#include "tests/support/FaultServer.h"
#include "tests/update/UpdateFixture.h"

#include <chrono>
#include <set>

namespace {

using support::FaultServer;

/// What the user sees of a check that he asked for.
enum class Outcome { UpdateAvailable, UpToDate, Alert };

void PrintTo(Outcome outcome, std::ostream* out) {
    *out << (outcome == Outcome::Alert ? "alert" : outcome == Outcome::UpToDate ? "up to date" : "update");
}

class NetworkCheck : public UpdateFixture {
protected:
    ~NetworkCheck() override {
        platform::RunLoop::main().setClock({});
        platform::setConnectRules({});
    }

    static void connectTo(const FaultServer& server) {
        platform::setConnectRules({{"update.tessaro.example", 80, "127.0.0.1", server.port()}});
    }
    /// Lets the check go on to its end and tells what the user saw, who answers one alert if that is
    /// expected.
    Outcome endOfCheck(Outcome expected) {
        presenter_.alerts.clear();
        if (expected == Outcome::Alert) presenter_.then(platform::UserAction::answer(1));
        const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (sUpdateDownloading && std::chrono::steady_clock::now() < limit) {
            platform::RunLoop::main().dispatch(20);
        }
        EXPECT_FALSE(sUpdateDownloading);
        if (!presenter_.alerts.empty()) return Outcome::Alert;
        EXPECT_TRUE(dialog() != nullptr && dialog()->visible);
        return sUpdateStatus == kUpdateStatus_Available ? Outcome::UpdateAvailable : Outcome::UpToDate;
    }
    /// Names in the data folder but that of the settings file.
    std::set<std::string> leftovers() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder_.path()))
            names.insert(entry.path().filename());
        names.erase("TessaroLibrary_220.cfg");
        return names;
    }
};

TEST_F(NetworkCheck, AnswersTheUserWhateverTheServerDoes) {
    const std::pair<const char*, Outcome> outcomes[] = {
        {"refuse", Outcome::Alert},          {"hang-up", Outcome::Alert},
        {"reset-half-way", Outcome::Alert},  {"garbage", Outcome::Alert},
        {"redirect-away", Outcome::Alert},   {"redirect", Outcome::UpdateAvailable},
        {"drip", Outcome::UpdateAvailable},  {"no-length", Outcome::UpdateAvailable},
        {"utf16", Outcome::UpdateAvailable}, {"cr", Outcome::UpdateAvailable},
        {"empty", Outcome::UpToDate},        {"length-too-short", Outcome::UpToDate},
        {"not-found", Outcome::UpToDate},    {"binary", Outcome::UpToDate},
        {"large", Outcome::UpToDate},        {"portal", Outcome::UpToDate},
    };
    for (const auto& [fault, expected] : outcomes) {
        SCOPED_TRACE(fault);
        const FaultServer server(support::faultNamed(fault));
        connectTo(server);
        EXPECT_TRUE(check(true));
        EXPECT_EQ(endOfCheck(expected), expected);
        if (expected != Outcome::Alert) {
            EXPECT_EQ(leftovers(), std::set<std::string>()) << "the file is deleted once it was read";
        } else {
            EXPECT_EQ(dialog(), nullptr);
        }
        std::filesystem::remove(folder_.path("__updcf__.tmp"));
        EXPECT_EQ(leftovers(), std::set<std::string>());
    }
}

TEST_F(NetworkCheck, GivesUpOnASilentServerAfterAMinute) {
    double seconds = 1000;
    platform::RunLoop::main().setClock([&seconds] { return seconds; });
    const FaultServer server(support::faultNamed("stall-half-way"));
    connectTo(server);
    check(true);
    for (int turn = 0; turn < 20; ++turn)
        platform::RunLoop::main().dispatch(10);
    EXPECT_TRUE(sUpdateDownloading);
    EXPECT_TRUE(presenter_.log.empty());
    seconds += 60;
    EXPECT_EQ(endOfCheck(Outcome::Alert), Outcome::Alert);
}

TEST_F(NetworkCheck, CanBeMadeAgainAndAgainAndAsksInThePlainestWay) {
    const FaultServer server(support::serving(support::response(kNewerLine)));
    connectTo(server);
    for (int i = 0; i < 50; ++i) {
        check(true);
        ASSERT_EQ(endOfCheck(Outcome::UpdateAvailable), Outcome::UpdateAvailable);
    }
    EXPECT_EQ(server.requests(), std::vector<std::string>(50,
                                                          "GET /update_plugins/versions16.txt HTTP/1.1\r\n"
                                                          "Host: update.tessaro.example\r\n\r\n"));
    EXPECT_EQ(platform::DialogControl::instance().openDialogs().size(), 1u);
}

}  // namespace
