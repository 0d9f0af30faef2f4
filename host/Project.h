#pragma once

#include <string>

namespace host {

/// The project that is open in the host. This host keeps no project data: a project is the location of its
/// file.
class Project {
public:
    bool untitled() const { return path_.empty(); }
    /// Absolute POSIX path of the project file, UTF-8; empty for a project that has not been saved yet.
    const std::string& path() const { return path_; }

    /// A new project, without a file.
    void startNew() { path_.clear(); }
    /// The project in the file at `path`, from now on; a relative path counts from the working directory.
    /// False, with nothing changed, when the path cannot be a file's.
    bool setFile(const std::string& path);

private:
    std::string path_;
};

}  // namespace host
