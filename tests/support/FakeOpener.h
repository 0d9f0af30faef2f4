#pragma once

#include "platform/Launching.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace support {

/// An opener program for tests: writes down the arguments that it was started with. In force from its
/// construction to its end, in a folder of its own.
class FakeOpener {
public:
    /// `script` is what the program does besides, in shell language.
    explicit FakeOpener(const std::string& script = "") {
        char name[] = "/tmp/tessaro-opener-XXXXXX";
        folder_ = mkdtemp(name);
        const std::filesystem::path program = folder_ / "opener";
        std::ofstream(program) << "#!/bin/sh\n{ printf '%s\\0' \"$#\" \"$@\"; } >> '" << log().string()
                               << "'\n"
                               << script << "\n";
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        platform::setOpenerProgram(program.string());
    }
    ~FakeOpener() {
        platform::setOpenerProgram("");
        std::filesystem::remove_all(folder_);
    }
    FakeOpener(const FakeOpener&) = delete;
    FakeOpener& operator=(const FakeOpener&) = delete;

    /// For each start the number of arguments, then the arguments themselves.
    std::vector<std::string> arguments() const {
        std::ifstream file(log());
        std::vector<std::string> result;
        for (std::string argument; std::getline(file, argument, '\0');)
            result.push_back(argument);
        return result;
    }
    const std::filesystem::path& folder() const { return folder_; }

private:
    std::filesystem::path log() const { return folder_ / "arguments"; }

    std::filesystem::path folder_;
};

}  // namespace support
