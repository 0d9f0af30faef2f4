#include "host/EntryPoints.h"

#include "platform/host/CallTrace.h"

namespace host {

using platform::CallDirection;
using platform::CallTrace;
using platform::TraceArguments;

namespace {

template <typename MakeArguments, typename Call>
std::optional<GSErrCode> callAddOn(const char* function, const MakeArguments& arguments, const Call& call) {
    CallTrace trace(CallDirection::ToAddOn, function, arguments);
    try {
        return trace.returning(call());
    } catch (...) {
        trace.result("exception", true);
        return std::nullopt;
    }
}

TraceArguments none() {
    return {};
}

}  // namespace

std::optional<GSErrCode> EntryPoints::handOver(const APIImportedFunctions& table) const {
    const auto arguments = [&table] {
        std::int64_t filled = 0;
        for (const APIHostFunction slot : table.slots)
            filled += slot != nullptr ? 1 : 0;
        return TraceArguments{{"filledSlots", filled}};
    };
    return callAddOn("SetImportedFuncAddrs", arguments, [&] { return bundle_.handOver(table); });
}

std::optional<int> EntryPoints::checkEnvironment(const API_ServerApplicationInfo& server,
                                                 API_AddOnInfo& info) const {
    const auto arguments = [&server] {
        return TraceArguments{{"application", std::int64_t{server.serverApplication}},
                              {"version", std::int64_t{server.mainVersion}}};
    };
    return callAddOn("CheckEnvironment", arguments, [&] {
        API_EnvirParams params{server, {}};
        const int type = bundle_.functions().checkEnvironment(&params);
        info = params.addOnInfo;
        return type;
    });
}

std::optional<GSErrCode> EntryPoints::registerInterface() const {
    return callAddOn("RegisterInterface", none, [&] { return bundle_.functions().registerInterface(); });
}

std::optional<GSErrCode> EntryPoints::initialize(APIClient client) const {
    return callAddOn("Initialize", none, [&] { return bundle_.functions().initialize(client); });
}

std::optional<GSErrCode> EntryPoints::freeData() const {
    return callAddOn("FreeData", none, [&] { return bundle_.functions().freeData(); });
}

bool readExportedFunctions(APIGetExportedFuncAddrsProc getExported, APIExportedFunctions& record) {
    const auto call = [&] {
        getExported(&record);
        return kNoError;
    };
    return callAddOn("GetExportedFuncAddrs", none, call).has_value();
}

std::optional<GSErrCode> callMenuHandler(APIMenuCommandProc handler, const API_MenuParams& params) {
    const auto arguments = [&params] {
        return TraceArguments{{"menu", params.menuItemRef.menuResID}, {"item", params.menuItemRef.itemIndex}};
    };
    return callAddOn("MenuHandler", arguments, [&] { return handler(&params); });
}

}  // namespace host
