#include "host/Requests.h"

#include "host/Serving.h"
#include "platform/ProjectInfo.h"

namespace host {

namespace {

using platform::CallTrace;
using platform::TraceArguments;

/// One request of an add-on; its code decides what the other parameters are.
struct Request {
    const char* function;
    APIClient client;
    GSType code;

    /// `more` are the arguments beside the code; without the outermost parameter nothing is answered.
    template <typename Parameter, typename More, typename Body>
    GSErrCode serve(const Parameter* required, const More& more, const Body& body) const {
        const auto arguments = [&] {
            TraceArguments all{{"request", fourCharacters(code)}};
            if (required == nullptr) return all;
            for (auto& argument : more())
                all.push_back(std::move(argument));
            return all;
        };
        return host::serve(function, client, arguments, [&](Host& host, AddOn& addOn, CallTrace& trace) {
            return required != nullptr ? body(host, addOn, trace) : kErrBadParameter;
        });
    }
    GSErrCode notSupported() const {
        return serve(this, none, [](Host&, AddOn&, CallTrace&) { return kErrNotSupported; });
    }
};

GSErrCode applicationID(const Request& request, API_ServerApplicationInfo* out) {
    return request.serve(out, none, [&](Host&, AddOn&, CallTrace& trace) {
        *out = applicationInfo();
        trace.result("application", std::int64_t{out->serverApplication});
        trace.result("version", std::int64_t{out->mainVersion});
        trace.result("release", std::int64_t{out->releaseVersion});
        trace.result("build", std::int64_t{out->buildNumber});
        return kNoError;
    });
}

GSErrCode getLibraries(const Request& request, API_LibraryList* out, std::int32_t* embedded) {
    return request.serve(out, none, [&](Host& host, AddOn&, CallTrace& trace) {
        API_LibraryList list;
        for (const LoadedLibrary& library : host.libraries().all())
            list.push_back({IO::Location::FromPosixPath(library.path)});
        trace.result("count", static_cast<std::int64_t>(list.size()));
        *out = std::move(list);
        if (embedded != nullptr) {
            *embedded = host.libraries().embedded();
            trace.result("embedded", *embedded);
        }
        return kNoError;
    });
}

GSErrCode addLibrary(const Request& request, const IO::Location* folder) {
    const auto arguments = [&] {
        GS::UniString path;
        const bool known = folder->ToPath(&path) == kNoError;
        return TraceArguments{{"folder", known ? GS::UniStringToUtf8(path) : std::string()}};
    };
    return request.serve(folder, arguments,
                         [&](Host& host, AddOn&, CallTrace&) { return host.libraries().add(*folder); });
}

GSErrCode project(const Request& request, API_ProjectInfo* out) {
    return request.serve(out, none, [&](Host& host, AddOn&, CallTrace& trace) {
        out->untitled = host.project().untitled();
        out->location = IO::Location::FromPosixPath(host.project().path());
        trace.result("untitled", out->untitled);
        trace.result("file", host.project().path());
        return kNoError;
    });
}

TraceArguments traced(const API_ModulID& engine) {
    return {{"developer", std::int64_t{engine.developerID}}, {"module", std::int64_t{engine.localID}}};
}

GSErrCode getEngine(const Request& request, API_ModulID* out) {
    return request.serve(out, none, [&](Host& host, AddOn&, CallTrace& trace) {
        const auto current = host.renderingEngines().current();
        if (!current) return kErrNotFound;
        const GSErrCode result = host.renderingEngines().identifier(*current, out);
        for (auto& [name, value] : traced(*out))
            trace.result(name.c_str(), std::move(value));
        return result;
    });
}

GSErrCode setEngine(const Request& request, const API_ModulID* engine) {
    return request.serve(
        engine, [&] { return traced(*engine); },
        [&](Host& host, AddOn&, CallTrace&) {
            const auto number = host.renderingEngines().find(*engine);
            return number && host.renderingEngines().setCurrent(*number) ? kNoError : kErrNotFound;
        });
}

TraceArguments traced(const API_MenuItemRef& item) {
    return {{"menu", item.menuResID}, {"item", item.itemIndex}};
}

/// A request for an item of the add-on's menus: `more` are the arguments beside the item, `answer` reads or
/// changes it.
template <typename Value, typename More, typename Answer>
GSErrCode menuItem(const Request& request, const API_MenuItemRef* item, const Value* value, const More& more,
                   const Answer& answer) {
    const auto arguments = [&] {
        TraceArguments all = traced(*item);
        if (value != nullptr) more(all);
        return all;
    };
    return request.serve(item, arguments, [&](Host& host, AddOn& addOn, CallTrace& trace) {
        if (value == nullptr) return kErrBadParameter;
        MenuItem* const found = addOn.menus.find(*item);
        if (found == nullptr) return kErrNoSuchMenu;
        const MenuItem before = *found;
        answer(*found, trace);
        if (*found != before) host.menusChanged();
        return kNoError;
    });
}

GSErrCode setItemText(const Request& request, const API_MenuItemRef* item, const GS::UniString* text) {
    return menuItem(
        request, item, text,
        [&](TraceArguments& all) { all.emplace_back("text", GS::UniStringToUtf8(*text)); },
        [&](MenuItem& found, CallTrace&) { found.text = GS::UniStringToUtf8(*text); });
}

GSErrCode getItemFlags(const Request& request, const API_MenuItemRef* item, std::uint32_t* out) {
    return menuItem(
        request, item, out, [](TraceArguments&) {},
        [&](const MenuItem& found, CallTrace& trace) {
            *out = found.flags;
            trace.result("flags", std::int64_t{*out});
        });
}

GSErrCode setItemFlags(const Request& request, const API_MenuItemRef* item, const std::uint32_t* flags) {
    return menuItem(
        request, item, flags, [&](TraceArguments& all) { all.emplace_back("flags", std::int64_t{*flags}); },
        [&](MenuItem& found, CallTrace&) { found.flags = *flags; });
}

/// A parameter as what its request says that it is.
struct Parameter {
    void* pointer;
    template <typename Type>
    operator Type*() const {
        return static_cast<Type*>(pointer);
    }
};

}  // namespace

API_ServerApplicationInfo applicationInfo() {
    constexpr std::uint32_t kCadHost = 1;
    constexpr std::uint16_t kMainVersion = kAPIHostVersion / 1000;
    constexpr std::uint16_t kReleaseVersion = 0;
    constexpr std::uint32_t kBuildNumber = 3004;
    return {kCadHost, kMainVersion, kReleaseVersion, kBuildNumber};
}

GSErrCode environment(APIClient client, API_EnvironmentID code, void* par1, void* par2, void*) {
    const Request request{"Environment", client, code};
    const Parameter first{par1};
    const Parameter second{par2};
    switch (code) {
        case APIEnv_ApplicationID:
            return applicationID(request, first);
        case APIEnv_GetLibrariesID:
            return getLibraries(request, first, second);
        case APIEnv_AddLibraryID:
            return addLibrary(request, first);
        case APIEnv_ProjectID:
            return project(request, first);
        case APIEnv_GetRenderingEngineID:
            return getEngine(request, first);
        case APIEnv_SetRenderingEngineID:
            return setEngine(request, first);
    }
    return request.notSupported();
}

GSErrCode interfaceRequest(APIClient client, API_InterfaceID code, void* par1, void* par2, void* par3) {
    const Request request{"Interface", client, code};
    const Parameter item{par1};
    switch (code) {
        case APIIo_SetMenuItemTextID:
            return setItemText(request, item, Parameter{par3});
        case APIIo_GetMenuItemFlagsID:
            return getItemFlags(request, item, Parameter{par2});
        case APIIo_SetMenuItemFlagsID:
            return setItemFlags(request, item, Parameter{par2});
    }
    return request.notSupported();
}

}  // namespace host
