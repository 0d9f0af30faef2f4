#include "platform/host/SettingsFolder.h"

#include "platform/src/files/PosixPath.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace platform {

int createFolders(const std::string& path, unsigned int mode) {
    for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
        const std::string folder = path.substr(0, end);
        if (mkdir(folder.c_str(), mode) != 0 && errno != EEXIST) {
            // A folder above may exist without the right to create beside it.
            const int error = errno;
            struct stat status {};
            if (stat(folder.c_str(), &status) != 0) return error;
        }
        if (end == std::string::npos) return 0;
    }
}

}  // namespace platform

namespace IO {

namespace {

Location sSuiteSettingsFolder;  // no location: the environment says

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string homeFolder() {
    const std::string home = environment("HOME");
    if (!home.empty()) return home;
    const passwd* user = getpwuid(getuid());
    return user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "";
}

/// Empty without a home folder.
std::string settingsFolderOfEnvironment() {
    const std::string own = environment("TESSARO_DATA_DIR");
    if (!own.empty()) {
        std::error_code error;
        const std::filesystem::path path = std::filesystem::absolute(own, error);
        return error ? "" : path.string();
    }
    // A relative path in this variable is to be ignored, by the desktop's own rule.
    const std::string configuration = environment("XDG_CONFIG_HOME");
    if (configuration.starts_with('/')) return configuration + "/Tessaro";
    const std::string home = homeFolder();
    return home.empty() ? "" : home + "/.config/Tessaro";
}

}  // namespace

GSErrCode FileSystem::GetSpecialLocation(SpecLocId id, Location* location) {
    if (id != SuiteSettingsFolder) return kErrNotFound;
    if (!sSuiteSettingsFolder.IsEmpty()) {
        *location = sSuiteSettingsFolder;
        return kNoError;
    }
    const std::string path = settingsFolderOfEnvironment();
    if (path.empty()) return kErrNotFound;
    *location = Location::FromPosixPath(path);
    return kNoError;
}

}  // namespace IO

namespace platform {

std::optional<PathFailure> createSettingsFolder() {
    IO::Location folder;
    GS::FixedCapacityString<256> path;
    if (IO::FileSystem::GetSpecialLocation(IO::FileSystem::SuiteSettingsFolder, &folder) != kNoError ||
        folder.ToUTF8POSIXPath(&path) != kNoError) {
        return PathFailure{"", "there is no home folder"};
    }
    int error = createFolders(path.ToCStr(), 0700);
    struct stat status {};
    if (error == 0 && stat(path.ToCStr(), &status) != 0) error = errno;
    if (error == 0 && !S_ISDIR(status.st_mode)) error = ENOTDIR;
    if (error == 0) return std::nullopt;
    return PathFailure{path.ToCStr(), std::strerror(error)};
}

void setSettingsFolder(const IO::Location& folder) {
    IO::sSuiteSettingsFolder = folder;
}

}  // namespace platform
