#include "platform/FileSystem.h"

#include "platform/host/Failures.h"
#include "tests/support/ResourceLimit.h"
#include "tests/support/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

namespace IO {
namespace {

Location at(const std::string& path) {
    return Location::FromPosixPath(path);
}

GSErrCode write(File& file, const std::string& bytes) {
    return file.Write(bytes.data(), bytes.size(), nullptr);
}

GSErrCode replace(const std::string& path, const std::string& bytes) {
    File file(at(path), File::Create);
    if (const GSErrCode error = file.Open(File::WriteEmptyMode, ReportAccessDenied); error != kNoError)
        return error;
    if (const GSErrCode error = write(file, bytes); error != kNoError) {
        EXPECT_EQ(file.RecoverFromFailedWrite(), kNoError);
        EXPECT_EQ(file.Close(), kNoError);
        return error;
    }
    return file.Close();
}

mode_t modeOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(lstat(path.c_str(), &status), 0);
    return status.st_mode & 07777;
}

class FileTest : public ::testing::Test {
protected:
    FileTest() {
        platform::setReplacementFailureHandler([this](const platform::PathFailure& failure) {
            failures_ += failure.path + ": " + failure.reason + "\n";
        });
    }
    ~FileTest() override { platform::setReplacementFailureHandler(nullptr); }

    std::string failures_;  // of replacements
    TemporaryFolder temp_;
};

TEST_F(FileTest, TheOldContentStandsUntilAReplacementIsClosedAndTwoOfThemDoNotMix) {
    temp_.write("f", "old");
    const Location location = at(temp_.path("f"));
    File files[] = {File(location, File::Create), File(location, File::Create), File(location, File::Create)};
    for (File& file : files)
        ASSERT_EQ(file.Open(File::WriteEmptyMode, ReportAccessDenied), kNoError);
    ASSERT_EQ(write(files[0], "new "), kNoError);
    ASSERT_EQ(write(files[1], "second"), kNoError);
    ASSERT_EQ(write(files[0], "content"), kNoError);
    EXPECT_EQ(temp_.read("f"), "old");
    const char* const contents[] = {"new content", "second", ""};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(files[i].Close(), kNoError);
        EXPECT_EQ(temp_.read("f"), contents[i]);
    }
    EXPECT_EQ(temp_.count(), 1);
    EXPECT_FALSE(files[0].IsOpen());
    EXPECT_EQ(files[0].Close(), kErrNotOpen);
}

TEST_F(FileTest, AReplacementWhoseWritesAllFailedLeavesWhatWasThere) {
    temp_.write("old", "old");
    const std::string tooMuch(5000, 'x');
    const std::string failure = temp_.path("old") + ": File too large\n";
    const ResourceLimit limit(RLIMIT_FSIZE, 100);
    EXPECT_EQ(replace(temp_.path("old"), tooMuch), kErrNoSpace);
    EXPECT_EQ(replace(temp_.path("old"), tooMuch), kErrNoSpace);
    EXPECT_EQ(failures_, failure) << "told once";
    EXPECT_EQ(replace(temp_.path("new"), tooMuch), kErrNoSpace);
    EXPECT_EQ(temp_.read("old"), "old");
    EXPECT_EQ(temp_.count(), 1);
    failures_.clear();
    EXPECT_EQ(replace(temp_.path("old"), "short"), kNoError);
    EXPECT_EQ(replace(temp_.path("old"), tooMuch), kErrNoSpace);
    EXPECT_EQ(failures_, failure) << "again after a success";
}

TEST_F(FileTest, RecoveryTakesBackOnlyTheWriteThatFailed) {
    for (const File::OpenMode mode : {File::WriteEmptyMode, File::WriteAppendMode}) {
        temp_.write("f", "old");
        File file(at(temp_.path("f")));
        ASSERT_EQ(file.Open(mode, ReportAccessDenied), kNoError);
        ASSERT_EQ(write(file, "good"), kNoError);
        for (int attempt = 0; attempt < 2; ++attempt) {
            const ResourceLimit limit(RLIMIT_FSIZE, 20);
            std::uint64_t written = 0;
            const std::string tooMuch(5000, 'x');
            EXPECT_EQ(file.Write(tooMuch.data(), tooMuch.size(), &written), kErrNoSpace);
            EXPECT_GT(written, 0u);
            EXPECT_EQ(file.RecoverFromFailedWrite(), kNoError);
        }
        EXPECT_EQ(write(file, "!"), kNoError);
        EXPECT_EQ(file.Close(), kNoError);
        EXPECT_EQ(temp_.read("f"), mode == File::WriteAppendMode ? "oldgood!" : "good!");
    }
}

