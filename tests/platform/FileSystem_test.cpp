#include "platform/FileSystem.h"

#include "platform/host/SettingsFolder.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace IO {
namespace {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

Location at(const std::string& path) {
    return Location::FromPosixPath(path);
}

std::string bytesOf(const Location& location) {
    GS::FixedCapacityString<256> bytes;
    return location.ToUTF8POSIXPath(&bytes) == kNoError ? std::string(bytes) : "(error)";
}

std::vector<unsigned short> unitsOf(const Location& location) {
    GS::UniString path;
    EXPECT_EQ(location.ToPath(&path), kNoError);
    return {path.ToUStr(), path.ToUStr() + path.GetLength()};
}

Name nameOf(const std::string& bytes) {
    Location location = at(bytes);
    Name name;
    EXPECT_EQ(location.MoveLastLocalName(&name), kNoError);
    return name;
}

TEST(Location, EveryByteSequenceComesBackFromItsText) {
    for (const char* bytes :
         {"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", "\xFF\xFE", "\xC3", "\xE2\x82", "\xC0\xAF", "\xED\xA0\x80",
          "\xED\xB2\x80", "\xF4\x90\x80\x80", "a\x80z\xC3\xA9\xBF", "\xF0\x9F\x98\xFFx"})
        EXPECT_EQ(bytesOf(at(bytes)), bytes);
    EXPECT_EQ(bytesOf(at(std::string(600, '\xE9'))), std::string(600, '\xE9'));

    std::minstd_rand random;
    for (int round = 0; round < 20000; ++round) {
        std::string bytes = "/";
        for (int i = 0; i < 12; ++i)
            bytes.push_back(static_cast<char>(1 + random() % 255));
        ASSERT_EQ(bytesOf(at(bytes)), bytes);
    }
}

TEST(Location, UndecodableBytesStandAsLoneLowSurrogates) {
    EXPECT_THAT(unitsOf(at("a\xFF\xC3\xA9\xF0\x9F\x98\x80")), ElementsAre('a', 0xDCFF, 0xE9, 0xD83D, 0xDE00));
}

TEST(Location, TextThatNoPathCanStandForIsRefused) {
    const std::vector<std::vector<unsigned short>> cases = {{},       {'a', 0, 'b'}, {0xD800}, {0xD83D, 'x'},
                                                            {0xDC00}, {0xDC7F},      {0xDD00}, {0xDFFF}};
    for (const auto& units : cases) {
        const Location location(GS::UniString(units.data(), static_cast<unsigned int>(units.size())));
        EXPECT_EQ(bytesOf(location), "(error)");
        EXPECT_NE(File(location, File::Create).GetStatus(), kNoError);
        EXPECT_NE(Folder(location).GetStatus(), kNoError);
    }
    GS::UniString path;
    EXPECT_NE(Location().ToPath(&path), kNoError);
}

TEST(Location, AChildIsJoinedWithOneSlash) {
    EXPECT_EQ(bytesOf(Location(at("/a"), nameOf("b"))), "/a/b");
    EXPECT_EQ(bytesOf(Location(at("/"), nameOf("b"))), "/b");
    EXPECT_EQ(bytesOf(Location(Location(), nameOf("b"))), "b");
    const std::string longName(2000, 'n');
    EXPECT_EQ(bytesOf(Location(at("/" + longName), nameOf(longName))), "/" + longName + "/" + longName);
}

TEST(Location, MovingTheLastNameSplitsFolderAndName) {
    const std::array<const char*, 3> cases[] = {{"/a/b", "/a", "b"},  {"/a/b/", "/a", "b"},
                                                {"/a//b", "/a", "b"}, {"/b", "/", "b"},
                                                {"b", ".", "b"},      {"x/b.txt", "x", "b.txt"}};
    for (const auto& [path, folder, name] : cases) {
        Location location = at(path);
        Name last;
        ASSERT_EQ(location.MoveLastLocalName(&last), kNoError) << path;
        EXPECT_EQ(bytesOf(location), folder) << path;
        EXPECT_EQ(bytesOf(Location(last.ToUniString())), name) << path;
    }
    for (const char* path : {"/", "//"}) {
        Location location = at(path);
        EXPECT_NE(location.MoveLastLocalName(nullptr), kNoError);
        EXPECT_EQ(bytesOf(location), path);
    }
}

TEST(FixedCapacityString, ATextOfAnyLengthIsKeptAndCopied) {
    for (const std::size_t length : {0, 1, 255, 256, 5000}) {
        GS::FixedCapacityString<256> text;
        text.Set("something before");
        text.Set(std::string(length, 'x'));
        GS::FixedCapacityString<256> copy;
        copy.Set(std::string(300, 'y'));
        copy = text;
        EXPECT_EQ(std::string(copy.ToCStr()), std::string(length, 'x'));
        EXPECT_EQ(copy.GetLength(), length);
    }
}

class FolderTest : public ::testing::Test {
protected:
    struct Listing {
        std::multiset<std::string> entries;
        bool goOn = true;
        bool recursive = false;
        int folders = 0;
    };

