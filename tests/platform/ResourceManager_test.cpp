#include "platform/ResourceManager.h"

#include "platform/host/Resources.h"
#include "platform/UniString.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>
#include <algorithm>
#include <array>
#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kIndex =
    "fallback = 'int'\n"
    "strings = [1000, 1010, 1009]\n"
    "[languages]\n"
    "ita = 0\n"
    "int = 1\n"
    "rus = 6\n"
    "[menus]\n"
    "2000 = { items = 2, strings = 1000 }\n"
    "[icons]\n"
    "50 = 'Italiano'\n"
    "51 = 'no picture'\n";

/// A bundle folder that lives as long as the test, with the problems told about its files.
class ResourceManager : public testing::Test {
protected:
    ResourceManager() {
        platform::setResourceProblemSink([this](const platform::ResourceProblem& problem) {
            problems_.push_back(
                platform::describe(problem).substr(bundle_.size() + 11));  // after "/Resources/"
        });
        write("resources.toml", kIndex);
    }
    ~ResourceManager() override {
        platform::setResourceProblemSink({});
        if (module_ != kNoResModule) RSCloseResourceFile(module_);
    }

    void write(const std::string& name, const std::string& content) {
        folder_.write("Resources/" + name, content);
    }

    void open() {
        module_ = RSOpenResourceFile(bundle_.c_str());
        ASSERT_NE(module_, kNoResModule);
    }

    /// The string as UTF-8, or "(none)".
    std::string string(short resID, short index) {
        unsigned short buffer[kRSStringBufferUnits];
        if (!RSGetIndString_ParamAdapter(RSStringLocalised, buffer, resID, index, module_)) return "(none)";
        return GS::UniStringToUtf8(GS::UniString(buffer));
    }

    const TemporaryFolder folder_;
    const std::string bundle_ = folder_.path();
    RSResModule module_ = kNoResModule;
    std::vector<std::string> problems_;
};

TEST_F(ResourceManager, OpensOnlyFoldersThatHoldResources) {
    std::filesystem::remove_all(bundle_ + "/Resources");
    const auto refuses = [](const char* path) { return RSOpenResourceFile(path) == kNoResModule; };
    EXPECT_TRUE(refuses(nullptr) && refuses("") && refuses(bundle_.c_str()));
    folder_.write("Resources", "a file");
    EXPECT_TRUE(refuses(bundle_.c_str()));
}

TEST_F(ResourceManager, AStringIsFoundByBaseAndLanguage) {
    write("texts.ita.toml",
          "[strings.1000]\n1 = 'uno'\n[strings.1010]\n1 = 'altro'\n7 = ''\n"
          "8 = '\xC3\xA8 \xE2\x82\xAC \xE6\x97\xA5 \xF0\x9F\x99\x82.'\n");
    write("texts.int.toml", "[strings.1000]\n1 = 'one'\n2 = 'two'\n");
    write("texts.rus.toml", "[strings.1000]\n1 = '\xD0\xB4\xD0\xB0 \xF0\x9F\x99\x82'\n");
    open();
    const std::tuple<short, short, const char*> cases[] = {
        {1000, 1, "uno"},
        {1001, 1, "one"},
        {1001, 2, "two"},
        {1000, 2, "(none)"},  // the fallback of strings is the add-on's business
        {1006, 1, "\xD0\xB4\xD0\xB0 \xF0\x9F\x99\x82"},
        {1010, 1, "altro"},  // the nearest base at or below it counts
        {1010, 7, ""},
        {1002, 1, "(none)"},  // no language has this number
        {1011, 1, "(none)"},  // the language has no such table
        {999, 1, "(none)"},
        {1000, 0, "(none)"},
        {1000, -1, "(none)"},
        {-1, 1, "(none)"},
    };
    for (const auto& [resID, index, text] : cases)
        EXPECT_EQ(string(resID, index), text) << resID << ", " << index;
    char fixed[kRSStringBufferUnits];
    ASSERT_TRUE(RSGetIndString_ParamAdapter(RSStringFixed, fixed, 1010, 8, module_));
    EXPECT_STREQ(fixed, "\x8F \xDB ? ?.") << "in the system encoding";
    EXPECT_THAT(problems_, IsEmpty());
}