TEST_F(FileTest, AReplacementKeepsPermissionsAndLinks) {
    temp_.write("elsewhere/target", "old");
    std::filesystem::create_symlink("elsewhere/target", temp_.path("link"));
    std::filesystem::create_symlink("elsewhere/created", temp_.path("dangling"));
    const mode_t mask = umask(027);
    for (const mode_t mode : {0600u, 0755u, 04755u}) {
        ASSERT_EQ(chmod(temp_.path("link").c_str(), mode), 0);
        for (const char* const link : {"link", "dangling"}) {
            EXPECT_EQ(replace(temp_.path(link), "new"), kNoError);
            EXPECT_TRUE(std::filesystem::is_symlink(temp_.path(link)));
        }
        EXPECT_EQ(modeOf(temp_.path("elsewhere/target")), mode);
    }
    umask(mask);
    EXPECT_EQ(modeOf(temp_.path("elsewhere/created")), 0640u);
    for (const char* const target : {"target", "created"})
        EXPECT_EQ(temp_.read(std::string("elsewhere/") + target), "new");
}

TEST_F(FileTest, WhatAKilledReplacementLeavesIsHiddenAndGoesWithTheNextOne) {
    temp_.write("f", "old");
    for (int i = 0; i < 2; ++i) {
        const pid_t child = fork();
        if (child == 0) {
            File first(at(temp_.path("f")));
            File second(at(temp_.path("f")));
            for (File* const file : {&first, &second})
                (void)file->Open(File::WriteEmptyMode, ReportAccessDenied);
            (void)write(second, "half");
            const File fresh(at(temp_.path("new")), File::Create);
            kill(getpid(), SIGKILL);
        }
        ASSERT_EQ(waitpid(child, nullptr, 0), child);
    }
    EXPECT_EQ(temp_.read("f"), "old");
    EXPECT_FALSE(temp_.has("new"));
    EXPECT_EQ(temp_.count(), 4);
    const auto isF = [](Folder&, const Name& name, bool, void*) {
        EXPECT_EQ(name.ToUniString(), GS::UniStringFromUtf8("f"));
        return true;
    };
    EXPECT_EQ(Folder(at(temp_.path())).Enumerate(isF, nullptr), kNoError);
    for (const char* const name : {"f", "new"}) {
        EXPECT_EQ(replace(temp_.path(name), "new"), kNoError);
        EXPECT_EQ(temp_.read(name), "new");
    }
    EXPECT_EQ(temp_.count(), 2);
}

TEST_F(FileTest, ACloseThatCannotReplaceSaysSoAndLeavesWhatIsThere) {
    const struct {
        File::OpenMode mode;
        const char* before;
        const char* meanwhile;
        GSErrCode closed;
        const char* reason;
    } cases[] = {
        {File::WriteEmptyMode, "f", "f/in the way", kErrWrongType, "Is a directory"},
        {File::WriteEmptyMode, "", "f/in the way", kErrWrongType, "Is a directory"},
        {File::WriteAppendMode, "", "f", kErrOther, "File exists"},  // somebody else's first content
    };
    for (const auto& each : cases) {
        const TemporaryFolder temp;
        if (*each.before != '\0') temp.write(each.before, "old");
        File file(at(temp.path("f")), File::Create);
        ASSERT_EQ(file.Open(each.mode, ReportAccessDenied), kNoError);
        ASSERT_EQ(write(file, "new"), kNoError);
        std::filesystem::remove(temp.path("f"));
        temp.write(each.meanwhile, "x");
        failures_.clear();
        EXPECT_EQ(file.Close(), each.closed);
        EXPECT_EQ(failures_, temp.path("f") + ": " + each.reason + "\n");
        EXPECT_EQ(temp.read(each.meanwhile), "x");
        EXPECT_EQ(temp.count(), 1);
    }
}

TEST_F(FileTest, SpecialFilesAreWrittenToDirectly) {
    EXPECT_EQ(replace("/dev/full", "x"), kErrNoSpace);
    EXPECT_EQ(replace("/dev/null", "x"), kNoError);

    ASSERT_EQ(mkfifo(temp_.path("pipe").c_str(), 0600), 0);
    EXPECT_NE(replace(temp_.path("pipe"), "x"), kNoError);  // nobody reads
    const int reader = open(temp_.path("pipe").c_str(), O_RDONLY | O_NONBLOCK);
    EXPECT_EQ(replace(temp_.path("pipe"), "through"), kNoError);
    char bytes[16] = {};
    EXPECT_EQ(read(reader, bytes, sizeof bytes), 7);
    EXPECT_STREQ(bytes, "through");

    File pipe(at(temp_.path("pipe")));
    ASSERT_EQ(pipe.Open(File::WriteEmptyMode, ReportAccessDenied), kNoError);
    close(reader);
    EXPECT_EQ(write(pipe, "x"), kErrOther);  // and no signal ends the process
    EXPECT_EQ(temp_.count(), 1);
}

