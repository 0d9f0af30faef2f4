#include "files/KW_Location.h"

#include "platform/HostInterface.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <tuple>
#include <vector>

namespace {

using support::text;
using support::utf8;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

IO::Location sOwnLocation;  // what the host answers; without a path: an error

KW_Location at(const std::string& utf8) {
    KW_Location location;
    location.Set(text(utf8));
    return location;
}

TEST(KW_Location, DropsOneTrailingSlashAndHasALastNameAndThatAnExtension) {
    using Case = std::tuple<std::string, const char*, const char*, const char*>;
    for (const auto& [given, stored, name, extension] :
         {Case{"/Users/a/", "/Users/a", "a", ""}, Case{"/", "", "", ""}, Case{"a//", "a/", "", ""},
          Case{"", "", "", ""}, Case{"/x.y/a.b.txt", "/x.y/a.b.txt", "a.b.txt", "txt"},
          Case{"/x.y/.txt", "/x.y/.txt", ".txt", "txt"}, Case{"/x.y/a", "/x.y/a", "a", ""},
          Case{"a.", "a.", "a.", ""}}) {
        EXPECT_EQ(utf8(at(given)), stored);
        EXPECT_EQ(utf8(at(given).LastName()), name);
        EXPECT_EQ(utf8(at(given).Extension()), extension);
        KW_Location fromHost = at("before");
        fromHost.Set(IO::Location::FromPosixPath(given));
        EXPECT_EQ(utf8(fromHost), given.empty() ? "null" : stored);
    }
    EXPECT_EQ(utf8(KW_Location(KW_String())), "null");
    EXPECT_EQ(utf8(KW_Location().LastName()), "null");
    KW_Location location = at("/self//");
    location.Set(location);
    EXPECT_EQ(utf8(location), "/self");
}

TEST(KW_Location, SetLastNameReplacesWhatStandsBehindTheLastSlash) {
    using Case = std::tuple<const char*, const char*, const char*>;
    for (const auto& [before, name, after] :
         {Case{"/x/a.txt", "b.txt", "/x/b.txt"}, Case{"a.txt", "b.txt", "b.txt"},
          Case{"/a", "\x8E", "/\xC3\xA9"}, Case{"/x/a", "", "/x/"}, Case{"/x/a", nullptr, "/x/"}}) {
        KW_Location location = at(before);
        location.SetLastName(name);
        EXPECT_EQ(utf8(location), after);
    }
    KW_Location none;
    none.SetLastName("b.txt");
    EXPECT_EQ(utf8(none), "null");
}

TEST(KW_Location, TheAddOnsFolderIsCutBeforeTheLastSlash) {
    using Case = std::tuple<const char*, const char*, const char*>;
    for (const auto& [own, file, folder] :
         {Case{"/Apps/X.bundle/", "/Apps/X.bundle", "/Apps"}, Case{"X", "X", ""}, Case{"/X", "/X", ""},
          Case{"", "null", "null"}}) {
        sOwnLocation = IO::Location::FromPosixPath(own);
        EXPECT_EQ(utf8(KW_Location::AddOnLocation(false)), file);
        EXPECT_EQ(utf8(KW_Location::AddOnLocation(true)), folder);
    }
}

TEST(KW_Location, ThePosixPathHasOneUnitForEachByte) {
    const std::string bytes = "/x/\xC3\xA9\xE6\x97\xA5\xFF\x80";
    KW_Location location;
    location.Set(IO::Location::FromPosixPath(bytes));
    EXPECT_EQ(IO::Location(location), IO::Location::FromPosixPath(bytes)) << "the same one for the host";
    EXPECT_TRUE(IO::Location(KW_Location()).IsEmpty());
    const KW_String path = location.GetPOSIXPath();
    EXPECT_EQ(path.length, bytes.size());
    EXPECT_EQ(std::string(path.ToCStr(KW_String::Encoding_System).data), bytes);

    const unsigned short zeroInside[] = {'a', 0, 'b'};
    for (const KW_Location& none : {KW_Location(), at("/"), KW_Location(KW_String(zeroInside, 3))})
        EXPECT_EQ(utf8(none.GetPOSIXPath()), "null");
}

class FolderListing : public ::testing::Test {
protected:
    FolderListing() {
        for (const char* name : {"notes.txt", "obj.GSM", "archive.tar.gz", "README", ".txt", "ends.with.",
                                 "a.b/plain", "a.b/deep/deeper/x.Txt", "empty/.keep"}) {
            temp_.write(name, "x");
        }
    }

