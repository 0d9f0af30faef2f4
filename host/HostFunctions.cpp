#include "host/HostFunctions.h"

#include "host/ErrorCodes.h"
#include "host/Requests.h"
#include "host/Serving.h"

#include <algorithm>
#include <iterator>

namespace host {

namespace {

using platform::CallTrace;
using platform::TraceArguments;

GSErrCode registerMenu(APIClient client, const APIMenuRegistration* menu) {
    const auto arguments = [&] {
        if (menu == nullptr) return TraceArguments{};
        return TraceArguments{{"menu", menu->menuResID},
                              {"prompt", menu->promptResID},
                              {"position", menu->positionCode},
                              {"flags", std::int64_t{menu->flags}}};
    };
    return serve("Register_Menu", client, arguments, [&](Host& host, AddOn& addOn, CallTrace&) {
        if (menu == nullptr) return kErrBadParameter;
        const GSErrCode result = addOn.menus.add(addOn.resources, *menu);
        if (result == kNoError) host.menusChanged();
        return result;
    });
}

GSErrCode registerBuiltInLibrary(APIClient client) {
    return serve("Register_BuiltInLibrary", client, none, [](Host&, AddOn& addOn, CallTrace&) {
        addOn.builtInLibrary = true;
        return kNoError;
    });
}

GSErrCode installMenuHandler(APIClient client, std::int16_t menuResID, APIMenuCommandProc handler) {
    const auto arguments = [&] { return TraceArguments{{"menu", menuResID}}; };
    return serve("Install_MenuHandler", client, arguments, [&](Host&, AddOn& addOn, CallTrace&) {
        if (handler == nullptr) return kErrBadParameter;
        addOn.handlers[menuResID] = handler;
        return kNoError;
    });
}

GSErrCode keepInMemory(APIClient client, bool keep) {
    const auto arguments = [&] { return TraceArguments{{"keep", keep}}; };
    return serve("KeepInMemory", client, arguments, [&](Host&, AddOn& addOn, CallTrace&) {
        addOn.keepInMemory = keep;
        return kNoError;
    });
}

GSErrCode registerModelessWindow(APIClient client, std::int32_t referenceID, APIModelessWindowProc callback,
                                 std::uint32_t flags, const GS::Guid* reference) {
    const auto arguments = [&] {
        return TraceArguments{{"window", referenceID}, {"flags", std::int64_t{flags}}};
    };
    return serve("RegisterModelessWindow", client, arguments, [&](Host&, AddOn& addOn, CallTrace&) {
        if (reference == nullptr) return kErrBadParameter;
        const bool added =
            addOn.modelessWindows.try_emplace(referenceID, ModelessWindow{callback, flags, *reference})
                .second;
        return added ? kNoError : kErrAlreadyThere;
    });
}

GSErrCode unregisterModelessWindow(APIClient client, std::int32_t referenceID) {
    const auto arguments = [&] { return TraceArguments{{"window", referenceID}}; };
    return serve("UnregisterModelessWindow", client, arguments, [&](Host&, AddOn& addOn, CallTrace&) {
        return addOn.modelessWindows.erase(referenceID) != 0 ? kNoError : kErrNotFound;
    });
}

std::string partName(const API_LibPart& part) {
    const auto end = std::find(std::begin(part.name), std::end(part.name), 0);
    return GS::UniStringToUtf8(
        GS::UniString(part.name, static_cast<unsigned int>(end - std::begin(part.name))));
}

void tracePart(CallTrace& trace, const API_LibPart& part) {
    trace.result("index", part.index);
    trace.result("name", partName(part));
    trace.result("missingDefinition", part.missingDef);
}

GSErrCode libPartSearch(APIClient client, API_LibPart* part, bool createIfMissing, bool onlyPlaceable) {
    const auto arguments = [&] {
        if (part == nullptr) return TraceArguments{};
        return TraceArguments{{"name", partName(*part)}, {"type", partTypeName(part->typeID)}};
    };
    return serve("LibPart_Search", client, arguments, [&](Host& host, AddOn&, CallTrace& trace) {
        const GSErrCode result = host.libraries().search(part, createIfMissing, onlyPlaceable);
        if (result == kNoError) tracePart(trace, *part);
        return result;
    });
}

GSErrCode libPartGet(APIClient client, API_LibPart* part) {
    const auto arguments = [&] {
        return part != nullptr ? TraceArguments{{"index", part->index}} : TraceArguments{};
    };
    return serve("LibPart_Get", client, arguments, [&](Host& host, AddOn&, CallTrace& trace) {
        const GSErrCode result = host.libraries().get(part);
        if (result == kNoError) tracePart(trace, *part);
        return result;
    });
}

TraceArguments commandArguments(const API_ModulID* module, GSType command, std::int32_t version) {
    if (module == nullptr) return {};
    return {{"developer", std::int64_t{module->developerID}},
            {"module", std::int64_t{module->localID}},
            {"command", fourCharacters(command)},
            {"version", version}};
}

GSErrCode commandTest(APIClient client, const API_ModulID* module, GSType command, std::int32_t version) {
    const auto arguments = [&] { return commandArguments(module, command, version); };
    return serve("Command_Test", client, arguments, [&](Host& host, AddOn&, CallTrace&) {
        if (module == nullptr) return kErrBadParameter;
        for (const auto& addOn : host.addOns()) {
            for (const PublishedCommand& each : addOn->commands) {
                if (each.module == *module && each.command == command && each.version == version)
                    return kNoError;
            }
        }
        return kErrNotFound;
    });
}

GSErrCode publishCommand(APIClient client, const API_ModulID* self, GSType command, std::int32_t version) {
    const auto arguments = [&] { return commandArguments(self, command, version); };
    return serve("Command_Publish", client, arguments, [&](Host&, AddOn& addOn, CallTrace&) {
        if (self == nullptr) return kErrBadParameter;
        addOn.commands.push_back({*self, command, version});
        return kNoError;
    });
}

std::int32_t renderingEngineCount(APIClient client) {
    std::int32_t count = 0;
    serve("RenderingEngineCount", client, none, [&](Host& host, AddOn&, CallTrace& trace) {
        count = host.renderingEngines().count();
        trace.result("count", count);
        return kNoError;
    });
    return count;
}

GSErrCode renderingEngineID(APIClient client, std::int32_t index, API_ModulID* out) {
    const auto arguments = [&] { return TraceArguments{{"index", index}}; };
    return serve("RenderingEngineID", client, arguments, [&](Host& host, AddOn&, CallTrace&) {
        if (out == nullptr) return kErrBadParameter;
        return host.renderingEngines().identifier(index, out);
    });
}

GSErrCode renderingEngineMenuName(APIClient client, const API_ModulID* engine, GS::UniString* out) {
    const auto arguments = [&] {
        if (engine == nullptr) return TraceArguments{};
        return TraceArguments{{"developer", std::int64_t{engine->developerID}},
                              {"module", std::int64_t{engine->localID}}};
    };
    return serve("RenderingEngineMenuName", client, arguments, [&](Host& host, AddOn&, CallTrace&) {
        if (engine == nullptr || out == nullptr) return kErrBadParameter;
        return host.renderingEngines().menuName(*engine, out);
    });
}

APIImportedFunctions makeTable() {
    APIImportedFunctions table{};
    const auto put = [&table]<typename Function>(HostSlot slot, Function function) {
        table.slots[static_cast<std::size_t>(slot)] = reinterpret_cast<APIHostFunction>(function);
    };
    put(HostSlot::RegisterMenu, HostFunction::RegisterMenu{registerMenu});
    put(HostSlot::RegisterBuiltInLibrary, HostFunction::RegisterBuiltInLibrary{registerBuiltInLibrary});
    put(HostSlot::InstallMenuHandler, HostFunction::InstallMenuHandler{installMenuHandler});
    put(HostSlot::KeepInMemory, HostFunction::KeepInMemory{keepInMemory});
    put(HostSlot::Environment, HostFunction::Environment{environment});
    put(HostSlot::Interface, HostFunction::Interface{interfaceRequest});
    put(HostSlot::RegisterModelessWindow, HostFunction::RegisterModelessWindow{registerModelessWindow});
    put(HostSlot::UnregisterModelessWindow, HostFunction::UnregisterModelessWindow{unregisterModelessWindow});
    put(HostSlot::LibPartSearch, HostFunction::LibPartSearch{libPartSearch});
    put(HostSlot::LibPartGet, HostFunction::LibPartGet{libPartGet});
    put(HostSlot::CommandTest, HostFunction::CommandTest{commandTest});
    put(HostSlot::CommandPublish, HostFunction::CommandPublish{publishCommand});
    put(HostSlot::RenderingEngineCount, HostFunction::RenderingEngineCount{renderingEngineCount});
    put(HostSlot::RenderingEngineID, HostFunction::RenderingEngineID{renderingEngineID});
    put(HostSlot::RenderingEngineMenuName, HostFunction::RenderingEngineMenuName{renderingEngineMenuName});
    return table;
}

}  // namespace

const APIImportedFunctions& functionTable() {
    static const APIImportedFunctions table = makeTable();
    return table;
}

}  // namespace host
