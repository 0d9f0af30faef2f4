#pragma once

#include "platform/FileSystem.h"
#include "platform/host/SettingsFolder.h"
#include "tests/support/TemporaryFolder.h"

/// An empty folder that stands for the host's data folder (settings, marker files, downloads) while it lives.
class DataFolder : public TemporaryFolder {
public:
    DataFolder() { platform::setSettingsFolder(IO::Location::FromPosixPath(path())); }
    ~DataFolder() { platform::setSettingsFolder(IO::Location()); }
};