TEST_F(ResourceManager, ATextFillsTheBufferToItsLastUnitAndNotBeyond) {
    const std::string fits(kRSStringBufferUnits - 1, 'x');
    // A character of two code units each: 499 of them and one "x" fill 999 units.
    std::string pairs = "x";
    for (int i = 0; i < 499; ++i)
        pairs += "\xF0\x9F\x99\x82";
    write("texts.ita.toml", "[strings.1000]\n1 = '" + fits + "'\n2 = '" + fits + "x'\n3 = '" + pairs +
                                "'\n4 = '" + pairs + "x'\n");
    open();
    EXPECT_EQ(string(1000, 1), fits);
    EXPECT_EQ(string(1000, 3), pairs);
    unsigned short untouched = 0xABCD;
    for (const short index : {2, 4})
        EXPECT_FALSE(RSGetIndString_ParamAdapter(RSStringLocalised, &untouched, 1000, index, module_));
    EXPECT_EQ(untouched, 0xABCD);
    EXPECT_THAT(problems_, ElementsAre("texts.ita.toml:3: text \"2\" is longer than 999 units",
                                       "texts.ita.toml:5: text \"4\" is longer than 999 units"));
}

TEST_F(ResourceManager, FilesAreReadAtFirstUseAndABrokenOrMissingOneIsToldOnce) {
    write("resources.toml", "broken");
    open();
    write("resources.toml", kIndex);
    write("texts.int.toml", "broken");
    write("texts.ita.toml", "[strings.1000]\n1 = 'uno'\n2 = unquoted\n");
    EXPECT_EQ(string(1000, 1), "(none)");
    EXPECT_EQ(string(1000, 2), "(none)");
    write("texts.int.toml", "[strings.1000]\n1 = 'one'\n");
    EXPECT_EQ(string(1001, 1), "one");
    EXPECT_EQ(string(1006, 1), "(none)");
    EXPECT_EQ(string(1006, 1), "(none)");
    EXPECT_THAT(problems_, ElementsAre(testing::StartsWith("texts.ita.toml:3: "),
                                       "texts.rus.toml: the file cannot be read"));
}

TEST_F(ResourceManager, HandlesOfOneBundleShareWhatWasReadAndAClosedOneFindsNothing) {
    write("texts.ita.toml", "[strings.1000]\n1 = 'uno'\n2 = 2\n[menu.2000]\ntitle = 'Menu'\n");
    open();
    const RSResModule hosts = module_;
    EXPECT_EQ(string(1000, 1), "uno");
    open();
    EXPECT_NE(module_, hosts);
    EXPECT_EQ(RSCloseResourceFile(hosts), 0);
    EXPECT_EQ(string(1000, 1), "uno");
    EXPECT_EQ(problems_.size(), 1u);
    EXPECT_EQ(RSCloseResourceFile(module_), 0);

    EXPECT_EQ(RSCloseResourceFile(module_), -1);
    EXPECT_EQ(RSRemoveModuleImageCache(module_), 0);
    EXPECT_EQ(string(1000, 1), "(none)");
    platform::MenuResource menu;
    EXPECT_FALSE(platform::getMenuResource(module_, 2000, menu));
    EXPECT_EQ(platform::findDialogLayout(module_, 1), nullptr);
    EXPECT_EQ(platform::findIcon(module_, 50), nullptr);

    write("texts.ita.toml", "[strings.1000]\n1 = 'ein anderer'\n");
    const RSResModule closed = module_;
    open();
    EXPECT_NE(module_, closed);
    EXPECT_EQ(string(1000, 1), "ein anderer");
}

