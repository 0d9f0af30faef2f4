#include "settings/KW_SettingsFile.h"

#include "tests/support/SettingsBytes.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Text.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace std::string_literals;

using Pairs = std::vector<std::pair<std::string, std::string>>;

KW_String system(const std::string& bytes) {
    KW_String text("", KW_String::Encoding_System);
    text.THIS_Append(bytes.data(), static_cast<unsigned int>(bytes.size()), KW_String::Encoding_System);
    return text;
}

KW_List<KW_Setting> listOf(const Pairs& pairs) {
    KW_List<KW_Setting> list;
    for (const auto& [key, value] : pairs)
        list.AddData(KW_Setting(system(key), system(value)), -1);
    return list;
}

/// Whether the list holds exactly the pairs, compared unit by unit.
bool holds(const KW_List<KW_Setting>& list, const Pairs& pairs) {
    if (list.count != static_cast<long>(pairs.size())) return false;
    for (long i = 0; i < list.count; ++i) {
        const auto& [key, value] = pairs[static_cast<std::size_t>(i)];
        if (list[i].key != system(key) || list[i].value != system(value)) return false;
        if (list[i].value.length != value.size()) return false;
    }
    return true;
}

/// The format's reading rules, one byte at a time.
bool modelParse(const std::string& data, Pairs& entries) {
    const std::size_t end = data.size();
    const std::string padded = data + "\0\0"s;
    std::size_t at = 0;
    while (at < end) {
        if (padded[at] != '$') return false;
        if (++at >= end) return false;
        std::string key;
        while (at < end && padded[at] != ':')
            key += padded[at++];
        if (at >= end || key.empty()) return false;
        at += 2;
        if (at >= end) return true;
        std::string value;
        std::string piece;
        for (bool complete = false; !complete;) {
            if (at >= end) return true;
            if (padded[at] != '\n' && padded[at] != '\r') {
                piece += padded[at++];
                continue;
            }
            std::string lineBreak(1, padded[at++]);
            if (lineBreak == "\r" && padded[at] == '\n') lineBreak += padded[at++];
            if (at < end && padded[at] == '#') {
                value += piece + lineBreak;
                piece.clear();
                ++at;
            } else if (at == end || padded[at] == '$') {
                value += piece;
                complete = true;
            } else {
                return false;
            }
        }
        entries.emplace_back(key, value);
    }
    return true;
}

TEST(SettingsFormat, EntriesAreReadUpToTheFault) {
    struct Case {
        std::string text;
        bool whole;
        Pairs entries;
    };
    for (const Case& c : std::vector<Case>{
             {"", true, {}},
             {"$A: 1\n$A: 2\n", true, {{"A", "1"}, {"A", "2"}}},
             {"$k: x\n#\n#y\n", true, {{"k", "x\n\ny"}}},
             {"$k: a\r\n#b\r#c\n$l: d\r", true, {{"k", "a\r\nb\rc"}, {"l", "d"}}},
             {"$k:_v\n", true, {{"k", "v"}}},
             {"$k: \n$l: v\n", true, {{"k", ""}, {"l", "v"}}},
             {"$a\nb: v\n", true, {{"a\nb", "v"}}},
             {"$k: 1\n$l: cut short", true, {{"k", "1"}}},
             {"k: 1\n", false, {}},
             {"$k: 1\n$", false, {{"k", "1"}}},
             {"$k: 1\n$no colon\n", false, {{"k", "1"}}},
             {"$k: 1\n$: 2\n", false, {{"k", "1"}}},
             {"$k: 1\n\n", false, {}},
             {"$k: 1\n\0"s, false, {}},
             {"$k: z\0ro\n"s, true, {{"k", "z\0ro"s}}},
         }) {
        KW_List<KW_Setting> list;
        EXPECT_EQ(KW_SettingsFile_Parse(c.text.data(), c.text.size(), list), c.whole) << c.text;
        EXPECT_TRUE(holds(list, c.entries)) << c.text;
    }
}

