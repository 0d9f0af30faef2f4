#include "platform/src/resources/ResourceFiles.h"

#include "platform/src/resources/Toml.h"
#include "platform/UniString.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <limits>
#include <optional>
#include <utility>

namespace platform {

namespace {

constexpr int kHighestNumber = std::numeric_limits<short>::max();
constexpr int kHighestLanguage = 99;
/// The parser goes one call deeper with each part of a dotted key.
constexpr std::size_t kLargestFile = 256 * 1024;

/// One file while it is read: its table, and where its problems go.
class TomlFile {
public:
    TomlFile(const std::string& path, ResourceProblems& problems) : path_(path), problems_(problems) {
        if (const std::optional<std::string> content = readResourceFile(path, problems)) parse(*content);
    }

    const toml::table& table() const { return table_; }

    void problem(const toml::source_region& where, std::string message) {
        problems_.push_back({path_, static_cast<int>(where.begin.line), std::move(message)});
    }

    /// `node` as a table; a node of another kind is a problem, a missing one is not.
    const toml::table* tableIn(const toml::node* node, std::string_view name) {
        if (node == nullptr) return nullptr;
        if (!node->is_table()) problem(node->source(), "\"" + std::string(name) + "\" is not a table");
        return node->as_table();
    }

    std::optional<int> numberKey(const toml::key& key, int lowest, int highest) {
        const std::string_view text = key.str();
        int number = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (error == std::errc() && end == text.data() + text.size() && number >= lowest &&
            number <= highest) {
            return number;
        }
        return notANumber(key.source(), text, lowest, highest);
    }

    std::optional<int> number(const toml::node& node, std::string_view name, int lowest, int highest) {
        const std::optional<std::int64_t> value = node.value_exact<std::int64_t>();
        if (value && *value >= lowest && *value <= highest) return static_cast<int>(*value);
        return notANumber(node.source(), name, lowest, highest);
    }

    std::optional<std::string> text(const toml::node& node, std::string_view name) {
        std::optional<std::string> value = node.value_exact<std::string>();
        if (!value) {
            problem(node.source(), "\"" + std::string(name) + "\" is not a text in quotes");
            return std::nullopt;
        }
        // A code unit takes at least one byte of UTF-8.
        constexpr unsigned int kLongest = kRSStringBufferUnits - 1;
        if (value->size() > kLongest && GS::UniStringFromUtf8(*value).GetLength() > kLongest) {
            problem(node.source(), "text \"" + std::string(name) + "\" is longer than " +
                                       std::to_string(kLongest) + " units");
            return std::nullopt;
        }
        return value;
    }

    /// The texts under number keys from 1; with `titleToo`, the key "title" counts as number 0.
    NumberedTexts numberedTexts(const toml::table& table, bool titleToo) {
        NumberedTexts texts;
        for (auto&& [key, node] : table) {
            const std::optional<int> number =
                titleToo && key.str() == "title" ? 0 : numberKey(key, 1, kHighestNumber);
            if (!number) continue;
            if (std::optional<std::string> value = text(node, key.str())) {
                texts.emplace(*number, *std::move(value));
            }
        }
        return texts;
    }

private:
    std::nullopt_t notANumber(const toml::source_region& where, std::string_view name, int lowest,
                              int highest) {
        problem(where, "\"" + std::string(name) + "\" is not a number from " + std::to_string(lowest) +
                           " to " + std::to_string(highest));
        return std::nullopt;
    }

    void parse(const std::string& content) {
        try {
            table_ = toml::parse(content, path_);
        } catch (const toml::parse_error& error) {
            problem(error.source(), std::string(error.description()));
        } catch (const ParserFailure&) {
            problems_.push_back({path_, lineOfFailure(content), "the file is malformed here"});
        }
    }

    /// The line up to which the text must go for the parser to fail.
    static int lineOfFailure(std::string_view content) {
        std::vector<std::size_t> ends;
        for (std::size_t i = 0; i < content.size(); ++i) {
            if (content[i] == '\n') ends.push_back(i + 1);
        }
        const auto line = std::partition_point(ends.begin(), ends.end(), [content](std::size_t end) {
            try {
                static_cast<void>(toml::parse(content.substr(0, end)));
            } catch (const toml::parse_error&) {
            } catch (const ParserFailure&) {
                return false;
            }
            return true;
        });
        return static_cast<int>(line - ends.begin()) + 1;
    }

    const std::string& path_;
    ResourceProblems& problems_;
    toml::table table_;
};

bool isLanguageName(std::string_view name) {
    return !name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '_';
    });
}

void readLanguages(TomlFile& file, ResourceIndex& index) {
    const toml::table* languages = file.tableIn(file.table().get("languages"), "languages");
    if (languages == nullptr) return;
    for (auto&& [key, node] : *languages) {
        const std::optional<int> number = file.number(node, key.str(), 0, kHighestLanguage);
        if (!number) continue;
        if (!isLanguageName(key.str())) {
            file.problem(key.source(), "\"" + std::string(key.str()) + "\" is not a name of a language");
        } else if (!index.languages.emplace(*number, key.str()).second) {
            file.problem(node.source(), "language number " + std::to_string(*number) + " is used twice");
        }
    }
}

