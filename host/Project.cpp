#include "host/Project.h"

#include "host/ErrorCodes.h"
#include "platform/ProjectInfo.h"

#include <filesystem>
#include <system_error>

namespace host {

bool Project::setFile(const std::string& path) {
    if (path.empty() || path.back() == '/') return false;
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    if (error) return false;
    path_ = absolute.string();
    return true;
}

GSErrCode ProjectRequests::answer(AddOn&, GSType, void* par1, void*, void*) {
    if (par1 == nullptr) return kErrBadParameter;
    auto& info = *static_cast<API_ProjectInfo*>(par1);
    info.untitled = project_.untitled();
    info.location = IO::Location::FromPosixPath(project_.path());
    return kNoError;
}

platform::TraceArguments ProjectRequests::outputs(GSType, const void*, const void*, const void*) const {
    return {{"untitled", project_.untitled()}, {"file", project_.path()}};
}

}  // namespace host
