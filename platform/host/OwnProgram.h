#pragma once

#include <filesystem>

namespace platform {

/// The file of the program that runs, with every link followed; empty when the system does not tell.
inline std::filesystem::path ownProgram() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error);
}

}  // namespace platform
