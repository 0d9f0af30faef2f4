#include <csignal>
#include <filesystem>

#include "tests/support/ResourceLimit.h"
#include "tests/update/DownloadFixture.h"

// Of the address sanitizer, in a build with it.
extern "C" __attribute__((weak)) std::size_t __sanitizer_get_current_allocated_bytes();

namespace {

using support::FaultServer;
using support::response;
using support::serving;

class URLDownloadTest : public ::testing::Test {
protected:
    std::string destination() const { return folder_.path("file"); }

    TemporaryFolder folder_;
};

TEST_F(URLDownloadTest, TheDestinationIsClosedWhenTheLastMessageComesWhichMayStartADownloadWithoutACallback) {
    const FaultServer server(serving(response("body")));
    RecordedDownload download;
    download.then = [&](KW_URL_Message message) {
        if (message != KW_URL_Finished) return;
        EXPECT_EQ(folder_.read("file"), "body");
        const KW_Location next(KW_SystemText(folder_.path("next").c_str()));
        EXPECT_TRUE(KW_General::URLDownload(KW_SystemText(server.url().c_str()), next, nullptr, nullptr));
    };
    EXPECT_EQ(download.fetch(server.url(), destination()), "OPF");
    EXPECT_TRUE(runLoopUntil([] { return platform::transfersUnderWay() == 0; }));
    EXPECT_EQ(folder_.read("next"), "body");
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
    const std::pair<const char*, const char*> cases[] = {
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
    for (const auto& [path, target] : cases) {
        RecordedDownload().fetch(server.url(path), destination());
        expected.push_back("GET " + std::string(target) + " HTTP/1.1\r\nHost: " + server.authority() +
                           "\r\n\r\n");
    }
    EXPECT_EQ(server.requests(), expected);
}

TEST_F(URLDownloadTest, AnswerOneToOpenedCancelsAndLeavesTheDestinationAlone) {
    const FaultServer server(serving(response("body")));
    folder_.write("file", "old");
    for (const int answer : {1, 2}) {
        RecordedDownload download;
        download.openedAnswer = answer;
        ASSERT_TRUE(download.start(server.url(), destination()));
        EXPECT_TRUE(runLoopUntil([] { return platform::transfersUnderWay() == 0; }));
        EXPECT_EQ(download.messages, answer == 1 ? "O" : "OPF") << "only 1 cancels";
        EXPECT_EQ(folder_.read("file"), answer == 1 ? "old" : "body");
    }
}

TEST_F(URLDownloadTest, ADestinationThatCannotBeOpenedFailsTheDownload) {
    const FaultServer server(serving(response("body")));
    folder_.makeFolder("folder");
    for (const char* name : {"missing/file", "folder"})
        EXPECT_EQ(RecordedDownload().fetch(server.url(), folder_.path(name)), "OX") << name;
    EXPECT_EQ(folder_.count(), 1);
}

TEST_F(URLDownloadTest, AChunkThatCannotBeWrittenIsLostAndTheDownloadGoesOn) {
    const std::string body = support::patternedBody(200'000);
    const FaultServer server(serving(response(body)));
    const auto before = std::signal(SIGXFSZ, SIG_IGN);
    {
        const ResourceLimit fullDisk(RLIMIT_FSIZE, 100'000);
        EXPECT_EQ(RecordedDownload().fetch(server.url(), destination()), "OPF");
    }
    std::signal(SIGXFSZ, before);
    const std::string written = folder_.read("file");
    EXPECT_GT(written.size(), 80'000U);
    EXPECT_LE(written.size(), 100'000U);
    EXPECT_EQ(written.substr(0, 80'000), body.substr(0, 80'000));
}

TEST_F(URLDownloadTest, TheTimeLimitHoldsAlsoWhileACallbackRunsTheLoopUnlessItsMessageIsTheLast) {
    const struct {
        KW_URL_Message during;
        const char* fault;
        const char* messages;
        int openedAnswer = 0;
    } cases[] = {
        {KW_URL_Opened, "chunked", "OX", 1}, {KW_URL_Opened, "chunked", "OX"},
        {KW_URL_Progress, "chunked", "OPX"}, {KW_URL_Finished, "chunked", "OPF"},
        {KW_URL_Failed, "cut-chunk", "OPX"},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(&each - cases);
        const FaultServer server(support::faultNamed(each.fault));
        HandClock clock;
        std::filesystem::remove(destination());
        RecordedDownload download;
        download.openedAnswer = each.openedAnswer;
        download.then = [&](KW_URL_Message sent) {
            if (sent != each.during) return;
            clock.seconds += 60;  // as when an alert is open
            runLoopFor(std::chrono::milliseconds(20));
        };
        EXPECT_EQ(download.fetch(server.url(), destination()), each.messages);
        runLoopFor(std::chrono::milliseconds(20));
        EXPECT_EQ(download.messages, each.messages);
        EXPECT_EQ(folder_.has("file"), each.during != KW_URL_Opened);
    }
}

TEST_F(URLDownloadTest, SeveralRunSideBySideEachWithItsOwnRecord) {
    const FaultServer server([](support::Connection& connection, const std::string& request) {
        connection.send(response(request));
    });
    RecordedDownload downloads[20];
    for (RecordedDownload& each : downloads) {
        const std::string number = std::to_string(&each - downloads);
        ASSERT_TRUE(each.start(server.url("/" + number), folder_.path(number)));
    }
    for (const RecordedDownload& each : downloads) {
        EXPECT_TRUE(runLoopUntil([&] { return each.ended(); }));
        const std::string number = std::to_string(&each - downloads);
        EXPECT_EQ(each.messages, "OPF");
        EXPECT_TRUE(folder_.read(number).starts_with("GET /" + number + " "));
    }
}

TEST_F(URLDownloadTest, ManyDownloadsLeaveNothingBehind) {
    const auto allocated = __sanitizer_get_current_allocated_bytes;
    const auto openDescriptors = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    };
    std::size_t bytesBefore = 0;
    long descriptorsBefore = 0;
    for (const int count : {5, 200}) {  // the first round fills the libraries' own stores
        bytesBefore = allocated != nullptr ? allocated() : 0;
        descriptorsBefore = openDescriptors();
        for (const char* const fault : {"chunked", "cut-chunk", "refuse", "redirect-nowhere"}) {
            const FaultServer server(support::faultNamed(fault));
            for (int i = 0; i < count; ++i)
                RecordedDownload().fetch(server.url(), destination());
        }
        runLoopFor(std::chrono::milliseconds(20));
    }
    EXPECT_LT(allocated != nullptr ? allocated() : 0, bytesBefore + 32 * 1024) << "64 bytes for each show";
    EXPECT_EQ(openDescriptors(), descriptorsBefore);
}

}  // namespace
