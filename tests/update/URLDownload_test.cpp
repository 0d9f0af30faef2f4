#include <sys/resource.h>

#include <csignal>
#include <filesystem>

#include "platform/HostInterface.h"
#include "tests/update/DownloadFixture.h"

#if defined(__SANITIZE_ADDRESS__)
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#else
#include <malloc.h>
#endif

// Stands for the bridge into a host, which locations refer to and downloads never ask.
GSErrCode ACAPI_GetOwnLocation(IO::Location&) {
    return kAPIErrNoOwnLocation;
}

namespace {

using support::FaultServer;
using support::response;
using support::serving;

class URLDownloadTest : public ::testing::Test {
protected:
    std::string destination() const { return folder_.path("file"); }

    TemporaryFolder folder_;
};

TEST_F(URLDownloadTest, TheDestinationIsClosedWhenTheLastMessageComesWhichMayStartTheNextDownload) {
    const FaultServer server(serving(response("body")));
    RecordedDownload first, second;
    std::string seen;
    first.then = [&](KW_URL_Message message) {
        if (message != KW_URL_Finished) return;
        seen = folder_.read("file");
        EXPECT_TRUE(second.start(server.url(), folder_.path("second")));
    };
    EXPECT_EQ(first.fetch(server.url(), destination()), "OPF");
    EXPECT_EQ(seen, "body");
    EXPECT_TRUE(runLoopUntil([&] { return second.ended(); }));
    EXPECT_EQ(second.messages, "OPF");
}

TEST_F(URLDownloadTest, WhatCannotBeStartedIsFalseAndSendsNothing) {
    RecordedDownload download;
    EXPECT_FALSE(download.start(KW_String(), destination()));
    for (const char* url : {"", "update.tessaro.example/file", "ftp://127.0.0.1/file", "http://",
                            "file:///etc/passwd", "http://127.0.0.1/%E9" /* no UTF-8 once decoded */}) {
        EXPECT_FALSE(download.start(url, destination())) << url;
    }
    runLoopFor(std::chrono::milliseconds(20));
    EXPECT_EQ(download.messages, "");
    EXPECT_FALSE(folder_.has("file"));
    EXPECT_EQ(platform::transfersUnderWay(), 0U);
}

TEST_F(URLDownloadTest, TheServerSeesTheLineAndTheHostByteForByte) {
    const FaultServer server(serving(response("")));
    const struct {
        const char* path;
        const char* target;
    } cases[] = {
        {"/update_plugins/versions16.txt", "/update_plugins/versions16.txt"},
        {"/a b.txt", "/a%20b.txt"},
        {"/a%20b.txt", "/a%20b.txt"},
        {"/caff\xC3\xA8?q=\xC3\xB1", "/caff%C3%A8?q=%C3%B1"},
        {"/caff%C3%A8", "/caff%C3%A8"},
        {"/100%25", "/100%25"},
        {"/a\r\nX-Header: b", "/a%0D%0AX-Header:%20b"},
        {"/\xE6\x97\xA5", "/?"},  // a character that the system encoding does not have
        {"", "/"},
    };
    std::vector<std::string> expected;
    for (const auto& each : cases) {
        RecordedDownload().fetch(server.url(each.path), destination());
        expected.push_back("GET " + std::string(each.target) + " HTTP/1.1\r\nHost: " + server.authority() +
                           "\r\n\r\n");
    }
    EXPECT_EQ(server.requests(), expected);
}

TEST_F(URLDownloadTest, AnswerOneToOpenedCancelsAndLeavesTheDestinationAlone) {
    const FaultServer server(serving(response("body")));
    for (const bool exists : {false, true}) {
        if (exists) folder_.write("file", "old");
        RecordedDownload download;
        download.openedAnswer = 1;
        ASSERT_TRUE(download.start(server.url(), destination()));
        EXPECT_TRUE(runLoopUntil([&] { return download.messages == "O"; }));
        runLoopFor(std::chrono::milliseconds(30));
        EXPECT_EQ(download.messages, "O");
        EXPECT_EQ(folder_.read("file"), exists ? "old" : "");
        EXPECT_EQ(folder_.count(), exists ? 1 : 0);
        EXPECT_EQ(platform::transfersUnderWay(), 0U);
    }
    RecordedDownload goesOn;
    goesOn.openedAnswer = 2;
    EXPECT_EQ(goesOn.fetch(server.url(), destination()), "OPF") << "only 1 cancels";
}

TEST_F(URLDownloadTest, WithoutACallbackTheBodyIsStillWritten) {
    const FaultServer server(serving(response("body")));
    const KW_Location file(KW_String(destination().c_str(), KW_String::Encoding_UTF8));
    EXPECT_TRUE(KW_General::URLDownload(KW_String(server.url().c_str(), KW_String::Encoding_System), file,
                                        nullptr, nullptr));
    EXPECT_TRUE(runLoopUntil([] { return platform::transfersUnderWay() == 0; }));
    runLoopFor(std::chrono::milliseconds(5));
    EXPECT_EQ(folder_.read("file"), "body");
}

TEST_F(URLDownloadTest, ADestinationThatCannotBeOpenedFailsTheDownload) {
    const FaultServer server(serving(response("body")));
    folder_.makeFolder("folder");
    for (const char* name : {"missing/file", "folder"}) {
        RecordedDownload download;
        EXPECT_EQ(download.fetch(server.url(), folder_.path(name)), "OX") << name;
    }
    EXPECT_EQ(folder_.count(), 1);
}

TEST_F(URLDownloadTest, AChunkThatCannotBeWrittenIsLostAndTheDownloadGoesOn) {
    const std::string body = support::patternedBody(200'000);
    const FaultServer server(serving(response(body)));
    rlimit unlimited{};
    getrlimit(RLIMIT_FSIZE, &unlimited);
    const rlimit tight{100'000, unlimited.rlim_max};
    const auto before = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &tight);
    RecordedDownload download;
    const std::string messages = download.fetch(server.url(), destination());
    setrlimit(RLIMIT_FSIZE, &unlimited);
    std::signal(SIGXFSZ, before);
    EXPECT_EQ(messages, "OPF");
    const std::string written = folder_.read("file");
    EXPECT_GT(written.size(), 80'000U);
    EXPECT_LE(written.size(), 100'000U);
    EXPECT_EQ(written.substr(0, 80'000), body.substr(0, 80'000));
}

TEST_F(URLDownloadTest, ALastMessageIsTheLastWhateverFiresWhileItsCallbackRuns) {
    HandClock clock;
    for (const char* fault : {"chunked", "cut-chunk"}) {
        const FaultServer server(support::faultNamed(fault));
        RecordedDownload download;
        download.then = [&](KW_URL_Message message) {
            if (message != KW_URL_Finished && message != KW_URL_Failed) return;
            clock.seconds += 61;  // an alert is open while the time limit runs out
            runLoopFor(std::chrono::milliseconds(20));
        };
        const std::string messages = download.fetch(server.url(), destination());
        runLoopFor(std::chrono::milliseconds(20));
        EXPECT_EQ(download.messages, messages);
    }
}

TEST_F(URLDownloadTest, TheTimeLimitHoldsAlsoWhileACallbackRunsTheLoop) {
    const FaultServer server(serving(response("body")));
    const std::pair<KW_URL_Message, int> cases[] = {
        {KW_URL_Opened, 1}, {KW_URL_Opened, 0}, {KW_URL_Progress, 0}};
    for (const auto& [message, openedAnswer] : cases) {
        const KW_URL_Message during = message;
        HandClock clock;
        std::filesystem::remove(destination());
        RecordedDownload download;
        download.openedAnswer = openedAnswer;
        download.then = [&](KW_URL_Message sent) {
            if (sent != during) return;
            clock.seconds += 60;
            runLoopFor(std::chrono::milliseconds(20));
        };
        EXPECT_EQ(download.fetch(server.url(), destination()), during == KW_URL_Opened ? "OX" : "OPX");
        runLoopFor(std::chrono::milliseconds(20));
        EXPECT_EQ(folder_.has("file"), during == KW_URL_Progress);
    }
}

TEST_F(URLDownloadTest, SeveralRunSideBySideEachWithItsOwnRecord) {
    const FaultServer server([](support::Connection& connection, const std::string& request) {
        connection.send(response(support::patternedBody(50'000) + request));
    });
    constexpr int kCount = 20;
    RecordedDownload downloads[kCount];
    for (int i = 0; i < kCount; ++i) {
        const std::string number = std::to_string(i);
        ASSERT_TRUE(downloads[i].start(server.url("/" + number), folder_.path(number)));
    }
    EXPECT_EQ(platform::transfersUnderWay(), static_cast<std::size_t>(kCount));
    for (int i = 0; i < kCount; ++i) {
        EXPECT_TRUE(runLoopUntil([&] { return downloads[i].ended(); }));
        const std::string number = std::to_string(i);
        EXPECT_EQ(downloads[i].messages, "OPF");
        EXPECT_EQ(folder_.read(number).substr(50'000),
                  "GET /" + number + " HTTP/1.1\r\nHost: " + server.authority() + "\r\n\r\n");
    }
}

long openDescriptors() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                         std::filesystem::directory_iterator());
}

std::size_t allocatedBytes() {
#if defined(__SANITIZE_ADDRESS__)
    return __sanitizer_get_current_allocated_bytes();
#else
    return mallinfo2().uordblks;
#endif
}

TEST_F(URLDownloadTest, AThousandDownloadsLeaveNothingBehind) {
    const struct {
        const char* fault;
        int count;
    } kinds[] = {
        {"chunked", 400}, {"cut-chunk", 200}, {"refuse", 200}, {"garbage", 100}, {"redirect-nowhere", 100}};
    std::size_t bytesBefore = 0;
    long descriptorsBefore = 0;
    for (const bool measured : {false, true}) {  // the first round fills the libraries' own stores
        for (const auto& kind : kinds) {
            const FaultServer server(support::faultNamed(kind.fault));
            const int count = measured ? kind.count : 5;
            for (int i = 0; i < count; ++i)
                RecordedDownload().fetch(server.url(), destination());
        }
        runLoopFor(std::chrono::milliseconds(20));
        if (measured) {
            EXPECT_LT(allocatedBytes(), bytesBefore + 64 * 1024) << "64 bytes for each would already show";
            EXPECT_EQ(openDescriptors(), descriptorsBefore);
        }
        bytesBefore = allocatedBytes();
        descriptorsBefore = openDescriptors();
    }
}

}  // namespace
