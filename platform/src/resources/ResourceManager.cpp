#include "platform/ResourceManager.h"

#include "platform/Bundle.h"
#include "platform/host/CallTrace.h"
#include "platform/host/Resources.h"
#include "platform/src/resources/ResourceFiles.h"
#include "platform/StringServices.h"
#include "platform/UniString.h"

#include <algorithm>
#include <filesystem>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace platform {

namespace {

ResourceProblemSink& problemSink() {
    static auto& sink = *new ResourceProblemSink;
    return sink;
}

void tell(const ResourceProblems& problems) {
    for (const ResourceProblem& problem : problems) {
        if (const ResourceProblemSink sink = problemSink()) {
            sink(problem);
        } else {
            DBPrintf("%s\n", describe(problem).c_str());
        }
    }
}

/// One copy of a localised resource: the number in the files, and the language.
struct LocalisedId {
    int base;
    int language;
};

/// The resources of one bundle. Each file is read when something in it is first asked for.
class BundleResources {
public:
    explicit BundleResources(std::string folder) : folder_(std::move(folder)) {
        std::error_code error;
        if (std::filesystem::is_directory(folder_ + kFramework, error)) framework_ = folder_ + kFramework;
    }

    const std::string& folder() const { return folder_; }

    const std::string* string(short resID, short number) {
        const auto id = split(resID, index().stringBases, [](int base) { return base; });
        if (!id) return nullptr;
        language_ = id->language;
        return string(id->language, id->base, number);
    }

    bool menu(short resID, MenuResource& menu) {
        const auto id = split(resID, index().menus, [](const auto& entry) { return entry.first; });
        if (!id) return false;
        const std::string* title = inLanguageOrFallback(
            id->language, [&](int language) { return find(texts(language).menuTitles, id->base); });
        if (title == nullptr) return false;
        const ResourceIndex::MenuItems source = index().menus.at(id->base);
        menu.title = *title;
        menu.items.clear();
        for (int number = 1; number <= source.count; ++number) {
            const std::string* text = inLanguageOrFallback(
                id->language, [&](int language) { return string(language, source.strings, number); });
            menu.items.push_back(text == nullptr ? std::string() : *text);
        }
        return true;
    }

    const DialogLayout* dialog(short resID) {
        if (!layouts_) {
            std::error_code error;
            const bool hasOwn = std::filesystem::exists(folder_ + "/layouts.toml", error);
            layouts_.emplace();
            if (hasOwn || framework_.empty()) layouts_ = read(readResourceLayouts, folder_, "layouts.toml");
            if (!framework_.empty()) layouts_->merge(read(readResourceLayouts, framework_, "layouts.toml"));
        }
        return find(*layouts_, resID);
    }

    int languageInUse() { return language_.value_or(index().fallback); }

    std::string dialogText(short resID, short item, int language) {
        const std::string* text = inLanguageOrFallback(language, [&](int each) -> const std::string* {
            const NumberedTexts* items = find(texts(each).dialogs, resID);
            return items == nullptr ? nullptr : find(*items, item);
        });
        return text == nullptr ? std::string() : *text;
    }

    const IconResource* icon(short resID) {
        if (const IconResource* known = find(icons_, resID)) return known;
        IconResource icon;
        icon.label = iconLabel(resID);
        icon.path = iconPath(resID);
        if (icon.path.empty() && icon.label.empty()) return nullptr;
        ResourceProblems problems;
        const std::string expected = folder_ + "/icons/" + std::to_string(resID) + ".svg";
        const auto image = readResourceFile(icon.path.empty() ? expected : icon.path, problems);
        if (image)
            icon.image = *image;
        else
            icon.path.clear();
        tell(problems);
        return &icons_.emplace(resID, std::move(icon)).first->second;
    }

    std::string iconLabel(short resID) {
        const std::string* label = find(index().iconLabels, resID);
        return label == nullptr ? std::string() : *label;
    }

