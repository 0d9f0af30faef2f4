#pragma once

#include "host/RequestFamily.h"

#include <string>

namespace host {

/// The project that is open in the host. This host keeps no project data: a project is where its file lies.
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

/// Tells add-ons of the open project.
class ProjectRequests : public RequestFamily {
public:
    /// The project must outlive this.
    explicit ProjectRequests(const Project& project) : project_(project) {}

    std::vector<GSType> codes() const override { return {APIEnv_ProjectID}; }
    GSErrCode answer(AddOn& addOn, GSType code, void* par1, void* par2, void* par3) override;
    platform::TraceArguments outputs(GSType code, const void* par1, const void* par2,
                                     const void* par3) const override;

private:
    const Project& project_;
};

}  // namespace host
