#include "host/Bundle.h"

#include "host/ErrorCodes.h"
#include "platform/host/CallTrace.h"
#include "platform/host/Failures.h"
#include "platform/host/ImageCleanup.h"

#include <dlfcn.h>
#include <link.h>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace host {

namespace fs = std::filesystem;

namespace {

using platform::CallDirection;
using platform::CallTrace;
using platform::TraceArguments;

constexpr const char* kBundleSuffix = ".bundle";
constexpr const char* kObjectSuffix = ".so";

std::string bundleName(const fs::path& canonical) {
    return canonical.extension() == kBundleSuffix ? canonical.stem().string() : canonical.filename().string();
}

/// What is wrong with the record, or nothing.
std::string recordProblem(const APIExportedFunctions& record) {
    if (record.interfaceVersion != kAPIInterfaceVersion) {
        return "its record names interface version " +
               errorText(static_cast<GSErrCode>(record.interfaceVersion)) + ", this host has " +
               errorText(static_cast<GSErrCode>(kAPIInterfaceVersion));
    }
    if (record.hostVersion != kAPIHostVersion) {
        return "its record names host version " + std::to_string(record.hostVersion) + ", this host has " +
               std::to_string(kAPIHostVersion);
    }
    const char* const missing = record.checkEnvironment == nullptr    ? "environment check"
                                : record.registerInterface == nullptr ? "interface registration"
                                : record.initialize == nullptr        ? "initialisation"
                                : record.freeData == nullptr          ? "free data"
                                                                      : nullptr;
    return missing != nullptr ? std::string("its record lacks the entry point for ") + missing
                              : std::string();
}

/// Calls into an add-on, watched by whoever observes calls.
template <typename MakeArguments, typename Call>
Answer callAddOn(const char* function, const MakeArguments& arguments, const Call& call) {
    CallTrace trace(CallDirection::ToAddOn, function, arguments);
    try {
        return {trace.returning(call()), {}};
    } catch (...) {
        trace.result("exception", true);
        return {std::nullopt, platform::exceptionText()};
    }
}

TraceArguments none() {
    return {};
}

/// Whether the file ends before what its program headers say. Touching what is missing would end the host.
bool isCutShort(const fs::path& object) {
    std::ifstream file(object, std::ios::binary | std::ios::ate);
    const auto size = static_cast<std::uint64_t>(file.tellg());
    const auto read = [&file](std::uint64_t position, auto& record) {
        file.seekg(static_cast<std::streamoff>(position));
        return static_cast<bool>(file.read(reinterpret_cast<char*>(&record), sizeof record));
    };
    ElfW(Ehdr) header{};
    if (!read(0, header) || std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0) return false;
    for (std::uint64_t number = 0; number < header.e_phnum; ++number) {
        ElfW(Phdr) segment{};
        if (!read(header.e_phoff + number * header.e_phentsize, segment)) return true;
        if (segment.p_offset > size || segment.p_filesz > size - segment.p_offset) return true;
    }
    return false;
}

}  // namespace

std::variant<std::unique_ptr<Bundle>, LoadError> Bundle::open(const std::string& path) {
    std::error_code error;
    const fs::path canonical = fs::canonical(path, error);
    if (error) return LoadError{"there is no such folder"};
    if (!fs::is_directory(canonical, error)) return LoadError{"not a bundle: it is not a folder"};

    std::unique_ptr<Bundle> bundle(new Bundle);
    bundle->path_ = path;
    bundle->canonicalPath_ = canonical.string();
    bundle->name_ = bundleName(canonical);
    const std::string objectName = bundle->name_ + kObjectSuffix;
    const fs::path object = canonical / objectName;
    if (!fs::is_regular_file(object, error)) {
        return LoadError{"not a bundle: it contains no shared object " + objectName};
    }

    if (isCutShort(object)) return LoadError{"its shared object " + objectName + " is truncated"};
    bundle->handle_ = dlopen(object.c_str(), RTLD_LOCAL | RTLD_NOW);
    if (bundle->handle_ == nullptr) {
        const char* const reason = dlerror();
        return LoadError{std::string("its shared object cannot be loaded: ") +
                         (reason != nullptr ? reason : "unknown reason")};
    }
    const auto getExported = dlsym(bundle->handle_, kAPIGetExportedFuncAddrsName);
    if (getExported == nullptr) {
        return LoadError{objectName + " does not export " + kAPIGetExportedFuncAddrsName};
    }
    const auto setImported = dlsym(bundle->handle_, kAPISetImportedFuncAddrsName);
    if (setImported == nullptr) {
        return LoadError{objectName + " does not export " + kAPISetImportedFuncAddrsName};
    }
    bundle->getExported_ = reinterpret_cast<APIGetExportedFuncAddrsProc>(getExported);
    bundle->setImported_ = reinterpret_cast<APISetImportedFuncAddrsProc>(setImported);
    const auto readRecord = [&bundle] {
        bundle->getExported_(&bundle->functions_);
        return kNoError;
    };
    if (!callAddOn("GetExportedFuncAddrs", none, readRecord).code) {
        return LoadError{std::string(kAPIGetExportedFuncAddrsName) + " threw an exception"};
    }
    const std::string problem = recordProblem(bundle->functions_);
    if (!problem.empty()) return LoadError{problem};
    return bundle;
}

Bundle::~Bundle() {
    if (handle_ != nullptr) dlclose(handle_);
}

Answer Bundle::handOver(const APIImportedFunctions& table) const {
    const auto arguments = [&table] {
        std::int64_t filled = 0;
        for (const APIHostFunction slot : table.slots)
            filled += slot != nullptr ? 1 : 0;
        return TraceArguments{{"filledSlots", filled}};
    };
    return callAddOn("SetImportedFuncAddrs", arguments, [&] { return setImported_(&table); });
}

Answer Bundle::checkEnvironment(const API_ServerApplicationInfo& server, API_AddOnInfo& info) const {
    const auto arguments = [&server] {
        return TraceArguments{{"application", std::int64_t{server.serverApplication}},
                              {"version", std::int64_t{server.mainVersion}}};
    };
    return callAddOn("CheckEnvironment", arguments, [&] {
        API_EnvirParams params{server, {}};
        const int type = functions_.checkEnvironment(&params);
        info = params.addOnInfo;
        return type;
    });
}

Answer Bundle::registerInterface() const {
    return callAddOn("RegisterInterface", none, [&] { return functions_.registerInterface(); });
}

Answer Bundle::initialize(APIClient client) const {
    return callAddOn("Initialize", none, [&] { return functions_.initialize(client); });
}

Answer Bundle::freeData() const {
    return callAddOn("FreeData", none, [&] { return functions_.freeData(); });
}

Answer Bundle::callHandler(APIMenuCommandProc handler, const API_MenuParams& params) {
    const auto arguments = [&params] {
        return TraceArguments{{"menu", params.menuItemRef.menuResID}, {"item", params.menuItemRef.itemIndex}};
    };
    return callAddOn("MenuHandler", arguments, [&] { return handler(&params); });
}

const void* Bundle::image() const {
    return platform::imageOf(getExported_);
}

}  // namespace host
