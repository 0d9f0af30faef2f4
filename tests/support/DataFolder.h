#pragma once

#include "platform/FileSystem.h"
#include "tests/support/TemporaryFolder.h"

/// An empty folder that stands for the host's data folder (settings, marker files, downloads) while it lives.
class DataFolder : public TemporaryFolder {
public:
    DataFolder() {
        IO::FileSystem::SetSpecialLocation(IO::FileSystem::SpecLocId{14},
                                           IO::Location::FromPosixPath(path()));
    }
    ~DataFolder() { IO::FileSystem::SetSpecialLocation(IO::FileSystem::SpecLocId{14}, IO::Location()); }
};