void readFallback(TomlFile& file, ResourceIndex& index) {
    const toml::node* node = file.table().get("fallback");
    if (node == nullptr) return;
    const std::optional<std::string> name = file.text(*node, "fallback");
    if (!name) return;
    for (const auto& [number, language] : index.languages) {
        if (language == *name) index.fallback = number;
    }
    if (index.fallback < 0) file.problem(node->source(), "fallback \"" + *name + "\" is not a language");
}

void readStringBases(TomlFile& file, ResourceIndex& index) {
    const toml::node* node = file.table().get("strings");
    if (node == nullptr) return;
    if (!node->is_array()) return file.problem(node->source(), "\"strings\" is not a list of numbers");
    for (const toml::node& element : *node->as_array()) {
        if (const auto base = file.number(element, "strings", 1, kHighestNumber)) {
            index.stringBases.push_back(*base);
        }
    }
}

void readMenus(TomlFile& file, ResourceIndex& index) {
    const toml::table* menus = file.tableIn(file.table().get("menus"), "menus");
    if (menus == nullptr) return;
    for (auto&& [key, node] : *menus) {
        const std::optional<int> base = file.numberKey(key, 1, kHighestNumber);
        const toml::table* menu = file.tableIn(&node, key.str());
        if (!base || menu == nullptr) continue;
        const toml::node* items = menu->get("items");
        const toml::node* strings = menu->get("strings");
        if (items == nullptr || strings == nullptr) {
            file.problem(node.source(), "menu " + std::to_string(*base) + " lacks \"items\" or \"strings\"");
            continue;
        }
        const std::optional<int> count = file.number(*items, "items", 1, 1000);
        const std::optional<int> source = file.number(*strings, "strings", 1, kHighestNumber);
        if (count && source) index.menus[*base] = {*count, *source};
    }
}

constexpr std::pair<std::string_view, DialogItemKind> kKinds[] = {{"button", DialogItemKind::Button},
                                                                  {"text", DialogItemKind::Text},
                                                                  {"list", DialogItemKind::List},
                                                                  {"icon", DialogItemKind::Icon},
                                                                  {"separator", DialogItemKind::Separator}};
constexpr std::pair<std::string_view, DialogAnchor> kEdges[] = {
    {"left", kAnchorLeft}, {"top", kAnchorTop}, {"right", kAnchorRight}, {"bottom", kAnchorBottom}};

/// What a node names; nothing when it is no text or no such name.
template <typename Value, std::size_t Count>
std::optional<Value> named(const std::pair<std::string_view, Value> (&values)[Count],
                           const toml::node_view<const toml::node>& node) {
    for (const auto& [name, value] : values) {
        if (node.value_or(std::string_view()) == name) return value;
    }
    return std::nullopt;
}

/// Reads `count` numbers from the list under `name`; false, with a problem reported, if they are missing.
bool readNumbers(TomlFile& file, const toml::table& table, std::string_view name, short* numbers,
                 std::size_t count) {
    const toml::node* node = table.get(name);
    const toml::array* array = node == nullptr ? nullptr : node->as_array();
    if (array == nullptr || array->size() != count) {
        file.problem(node == nullptr ? table.source() : node->source(),
                     "\"" + std::string(name) + "\" is not a list of " + std::to_string(count) + " numbers");
        return false;
    }
    for (std::size_t i = 0; i < count; ++i) {
        const std::optional<int> number = file.number((*array)[i], name, 0, kHighestNumber);
        if (!number) return false;
        numbers[i] = static_cast<short>(*number);
    }
    return true;
}

void readAnchors(TomlFile& file, const toml::table& table, LayoutItem& item) {
    const toml::node* node = table.get("anchors");
    if (node == nullptr) return;
    const toml::array* names = node->as_array();
    std::uint8_t anchors = 0;
    bool valid = names != nullptr;
    for (std::size_t i = 0; valid && i < names->size(); ++i) {
        const auto edge = named(kEdges, toml::node_view<const toml::node>((*names)[i]));
        valid = edge.has_value();
        if (edge) anchors = static_cast<std::uint8_t>(anchors | *edge);
    }
    if (!valid) return file.problem(node->source(), "\"anchors\" is not a list of edges of the dialog");
    item.anchors = anchors;
}

void readItem(TomlFile& file, const toml::node& node, DialogLayout& dialog) {
    const toml::table* table = file.tableIn(&node, "items");
    if (table == nullptr) return;
    LayoutItem item;
    const toml::node* numberNode = table->get("number");
    const std::optional<int> number =
        numberNode == nullptr ? std::nullopt : file.number(*numberNode, "number", 1, kHighestNumber);
    const std::optional<DialogItemKind> kind = named(kKinds, (*table)["kind"]);
    if (!number || !kind) {
        return file.problem(table->source(), "an item lacks its \"number\" or a known \"kind\"");
    }
    short frame[4];
    if (!readNumbers(file, *table, "frame", frame, 4)) return;
    item.number = static_cast<short>(*number);
    item.kind = *kind;
    item.rect = {frame[0], frame[1], frame[2], frame[3]};
    item.bold = (*table)["bold"].value_or(false);
    item.iconID = (*table)["icon"].value_or(short{0});
    readAnchors(file, *table, item);
    const bool numberIsUsed =
        std::any_of(dialog.items.begin(), dialog.items.end(),
                    [&item](const LayoutItem& other) { return other.number == item.number; });
    if (numberIsUsed) return file.problem(table->source(), "the dialog has two items with this number");
    dialog.items.push_back(item);
}

