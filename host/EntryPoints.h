#pragma once

#include "host/Bundle.h"

#include <optional>

namespace host {

/// Calls into an add-on, watched by whoever observes calls. Nothing is answered when the add-on threw.
class EntryPoints {
public:
    explicit EntryPoints(const Bundle& bundle) : bundle_(bundle) {}

    std::optional<GSErrCode> handOver(const APIImportedFunctions& table) const;
    /// `info` is what the add-on tells of itself.
    std::optional<int> checkEnvironment(const API_ServerApplicationInfo& server, API_AddOnInfo& info) const;
    std::optional<GSErrCode> registerInterface() const;
    std::optional<GSErrCode> initialize(APIClient client) const;
    std::optional<GSErrCode> freeData() const;

private:
    const Bundle& bundle_;
};

/// Lets the shared object fill its record of exported functions. False when it threw.
bool readExportedFunctions(APIGetExportedFuncAddrsProc getExported, APIExportedFunctions& record);

std::optional<GSErrCode> callMenuHandler(APIMenuCommandProc handler, const API_MenuParams& params);

}  // namespace host