TEST_F(ResourceManager, AnEntryThatIsNotWhatItShouldBeIsLeftOutAndTold) {
    struct Case {
        const char* file;
        std::string content;
        const char* problem;
    };
    for (const Case& each : std::vector<Case>{
             {"texts.ita.toml", "[strings.1000]\n1 = 5\n", ":2: \"1\" is not a text in quotes"},
             {"texts.ita.toml", "[strings.1000]\n1x = 'a'\n", ":2: \"1x\" is not a number"},
             {"texts.ita.toml", "[strings.40000]\n1 = 'a'\n", ":1: \"40000\" is not a number"},
             {"texts.ita.toml", "[string.1000]\n1 = 'a'\n", ":1: unknown heading \"string\""},
             {"texts.ita.toml", "[strings]\n1000 = 'a'\n", ":2: \"1000\" is not a table"},
             {"texts.ita.toml", "[strings.1000]\n1 = '\xFF'\n", ":2: "},
             {"texts.ita.toml", "[strings.1000]\n1 = 4/'\xC3\xA8 ciao\n", ":2: "},
             {"texts.ita.toml", "[strings.1000]\n1 = 'ci\xC3\xB2'\n\xC3\xA8 = ''\n", ":3: "},
             {"texts.ita.toml", "[strings.1000]\n1 = 1.\"\xC3\xA8\"\n", ":2: "},
             {"texts.ita.toml", std::string(256 * 1024 + 1, '#'), ": the file is larger than 256 KiB"},
             {"texts.ita.toml", "[strings.1000]\n1 = ['a',} ]\n2 = 'b'\n", ":2: the file is malformed here"},
             {"resources.toml", "strings = [1000]\n[languages]\nita = 0\nrus = 0\n",
              ":4: language number 0 is used twice"},
             {"resources.toml", "fallback = 'eng'\n[languages]\nita = 0\n",
              ":1: fallback \"eng\" is not a language"},
             {"resources.toml", "[languages]\n\"../ita\" = 0\n",
              ":2: \"../ita\" is not a name of a language"},
             {"resources.toml", "[languages]\nita = -1\n", ":2: \"ita\" is not a number from 0 to 99"},
             {"resources.toml", "[menus]\n2000 = { items = 5 }\n", ":2: menu 2000 lacks"},
             {"layouts.toml", "[dialog.1]\nsize = [10]\nitems = []\n",
              ":2: \"size\" is not a list of 2 numbers"},
             {"layouts.toml", "[dialog.1]\nsize = [10, 99999]\nitems = []\n", ":2: \"size\" is not a number"},
             {"layouts.toml", "[dialog.1]\nsize = [10, 10]\nitems = [{ number = 1, kind = 'knob' }]\n",
              ":3: an item lacks"},
             {"layouts.toml",
              "[dialog.1]\nsize = [10, 10]\nitems = [{ number = 1, kind = 'text', frame = [0,0,1,1], "
              "anchors = ['middle'] }]\n",
              ":3: \"anchors\" is not"},
             {"layouts.toml",
              "[dialog.1]\nsize = [10, 10]\nitems = [\n{ number = 1, kind = 'text', frame = [0,0,1,1] },\n"
              "{ number = 1, kind = 'text', frame = [0,0,1,1] },\n]\n",
              ":5: the dialog has two items with this number"},
         }) {
        std::filesystem::remove_all(bundle_ + "/Resources");
        write("resources.toml", kIndex);
        write("texts.ita.toml", "");
        write("layouts.toml", "");
        write(each.file, each.content);
        problems_.clear();
        open();
        string(1000, 1);
        platform::findDialogLayout(module_, 1);
        ASSERT_EQ(problems_.size(), 1u) << each.content << testing::PrintToString(problems_);
        EXPECT_THAT(problems_[0], testing::StartsWith(std::string(each.file) + each.problem));
        RSCloseResourceFile(module_);
    }
}

TEST_F(ResourceManager, MenusAndDialogsBorrowTheTextsThatTheirLanguageLacks) {
    write("texts.ita.toml",
          "[menu.2000]\ntitle = 'Libreria'\n[strings.1000]\n1 = 'uno'\n"
          "[dialog.7]\ntitle = 'Titolo'\n3 = 'tre'\n");
    write("texts.int.toml",
          "[menu.2000]\ntitle = 'Library'\n[strings.1000]\n1 = 'one'\n2 = 'two'\n"
          "[dialog.7]\ntitle = 'Title'\n3 = 'three'\n4 = 'four'\n");
    write("texts.rus.toml", "not toml");
    open();
    platform::MenuResource menu;
    ASSERT_TRUE(platform::getMenuResource(module_, 2001, menu));
    EXPECT_EQ(menu.title, "Library");
    EXPECT_THAT(menu.items, ElementsAre("one", "two"));
    ASSERT_TRUE(platform::getMenuResource(module_, 2000, menu));
    EXPECT_EQ(menu.title, "Libreria");
    EXPECT_THAT(menu.items, ElementsAre("uno", "two"));
    ASSERT_TRUE(platform::getMenuResource(module_, 2006, menu));
    EXPECT_EQ(menu.title, "Library");
    EXPECT_FALSE(platform::getMenuResource(module_, 2002, menu));
    EXPECT_FALSE(platform::getMenuResource(module_, 1000, menu));
    EXPECT_EQ(menu.title, "Library");

    const auto text = [this](short item) {
        return platform::dialogItemText(module_, 7, item, platform::languageInUse(module_));
    };
    EXPECT_EQ(text(3), "three");
    string(1000, 1);  // a dialog has the language of the last string
    EXPECT_EQ(text(3), "tre");
    EXPECT_EQ(text(0), "Titolo");
    EXPECT_EQ(text(4), "four");
    string(1001, 1);
    EXPECT_EQ(text(3), "three");
    string(5, 1);  // no resource of any language
    EXPECT_EQ(text(3), "three");
    EXPECT_EQ(text(5), "");
    EXPECT_EQ(platform::dialogItemText(module_, 8, 3, 0), "");
}