void readDialog(TomlFile& file, int resID, const toml::table& table, ResourceLayouts& layouts) {
    DialogLayout dialog;
    dialog.resID = static_cast<short>(resID);
    short size[2];
    if (!readNumbers(file, table, "size", size, 2)) return;
    dialog.width = size[0];
    dialog.height = size[1];
    dialog.defaultItem = table["default"].value_or(dialog.defaultItem);
    const toml::array* items = table["items"].as_array();
    if (items == nullptr) return file.problem(table.source(), "the dialog lacks a list of \"items\"");
    for (const toml::node& item : *items)
        readItem(file, item, dialog);
    layouts.emplace(resID, std::move(dialog));
}

/// Adds the texts that `own` lacks, number by number.
void completeTexts(std::map<int, NumberedTexts>& own, std::map<int, NumberedTexts>& other) {
    for (auto& [number, texts] : other)
        own[number].merge(texts);
}

}  // namespace

void complete(ResourceIndex& own, ResourceIndex other) {
    if (own.languages.empty()) own.languages = other.languages;
    if (own.fallback < 0 && own.languages.count(other.fallback) != 0) own.fallback = other.fallback;
    own.stringBases.insert(own.stringBases.end(), other.stringBases.begin(), other.stringBases.end());
    own.menus.merge(other.menus);
    own.iconLabels.merge(other.iconLabels);
}

void complete(ResourceTexts& own, ResourceTexts other) {
    completeTexts(own.strings, other.strings);
    own.menuTitles.merge(other.menuTitles);
    completeTexts(own.dialogs, other.dialogs);
}

std::optional<std::string> readResourceFile(const std::string& path, ResourceProblems& problems) {
    std::error_code error;
    const bool isFile = std::filesystem::is_regular_file(path, error);
    const std::uintmax_t size = isFile ? std::filesystem::file_size(path, error) : 0;
    const bool tooLarge = !error && size > kLargestFile;
    std::string content(error || tooLarge ? 0 : size, '\0');
    if (isFile && !error && !tooLarge) {
        std::ifstream file(path, std::ios::binary);
        if (file.read(content.data(), static_cast<std::streamsize>(size))) return content;
    }
    problems.push_back({path, 0, tooLarge ? "the file is larger than 256 KiB" : "the file cannot be read"});
    return std::nullopt;
}

ResourceIndex readResourceIndex(const std::string& path, ResourceProblems& problems) {
    TomlFile file(path, problems);
    ResourceIndex index;
    readLanguages(file, index);
    readFallback(file, index);
    readStringBases(file, index);
    readMenus(file, index);
    if (const toml::table* icons = file.tableIn(file.table().get("icons"), "icons")) {
        index.iconLabels = file.numberedTexts(*icons, false);
    }
    return index;
}

ResourceTexts readResourceTexts(const std::string& path, ResourceProblems& problems) {
    TomlFile file(path, problems);
    ResourceTexts texts;
    for (auto&& [heading, node] : file.table()) {
        const bool known = heading == "strings" || heading == "menu" || heading == "dialog";
        if (!known) {
            file.problem(heading.source(), "unknown heading \"" + std::string(heading.str()) + "\"");
            continue;
        }
        const toml::table* resources = file.tableIn(&node, heading.str());
        if (resources == nullptr) continue;
        for (auto&& [key, resource] : *resources) {
            const std::optional<int> number = file.numberKey(key, 1, kHighestNumber);
            const toml::table* table = file.tableIn(&resource, key.str());
            if (!number || table == nullptr) continue;
            if (heading == "strings") {
                texts.strings[*number] = file.numberedTexts(*table, false);
            } else if (heading == "dialog") {
                texts.dialogs[*number] = file.numberedTexts(*table, true);
            } else if (const toml::node* title = table->get("title")) {
                if (auto text = file.text(*title, "title")) texts.menuTitles[*number] = *std::move(text);
            }
        }
    }
    return texts;
}

ResourceLayouts readResourceLayouts(const std::string& path, ResourceProblems& problems) {
    TomlFile file(path, problems);
    ResourceLayouts layouts;
    const toml::table* dialogs = file.tableIn(file.table().get("dialog"), "dialog");
    if (dialogs == nullptr) return layouts;
    for (auto&& [key, node] : *dialogs) {
        const std::optional<int> resID = file.numberKey(key, 1, kHighestNumber);
        const toml::table* table = file.tableIn(&node, key.str());
        if (resID && table != nullptr) readDialog(file, *resID, *table, layouts);
    }
    return layouts;
}

}  // namespace platform
