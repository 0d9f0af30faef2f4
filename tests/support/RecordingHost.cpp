#include "tests/support/RecordingHost.h"

#include "addon/ACAPlib.h"

#include <sstream>

namespace support {
namespace {

RecordingHost* sHost = nullptr;

std::string word(const std::string& text) {
    return text;
}
std::string word(bool value) {
    return value ? "true" : "false";
}
template <typename Number>
std::string word(Number value) {
    return std::to_string(value);
}

template <typename... Words>
void record(const std::string& name, const Words&... words) {
    std::string line = name;
    ((line += " " + word(words)), ...);
    sHost->calls.push_back(line);
}

GSErrCode onInterface(API_InterfaceID request, void* par1, void* par2, void* par3) {
    const auto& item = *static_cast<API_MenuItemRef*>(par1);
    const std::pair<short, int> key{item.menuResID, item.itemIndex};
    const bool exists = sHost->menus.contains(item.menuResID);
    if (request == APIIo_SetMenuItemTextID) {
        const std::string text = GS::UniStringToUtf8(*static_cast<const GS::UniString*>(par3));
        record("SMIT", key.first, key.second, text);
        if (par2 != nullptr) record("SMIT with a second parameter");
        if (exists) sHost->itemTexts[key] = text;
    } else if (request == APIIo_GetMenuItemFlagsID) {
        record("GMIF", key.first, key.second);
        if (exists) *static_cast<std::uint32_t*>(par2) = sHost->itemFlags[key];
    } else if (request == APIIo_SetMenuItemFlagsID) {
        record("SMIF", key.first, key.second, *static_cast<const std::uint32_t*>(par2));
        if (exists) sHost->itemFlags[key] = *static_cast<const std::uint32_t*>(par2);
    } else {
        return kAPIErrNoHostFunction;
    }
    return exists ? kNoError : RecordingHost::kNoSuchMenu;
}

GSErrCode onEnvironment(API_EnvironmentID request, void* par1, void* par2, void* par3) {
    if (request == APIEnv_ApplicationID) {
        *static_cast<API_ServerApplicationInfo*>(par1) = {1, 22, 0, 4023};
        return kNoError;
    }
    return sHost->environment ? sHost->environment(request, par1, par2, par3) : kAPIErrNoHostFunction;
}

/// A host function that notes for whom it is called, and answers as `Answer` does.
template <typename Function, typename Answer>
struct Noted;
template <typename Result, typename... Arguments, typename Answer>
struct Noted<Result (*)(APIClient, Arguments...), Answer> {
    static Result call(APIClient client, Arguments... arguments) {
        sHost->clients.insert(client);
        return Answer{}(arguments...);
    }
};

template <typename Function, typename Answer>
void fill(APIImportedFunctions& table, HostSlot slot, Answer) {
    const Function function = &Noted<Function, Answer>::call;
    table.slots[static_cast<std::size_t>(slot)] = reinterpret_cast<APIHostFunction>(function);
}

}  // namespace

APIImportedFunctions RecordingHost::table() {
    using enum HostSlot;
    APIImportedFunctions result{};
    fill<HostFunction::RegisterMenu>(result, RegisterMenu, [](const APIMenuRegistration* menu) {
        record("Register_Menu", menu->menuResID, menu->promptResID, menu->positionCode, menu->flags);
        if (sHost->registerMenuAnswer == kNoError) sHost->menus.insert(menu->menuResID);
        return sHost->registerMenuAnswer;
    });
    fill<HostFunction::RegisterBuiltInLibrary>(result, RegisterBuiltInLibrary, [] {
        record("Register_BuiltInLibrary");
        return sHost->registerLibraryAnswer;
    });
    fill<HostFunction::InstallMenuHandler>(
        result, InstallMenuHandler, [](std::int16_t menuResID, APIMenuCommandProc handler) {
            record("Install_MenuHandler", menuResID);
            sHost->handlers[menuResID] = handler;
            const auto answer = sHost->installAnswers.find(menuResID);
            return answer != sHost->installAnswers.end() ? answer->second : kNoError;
        });
    fill<HostFunction::KeepInMemory>(result, KeepInMemory, [](bool keep) {
        record("KeepInMemory", keep);
        return kNoError;
    });
    const auto environment = [](auto... arguments) { return onEnvironment(arguments...); };
    fill<HostFunction::Environment>(result, Environment, environment);
    const auto interface = [](auto... arguments) { return onInterface(arguments...); };
    fill<HostFunction::Interface>(result, Interface, interface);
    fill<HostFunction::RegisterModelessWindow>(
        result, RegisterModelessWindow,
        [](std::int32_t reference, APIModelessWindowProc callback, std::uint32_t flags,
           const GS::Guid* guid) {
            record("RegisterModelessWindow", reference, flags,
                   std::string(callback == nullptr ? "no callback" : "callback"),
                   std::string(*guid == GS::NULLGuid ? "null guid" : "guid"));
            return kNoError;
        });
    fill<HostFunction::UnregisterModelessWindow>(result, UnregisterModelessWindow,
                                                 [](std::int32_t reference) {
                                                     record("UnregisterModelessWindow", reference);
                                                     return kNoError;
                                                 });
    fill<HostFunction::LibPartSearch>(
        result, LibPartSearch, [](API_LibPart* part, bool createIfMissing, bool onlyPlaceable) {
            record("LibPart_Search", createIfMissing, onlyPlaceable);
            return sHost->libPartSearch ? sHost->libPartSearch(part) : kAPIErrNoHostFunction;
        });
    fill<HostFunction::LibPartGet>(result, LibPartGet, [](API_LibPart* part) {
        record("LibPart_Get");
        return sHost->libPartGet ? sHost->libPartGet(part) : kAPIErrNoHostFunction;
    });
    const auto command = [](auto...) { return kNoError; };
    fill<HostFunction::CommandTest>(result, CommandTest, command);
    fill<HostFunction::CommandPublish>(result, CommandPublish, command);
    fill<HostFunction::RenderingEngineCount>(result, RenderingEngineCount, [] {
        return static_cast<std::int32_t>(sHost->renderingEngines.size());
    });
    fill<HostFunction::RenderingEngineID>(
        result, RenderingEngineID, [](std::int32_t index, API_ModulID* engine) {
            const auto& engines = sHost->renderingEngines;
            if (index < 1 || index > static_cast<std::int32_t>(engines.size())) return GSErrCode{-1};
            *engine = engines[static_cast<std::size_t>(index - 1)].first;
            return kNoError;
        });
    fill<HostFunction::RenderingEngineMenuName>(
        result, RenderingEngineMenuName, [](const API_ModulID* engine, GS::UniString* name) {
            for (const auto& [id, menuName] : sHost->renderingEngines) {
                if (id != *engine) continue;
                *name = GS::UniStringFromUtf8(menuName);
                return kNoError;
            }
            return GSErrCode{-1};
        });
    return result;
}

RecordingHost::RecordingHost() {
    sHost = this;
    const APIImportedFunctions full = table();
    SetImportedFuncAddrs(&full);
}

RecordingHost::~RecordingHost() {
    const APIImportedFunctions empty{};
    SetImportedFuncAddrs(&empty);
    sHost = nullptr;
}

}  // namespace support
