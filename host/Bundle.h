#pragma once

#include "platform/HostTable.h"

#include <memory>
#include <optional>
#include <string>
#include <variant>

namespace host {

/// Why a bundle was not loaded: one line without the path, which the caller names.
struct LoadError {
    std::string reason;
};

/// What an add-on answered; nothing, and what the exception says, when it threw.
struct Answer {
    std::optional<GSErrCode> code;
    std::string exception;
};

/// The shared object of a bundle, from its loading to its unloading.
class Bundle {
public:
    /// Loads the shared object and reads the record of exported functions; calls no entry point.
    static std::variant<std::unique_ptr<Bundle>, LoadError> open(const std::string& path);

    /// Unloads the shared object.
    ~Bundle();
    Bundle(const Bundle&) = delete;
    Bundle& operator=(const Bundle&) = delete;

    /// As it was given to open.
    const std::string& path() const { return path_; }
    /// The folder's name without ".bundle".
    const std::string& name() const { return name_; }
    /// Absolute, without links; two bundles are the same when these are equal.
    const std::string& canonicalPath() const { return canonicalPath_; }
    /// Start of the loaded image.
    const void* image() const;

    /// The calls into the add-on, which whoever observes calls sees.
    Answer handOver(const APIImportedFunctions& table) const;
    /// `info` is what the add-on reports about itself.
    Answer checkEnvironment(const API_ServerApplicationInfo& server, API_AddOnInfo& info) const;
    Answer registerInterface() const;
    Answer initialize(APIClient client) const;
    Answer freeData() const;
    static Answer callHandler(APIMenuCommandProc handler, const API_MenuParams& params);

private:
    Bundle() = default;

    std::string path_;
    std::string name_;
    std::string canonicalPath_;
    void* handle_ = nullptr;
    APIExportedFunctions functions_{};
    APIGetExportedFuncAddrsProc getExported_ = nullptr;
    APISetImportedFuncAddrsProc setImported_ = nullptr;
};

}  // namespace host