    int dropIcons() {
        const auto count = std::count_if(icons_.begin(), icons_.end(),
                                         [](const auto& entry) { return !entry.second.path.empty(); });
        icons_.clear();
        return static_cast<int>(count);
    }

private:
    /// Empty when there is no picture.
    std::string iconPath(short resID) const {
        for (const std::string& folder : {folder_, framework_}) {
            for (const char* extension : {".svg", ".png"}) {
                const std::string path = folder + "/icons/" + std::to_string(resID) + extension;
                std::error_code error;
                if (!folder.empty() && std::filesystem::is_regular_file(path, error)) return path;
            }
        }
        return {};
    }

    template <typename Map>
    static const typename Map::mapped_type* find(const Map& map, int key) {
        const auto found = map.find(key);
        return found == map.end() ? nullptr : &found->second;
    }

    template <typename T>
    T read(T (*reader)(const std::string&, ResourceProblems&), const std::string& folder,
           const std::string& name) {
        ResourceProblems problems;
        T content = reader(folder + "/" + name, problems);
        tell(problems);
        return content;
    }

    const ResourceIndex& index() {
        if (!index_) {
            index_ = read(readResourceIndex, folder_, "resources.toml");
            if (!framework_.empty()) {
                ResourceIndex framework = read(readResourceIndex, framework_, "resources.toml");
                frameworkLanguages_ = framework.languages;
                complete(*index_, std::move(framework));
            }
        }
        return *index_;
    }

    const ResourceTexts& texts(int language) {
        static const ResourceTexts kNone;
        const auto known = texts_.find(language);
        if (known != texts_.end()) return known->second;
        const std::string* name = find(index().languages, language);
        if (name == nullptr) return kNone;
        ResourceTexts texts = read(readResourceTexts, folder_, "texts." + *name + ".toml");
        if (const std::string* frameworkName = find(frameworkLanguages_, language)) {
            complete(texts, read(readResourceTexts, framework_, "texts." + *frameworkName + ".toml"));
        }
        return texts_.emplace(language, std::move(texts)).first->second;
    }

    /// Which of `bases` has a copy `resID`: the nearest one at or below it whose languages reach so far.
    template <typename Bases, typename GetBase>
    std::optional<LocalisedId> split(int resID, const Bases& bases, GetBase getBase) {
        std::optional<LocalisedId> id;
        for (const auto& each : bases) {
            const int base = getBase(each);
            if (index().languages.count(resID - base) == 0) continue;
            if (!id || base > id->base) id = LocalisedId{base, resID - base};
        }
        return id;
    }

    const std::string* string(int language, int base, int number) {
        const NumberedTexts* strings = find(texts(language).strings, base);
        return strings == nullptr ? nullptr : find(*strings, number);
    }

    template <typename Lookup>
    const std::string* inLanguageOrFallback(int language, Lookup lookup) {
        const std::string* text = lookup(language);
        const int fallback = index().fallback;
        return text == nullptr && fallback != language ? lookup(fallback) : text;
    }

    static constexpr const char* kFramework = "/framework";

