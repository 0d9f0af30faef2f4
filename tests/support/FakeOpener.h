#pragma once

#include "platform/host/LaunchHandling.h"
#include "tests/support/TemporaryFolder.h"

#include <sstream>
#include <vector>

namespace support {

/// An opener program for tests: writes down the arguments that it was started with. In force from its
/// construction to its end.
class FakeOpener {
public:
    /// `script` is what the program does besides, in shell language; $folder is a folder for its use.
    explicit FakeOpener(const std::string& script = "") {
        folder_.write("opener", "#!/bin/sh\nfolder='" + folder_.path() +
                                    "'\n{ printf '%s\\0' \"$#\" \"$@\"; } >> \"$folder/arguments\"\n" +
                                    script + "\n");
        std::filesystem::permissions(folder_.path("opener"), std::filesystem::perms::owner_all);
        platform::setOpenerProgram(folder_.path("opener"));
    }
    ~FakeOpener() { platform::setOpenerProgram(""); }
    FakeOpener(const FakeOpener&) = delete;
    FakeOpener& operator=(const FakeOpener&) = delete;

    /// For each start the number of arguments, then the arguments themselves.
    std::vector<std::string> arguments() const {
        std::istringstream log(folder_.read("arguments"));
        std::vector<std::string> result;
        for (std::string argument; std::getline(log, argument, '\0');)
            result.push_back(argument);
        return result;
    }
    const TemporaryFolder& folder() const { return folder_; }

private:
    TemporaryFolder folder_;
};

}  // namespace support
