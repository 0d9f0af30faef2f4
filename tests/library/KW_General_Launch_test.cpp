#include "files/KW_Location.h"
#include "library/KW_General.h"
#include "platform/host/LaunchHandling.h"
#include "tests/support/FakeOpener.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Text.h"

#include <gmock/gmock.h>

namespace {

using support::text;
using testing::ElementsAre;
using testing::IsEmpty;

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

TEST_F(KWGeneralLaunch, OnlyAnExistingDocumentOrFolderIsOpened) {
    for (const KW_Location& noFile :
         {location(folder.path("missing.pdf")), location(folder.path()), KW_Location()}) {
        EXPECT_FALSE(KW_General::LaunchDocByLoc(noFile));
        EXPECT_FALSE(KW_General::LaunchDocByPath(noFile));
    }
    for (KW_Location noFolder : {location(file("a.pdf")), location(folder.path("missing")), KW_Location()})
        EXPECT_FALSE(KW_General::OpenFolderByLoc(noFolder));
    EXPECT_THAT(opener.arguments(), IsEmpty());
    KW_Location existing = location(folder.path());
    EXPECT_TRUE(KW_General::OpenFolderByLoc(existing));
    EXPECT_THAT(opener.arguments(), ElementsAre("1", folder.path()));
}

TEST_F(KWGeneralLaunch, APathGoesOutInTheSystemEncodingAndItsColonsAsSlashes) {
    KW_General_LaunchDoc(location("/Users/a/b:c.pdf"));
    for (const char* const name : {"a.pdf", "caff\xC3\xA8.pdf", "b:c.pdf"})
        EXPECT_TRUE(KW_General::LaunchDocByPath(text(file(name))));
    EXPECT_THAT(opener.arguments(), ElementsAre("1", "/Users/a/b/c.pdf", "1", folder.path("a.pdf"), "1",
                                                folder.path("caff\x8F.pdf"), "1", folder.path("b/c.pdf")));
}

TEST_F(KWGeneralLaunch, AWebAddressOfUpTo255BytesIsPassedWhole) {
    const std::string start = "http://www.tessaro.example/";
    const std::string longest = start + std::string(255 - start.size(), 'x');
    EXPECT_TRUE(KW_General::LaunchURLByPath(text(longest)));
    for (const std::string& address :
         {longest + "x", longest + std::string(1000, 'x'), std::string(), std::string("www.tessaro.example"),
          std::string("/tmp"), std::string("file:///etc/passwd")})
        EXPECT_FALSE(KW_General::LaunchURLByPath(text(address))) << address;
    EXPECT_FALSE(KW_General::LaunchURLByPath(KW_String()));
    EXPECT_THAT(opener.arguments(), ElementsAre("1", longest));
    platform::setOpenerProgram("/no/such/opener");
    EXPECT_FALSE(KW_General::LaunchURLByPath(text(start)));
}

}  // namespace
