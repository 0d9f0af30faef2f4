#include "files/KW_File.h"

#include "tests/support/ResourceLimit.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <string>

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
    struct Case {
        const char* file;
        unsigned long asked;
        unsigned long position;
        const char* read;
        unsigned long size;  // what cannot be read in full does not change it
    };
    for (const Case& c :
         {Case{"f", 0, 0, "0123456789", 10}, Case{"f", 4, 2, "2345", 4}, Case{"f", 20, 0, nullptr, 20},
          Case{"f", 0, 2, nullptr, 0}, Case{"empty", 0, 5, "", 0}}) {
        char buffer[64] = {};
        unsigned long size = c.asked;
        bool exists = false;
        EXPECT_EQ(KW_File::ReadBin(at(c.file), buffer, &size, &exists, c.position), 0);
        EXPECT_TRUE(exists);
        EXPECT_EQ(size, c.size);
        if (c.read != nullptr) {
            EXPECT_STREQ(buffer, c.read);
        }
    }
    // A missing file is no failure.
    unsigned long size = 7;
    bool exists = true;
    char untouched = 'u';
    EXPECT_EQ(KW_File::ReadBin(at("missing"), &untouched, &size, &exists, 0), 0);
    EXPECT_FALSE(exists);
    EXPECT_EQ(size, 7u);
    EXPECT_EQ(untouched, 'u');
    EXPECT_EQ(KW_File::ReadBin(at("missing"), &untouched, &size, nullptr, 0), 0);
}

TEST_F(KW_FileTest, ReadBinForWhoMustKnowTellsWhatItCannotRead) {
    temp_.write("f", "0123456789");
    std::string bytes = "before";
    EXPECT_EQ(KW_File::ReadBin(at("f"), bytes, 9), 6);
    {
        const ResourceLimit noMoreFiles(RLIMIT_NOFILE, 0);
        EXPECT_EQ(KW_File::ReadBin(at("f"), bytes, 10), 5);
    }
    EXPECT_EQ(KW_File::ReadBin(KW_Location(), bytes, 10), 6);
    EXPECT_EQ(bytes, "before");
    EXPECT_EQ(KW_File::ReadBin(at("f"), bytes, 10), 0);
    EXPECT_EQ(bytes, "0123456789");
    EXPECT_EQ(KW_File::ReadBin(at("missing"), bytes, 9), 0);
    EXPECT_EQ(bytes, "");
}

TEST_F(KW_FileTest, WriteBinReplacesAppendsAndCreatesAsTold) {
    EXPECT_EQ(KW_File::WriteBin(at("f"), "abc", 3, false, false), 6);
    EXPECT_EQ(KW_File::WriteBin(at("f"), "abc", 3, true, false), 6);
    EXPECT_FALSE(temp_.has("f"));
    EXPECT_EQ(KW_File::WriteBin(at("f"), "abcdef", 6, false, true), 0);
    EXPECT_EQ(temp_.read("f"), "abcdef");
    EXPECT_EQ(KW_File::WriteBin(at("f"), "g", 1, true, true), 0);
    EXPECT_EQ(temp_.read("f"), "abcdefg");
    EXPECT_EQ(KW_File::WriteBin(at("f"), "x\0y", 3, false, false), 0);
    EXPECT_EQ(temp_.read("f"), "x\0y"s);
    EXPECT_EQ(KW_File::WriteBin(at("f"), "z", -1, false, true), 6);
    EXPECT_EQ(temp_.read("f"), "x\0y"s);
    EXPECT_EQ(KW_File::WriteBin(at("f"), nullptr, 0, false, true), 0);
    EXPECT_EQ(temp_.read("f"), "");
}

TEST_F(KW_FileTest, HostErrorsHaveCodesOfTheirOwn) {
    temp_.makeFolder("folder");
    EXPECT_EQ(KW_File::WriteBin(at("no folder/f"), "x", 1, false, true), 3);
    EXPECT_EQ(KW_File::WriteBin(KW_Location(KW_String("/dev/full", kUTF8)), "x", 1, false, true), 4);
    EXPECT_EQ(KW_File::WriteBin(at("folder"), "x", 1, false, true), 6);
    EXPECT_EQ(KW_File::WriteBin(KW_Location(), "x", 1, false, true), 6);
}

TEST_F(KW_FileTest, AFailedWriteLeavesTheOldContent) {
    temp_.write("f", "old");
    const std::string large(1000, 'x');
    KW_File open;
    EXPECT_EQ(open.Open(at("f"), OpenMode_Append), 0);
    auto fullDisk = std::make_unique<ResourceLimit>(RLIMIT_FSIZE, 100);
    EXPECT_EQ(KW_File::WriteBin(at("f"), large.data(), 1000, false, true), 4);
    EXPECT_EQ(KW_File::WriteBin(at("f"), large.data(), 1000, true, true), 4);
    EXPECT_EQ(KW_File::WriteFullText(at("f"), KW_String(large.c_str(), kUTF8), kUTF8, false, false), 4);
    EXPECT_EQ(open.WriteFullText(KW_String(large.c_str(), kUTF8), kUTF8, false, nullptr), 4);
    fullDisk.reset();
    EXPECT_EQ(temp_.read("f"), "old");
    EXPECT_EQ(temp_.count(), 1);
    EXPECT_EQ(open.WriteFullText(KW_String("er", kUTF8), kUTF8, false, nullptr), 0);
    open.file.reset();
    EXPECT_EQ(temp_.read("f"), "older") << "what is written next follows the old content";
}