    std::string folder_;
    std::string framework_;  // resources used where the add-on's own lack them; empty for none
    std::optional<ResourceIndex> index_;
    NumberedTexts frameworkLanguages_;
    std::map<int, ResourceTexts> texts_;
    std::optional<ResourceLayouts> layouts_;
    std::map<int, IconResource> icons_;
    std::optional<int> language_;  // of the string that was last looked up
};

/// Handles of one folder share what was read of it: an add-on and its host open the same bundle.
struct OpenBundles {
    std::map<RSResModule, std::shared_ptr<BundleResources>> open;
    RSResModule last = 0;
};

/// Never destroyed: an image closes its module while the process ends, whatever went before.
OpenBundles& bundles() {
    static auto& all = *new OpenBundles;
    return all;
}

BundleResources* bundleOf(RSResModule handle) {
    const auto found = bundles().open.find(handle);
    return found == bundles().open.end() ? nullptr : found->second.get();
}

std::shared_ptr<BundleResources> bundleIn(const std::string& folder) {
    for (const auto& [handle, bundle] : bundles().open) {
        if (bundle->folder() == folder) return bundle;
    }
    return std::make_shared<BundleResources>(folder);
}

bool copyUnits(const std::string& text, void* buffer) {
    const GS::UniString units = GS::UniStringFromUtf8(text);
    const unsigned int length = units.GetLength();
    if (length >= kRSStringBufferUnits) return false;
    auto* target = static_cast<unsigned short*>(buffer);
    std::copy_n(units.ToUStr(), length, target);
    target[length] = 0;
    return true;
}

/// A character that the system encoding lacks becomes "?".
bool copySystemText(const std::string& text, void* buffer) {
    const GS::UniString units = GS::UniStringFromUtf8(text);
    const auto* source = reinterpret_cast<const char*>(units.ToUStr());
    const long count = units.GetLength();
    const unsigned int encoding = GetApplicationTextEncoding();
    const auto fits = StringServices::encode(encoding, source, count, '?', nullptr, 0);
    if (fits.bytes >= kRSStringBufferUnits) return false;
    auto* target = static_cast<char*>(buffer);
    StringServices::encode(encoding, source, count, '?', target, fits.bytes);
    target[fits.bytes] = '\0';
    return true;
}

}  // namespace

std::string describe(const ResourceProblem& problem) {
    const std::string line = problem.line > 0 ? ":" + std::to_string(problem.line) : std::string();
    return problem.file + line + ": " + problem.message;
}

void setResourceProblemSink(ResourceProblemSink sink) {
    problemSink() = std::move(sink);
}

bool getMenuResource(RSResModule module, short resID, MenuResource& menu) {
    BundleResources* open = bundleOf(module);
    return open != nullptr && open->menu(resID, menu);
}

const DialogLayout* findDialogLayout(RSResModule module, short resID) {
    BundleResources* open = bundleOf(module);
    return open == nullptr ? nullptr : open->dialog(resID);
}

int languageInUse(RSResModule module) {
    BundleResources* open = bundleOf(module);
    return open == nullptr ? -1 : open->languageInUse();
}

std::string dialogItemText(RSResModule module, short resID, short item, int language) {
    BundleResources* open = bundleOf(module);
    return open == nullptr ? std::string() : open->dialogText(resID, item, language);
}

const IconResource* findIcon(RSResModule module, short resID) {
    BundleResources* open = bundleOf(module);
    return open == nullptr ? nullptr : open->icon(resID);
}

std::string iconLabel(RSResModule module, short resID) {
    BundleResources* open = bundleOf(module);
    return open == nullptr ? std::string() : open->iconLabel(resID);
}

}  // namespace platform

RSResModule RSOpenResourceFile(const char* bundlePath) {
    if (bundlePath == nullptr || *bundlePath == '\0') return kNoResModule;
    const std::string folder = std::string(bundlePath) + "/Resources";
    std::error_code error;
    if (!std::filesystem::is_directory(folder, error)) return kNoResModule;
    platform::OpenBundles& all = platform::bundles();
    const RSResModule handle = ++all.last;
    all.open.emplace(handle, platform::bundleIn(folder));
    return handle;
}

int RSCloseResourceFile(RSResModule module) {
    return platform::bundles().open.erase(module) == 1 ? 0 : -1;
}

int RSRemoveModuleImageCache(RSResModule module) {
    platform::BundleResources* open = platform::bundleOf(module);
    return open == nullptr ? 0 : open->dropIcons();
}

bool RSGetIndString_ParamAdapter(RSStringType type, void* buffer, short resID, short index,
                                 RSResModule module) {
    platform::CallTrace trace("RSGetIndString", "resource", resID, "index", index);
    platform::BundleResources* open = platform::bundleOf(module);
    const std::string* text = open == nullptr || buffer == nullptr ? nullptr : open->string(resID, index);
    if (text == nullptr) return trace.returning(false);
    return trace.returning(type == RSStringFixed ? platform::copySystemText(*text, buffer)
                                                 : platform::copyUnits(*text, buffer));
}
