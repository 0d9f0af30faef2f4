#include "tests/update/DownloadFixture.h"

#include <set>

namespace {

using support::FaultServer;

const std::string kOldContent = "what stood there before";
const std::string kFaultBody(support::kFaultBody);
const std::string kHalf = kFaultBody.substr(0, kFaultBody.size() / 2);

std::string hundredMegabytes() {
    const std::string megabyte = support::patternedBody(1'000'000);
    std::string body;
    for (int i = 0; i < 100; ++i)
        body += megabyte;
    return body;
}

/// What a download from a fault server comes to: its messages, and what the destination then holds.
struct Outcome {
    const char* fault;
    const char* messages;
    std::string content;
    const char* path = "/file";
};

TEST(URLDownloadFaults, EveryFaultEndsInItsMessagesAndBytes) {
    const Outcome outcomes[] = {
        {"refuse", "X", kOldContent},
        {"hang-up", "OX", ""},
        {"drip", "OPF", kFaultBody},
        {"reset-half-way", "OPX", kHalf},
        {"length-too-long", "OPX", kFaultBody},
        {"length-too-short", "OPF", kHalf},
        {"no-length", "OPF", kFaultBody},
        {"chunked", "OPF", "firstand second"},
        {"broken-chunk", "OPX", "first"},
        {"cut-chunk", "OPX", "firstand"},
        {"empty", "OF", ""},
        {"empty-no-length", "OF", ""},
        {"not-found", "OPF", "<h1>Not found</h1>"},
        {"redirect", "OPF", kFaultBody, "/10"},
        {"redirect", "OX", "", "/11"},
        {"redirect-loop", "OX", ""},
        {"redirect-away", "OX", ""},
        {"redirect-nowhere", "OPF", "moved"},
        {"large", "OPF", hundredMegabytes()},
        {"binary", "OPF", support::patternedBody(70'000)},
        {"compressed", "OPF", "\x1F\x8B\x08 no real gzip"},
        {"garbage", "OX", ""},
    };
    std::set<std::string> covered = {"silent", "stall-after-headers", "stall-half-way"};  // below
    const TemporaryFolder folder;
    for (const Outcome& outcome : outcomes) {
        SCOPED_TRACE(outcome.fault);
        covered.insert(outcome.fault);
        folder.write("file", kOldContent);
        const FaultServer server(support::faultNamed(outcome.fault));
        RecordedDownload download;
        EXPECT_EQ(download.fetch(server.url(outcome.path), folder.path("file")), outcome.messages);
        EXPECT_TRUE(folder.read("file") == outcome.content) << folder.read("file").substr(0, 200);
        EXPECT_EQ(folder.count(), 1) << "nothing is left beside the destination";
        EXPECT_EQ(platform::transfersUnderWay(), 0U);
    }
    for (const support::Fault& fault : support::faults())
        EXPECT_TRUE(covered.contains(fault.name)) << fault.name;
}

TEST(URLDownloadFaults, AServerThatStallsIsGivenSixtySeconds) {
    const Outcome outcomes[] = {
        {"silent", "O", ""}, {"stall-after-headers", "O", ""}, {"stall-half-way", "OP", kHalf}};
    const TemporaryFolder folder;
    for (const Outcome& outcome : outcomes) {
        SCOPED_TRACE(outcome.fault);
        folder.write("file", kOldContent);
        HandClock clock;
        const FaultServer server(support::faultNamed(outcome.fault));
        RecordedDownload download;
        ASSERT_TRUE(download.start(server.url(), folder.path("file")));
        EXPECT_TRUE(runLoopUntil([&] { return download.messages == outcome.messages; })) << download.messages;

        for (int tenths = 1; tenths < 600; ++tenths) {
            clock.seconds = 1000 + tenths / 10.0;
            platform::RunLoop::main().dispatch(0);
        }
        EXPECT_EQ(download.messages, outcome.messages) << "at 59.9 seconds";
        EXPECT_EQ(folder.read("file"), kOldContent) << "the old content stands until the file is closed";
        clock.seconds = 1060;
        platform::RunLoop::main().dispatch(0);
        EXPECT_EQ(download.messages, std::string(outcome.messages) + "X");
        EXPECT_EQ(folder.read("file"), outcome.content);
        EXPECT_EQ(platform::transfersUnderWay(), 0U);
    }
}

}  // namespace
