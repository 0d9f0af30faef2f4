#pragma once

#include "settings/KW_SettingsFile.h"

#include <string>

/// What stands on the disk for these settings, and the other way round.
inline std::string exchanged(std::string bytes) {
    KW_SettingsFile_ExchangeHalves(bytes.data(), bytes.size());
    return bytes;
}