TEST_F(KW_FileTest, TextIsWrittenInItsEncodingWithTheMarkItHas) {
    struct Case {
        KW_String::Encoding encoding;
        bool mark;
        std::string bytes;
    };
    for (const Case& c :
         {Case{KW_String::Encoding_UTF16LE, true, "\xFF\xFE\x41\0"s}, Case{kUTF8, true, "\xEF\xBB\xBF\x41"},
          Case{kSystem, true, "A"}, Case{kUTF8, false, "A"}, Case{KW_String::Encoding_UTF16BE, false, "\0A"s},
          Case{KW_String::Encoding_UTF32BE, true, "\0\0\xFE\xFF\0\0\0A"s}}) {
        EXPECT_EQ(KW_File::WriteFullText(at("f"), KW_String("A", kUTF8), c.encoding, c.mark, false), 0);
        EXPECT_EQ(temp_.read("f"), c.bytes);
        KW_File file;
        unsigned long written = 99;
        EXPECT_EQ(file.Open(at("f"), OpenMode_Append), 0);
        EXPECT_EQ(file.WriteFullText(KW_String("A", kUTF8), c.encoding, c.mark, &written), 0);
        EXPECT_EQ(written, c.bytes.size());
        file.file.reset();
        EXPECT_EQ(temp_.read("f"), c.bytes + c.bytes);
    }
    for (const KW_String& nothing : {KW_String(), KW_String("", kUTF8)}) {
        EXPECT_EQ(KW_File::WriteFullText(at("f"), nothing, kUTF8, true, false), 0);
        EXPECT_EQ(temp_.read("f"), "\xEF\xBB\xBF");
    }
}

TEST_F(KW_FileTest, TextIsReadByItsMarkThenAsDetectedOrGiven) {
    struct Case {
        std::string bytes;
        bool detect;
        KW_String::Encoding encoding;
        const char* text;
    };
    for (const Case& c :
         {Case{"\xFF\xFE\x41\0"s, false, kUTF8, "A"}, Case{"caf\x8E", false, kSystem, "caf\xC3\xA9"},
          Case{"h\0i\0o\0"s, true, kUTF8, "hio"}, Case{"", true, kUTF8, ""}, Case{"", false, kUTF8, ""},
          Case{"\xEF\xBB\xBF", false, kSystem, ""}}) {
        temp_.write("f", c.bytes);
        KW_String text("before", kUTF8);
        EXPECT_EQ(KW_File::ReadFullText(at("f"), text, c.detect, c.encoding), 0);
        EXPECT_EQ(utf8(text), c.text);
    }
    KW_String text("before", kUTF8);
    EXPECT_EQ(KW_File::ReadFullText(at("missing"), text, true, kUTF8), 3);
    EXPECT_EQ(utf8(text), "before");
}

TEST_F(KW_FileTest, MembersNeedAnOpenedFileAndHoldOneAtATime) {
    KW_File file;
    KW_String text;
    unsigned long written = 5;
    EXPECT_EQ(file.ReadFullText(text, true, kUTF8), 1);
    EXPECT_EQ(file.WriteFullText(text, kUTF8, true, &written), 1);
    EXPECT_EQ(written, 5u);
    EXPECT_EQ(file.WriteFullText(text, kSystem, true, &written), 1);
    EXPECT_EQ(written, 0u);

    ASSERT_EQ(file.Open(at("first"), OpenMode_Write), 0);
    EXPECT_EQ(file.WriteFullText(KW_String("1", kUTF8), kUTF8, false, nullptr), 0);
    ASSERT_EQ(file.Open(at("second"), OpenMode_Write), 0);
    EXPECT_EQ(temp_.read("first"), "1") << "closed when another was opened";

    EXPECT_EQ(file.Open(at("third"), static_cast<KW_File_OpenMode>(5)), 6) << "there is no such mode";
    ASSERT_NE(file.file, nullptr);
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
    EXPECT_FALSE(KW_File::Delete(at("folder/f")));
    EXPECT_FALSE(KW_File::Delete(at("folder")));
    EXPECT_TRUE(temp_.has("folder"));
    EXPECT_FALSE(KW_File::Delete(KW_Location()));
    EXPECT_FALSE(KW_File::Delete(KW_Location(KW_String("/", kUTF8))));
}

}  // namespace
