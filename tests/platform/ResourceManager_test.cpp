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

/// A copy of the sample bundle that lives as long as the test, with the problems told about its files.
class ResourceManager : public testing::Test {
protected:
    ResourceManager() {
        platform::setResourceProblemSink([this](const platform::ResourceProblem& problem) {
            problems_.push_back(
                platform::describe(problem).substr(bundle_.size() + 11));  // after "/Resources/"
        });
        fill("Resources");
    }
    ~ResourceManager() override {
        platform::setResourceProblemSink({});
        if (module_ != kNoResModule) RSCloseResourceFile(module_);
    }

    void write(const std::string& name, const std::string& content) {
        folder_.write("Resources/" + name, content);
    }

    /// Makes the bundle's files those of a sample, beside which others stay.
    void fill(const std::string& sample) {
        std::filesystem::copy(
            std::string(TEST_SAMPLES "/") + sample, bundle_ + "/Resources",
            std::filesystem::copy_options::recursive | std::filesystem::copy_options::overwrite_existing);
    }
    void clear() { std::filesystem::remove_all(bundle_ + "/Resources"); }

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
    /// "TITLE|ITEM|ITEM", or "(none)".
    std::string menu(short resID) {
        if (!platform::getMenuResource(module_, resID, menu_)) return "(none)";
        std::string texts = menu_.title;
        for (const std::string& item : menu_.items)
            texts += '|' + item;
        return texts;
    }

    const TemporaryFolder folder_;
    const std::string bundle_ = folder_.path();
    RSResModule module_ = kNoResModule;
    std::vector<std::string> problems_;
    platform::MenuResource menu_;
};

TEST_F(ResourceManager, OpensOnlyFoldersThatHoldResources) {
    clear();
    const auto refuses = [](const char* path) { return RSOpenResourceFile(path) == kNoResModule; };
    EXPECT_TRUE(refuses(nullptr) && refuses("") && refuses(bundle_.c_str()));
    folder_.write("Resources", "a file");
    EXPECT_TRUE(refuses(bundle_.c_str()));
}

TEST_F(ResourceManager, AStringIsFoundByBaseAndLanguage) {
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
    std::string pairs = "x";  // and 499 characters of two code units each: 999 units
    for (int i = 0; i < 499; ++i)
        pairs += "\xF0\x9F\x99\x82";
    write("texts.ita.toml", "[strings.1000]\n1 = '" + fits + "'\n2 = '" + fits + "x'\n3 = '" + pairs +
                                "'\n4 = '" + pairs + "x'\n");
    open();
    EXPECT_EQ(string(1000, 1), fits);
    EXPECT_EQ(string(1000, 2), "(none)");
    EXPECT_EQ(string(1000, 3), pairs);
    EXPECT_THAT(problems_, ElementsAre("texts.ita.toml:3: text \"2\" is longer than 999 units",
                                       "texts.ita.toml:5: text \"4\" is longer than 999 units"));
}

