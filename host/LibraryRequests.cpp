#include "host/LibraryRequests.h"

#include "host/ErrorCodes.h"
#include "host/Libraries.h"

namespace host {

namespace {

std::string pathText(const IO::Location& location) {
    GS::UniString path;
    return location.ToPath(&path) == kNoError ? GS::UniStringToUtf8(path) : std::string();
}

}  // namespace

GSErrCode LibraryRequests::answer(AddOn&, GSType code, void* par1, void* par2, void*) {
    if (par1 == nullptr) return kErrBadParameter;
    if (code == APIEnv_AddLibraryID) return libraries_.add(*static_cast<const IO::Location*>(par1));
    API_LibraryList list;
    for (const LoadedLibrary& library : libraries_.all())
        list.push_back({IO::Location::FromPosixPath(library.path)});
    *static_cast<API_LibraryList*>(par1) = std::move(list);
    if (par2 != nullptr) *static_cast<std::int32_t*>(par2) = libraries_.embedded();
    return kNoError;
}

platform::TraceArguments LibraryRequests::arguments(GSType code, const void* par1, const void*,
                                                    const void*) const {
    if (code != APIEnv_AddLibraryID || par1 == nullptr) return {};
    return {{"folder", pathText(*static_cast<const IO::Location*>(par1))}};
}

platform::TraceArguments LibraryRequests::outputs(GSType code, const void* par1, const void* par2,
                                                  const void*) const {
    if (code != APIEnv_GetLibrariesID) return {};
    const auto& list = *static_cast<const API_LibraryList*>(par1);
    platform::TraceArguments all{{"count", static_cast<std::int64_t>(list.size())}};
    if (par2 != nullptr) all.emplace_back("embedded", std::int64_t{*static_cast<const std::int32_t*>(par2)});
    return all;
}

}  // namespace host