    std::vector<std::string> names(const KW_List<KW_Location>& list) const {
        std::vector<std::string> result;
        for (long i = 0; i < list.count; ++i)
            result.push_back(utf8(list[i]).substr(temp_.path().size() + 1));
        return result;
    }

    std::vector<std::string> files(std::initializer_list<const char*> extensions, bool recursive) {
        KW_List<KW_String> filter;
        for (const char* const extension : extensions)
            filter.AddData(text(extension), -1);
        KW_List<KW_Location> found;
        EXPECT_TRUE(at(temp_.path()).GetFilesInFolder(&filter, recursive, &found));
        return names(found);
    }

    TemporaryFolder temp_;
};

TEST_F(FolderListing, FilesAreChosenByTheirExtensionInAnyCase) {
    EXPECT_THAT(files({"TXT", "gsm"}, false), UnorderedElementsAre("notes.txt", "obj.GSM", ".txt"));
    EXPECT_THAT(files({"TXT"}, true), UnorderedElementsAre("notes.txt", ".txt", "a.b/deep/deeper/x.Txt"));
    EXPECT_THAT(files({""}, true), UnorderedElementsAre("README", "ends.with.", "a.b/plain"));
    EXPECT_THAT(files({"b/plain", ".txt"}, true), IsEmpty());
    EXPECT_THAT(files({}, false), UnorderedElementsAre("notes.txt", "obj.GSM", "archive.tar.gz", "README",
                                                       ".txt", "ends.with."));
}

TEST_F(FolderListing, AFolderStandsBeforeItsOwnSubfolders) {
    KW_List<KW_Location> found;
    EXPECT_TRUE(at(temp_.path()).GetSubFolders(false, &found));
    EXPECT_THAT(names(found), UnorderedElementsAre("a.b", "empty"));
    found.Reset();
    EXPECT_TRUE(at(temp_.path("a.b")).GetSubFolders(true, &found));
    EXPECT_THAT(names(found), ElementsAre("a.b/deep", "a.b/deep/deeper"));
}

TEST_F(FolderListing, EntriesAreAppendedToWhatTheListHoldsAlsoThoseThatAreNotUtf8) {
    temp_.write("empty/odd \xE9\xFF", "x");
    KW_List<KW_Location> found;
    found.AddData(at(temp_.path("notes.txt")), -1);
    for (const KW_Location& noFolder :
         {at(temp_.path("notes.txt")), at(temp_.path("missing")), KW_Location()})
        EXPECT_FALSE(noFolder.GetFilesInFolder(nullptr, true, &found));
    EXPECT_EQ(found.count, 1);
    EXPECT_TRUE(at(temp_.path("empty")).GetFilesInFolder(nullptr, false, &found));
    ASSERT_EQ(found.count, 3);
    EXPECT_EQ(names(found)[0], "notes.txt");
    for (long i = 0; i < found.count; ++i)
        EXPECT_EQ(IO::File(found[i]).GetStatus(), kNoError) << "can be opened";
}

TEST_F(FolderListing, ASubfolderThatCannotBeOpenedEndsTheListingWithFalse) {
    // So deep that its path is longer than the system takes: nobody can open it, not even root.
    const std::string name(200, 'n');
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(temp_.path("empty"));
    for (int depth = 0; depth < 25 && mkdir(name.c_str(), 0700) == 0 && chdir(name.c_str()) == 0;)
        ++depth;
    std::filesystem::current_path(before);
    KW_List<KW_Location> found;
    EXPECT_FALSE(at(temp_.path("empty")).GetSubFolders(true, &found));
    EXPECT_GT(found.count, 10);
    EXPECT_FALSE(at(temp_.path()).GetFilesInFolder(nullptr, true, &found));
}

TEST_F(FolderListing, OnlyAnExistingFolderIsAFolder) {
    using Case = std::tuple<KW_Location, bool, bool>;
    const std::string& path = temp_.path();
    for (const auto& [location, isFolder, isFile] :
         {Case{at("/tmp"), true, false}, Case{at(path + "/a.b/deep"), true, false},
          Case{at(path + "/notes.txt"), false, true}, Case{at(path + "/missing"), false, false},
          Case{at(path + "/a.b//"), false, false}, Case{at(path + "/notes.txt/x"), false, false},
          Case{at(""), false, false}, Case{at("relative"), false, false},
          Case{KW_Location(), false, false}}) {
        EXPECT_EQ(location.IsFolder(), isFolder) << utf8(location);
        EXPECT_EQ(location.IsFile(), isFile) << utf8(location);
    }
}

}  // namespace

GSErrCode ACAPI_GetOwnLocation(IO::Location& location) {
    location = sOwnLocation;
    return location.IsEmpty() ? kAPIErrNoOwnLocation : kNoError;
}
