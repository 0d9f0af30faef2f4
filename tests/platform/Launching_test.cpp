#include "platform/Launching.h"

#include "platform/host/LaunchHandling.h"
#include "platform/host/RunLoop.h"
#include "tests/support/FakeOpener.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <chrono>

namespace {

using support::FakeOpener;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

int launchAddress(const std::string& address) {
    ICInstance service = 0;
    EXPECT_EQ(ICStart(&service, 0x20202020), 0);
    long start = 0;
    long end = static_cast<long>(address.size());
    const unsigned char noHint[] = {0};
    const int result = ICLaunchURL(service, noHint, address.data(), end, &start, &end);
    EXPECT_EQ(ICStop(service), 0);
    return result;
}

TEST(Launching, NoPathReachesTheOpenerAsAnOptionOrAnAddressOrRunsSomething) {
    const std::pair<const char*, const char*> cases[] = {
        {"/tmp/$(touch x) `touch x`*\\\n", "/tmp/$(touch x) `touch x`*\\\n"},
        {"-rf", "./-rf"},
        {"http://a/b", "./http://a/b"},
        {"folder/-x:b", "folder/-x:b"},
    };
    for (const auto& [path, argument] : cases) {
        const FakeOpener opener;
        EXPECT_EQ(OpenDocument(path), 0);
        EXPECT_THAT(opener.arguments(), ElementsAre("1", argument));
        EXPECT_FALSE(std::filesystem::exists("x")) << path;
    }
    platform::setOpenerProgram("/no/such/opener");
    EXPECT_NE(OpenDocument("/tmp"), 0);
    EXPECT_EQ(launchAddress("http://www.tessaro.example/"), kICNoOpener);
    platform::setOpenerProgram("");
}

TEST(Launching, AnOpenerThatDoesNotFinishIsLeftToItselfAndCollectedLater) {
    const FakeOpener opener("sleep 1");
    platform::setOpenerPatience(50);
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(OpenDocument("/tmp"), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(800));
    platform::setOpenerPatience(-1);

    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), 0) << "the opener goes on";
    // Other users of the main loop may be called too, so it is run until there is no child left.
    siginfo_t child{};
    const auto childrenLeft = [&] { return waitid(P_ALL, 0, &child, WEXITED | WNOHANG | WNOWAIT) == 0; };
    while (childrenLeft() && std::chrono::steady_clock::now() < before + std::chrono::seconds(9))
        platform::RunLoop::main().dispatch(100);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "it was collected";
}

TEST(Launching, TheCallReturnsWhenTheOpenerHasFinishedWhichHasNoDescriptorAndNoInputOfTheHost) {
    const FakeOpener opener(
        "sleep 0.2; ls -l /proc/$$/fd > \"$folder/open\"; head -c 9 > \"$folder/input\"; exit 4");
    const int ownInput = dup(STDIN_FILENO);
    const int hostFile = ::open("/dev/zero", O_RDONLY);
    ASSERT_GT(hostFile, STDERR_FILENO);
    dup2(hostFile, STDIN_FILENO);
    EXPECT_EQ(OpenDocument("/tmp"), 0);
    dup2(ownInput, STDIN_FILENO);

    EXPECT_THAT(opener.folder().read("open"), AllOf(HasSubstr(" -> "), Not(HasSubstr("/dev/zero"))));
    ASSERT_TRUE(opener.folder().has("input"));
    EXPECT_EQ(opener.folder().read("input"), "");
    close(hostFile);
    close(ownInput);
}

TEST(Launching, OnlyWebAddressesAreHandedOnWithWhatMayNotStandInThemEscaped) {
    const FakeOpener opener;
    for (const char* const address :
         {"HTTPS://a.example/?x=1&y=2#z", "http://a.example/a b\"<>`$(x)\n\x8E%20"})
        EXPECT_EQ(launchAddress(address), 0) << address;
    EXPECT_THAT(opener.arguments(), ElementsAre("1", "HTTPS://a.example/?x=1&y=2#z", "1",
                                                "http://a.example/a%20b%22%3C%3E%60$(x)%0A%C3%A9%20"));
    for (const std::string& address :
         {std::string(), std::string("http://a\0b", 10), std::string("http:///a"), std::string("http://?a"),
          std::string("http:/a/b"), std::string("httpx://a"), std::string("ftp://a.example/"),
          std::string("javascript:alert(1)"), std::string(" http://a.example/")})
        EXPECT_EQ(launchAddress(address), kICNoAddress) << address;
    EXPECT_EQ(opener.arguments().size(), 4U) << "nothing else was started";
}

TEST(Launching, TheServiceRefusesWrongArguments) {
    ICInstance service = 0;
    EXPECT_EQ(ICStart(nullptr, 0), kICBadArgument);
    ASSERT_EQ(ICStart(&service, 0), 0);
    const struct {
        ICInstance service;
        long start, end;
    } cases[] = {{0, 0, 9}, {service, 0, 10}, {service, 3, 2}, {service, -1, 2}};
    for (auto each : cases)
        EXPECT_EQ(ICLaunchURL(each.service, nullptr, "http://a/", 9, &each.start, &each.end), kICBadArgument);
    EXPECT_EQ(ICStop(service), 0);
    EXPECT_EQ(ICStop(service), kICBadArgument) << "closed once already";
}

}  // namespace
