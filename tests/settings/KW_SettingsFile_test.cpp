#include "settings/KW_SettingsFile.h"

#include "tests/support/SettingsBytes.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <tuple>
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

TEST(SettingsFormat, EntriesAreReadUpToTheFault) {
    using enum KW_SettingsFile_Result;
    using Case = std::tuple<std::string, KW_SettingsFile_Result, Pairs>;
    for (auto [text, result, entries] :
         {Case{"", Read, {}}, Case{"$k: x\n#\n#y\n", Read, {{"k", "x\n\ny"}}},
          Case{"$k: a\r\n#b\r#c\n$l: d\r", Read, {{"k", "a\r\nb\rc"}, {"l", "d"}}},
          Case{"$k: a\n#b\n$l: c\n", Read, {{"k", "a\nb"}, {"l", "c"}}},
          Case{"$k:_v\r\n$l:$v\n", Read, {{"k", "v"}, {"l", "v"}}}, Case{"$k:\n\n", Read, {{"k", ""}}},
          Case{"$k: \n$l: v\n", Read, {{"k", ""}, {"l", "v"}}},
          Case{"$a\n$b: v:$w\n", Read, {{"a\n$b", "v:$w"}}},
          Case{"$k: 1\n$l: cut\n#short", Read, {{"k", "1"}}}, Case{"$k:", Read, {}},
          Case{"k: 1\n", Malformed, {}}, Case{"$k: 1\n$", Malformed, {{"k", "1"}}},
          Case{"$k: 1\n$no colon\n", Malformed, {{"k", "1"}}}, Case{"$k: 1\n$: 2\n", Malformed, {{"k", "1"}}},
          Case{"$k: 1\n\n", Malformed, {}}, Case{"$k: 1\r\r\n", Malformed, {}},
          Case{"$k: 1\n\0"s, Malformed, {}}, Case{"$k: z\0ro\n"s, Read, {{"k", "z\0ro"s}}}}) {
        KW_List<KW_Setting> list = listOf({{"held", "before"}});
        EXPECT_EQ(KW_SettingsFile_Parse(text.data(), text.size(), list), result) << text;
        entries.insert(entries.begin(), {"held", "before"});
        EXPECT_TRUE(holds(list, entries)) << text;
    }
}

class SettingsFile : public ::testing::Test {
protected:
    KW_Location location() const { return KW_Location(support::text(temp_.path("f.cfg"))); }

    // Where flushing costs little, if there is such a place.
    TemporaryFolder temp_{std::filesystem::is_directory("/dev/shm") ? "/dev/shm" : "/tmp"};
};

TEST_F(SettingsFile, WhatIsWrittenIsReadBack) {
    using Case = std::pair<Pairs, std::string>;
    EXPECT_EQ(exchanged("$a: b\n"), "\x42\x16\xA3\x02\x26\xA0");
    for (const auto& [pairs, bytes] :
         {Case{{}, ""}, Case{{{"A", "1"}, {"A", "2"}, {"a", ""}}, "$A: 1\n$A: 2\n$a: \n"},
          Case{{{"k", "a\r\nb\r\rc\n\r"}}, "$k: a\r\n#b\r#\r#c\n#\r#\n"},
          Case{{{"k", "z\0ro"s}}, "$k: z\0ro\n"s},
          Case{{{"k\x8E", "\xA5\xFF#$:"}}, "$k\x8E: \xA5\xFF#$:\n"}}) {
        ASSERT_TRUE(KW_SettingsFile_Write(location(), listOf(pairs)));
        EXPECT_EQ(temp_.read("f.cfg"), exchanged(bytes));
        KW_List<KW_Setting> list = listOf({{"before", "x"}});
        EXPECT_EQ(KW_SettingsFile_Read(location(), list), KW_SettingsFile_Result::Read);
        EXPECT_TRUE(holds(list, pairs)) << bytes;
    }
}

TEST_F(SettingsFile, SizesUpToTheLimitsAreReadAndWrittenAndNoByteMore) {
    for (const auto& [size, readable, writable] :
         {std::tuple(99998u, true, true), std::tuple(99999u, false, true), std::tuple(100000u, false, true),
          std::tuple(100001u, false, false)}) {
        const std::string value(size - "$k: \n"s.size(), 'v');
        temp_.write("f.cfg", exchanged("$k: " + value + "\n"));
        KW_List<KW_Setting> list;
        EXPECT_EQ(KW_SettingsFile_Read(location(), list),
                  readable ? KW_SettingsFile_Result::Read : KW_SettingsFile_Result::Refused);
        EXPECT_EQ(list.count, readable ? 1 : 0);
        temp_.write("f.cfg", "old");
        EXPECT_EQ(KW_SettingsFile_Write(location(), listOf({{"k", value}})), writable);
        EXPECT_EQ(temp_.read("f.cfg").size(), writable ? size : 3u);
    }
    EXPECT_TRUE(KW_SettingsFile_Write(location(), listOf({{"k", std::string(49997, '\n')}})));
    EXPECT_EQ(temp_.read("f.cfg").size(), 99999u);
    EXPECT_FALSE(KW_SettingsFile_Write(location(), listOf({{"k", std::string(49998, '\n')}})));
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

TEST_F(SettingsFile, AKillBeforeOrAfterEachSystemCallOfASaveLeavesTheOldContentOrTheNew) {
    const Pairs before{{"Language_str", "ita"}};
    const Pairs after = Pairs(300, {"key", std::string(280, 'v')});
    bool newFile = false;
    bool more = true;
    int stops = 0;
    while (more && !HasFailure()) {
        ASSERT_TRUE(KW_SettingsFile_Write(location(), listOf(before)));
        ASSERT_EQ(temp_.count(), 1) << "a killed save left something behind";
        more = saveUntilStop(location(), listOf(after), ++stops);
        KW_List<KW_Setting> list;
        ASSERT_EQ(KW_SettingsFile_Read(location(), list), KW_SettingsFile_Result::Read);
        ASSERT_TRUE(holds(list, before) || holds(list, after)) << list.count << " entries";
        newFile = newFile || (more && holds(list, after));
    }
    EXPECT_TRUE(newFile) << stops;
}

}  // namespace