TEST_F(FileTest, CreationMakesAnEmptyFileOnlyWhereNoneIs) {
    temp_.write("f", "old");
    const std::string longest(255, 'n');
    EXPECT_EQ(File(at(temp_.path("new")), File::Fail).GetStatus(), kErrNotFound);
    EXPECT_FALSE(temp_.has("new"));
    const std::pair<std::string, GSErrCode> cases[] = {
        {"new", kNoError},
        {"f", kNoError},
        {".", kErrWrongType},
        {"no folder/f", kErrNotFound},
        {"f/f", kErrNotFound},
        {longest, kNoError},
        {longest + 'n', kErrBadLocation},
    };
    for (const auto& [name, status] : cases) {
        EXPECT_EQ(File(at(temp_.path(name)), File::Create).GetStatus(), status) << name;
        if (status == kNoError) {
            EXPECT_EQ(temp_.has(name) ? temp_.read(name) : "missing", name == "f" ? "old" : "") << name;
        }
    }
    EXPECT_EQ(replace(temp_.path(longest), "content"), kNoError);
    EXPECT_EQ(temp_.read(longest), "content");
}

TEST_F(FileTest, ReadingCountsFromThePosition) {
    temp_.write("f", "0123456789");
    File file(at(temp_.path("f")));
    ASSERT_EQ(file.Open(File::ReadMode, ReportAccessDenied), kNoError);
    std::uint32_t whole = 0;
    for (const std::uint64_t position : {11u, 10u, 7u}) {
        std::uint64_t rest = 99;
        EXPECT_EQ(file.SetPosition(position) | file.GetRemainingLength(&rest), kNoError);
        EXPECT_EQ(rest, position == 7 ? 3u : 0u);
    }
    char bytes[10] = {};
    std::uint32_t count = 99;
    EXPECT_EQ(file.Read(bytes, 10, &count), kErrEndOfFile);
    EXPECT_EQ(std::string(bytes, count), "789");
    EXPECT_EQ(file.GetLength(&whole), kNoError);
    std::filesystem::resize_file(temp_.path("f"), std::uintmax_t{1} << 32);
    EXPECT_EQ(file.GetLength(&whole), kErrTooLarge) << "more than 32 bits";
    EXPECT_EQ(whole, 10u);
    EXPECT_EQ(write(file, "x"), kErrNotOpen);
}

TEST_F(FileTest, InPlaceModesKeepWhatIsNotOverwrittenAndOnlyTheReadingOnesCanRead) {
    const struct {
        File::OpenMode mode;
        GSErrCode reading;
        const char* content;
    } cases[] = {
        {File::WriteMode, kErrNotOpen, "01ab456789"},
        {File::WriteEmptyMode, kErrNotOpen, "ab"},
        {File::WriteAppendMode, kErrNotOpen, "0123456789ab"},
        {File::ReadWriteMode, kNoError, "01ab456789"},
    };
    for (const auto& each : cases) {
        temp_.write("f", "0123456789");
        File file(at(temp_.path("f")));
        ASSERT_EQ(file.Open(each.mode, ReportAccessDenied), kNoError);
        EXPECT_EQ(file.SetPosition(each.mode == File::WriteEmptyMode ? 0 : 2) | write(file, "ab") |
                      file.SetPosition(0),
                  kNoError);
        char byte = 0;
        EXPECT_EQ(file.Read(&byte, 1, nullptr), each.reading);
        EXPECT_EQ(file.Open(File::ReadMode, ReportAccessDenied), kErrBusy);
        EXPECT_EQ(file.Close(), kNoError);
        EXPECT_EQ(temp_.read("f"), each.content);

        std::filesystem::remove(temp_.path("f"));
        File fresh(at(temp_.path("f")), File::Create);
        ASSERT_EQ(fresh.Open(each.mode, ReportAccessDenied), kNoError);
        EXPECT_EQ(write(fresh, "abc") | fresh.SetPosition(0) | write(fresh, "de"), kNoError);
        EXPECT_FALSE(temp_.has("f")) << "the first content appears as a whole";
        EXPECT_EQ(fresh.Close(), kNoError);
        EXPECT_EQ(temp_.read("f"), each.mode == File::WriteAppendMode ? "abcde" : "dec");
    }
}

TEST_F(FileTest, WithoutTheRightToWriteNothingIsReplaced) {
    temp_.write("folder/f", "old");
    const bool isRoot = getuid() == 0;
    chmod(temp_.path().c_str(), 0755);
    chmod(temp_.path("folder/f").c_str(), isRoot ? 0644 : 0444);
    chmod(temp_.path("folder").c_str(), isRoot ? 0755 : 0555);
    const pid_t child = fork();
    if (child == 0) {  // as an ordinary user, also when the tests run as root
        if (isRoot && (setgid(65534) != 0 || setuid(65534) != 0)) _exit(9);
        const bool refused = replace(temp_.path("folder/f"), "new") == kErrAccessDenied &&
                             replace(temp_.path("folder/new"), "new") == kErrAccessDenied;
        _exit(refused ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    chmod(temp_.path("folder").c_str(), 0755);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(temp_.read("folder/f"), "old");
    EXPECT_FALSE(temp_.has("folder/new"));
}

}  // namespace
}  // namespace IO
