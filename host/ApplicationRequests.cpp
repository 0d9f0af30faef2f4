#include "host/ApplicationRequests.h"

#include "host/ErrorCodes.h"

namespace host {

namespace {

constexpr std::uint32_t kCadHost = 1;
constexpr std::uint16_t kMainVersion = 22;
constexpr std::uint16_t kReleaseVersion = 0;
constexpr std::uint32_t kBuildNumber = 3004;

}  // namespace

API_ServerApplicationInfo applicationInfo() {
    return {kCadHost, kMainVersion, kReleaseVersion, kBuildNumber};
}

GSErrCode ApplicationRequests::answer(AddOn&, GSType, void* par1, void*, void*) {
    if (par1 == nullptr) return kErrBadParameter;
    *static_cast<API_ServerApplicationInfo*>(par1) = applicationInfo();
    return kNoError;
}

platform::TraceArguments ApplicationRequests::outputs(GSType, const void* par1, const void*,
                                                      const void*) const {
    const auto& info = *static_cast<const API_ServerApplicationInfo*>(par1);
    return {{"application", std::int64_t{info.serverApplication}},
            {"version", std::int64_t{info.mainVersion}},
            {"release", std::int64_t{info.releaseVersion}},
            {"build", std::int64_t{info.buildNumber}}};
}

}  // namespace host
