#pragma once

#include <sys/resource.h>

/// Less of a resource of the process while this lives, as RLIMIT_FSIZE for a disk that is full.
class ResourceLimit {
public:
    ResourceLimit(int resource, rlim_t most) : resource_(resource) {
        getrlimit(resource_, &before_);
        const rlimit limit{most, before_.rlim_max};
        setrlimit(resource_, &limit);
    }
    ~ResourceLimit() { setrlimit(resource_, &before_); }
    ResourceLimit(const ResourceLimit&) = delete;
    ResourceLimit& operator=(const ResourceLimit&) = delete;

private:
    int resource_;
    rlimit before_{};
};
