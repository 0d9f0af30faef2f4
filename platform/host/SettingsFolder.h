#pragma once

#include "platform/FileSystem.h"
#include "platform/host/Failures.h"

#include <optional>

/// The folder of settings, marker files and downloads, which add-ons know as special location 14
/// (IO::FileSystem).
namespace platform {

/// Creates the folder, and those above it, if it is missing; new ones are for their owner only. Nothing when
/// it is there, else the folder that cannot be one, and why.
std::optional<PathFailure> createSettingsFolder();
/// Uses `folder` from now on; no location brings the folder of the environment back.
void setSettingsFolder(const IO::Location& folder);

}  // namespace platform
