#include "host/Project.h"

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

}  // namespace host
