#include "platform/FileSystem.h"

#include "platform/host/SettingsFolder.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <string>
#include <tuple>
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
    const std::array<const char*, 3> cases[] = {{"/a/b", "/a", "b"},
                                                {"/a/b/", "/a", "b"},
                                                {"/a//b", "/a", "b"},
                                                {"/b", "/", "b"},
                                                {"b.txt", ".", "b.txt"}};
    for (const auto& [path, folder, name] : cases) {
        Location location = at(path);
        Name last;
        ASSERT_EQ(location.MoveLastLocalName(&last), kNoError) << path;
        EXPECT_EQ(bytesOf(location), folder) << path;
        EXPECT_EQ(bytesOf(Location(last.ToUniString())), name) << path;
    }
    Location root = at("//");
    EXPECT_NE(root.MoveLastLocalName(nullptr), kNoError);
    EXPECT_EQ(bytesOf(root), "//");
}

TEST(Folder, EnumerationGivesEveryEntryWithItsKindUntilTheCallbackAnswersFalse) {
    const TemporaryFolder temp;
    temp.write("file", "x");
    temp.makeFolder("folder");
    std::filesystem::create_symlink("folder", temp.path("link to folder"));
    for (const char* const circle : {".", ".."})  // which are left out
        std::filesystem::create_symlink(circle, temp.path(std::string("leads back to ") + circle));
    std::filesystem::create_symlink("nowhere", temp.path("broken link"));
    ASSERT_EQ(mkfifo(temp.path("pipe").c_str(), 0600), 0);
    std::vector<std::string> entries;
    const auto note = [](Folder&, const Name& name, bool isFolder, void* context) {
        auto& noted = *static_cast<std::vector<std::string>*>(context);
        noted.push_back(bytesOf(Location(name.ToUniString())) + (isFolder ? "/" : ""));
        return noted.size() != 6;
    };
    EXPECT_EQ(Folder(at(temp.path())).Enumerate(note, &entries), kNoError);
    EXPECT_THAT(entries, UnorderedElementsAre("file", "folder/", "link to folder/", "broken link", "pipe"));
    EXPECT_EQ(Folder(at(temp.path())).Enumerate(note, &entries), kErrStopped);
    EXPECT_EQ(entries.size(), 6u);
}

TEST(Folder, TypesTellWhatIsThereAndDeletingTakesFilesAndLinksButNoFolder) {
    const TemporaryFolder temp;
    temp.write("file", "x");
    temp.write("folder/inside", "x");
    std::filesystem::create_symlink("folder", temp.path("link"));
    EXPECT_EQ(Folder(at(temp.path("missing"))).GetStatus(), kErrNotFound);
    EXPECT_EQ(Folder(at(temp.path("file"))).GetStatus(), kErrWrongType);

    Folder folder(at(temp.path()));
    const std::tuple<const char*, GSErrCode, Folder::EntryType, GSErrCode> cases[] = {
        {"file", kNoError, Folder::IsFile, kNoError},
        {"link", kNoError, Folder::IsFolder, kNoError},
        {"folder", kNoError, Folder::IsFolder, kErrWrongType},
        {"missing", kErrNotFound, Folder::IsFile, kErrNotFound},
        {"", kErrBadLocation, Folder::IsFile, kErrBadLocation},
        {"folder/inside", kErrBadLocation, Folder::IsFile, kErrBadLocation},
    };
    for (const auto& [text, found, kind, deleted] : cases) {
        const Name name(GS::UniStringFromUtf8(text));
        Folder::EntryType type = found == kNoError ? Folder::EntryType(1 - kind) : kind;
        EXPECT_EQ(folder.GetType(name, &type), found) << text;
        EXPECT_EQ(type, kind) << text;
        EXPECT_EQ(folder.Delete(name, Folder::DeleteForGood, ReportAccessDenied), deleted) << text;
    }
    EXPECT_EQ(temp.read("folder/inside"), "x");
    EXPECT_EQ(temp.count(), 1) << "the folder";
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