TEST(SettingsFormat, RandomBytesAreReadAsTheRulesSay) {
    std::mt19937 random(20180803);
    const std::string alphabet = "$$$::\n\n\r##  abc\0\xE9"s;
    for (int round = 0; round < 100000; ++round) {
        std::string text(random() % 40, '\0');
        for (char& byte : text)
            byte = alphabet[random() % alphabet.size()];
        if (round % 2 == 0) text = "$k: v\n" + text;

        Pairs expected;
        const bool whole = modelParse(text, expected);
        expected.insert(expected.begin(), {"held", "before"});
        KW_List<KW_Setting> list = listOf({{"held", "before"}});
        ASSERT_EQ(KW_SettingsFile_Parse(text.data(), text.size(), list), whole)
            << testing::PrintToString(text);
        ASSERT_TRUE(holds(list, expected)) << testing::PrintToString(text);
    }
}

class SettingsFile : public ::testing::Test {
protected:
    explicit SettingsFile(const std::filesystem::path& inside = std::filesystem::temp_directory_path())
        : temp_(inside) {}

    KW_Location location() const { return KW_Location(support::text(temp_.path("f.cfg"))); }

    TemporaryFolder temp_;
};

TEST_F(SettingsFile, WhatIsWrittenIsReadBack) {
    const std::vector<std::pair<Pairs, std::string>> cases = {
        {{}, ""},
        {{{"k", "x\n\ny"}}, "$k: x\n#\n#y\n"},
        {{{"A", "1"}, {"A", "2"}, {"a", ""}}, "$A: 1\n$A: 2\n$a: \n"},
        {{{"k", "a\r\nb\r\rc\n\r"}}, "$k: a\r\n#b\r#\r#c\n#\r#\n"},
        {{{"k", "z\0ro"s}}, "$k: z\0ro\n"s},
        {{{"k\x8E", "\xA5\xFF#$:"}}, "$k\x8E: \xA5\xFF#$:\n"},
    };
    EXPECT_EQ(exchanged("$a: b\n"), "\x42\x16\xA3\x02\x26\xA0");
    for (const auto& [pairs, bytes] : cases) {
        ASSERT_TRUE(KW_SettingsFile_Write(location(), listOf(pairs)));
        EXPECT_EQ(temp_.read("f.cfg"), exchanged(bytes));
        KW_List<KW_Setting> list = listOf({{"before", "x"}});
        EXPECT_EQ(KW_SettingsFile_Read(location(), list), KW_SettingsFile_Result::Read);
        EXPECT_TRUE(holds(list, pairs)) << bytes;
    }
}

TEST_F(SettingsFile, SizesUpToTheLimitsAreReadAndWrittenAndNoByteMore) {
    const std::size_t around = "$k: \n"s.size();
    for (const auto& [size, fits] : {std::pair(99998u, true), std::pair(99999u, false)}) {
        temp_.write("f.cfg", exchanged("$k: " + std::string(size - around, 'v') + "\n"));
        KW_List<KW_Setting> list;
        EXPECT_EQ(KW_SettingsFile_Read(location(), list),
                  fits ? KW_SettingsFile_Result::Read : KW_SettingsFile_Result::Refused);
        EXPECT_EQ(list.count, fits ? 1 : 0);
    }
    for (const auto& [size, fits] : {std::pair(100000u, true), std::pair(100001u, false)}) {
        temp_.write("f.cfg", "old");
        EXPECT_EQ(KW_SettingsFile_Write(location(), listOf({{"k", std::string(size - around, 'v')}})), fits);
        EXPECT_EQ(temp_.read("f.cfg").size(), fits ? size : 3u);
    }
    EXPECT_TRUE(KW_SettingsFile_Write(location(), listOf({{"k", std::string(49997, '\n')}})));
    EXPECT_EQ(temp_.read("f.cfg").size(), 99999u);
    EXPECT_FALSE(KW_SettingsFile_Write(location(), listOf({{"k", std::string(49998, '\n')}})));
}

/// Saves `lists` in turn until it is killed, counting in `saves`.
[[noreturn]] void saveForEver(const KW_Location& location,
                              const std::vector<const KW_List<KW_Setting>*>& lists, int* saves) {
    for (;;) {
        for (const KW_List<KW_Setting>* list : lists) {
            if (!KW_SettingsFile_Write(location, *list)) _exit(1);
            __atomic_add_fetch(saves, 1, __ATOMIC_RELAXED);
        }
    }
}