TEST_F(ResourceManager, FilesAreReadAtFirstUseAndABrokenOrMissingOneIsToldOnce) {
    write("resources.toml", "broken");
    open();
    fill("Resources");
    std::filesystem::remove(bundle_ + "/Resources/texts.rus.toml");
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

TEST_F(ResourceManager, HandlesOfOneBundleShareWhatWasReadUntilTheLastIsClosedAndAClosedOneFindsNothing) {
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
    EXPECT_FALSE(platform::getMenuResource(module_, 2000, menu_));
    EXPECT_EQ(platform::findDialogLayout(module_, 1), nullptr);
    EXPECT_EQ(platform::findIcon(module_, 50), nullptr);
    write("texts.ita.toml", "[strings.1000]\n1 = 'un altro'\n");
    open();
    EXPECT_EQ(string(1000, 1), "un altro");
}

TEST_F(ResourceManager, AnEntryThatIsNotWhatItShouldBeIsLeftOutAndTold) {
    const char* const texts = "texts.ita.toml";
    const char* const index = "resources.toml";
    const char* const layouts = "layouts.toml";
    const std::string dialog = "[dialog.1]\nsize = [10, 10]\nitems = [\n";
    const std::string item = "{ number = 1, kind = 'text', frame = [0,0,1,1]";
    const std::tuple<const char*, std::string, const char*> cases[] = {
        {texts, "[strings.1000]\n1 = 5\n", ":2: \"1\" is not a text in quotes"},
        {texts, "[strings.1000]\n1x = 'a'\n", ":2: \"1x\" is not a number"},
        {texts, "[strings.40000]\n1 = 'a'\n", ":1: \"40000\" is not a number"},
        {texts, "[string.1000]\n1 = 'a'\n", ":1: unknown heading \"string\""},
        {texts, "[strings]\n1000 = 'a'\n", ":2: \"1000\" is not a table"},
        {texts, "[strings.1000]\n1 = 4/'\xC3\xA8 ciao\n", ":2: "},
        {texts, "[strings.1000]\n1 = 'ci\xC3\xB2'\n\xC3\xA8 = ''\n", ":3: "},
        {texts, "[strings.1000]\n1 = 1.\"\xC3\xA8\"\n", ":2: "},
        {texts, std::string(256 * 1024 + 1, '#'), ": the file is larger than 256 KiB"},
        {texts, "[strings.1000]\n1 = ['a',} ]\n2 = 'b'\n", ":2: the file is malformed here"},
        {index, "strings = [1000]\n[languages]\nita = 0\nrus = 0\n", ":4: language number 0 is used twice"},
        {index, "fallback = 'eng'\n[languages]\nita = 0\n", ":1: fallback \"eng\" is not a language"},
        {index, "[languages]\n\"../ita\" = 0\n", ":2: \"../ita\" is not a name of a language"},
        {index, "[languages]\nita = -1\n", ":2: \"ita\" is not a number from 0 to 99"},
        {index, "[menus]\n2000 = { items = 5 }\n", ":2: menu 2000 lacks"},
        {layouts, "[dialog.1]\nsize = [10]\nitems = []\n", ":2: \"size\" is not a list of 2 numbers"},
        {layouts, "[dialog.1]\nsize = [10, 99999]\nitems = []\n", ":2: \"size\" is not a number"},
        {layouts, dialog + "{ number = 1, kind = 'knob' }]\n", ":4: an item lacks"},
        {layouts, dialog + item + ", anchors = ['middle'] }]\n", ":4: \"anchors\" is not"},
        {layouts, dialog + item + " },\n" + item + " }]\n", ":5: the dialog has two items with this number"},
    };
    for (const auto& [file, content, problem] : cases) {
        fill("Resources");
        write(file, content);
        problems_.clear();
        open();
        string(1000, 1);
        platform::findDialogLayout(module_, 1);
        EXPECT_THAT(problems_, ElementsAre(testing::StartsWith(std::string(file) + problem))) << content;
        RSCloseResourceFile(module_);
    }
}

TEST_F(ResourceManager, MenusAndDialogsBorrowTheTextsThatTheirLanguageLacks) {
    open();
    EXPECT_EQ(menu(2001), "Library|one|two");
    EXPECT_EQ(menu(2000), "Libreria|uno|two");
    EXPECT_EQ(menu(2006), "Library|\xD0\xB4\xD0\xB0 \xF0\x9F\x99\x82|two");
    for (const short none : {2002, 1000})
        EXPECT_EQ(menu(none), "(none)");

    // A dialog has the language of the string that was asked for last.
    const std::tuple<short, std::vector<short>, std::string> cases[] = {
        {0, {3}, "three"}, {1000, {3, 0, 4}, "tre|Titolo|four"}, {1001, {3}, "three"}, {5, {3, 5}, "three|"}};
    for (const auto& [resID, items, texts] : cases) {
        string(resID, 1);
        std::string found;
        for (const short item : items)
            found += (item == items.front() ? "" : "|") +
                     platform::dialogItemText(module_, 7, item, platform::languageInUse(module_));
        EXPECT_EQ(found, texts) << resID;
    }
}

TEST_F(ResourceManager, ALayoutIsReadWithItsItems) {
    open();
    const platform::DialogLayout* dialog = platform::findDialogLayout(module_, 7);
    ASSERT_NE(dialog, nullptr);
    EXPECT_THAT((std::array{dialog->resID, dialog->width, dialog->height, dialog->defaultItem}),
                ElementsAre(7, 300, 200, 2));
    std::vector<std::vector<int>> items;
    for (const platform::LayoutItem& each : dialog->items)
        items.push_back({each.number, int(each.kind), each.rect.left, each.rect.top, each.rect.width,
                         each.rect.height, each.anchors, each.bold, each.iconID});
    using Kind = platform::DialogItemKind;
    EXPECT_THAT(items, ElementsAre(ElementsAre(3, int(Kind::List), 1, 2, 30, 40,
                                               platform::kAnchorRight | platform::kAnchorBottom, false, 0),
                                   ElementsAre(1, int(Kind::Icon), 5, 6, 7, 8,
                                               platform::kAnchorLeft | platform::kAnchorTop, true, 50)));
    EXPECT_EQ(platform::findDialogLayout(module_, 8), nullptr);
    EXPECT_THAT(problems_, IsEmpty());
}

TEST_F(ResourceManager, PicturesAreKeptUntilTheCacheIsDropped) {
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
    EXPECT_EQ(platform::findIcon(module_, 53), nullptr);
    ASSERT_NE(platform::findIcon(module_, 51), nullptr) << "it has a label";
    EXPECT_EQ(platform::findIcon(module_, 51)->path, "");
    EXPECT_THAT(problems_, ElementsAre("icons/51.svg: the file cannot be read"));
    EXPECT_EQ(RSRemoveModuleImageCache(module_), 2);
    EXPECT_EQ(platform::findIcon(module_, 50)->image, "<svg></svg>");
}

TEST_F(ResourceManager, APictureIsNeverLookedForAtTheRootOfTheFileSystem) {
    folder_.write("icons/60.svg", "another's");
    const pid_t child = fork();
    if (child == 0) {
        if (getuid() != 0) unshare(CLONE_NEWUSER);
        if (chroot(bundle_.c_str()) != 0) _exit(2);
        module_ = RSOpenResourceFile("/.");
        _exit(platform::findIcon(module_, 50) != nullptr && platform::findIcon(module_, 60) == nullptr ? 0
                                                                                                       : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    if (WEXITSTATUS(status) == 2) GTEST_SKIP() << "this process may not change its root";
    EXPECT_EQ(status, 0);
}

TEST_F(ResourceManager, TheFrameworksResourcesStandInWhereTheAddOnsLackThem) {
    clear();
    fill("FrameworkResources");
    open();
    EXPECT_EQ(string(1010, 1), "uno");
    EXPECT_EQ(string(1010, 2), "own");
    EXPECT_EQ(platform::dialogItemText(module_, 8, 1, 0), "otto");
    EXPECT_EQ(menu(2000), "Menu|Voce");
    EXPECT_EQ(platform::findDialogLayout(module_, 7)->width, 10);
    EXPECT_EQ(platform::findDialogLayout(module_, 8)->width, 30);
    EXPECT_EQ(platform::findIcon(module_, 50)->image, "own");
    EXPECT_EQ(platform::findIcon(module_, 51)->image, "framework");
    EXPECT_EQ(platform::iconLabel(module_, 50), "fifty");
    EXPECT_THAT(problems_, IsEmpty());
    EXPECT_EQ(string(1011, 1), "one");
    EXPECT_THAT(problems_, ElementsAre("texts.int.toml: the file cannot be read"));

    RSCloseResourceFile(module_);
    std::filesystem::remove(bundle_ + "/Resources/layouts.toml");
    open();
    EXPECT_EQ(platform::findDialogLayout(module_, 7)->width, 20) << "it has no dialogs of its own";
    EXPECT_EQ(problems_.size(), 1U);
}

TEST_F(ResourceManager, TheAddOnsOwnIconsAreLabelledAndItsDialogsHoldTheirItems) {
    clear();
    std::filesystem::create_directory_symlink(TESSARO_LIBRARY_RESOURCES, bundle_ + "/Resources");
    open();
    for (short resID = 32758; resID < 32758 + 7; ++resID) {
        const platform::IconResource* icon = platform::findIcon(module_, resID);
        ASSERT_TRUE(icon != nullptr && !icon->label.empty()) << resID;
        EXPECT_THAT(icon->image, HasSubstr("<title>" + icon->label + "</title>"));
    }
    for (const short resID : {32500, 32501, 32734, 32755}) {
        const platform::DialogLayout* dialog = platform::findDialogLayout(module_, resID);
        ASSERT_NE(dialog, nullptr) << resID;
        for (const platform::LayoutItem& item : dialog->items) {
            const bool fits = item.rect.left + item.rect.width <= dialog->width &&
                              item.rect.top + item.rect.height <= dialog->height;
            EXPECT_TRUE(fits) << resID << " item " << item.number;
        }
    }
    EXPECT_THAT(problems_, IsEmpty());
}

}  // namespace