TEST_F(ResourceManager, ALayoutIsReadWithItsItems) {
    write("layouts.toml",
          "[dialog.7]\nsize = [300, 200]\ndefault = 2\nitems = [\n"
          "{ number = 3, kind = 'list', frame = [1, 2, 30, 40], anchors = ['right', 'bottom'] },\n"
          "{ number = 1, kind = 'text', frame = [0, 0, 10, 10], bold = true },\n"
          "{ number = 4, kind = 'icon', frame = [0, 0, 10, 10], icon = 50 },\n]\n");
    open();
    const platform::DialogLayout* dialog = platform::findDialogLayout(module_, 7);
    ASSERT_NE(dialog, nullptr);
    EXPECT_THAT((std::array{dialog->resID, dialog->width, dialog->height, dialog->defaultItem}),
                ElementsAre(7, 300, 200, 2));
    ASSERT_EQ(dialog->items.size(), 3u);
    const platform::LayoutItem& list = dialog->items[0];
    EXPECT_EQ(list.number, 3);
    EXPECT_EQ(list.kind, platform::DialogItemKind::List);
    EXPECT_THAT((std::array{list.rect.left, list.rect.top, list.rect.width, list.rect.height}),
                ElementsAre(1, 2, 30, 40));
    EXPECT_EQ(list.anchors, platform::kAnchorRight | platform::kAnchorBottom);
    EXPECT_TRUE(dialog->items[1].bold);
    EXPECT_EQ(dialog->items[1].anchors, platform::kAnchorLeft | platform::kAnchorTop);
    EXPECT_EQ(dialog->items[2].iconID, 50);
    EXPECT_EQ(platform::findDialogLayout(module_, 8), nullptr);
    EXPECT_THAT(problems_, IsEmpty());
}

TEST_F(ResourceManager, PicturesAreKeptUntilTheCacheIsDropped) {
    write("icons/50.svg", "<svg/>");
    write("icons/52.png", "PNG");
    open();
    EXPECT_EQ(platform::iconLabel(module_, 50), "Italiano");
    EXPECT_EQ(RSRemoveModuleImageCache(module_), 0);
    const platform::IconResource* icon = platform::findIcon(module_, 50);
    ASSERT_NE(icon, nullptr);
    EXPECT_EQ(icon->label, "Italiano");
    EXPECT_EQ(icon->path, bundle_ + "/Resources/icons/50.svg");
    EXPECT_EQ(icon->image, "<svg/>");
    write("icons/50.svg", "<svg></svg>");
    EXPECT_EQ(platform::findIcon(module_, 50), icon);
    ASSERT_NE(platform::findIcon(module_, 52), nullptr);
    EXPECT_EQ(RSRemoveModuleImageCache(module_), 2);
    EXPECT_EQ(platform::findIcon(module_, 50)->image, "<svg></svg>");
    EXPECT_EQ(platform::findIcon(module_, 53), nullptr);
    EXPECT_THAT(problems_, IsEmpty());
    ASSERT_NE(platform::findIcon(module_, 51), nullptr);
    EXPECT_EQ(platform::findIcon(module_, 51)->path, "");
    EXPECT_THAT(problems_, ElementsAre("icons/51.svg: the file cannot be read"));
}