/// Where flushing costs little, if there is such a place: many saves in a short time.
std::filesystem::path memoryFolder() {
    return std::filesystem::is_directory("/dev/shm") ? "/dev/shm" : std::filesystem::temp_directory_path();
}

class SavesByOthers : public SettingsFile {
protected:
    SavesByOthers() : SettingsFile(memoryFolder()) {
        EXPECT_TRUE(KW_SettingsFile_Write(location(), small_));
        saves_ = static_cast<int*>(
            mmap(nullptr, sizeof(int), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    }
    ~SavesByOthers() override { munmap(saves_, sizeof(int)); }

    pid_t startSaving(const std::vector<const KW_List<KW_Setting>*>& lists) {
        const pid_t child = fork();
        if (child == 0) saveForEver(location(), lists, saves_);
        return child;
    }

    void expectWhole() {
        KW_List<KW_Setting> list;
        ASSERT_EQ(KW_SettingsFile_Read(location(), list), KW_SettingsFile_Result::Read);
        ASSERT_TRUE(holds(list, smallPairs()) || holds(list, largePairs())) << list.count << " entries";
    }

    int saves() const { return __atomic_load_n(saves_, __ATOMIC_RELAXED); }

    static Pairs smallPairs() { return {{"Language_str", "ita"}}; }
    static Pairs largePairs() {
        Pairs pairs;
        for (int i = 0; i < 300; ++i)
            pairs.emplace_back("key " + std::to_string(i), std::string(280, 'v'));
        return pairs;
    }

    const KW_List<KW_Setting> small_ = listOf(smallPairs());
    const KW_List<KW_Setting> large_ = listOf(largePairs());
    int* saves_;
};

TEST_F(SavesByOthers, AKillAtAnyMomentLeavesTheOldFileOrTheNewOne) {
    std::mt19937 random(500);
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    int kills = 0;
    while ((saves() < 500 || kills < 20) && std::chrono::steady_clock::now() < giveUp) {
        const pid_t child = startSaving({&large_, &small_});
        for (const int before = saves(); saves() == before && std::chrono::steady_clock::now() < giveUp;)
            usleep(50);
        usleep(static_cast<useconds_t>(random() % 60000));
        ASSERT_EQ(kill(child, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "a save failed";
        ++kills;
        ASSERT_NO_FATAL_FAILURE(expectWhole());
    }
    EXPECT_GE(saves(), 500);
    EXPECT_TRUE(KW_SettingsFile_Write(location(), small_));
    EXPECT_EQ(temp_.count(), 1) << "a killed save left something behind";
}

/// Saves once, stopping at every system call; the parent lets it make `stops` of them and kills it. False
/// when the save was over before.
bool saveUntilStop(const KW_Location& location, const KW_List<KW_Setting>& list, int stops) {
    const pid_t child = fork();
    if (child == 0) {
        ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        raise(SIGSTOP);
        _exit(KW_SettingsFile_Write(location, list) ? 0 : 1);
    }
    int status = 0;
    for (int stop = 0; waitpid(child, &status, 0) == child && WIFSTOPPED(status); ++stop) {
        if (stop == stops) kill(child, SIGKILL);
        ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
    }
    EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0) << "a save failed";
    return WIFSIGNALED(status);
}

TEST_F(SavesByOthers, AKillBeforeOrAfterEachSystemCallLeavesTheOldFileOrTheNewOne) {
    int stops = 1;
    bool newFile = false;
    for (; saveUntilStop(location(), large_, stops); ++stops) {
        ASSERT_NO_FATAL_FAILURE(expectWhole());
        if (temp_.read("f.cfg").size() > 1000) newFile = true;
        ASSERT_TRUE(KW_SettingsFile_Write(location(), small_));
        ASSERT_EQ(temp_.count(), 1) << "a killed save left something behind";
    }
    EXPECT_GT(stops, 10);
    EXPECT_TRUE(newFile);
}

TEST_F(SavesByOthers, TwoHostsThatSaveAtTheSameTimeKeepTheFileWhole) {
    const pid_t children[] = {startSaving({&large_}), startSaving({&small_})};
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (saves() < 200 && std::chrono::steady_clock::now() < giveUp && !HasFatalFailure())
        expectWhole();
    for (const pid_t child : children) {
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status)) << "a save failed";
    }
    EXPECT_GE(saves(), 200);
    expectWhole();
}

}  // namespace
