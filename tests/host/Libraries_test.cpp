#include "host/Libraries.h"

#include "host/ErrorCodes.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using host::Libraries;
using host::LibraryContent;
using host::LoadedPart;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const std::string kPart = "Tessaro library part\n";

IO::Location location(const std::string& path) {
    return IO::Location::FromPosixPath(path);
}

std::vector<std::string> names(const LibraryContent& content) {
    std::vector<std::string> all;
    for (const host::PartFile& part : content.parts)
        all.push_back(part.name + "/" + host::partTypeName(part.type) +
                      (part.missingDefinition ? "/missing" : ""));
    return all;
}

class HostLibraries : public testing::Test {
protected:
    void write(const std::vector<std::pair<std::string, std::string>>& files) const {
        for (const auto& [name, bytes] : files)
            folder.write(name, bytes);
    }
    /// Index of the part, its negative when the definition is missing, 0 for nothing.
    std::int32_t search(const std::string& name, API_LibTypeID type = APILib_Any) {
        const LoadedPart* const part = libraries.find(name, type);
        if (part == nullptr) return 0;
        return part->isMissing() ? -part->index : part->index;
    }

    TemporaryFolder folder;
    Libraries libraries;
};

TEST_F(HostLibraries, APartIsDescribedByItsHeader) {
    write({
        {"01.gsm", kPart},
        {"02.GSM", kPart + "name: Two\r\ntype: window\r\ndefinition: missing\r\n"},
        {"03.gsm", kPart + "  name :  Three b  \ntype: lamp\ncolour: red\n\nname: not the header\n"},
        {"04.gsm", kPart + "name: last line without end"},
        {"sub/05.gsm", kPart + "name: " + std::string(255, 'x') + "\n\n" + std::string(1'000'000, 'y')},
        {"06.txt", kPart},
    });
    const LibraryContent content = host::readLibraryFolder(folder.path());
    EXPECT_THAT(names(content),
                ElementsAre("01/object", "Two/window/missing", "Three b/lamp", "last line without end/object",
                            std::string(255, 'x') + "/object"));
    EXPECT_THAT(content.problems, IsEmpty());
}

TEST_F(HostLibraries, WhatIsNoPartIsAProblemAndLeftOut) {
    write({
        {"01.gsm", ""},
        {"02.gsm", "Tessaro library part, or not\n"},
        {"03.gsm", kPart + "type: spaceship\n"},
        {"04.gsm", kPart + "type: any\n"},
        {"05.gsm", kPart + "definition: perhaps\n"},
        {"06.gsm", kPart + "name: " + std::string(256, 'x') + "\n"},
        {"07.gsm", kPart + "name: \n"},
        {"08.gsm", kPart + "no colon\n"},
        {"09.gsm", kPart + "name: " + std::string(1'000'000, 'x')},
        {"10.gsm", std::string(1'000'000, 'x')},
        {"11.gsm", kPart + "name: a" + std::string(1, '\0') + "b\n"},
    });
    folder.makeFolder("12.gsm");
    ASSERT_EQ(mkfifo(folder.path("13.gsm").c_str(), 0600), 0);
    std::filesystem::create_symlink("nowhere", folder.path("14.gsm"));
    const LibraryContent content = host::readLibraryFolder(folder.path());
    EXPECT_THAT(content.parts, IsEmpty());
    EXPECT_THAT(content.problems, SizeIs(13)) << "all but the folder";
}

TEST_F(HostLibraries, LinksInACircleEnd) {
    folder.write("a/one.gsm", kPart);
    folder.write("b/two.gsm", kPart);
    std::filesystem::create_directory_symlink(folder.path(), folder.path("a/up"));
    std::filesystem::create_directory_symlink(folder.path("b"), folder.path("a/across"));
    std::filesystem::create_directory_symlink(folder.path("a"), folder.path("b/across"));
    std::filesystem::create_directory_symlink("itself", folder.path("itself"));
    EXPECT_THAT(names(host::readLibraryFolder(folder.path())),
                testing::UnorderedElementsAre("one/object", "two/object"));
}

TEST_F(HostLibraries, AFolderThatCannotBeReadIsAProblem) {
    folder.makeFolder("closed");
    std::filesystem::permissions(folder.path("closed"), std::filesystem::perms::none);
    const LibraryContent content = host::readLibraryFolder(folder.path());
    std::filesystem::permissions(folder.path("closed"), std::filesystem::perms::owner_all);
    EXPECT_THAT(content.problems, SizeIs(geteuid() == 0 ? 0 : 1));
    EXPECT_THAT(host::readLibraryFolder(folder.path("missing")).problems, SizeIs(1));
}

TEST_F(HostLibraries, PartsAreFoundByNameAndTypeAndByIndex) {
    const std::string noText = "2 \xFF/\xFE.gsm";
    write({{"1.gsm", kPart + "name: Window 1\ntype: window\n"},
           {noText, kPart + "name: window 1\ntype: door\n"},
           {"3.gsm", kPart + "name: Gone\ndefinition: missing\n"},
           {"4.gsm", kPart + "name: gone\ntype: lamp\n"}});
    ASSERT_EQ(libraries.add(location(folder.path() + "/")), kNoError);
    EXPECT_EQ(search("WINDOW 1"), 1);
    EXPECT_EQ(search("Window 1", APILib_Door), 2);
    EXPECT_EQ(search("Window 1", APILib_Lamp), 0);
    EXPECT_EQ(search("Window"), 0);
    EXPECT_EQ(search("Gone"), 4) << "one with a definition comes before one without";
    EXPECT_EQ(search("Gone", APILib_Object), -3);

    API_LibPart part{};
    part.index = 2;
    ASSERT_EQ(libraries.get(&part), kNoError);
    const std::unique_ptr<IO::Location> found(part.location);
    EXPECT_EQ(*found, location(folder.path(noText)));
    EXPECT_EQ(IO::File(*found).GetStatus(), kNoError) << "can be opened";
    EXPECT_EQ(part.typeID, APILib_Door);
    EXPECT_EQ(GS::UniStringToUtf8(GS::UniString(part.name)), "window 1");
    for (const std::int32_t index : {0, -1, 5}) {
        API_LibPart none{};
        none.index = index;
        EXPECT_EQ(libraries.get(&none), kAPIErrNoSuchPart);
        EXPECT_EQ(none.location, nullptr);
    }
    std::filesystem::remove(folder.path("1.gsm"));
    EXPECT_EQ(search("Window 1", APILib_Window), -1) << "a file that went away has no definition";
}

TEST_F(HostLibraries, AddingALibraryAgainReadsItAgainAndKeepsItsNumbers) {
    folder.write("lib/2.gsm", kPart + "name: Two\n");
    ASSERT_EQ(libraries.add(location(folder.path("lib"))), kNoError);
    folder.write("lib/1.gsm", kPart + "name: One\n");
    std::filesystem::create_directory_symlink(folder.path("lib"), folder.path("link"));
    ASSERT_EQ(libraries.add(location(folder.path("link"))), kNoError);
    EXPECT_THAT(libraries.all(), SizeIs(1));
    EXPECT_EQ(search("Two"), 1);
    EXPECT_EQ(search("One"), 2);
}

}  // namespace