TEST_F(ResourceManager, APictureIsNeverLookedForAtTheRootOfTheFileSystem) {
    write("icons/50.svg", "<svg/>");
    folder_.write("icons/52.svg", "another's");
    const pid_t child = fork();
    if (child == 0) {
        if (getuid() != 0) unshare(CLONE_NEWUSER);
        if (chroot(bundle_.c_str()) != 0) _exit(2);
        module_ = RSOpenResourceFile("/.");
        _exit(platform::findIcon(module_, 50) != nullptr && platform::findIcon(module_, 52) == nullptr ? 0
                                                                                                       : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    if (WEXITSTATUS(status) == 2) GTEST_SKIP() << "this process may not change its root";
    EXPECT_EQ(status, 0);
}

TEST_F(ResourceManager, TheFrameworksResourcesStandInWhereTheAddOnsLackThem) {
    write("resources.toml", "strings = [1000]\n[menus]\n2000 = { items = 1, strings = 1000 }\n");
    write("texts.ita.toml",
          "[strings.1010]\n2 = 'own'\n[menu.2000]\ntitle = 'Menu'\n[strings.1000]\n1 = 'Voce'");
    write("layouts.toml", "[dialog.7]\nsize = [10, 10]\nitems = []\n");
    write("icons/50.png", "own");
    write("framework/resources.toml",
          "fallback = 'int'\nstrings = [1010]\n[languages]\nita = 0\nint = 1\n"
          "[icons]\n50 = 'fifty'\n51 = 'fifty-one'\n");
    write("framework/texts.ita.toml", "[strings.1010]\n1 = 'uno'\n2 = 'due'\n[dialog.8]\n1 = 'otto'\n");
    write("framework/texts.int.toml", "[strings.1010]\n1 = 'one'\n");
    write("framework/layouts.toml",
          "[dialog.7]\nsize = [20, 20]\nitems = []\n"
          "[dialog.8]\nsize = [30, 30]\nitems = []\n");
    write("framework/icons/50.svg", "framework");
    write("framework/icons/51.svg", "framework");
    open();
    EXPECT_EQ(string(1010, 1), "uno");
    EXPECT_EQ(string(1010, 2), "own");
    EXPECT_EQ(platform::dialogItemText(module_, 8, 1, 0), "otto");
    platform::MenuResource menu;
    ASSERT_TRUE(platform::getMenuResource(module_, 2000, menu));
    EXPECT_THAT(menu.items, ElementsAre("Voce"));
    EXPECT_EQ(platform::findDialogLayout(module_, 7)->width, 10);
    EXPECT_EQ(platform::findDialogLayout(module_, 8)->width, 30);
    EXPECT_EQ(platform::findIcon(module_, 50)->image, "own");
    EXPECT_EQ(platform::findIcon(module_, 51)->image, "framework");
    EXPECT_EQ(platform::iconLabel(module_, 50), "fifty");
    EXPECT_THAT(problems_, IsEmpty());
    EXPECT_EQ(string(1011, 1), "one");
    EXPECT_THAT(problems_, ElementsAre("texts.int.toml: the file cannot be read"));

    problems_.clear();
    RSCloseResourceFile(module_);
    std::filesystem::remove(bundle_ + "/Resources/layouts.toml");
    open();
    EXPECT_EQ(platform::findDialogLayout(module_, 7)->width, 20) << "it has no dialogs of its own";
    EXPECT_THAT(problems_, IsEmpty());
}

TEST_F(ResourceManager, TheAddOnsOwnIconsAreLabelledAndItsDialogsHoldTheirItems) {
    std::filesystem::remove_all(bundle_ + "/Resources");
    std::filesystem::create_directory_symlink(TESSARO_LIBRARY_RESOURCES, bundle_ + "/Resources");
    open();
    for (short language = 0; language < 7; ++language) {
        const platform::IconResource* icon =
            platform::findIcon(module_, static_cast<short>(32758 + language));
        ASSERT_NE(icon, nullptr);
        EXPECT_NE(icon->label, "");
        EXPECT_THAT(icon->image, HasSubstr("<title>" + icon->label + "</title>"));
    }
    for (const short resID : {32500, 32501, 32734, 32755}) {
        const platform::DialogLayout* dialog = platform::findDialogLayout(module_, resID);
        ASSERT_NE(dialog, nullptr) << resID;
        for (const platform::LayoutItem& item : dialog->items) {
            EXPECT_LE(item.rect.left + item.rect.width, dialog->width) << resID << " item " << item.number;
            EXPECT_LE(item.rect.top + item.rect.height, dialog->height) << resID << " item " << item.number;
        }
    }
    EXPECT_THAT(problems_, IsEmpty());
}

}  // namespace
