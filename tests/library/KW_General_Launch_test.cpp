#include "files/KW_Location.h"
#include "foundation/KW_String.h"
#include "library/KW_General.h"
#include "tests/support/FakeOpener.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

KW_String text(const std::string& utf8) {
    return KW_String(utf8.c_str(), KW_String::Encoding_UTF8);
}

KW_Location location(const std::string& path) {
    return KW_Location(IO::Location::FromPosixPath(path));
}

class KWGeneralLaunch : public testing::Test {
protected:
    std::string file(const std::string& name) {
        folder.write(name, "x");
        return folder.path(name);
    }

    TemporaryFolder folder;
    support::FakeOpener opener;
};

TEST_F(KWGeneralLaunch, ADocumentIsOpenedByTheBytesOfItsPath) {
    for (const char* const name : {"a.pdf", "a'; touch x; '.pdf", "01 - Libreria Tessaro.pdf",
                                   "caff\xC3\xA8 \xE6\x9D\xB1.pdf", "bad utf8 \xFF.pdf"}) {
        const support::FakeOpener fresh;
        const std::string path = file(name);
        EXPECT_TRUE(KW_General::LaunchDocByLoc(location(path)));
        EXPECT_THAT(fresh.arguments(), ElementsAre("1", path));
    }
    EXPECT_FALSE(std::filesystem::exists("x"));
}

TEST_F(KWGeneralLaunch, OnlyAnExistingDocumentIsOpened) {
    EXPECT_FALSE(KW_General::LaunchDocByLoc(location(folder.path("missing.pdf"))));
    EXPECT_FALSE(KW_General::LaunchDocByLoc(location(folder.path()))) << "a folder is no document";
    EXPECT_FALSE(KW_General::LaunchDocByLoc(KW_Location()));
    EXPECT_FALSE(KW_General::LaunchDocByPath(text(folder.path("missing.pdf"))));
    EXPECT_FALSE(KW_General::LaunchDocByPath(KW_String()));
    EXPECT_THAT(opener.arguments(), IsEmpty());
}

TEST_F(KWGeneralLaunch, APathGoesOutInTheSystemEncoding) {
    const std::string plain = file("a.pdf");
    const std::string accented = file("caff\xC3\xA8.pdf");
    EXPECT_TRUE(KW_General::LaunchDocByPath(text(plain)));
    EXPECT_TRUE(KW_General::LaunchDocByPath(text(accented)));
    EXPECT_THAT(opener.arguments(), ElementsAre("1", plain, "1", folder.path("caff\x8F.pdf")));
}

TEST_F(KWGeneralLaunch, ColonsBecomeSlashes) {
    KW_General_LaunchDoc(location("/Users/a/b:c.pdf"));
    const std::string withColon = file("b:c.pdf");
    EXPECT_TRUE(KW_General::LaunchDocByPath(text(withColon)));
    EXPECT_THAT(opener.arguments(), ElementsAre("1", "/Users/a/b/c.pdf", "1", folder.path("b/c.pdf")));
}

TEST_F(KWGeneralLaunch, OnlyAnExistingFolderIsShown) {
    KW_Location existing = location(folder.path());
    KW_Location aFile = location(file("a.pdf"));
    KW_Location missing = location(folder.path("missing"));
    KW_Location none;
    EXPECT_TRUE(KW_General::OpenFolderByLoc(existing));
    EXPECT_FALSE(KW_General::OpenFolderByLoc(aFile));
    EXPECT_FALSE(KW_General::OpenFolderByLoc(missing));
    EXPECT_FALSE(KW_General::OpenFolderByLoc(none));
    EXPECT_THAT(opener.arguments(), ElementsAre("1", folder.path()));
}

TEST_F(KWGeneralLaunch, AnAddressOfUpTo255BytesIsPassedWhole) {
    const std::string start = "http://www.tessaro.example/";
    const std::string longest = start + std::string(255 - start.size(), 'x');
    EXPECT_TRUE(KW_General::LaunchURLByPath(text(start)));
    EXPECT_TRUE(KW_General::LaunchURLByPath(text(longest)));
    EXPECT_FALSE(KW_General::LaunchURLByPath(text(longest + "x")));
    EXPECT_FALSE(KW_General::LaunchURLByPath(text(longest + std::string(1000, 'x'))));
    EXPECT_THAT(opener.arguments(), ElementsAre("1", start, "1", longest));
}

TEST_F(KWGeneralLaunch, WhatIsNoWebAddressIsRefused) {
    for (const char* const address : {"", "www.tessaro.example", "file:///etc/passwd", "/tmp"})
        EXPECT_FALSE(KW_General::LaunchURLByPath(text(address))) << address;
    EXPECT_FALSE(KW_General::LaunchURLByPath(KW_String()));
    EXPECT_THAT(opener.arguments(), IsEmpty());
}

TEST_F(KWGeneralLaunch, AnAddressThatTheSystemDoesNotTakeIsAFailure) {
    platform::setOpenerProgram("/no/such/opener");
    EXPECT_FALSE(KW_General::LaunchURLByPath(text("http://www.tessaro.example/")));
}

}  // namespace
