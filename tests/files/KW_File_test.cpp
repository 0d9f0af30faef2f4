#include "files/KW_File.h"

#include "tests/support/ResourceLimit.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

namespace {

using namespace std::string_literals;
using support::utf8;

constexpr auto kSystem = KW_String::Encoding_System;
constexpr auto kUTF8 = KW_String::Encoding_UTF8;

class KW_FileTest : public ::testing::Test {
protected:
    KW_Location at(const std::string& name) const { return KW_Location(support::text(temp_.path(name))); }

    TemporaryFolder temp_;
};

TEST_F(KW_FileTest, ReadBinReadsTheWholeFileOrAsMuchAsAskedFor) {
    temp_.write("f", "0123456789");
    temp_.write("empty", "");
    // What cannot be read in full does not change the size; a missing file is no failure.
    using Case = std::tuple<const char*, unsigned long, unsigned long, const char*, unsigned long>;
    for (const auto& [file, asked, position, read, size] :
         {Case{"f", 0, 0, "0123456789", 10}, Case{"f", 4, 2, "2345", 4}, Case{"f", 20, 0, nullptr, 20},
          Case{"f", 0, 2, nullptr, 0}, Case{"empty", 0, 5, "", 0}, Case{"missing", 7, 0, "", 7}}) {
        char buffer[64] = {};
        unsigned long count = asked;
        bool exists = !temp_.has(file);
        EXPECT_EQ(KW_File::ReadBin(at(file), buffer, &count, &exists, position), 0);
        EXPECT_EQ(exists, temp_.has(file));
        EXPECT_EQ(count, size);
        if (read != nullptr) {
            EXPECT_STREQ(buffer, read);
        }
    }
}

TEST_F(KW_FileTest, ReadBinForWhoMustKnowTellsWhatItCannotRead) {
    temp_.write("f", "0123456789");
    std::string bytes = "before";
    EXPECT_EQ(KW_File::ReadWhole(at("f"), bytes, 9), 6);
    {
        const ResourceLimit noMoreFiles(RLIMIT_NOFILE, 0);
        EXPECT_EQ(KW_File::ReadWhole(at("f"), bytes, 10), 5);
    }
    EXPECT_EQ(bytes, "before");
    EXPECT_EQ(KW_File::ReadWhole(at("f"), bytes, 10), 0);
    EXPECT_EQ(bytes, "0123456789");
    EXPECT_EQ(KW_File::ReadWhole(at("missing"), bytes, 9), 0);
    EXPECT_EQ(bytes, "");
}

TEST_F(KW_FileTest, WriteBinReplacesAppendsAndCreatesAsToldAndTellsWhatFails) {
    temp_.makeFolder("folder");
    using Case = std::tuple<const char*, const char*, long, bool, bool, int, std::string>;
    for (const auto& [file, bytes, size, append, create, code, held] :
         {Case{"missing", "abc", 3, false, false, 6, ""}, Case{"f", "abcdef", 6, false, true, 0, "abcdef"},
          Case{"f", "g", 1, true, true, 0, "abcdefg"}, Case{"f", "x\0y", 3, false, false, 0, "x\0y"s},
          Case{"f", "z", -1, false, true, 6, "x\0y"s}, Case{"f", nullptr, 0, false, true, 0, ""},
          Case{"no folder/f", "x", 1, false, true, 3, ""}}) {
        EXPECT_EQ(KW_File::WriteBin(at(file), bytes, size, append, create), code);
        EXPECT_EQ(temp_.read(file), held);
    }
    EXPECT_FALSE(temp_.has("missing"));
    EXPECT_EQ(KW_File::WriteBin(at("folder"), "x", 1, false, true), 6);
    EXPECT_EQ(KW_File::WriteBin(KW_Location(KW_String("/dev/full", kUTF8)), "x", 1, false, true), 4);
}

TEST_F(KW_FileTest, AFailedWriteLeavesTheOldContent) {
    temp_.write("f", "old");
    const std::string large(1000, 'x');
    KW_File open;
    EXPECT_EQ(open.Open(at("f"), OpenMode_Append), 0);
    auto fullDisk = std::make_unique<ResourceLimit>(RLIMIT_FSIZE, 100);
    EXPECT_EQ(KW_File::WriteBin(at("f"), large.data(), 1000, false, true), 4);
    EXPECT_EQ(KW_File::WriteBin(at("f"), large.data(), 1000, true, true), 4);
    EXPECT_EQ(open.WriteFullText(KW_String(large.c_str(), kUTF8), kUTF8, false, nullptr), 4);
    fullDisk.reset();
    EXPECT_EQ(temp_.read("f"), "old");
    EXPECT_EQ(temp_.count(), 1);
    EXPECT_EQ(open.WriteFullText(KW_String("er", kUTF8), kUTF8, false, nullptr), 0);
    open.file.reset();
    EXPECT_EQ(temp_.read("f"), "older") << "what is written next follows the old content";
}

TEST_F(KW_FileTest, TextIsWrittenInItsEncodingWithTheMarkItHasAndReadSo) {
    using Case = std::tuple<KW_String::Encoding, bool, std::string>;
    for (const auto& [encoding, mark, bytes] :
         {Case{KW_String::Encoding_UTF16LE, true, "\xFF\xFE\xE9\0"s},
          Case{kUTF8, true, "\xEF\xBB\xBF\xC3\xA9"}, Case{kSystem, true, "\x8E"},
          Case{kUTF8, false, "\xC3\xA9"}, Case{KW_String::Encoding_UTF16BE, false, "\0\xE9"s},
          Case{KW_String::Encoding_UTF32BE, true, "\0\0\xFE\xFF\0\0\0\xE9"s}}) {
        EXPECT_EQ(KW_File::WriteFullText(at("f"), support::text("\xC3\xA9"), encoding, mark, false), 0);
        KW_String text;
        EXPECT_EQ(KW_File::ReadFullText(at("f"), text, false, encoding), 0);
        EXPECT_EQ(utf8(text), "\xC3\xA9");
        KW_File file;
        unsigned long written = 99;
        EXPECT_EQ(file.Open(at("f"), OpenMode_Append), 0);
        EXPECT_EQ(file.WriteFullText(support::text("\xC3\xA9"), encoding, mark, &written), 0);
        EXPECT_EQ(written, bytes.size());
        file.file.reset();
        EXPECT_EQ(temp_.read("f"), bytes + bytes);
    }
    KW_String text;
    EXPECT_EQ(KW_File::WriteFullText(at("f"), text, kUTF8, true, false), 0);
    EXPECT_EQ(temp_.read("f"), "\xEF\xBB\xBF");
    temp_.write("f", "h\0i\0o\0"s);
    EXPECT_EQ(KW_File::ReadFullText(at("f"), text, true, kUTF8), 0);
    EXPECT_EQ(KW_File::ReadFullText(at("missing"), text, true, kUTF8), 3);
    EXPECT_EQ(utf8(text), "hio");
}

TEST_F(KW_FileTest, MembersNeedAnOpenedFileAndHoldOneAtATime) {
    KW_File file;
    KW_String text;
    unsigned long written = 5;
    EXPECT_EQ(file.ReadFullText(text, true, kUTF8), 1);
    EXPECT_EQ(file.WriteFullText(text, kUTF8, true, &written), 1);
    EXPECT_EQ(file.WriteFullText(text, kSystem, true, &written), 1);
    EXPECT_EQ(written, 0u);

    ASSERT_EQ(file.Open(at("first"), OpenMode_Write), 0);
    EXPECT_EQ(file.WriteFullText(KW_String("1", kUTF8), kUTF8, false, nullptr), 0);
    ASSERT_EQ(file.Open(at("second"), OpenMode_Write), 0);
    EXPECT_EQ(temp_.read("first"), "1") << "closed when another was opened";

    EXPECT_EQ(file.Open(at("third"), static_cast<KW_File_OpenMode>(5)), 6) << "there is no such mode";
    EXPECT_FALSE(file.file->IsOpen());
    EXPECT_EQ(file.Open(at("second"), OpenMode_Read), 0);
    EXPECT_TRUE(temp_.has("third")) << "its name appears when it is closed";
}

TEST_F(KW_FileTest, EveryModeButReadingCreatesAndOnlyWriteReplaces) {
    for (unsigned int mode = 0; mode <= 4; ++mode) {
        const std::string name = "new" + std::to_string(mode);
        temp_.write("f", "old content");
        {
            KW_File file;
            EXPECT_EQ(file.Open(at(name), static_cast<KW_File_OpenMode>(mode)), mode == 0 ? 3 : 0);
            EXPECT_EQ(file.Open(at("f"), static_cast<KW_File_OpenMode>(mode)), 0);
        }
        EXPECT_EQ(temp_.has(name), mode != 0);
        EXPECT_EQ(temp_.read("f"), mode == 2 ? "" : "old content");
    }
}

TEST_F(KW_FileTest, DeletingTakesFilesOnly) {
    temp_.write("folder/f", "x");
    EXPECT_TRUE(KW_File::Delete(at("folder/f")));
    EXPECT_FALSE(temp_.has("folder/f"));
    for (const KW_Location& none : {at("folder/f"), at("folder"), KW_Location()})
        EXPECT_FALSE(KW_File::Delete(none));
    EXPECT_TRUE(temp_.has("folder"));
}

}  // namespace