    static bool note(Folder& folder, const Name& name, bool isFolder, void* context) {
        Listing& listing = *static_cast<Listing*>(context);
        listing.entries.insert(bytesOf(Location(name.ToUniString())) + (isFolder ? "/" : ""));
        if (isFolder && listing.recursive) {
            if (++listing.folders > 1000) return false;
            Folder inside(Location(folder.GetLocation(), name));
            return inside.Enumerate(note, context) == kNoError;
        }
        return listing.goOn;
    }

    TemporaryFolder temp_;
    Listing listing_;
};

TEST_F(FolderTest, EnumerationGivesEveryEntryWithItsKindUntilTheCallbackAnswersFalse) {
    temp_.write("file.txt", "x");
    temp_.write(".hidden", "x");
    temp_.write("caf\xE9", "not UTF-8");
    temp_.makeFolder("folder");
    std::filesystem::create_symlink("folder", temp_.path("link to folder"));
    std::filesystem::create_symlink("nowhere", temp_.path("broken link"));
    ASSERT_EQ(mkfifo(temp_.path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(Folder(at(temp_.path())).Enumerate(note, &listing_), kNoError);
    EXPECT_THAT(listing_.entries, UnorderedElementsAre("file.txt", ".hidden", "caf\xE9", "folder/",
                                                       "link to folder/", "broken link", "pipe"));
    listing_.entries.clear();
    listing_.goOn = false;
    EXPECT_EQ(Folder(at(temp_.path())).Enumerate(note, &listing_), kErrStopped);
    EXPECT_EQ(listing_.entries.size(), 1u);
}

TEST_F(FolderTest, WalkingDownEndsThoughLinksFormCircles) {
    temp_.makeFolder("a/b");
    std::filesystem::create_symlink(temp_.path(), temp_.path("a/b/top"));
    std::filesystem::create_symlink(".", temp_.path("self"));
    std::filesystem::create_symlink("../..", temp_.path("a/b/up"));
    std::filesystem::create_symlink("loop", temp_.path("loop"));
    std::filesystem::create_symlink("a", temp_.path("sideways"));
    listing_.recursive = true;
    EXPECT_EQ(Folder(at(temp_.path())).Enumerate(note, &listing_), kNoError);
    EXPECT_THAT(listing_.entries, UnorderedElementsAre("a/", "b/", "sideways/", "b/", "loop"));
}

TEST_F(FolderTest, TypesTellWhatIsThereAndDeletingTakesFilesAndLinksButNoFolder) {
    temp_.write("file", "x");
    temp_.write("folder/inside", "x");
    std::filesystem::create_symlink("folder", temp_.path("link"));
    EXPECT_EQ(Folder(at(temp_.path("missing"))).GetStatus(), kErrNotFound);
    EXPECT_EQ(Folder(at(temp_.path("file"))).GetStatus(), kErrWrongType);
    EXPECT_FALSE(temp_.has("missing"));

    Folder folder(at(temp_.path()));
    const Name path(GS::UniStringFromUtf8("folder/inside"));
    const struct {
        Name name;
        GSErrCode found;
        Folder::EntryType type;
        GSErrCode deleted;
    } cases[] = {
        {nameOf("file"), kNoError, Folder::IsFile, kNoError},
        {nameOf("link"), kNoError, Folder::IsFolder, kNoError},
        {nameOf("folder"), kNoError, Folder::IsFolder, kErrWrongType},
        {nameOf("missing"), kErrNotFound, Folder::IsFile, kErrNotFound},
        {Name(), kErrBadLocation, Folder::IsFile, kErrBadLocation},
        {path, kErrBadLocation, Folder::IsFile, kErrBadLocation},
    };
    for (const auto& each : cases) {
        Folder::EntryType type = each.found == kNoError ? Folder::EntryType(1 - each.type) : each.type;
        EXPECT_EQ(folder.GetType(each.name, &type), each.found);
        EXPECT_EQ(type, each.type);
        EXPECT_EQ(folder.Delete(each.name, Folder::DeleteForGood, ReportAccessDenied), each.deleted);
    }
    EXPECT_EQ(temp_.read("folder/inside"), "x");
    EXPECT_EQ(temp_.count(), 1) << "the folder";
}

class SpecialLocationTest : public ::testing::Test {
protected:
    SpecialLocationTest() {
        for (const char* name : {"TESSARO_DATA_DIR", "XDG_CONFIG_HOME", "HOME"})
            unsetenv(name);
    }
    ~SpecialLocationTest() override { platform::setSettingsFolder(Location()); }

    static std::string folder() {
        Location location;
        if (FileSystem::GetSpecialLocation(FileSystem::SuiteSettingsFolder, &location) != kNoError)
            return "(error)";
        return bytesOf(location);
    }
};

TEST_F(SpecialLocationTest, TheSettingsFolderIsTheMostParticularOneThatIsSet) {
    const std::array<std::string, 3> cases[] = {
        {"HOME", "/home/p", "/home/p/.config/Tessaro"},
        {"XDG_CONFIG_HOME", "relative", "/home/p/.config/Tessaro"},
        {"XDG_CONFIG_HOME", "/cfg", "/cfg/Tessaro"},
        {"TESSARO_DATA_DIR", "/data", "/data"},
        {"TESSARO_DATA_DIR", "data", std::filesystem::current_path() / "data"},
    };
    for (const auto& [variable, value, expected] : cases) {
        setenv(variable.c_str(), value.c_str(), 1);
        EXPECT_EQ(folder(), expected) << variable << " " << value;
    }
    platform::setSettingsFolder(at("/given"));
    EXPECT_EQ(folder(), "/given");

    Location location = at("/before");
    EXPECT_NE(FileSystem::GetSpecialLocation(static_cast<FileSystem::SpecLocId>(3), &location), kNoError);
    EXPECT_EQ(bytesOf(location), "/before");
}

TEST_F(SpecialLocationTest, CreatingMakesTheFolderForItsOwnerOnly) {
    const TemporaryFolder temp;
    temp.write("file", "");
    const auto create = [&temp](const char* name) {
        setenv("TESSARO_DATA_DIR", temp.path(name).c_str(), 1);
        return platform::createSettingsFolder();
    };
    EXPECT_FALSE(create("x/y"));
    EXPECT_FALSE(create("x/y")) << "it is there";
    struct stat status {};
    ASSERT_EQ(stat(temp.path("x/y").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700u);
    for (const char* const inTheWay : {"file", "file/z"}) {
        const auto failure = create(inTheWay);
        ASSERT_TRUE(failure) << inTheWay;
        EXPECT_EQ(failure->path, temp.path(inTheWay));
        EXPECT_EQ(failure->reason, "Not a directory");
    }
}

}  // namespace
}  // namespace IO
