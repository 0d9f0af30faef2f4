#pragma once

#include "platform/HostError.h"
#include "platform/UniString.h"

#include <string>
#include <string_view>

namespace platform {

/// The file system's bytes as text: UTF-8, and U+DC80 to U+DCFF for each byte that is not part of valid
/// UTF-8.
GS::UniString textOfPosixBytes(std::string_view bytes);

/// The way back. False, `bytes` undefined, when the text holds a zero unit or a surrogate that represents
/// nothing.
bool posixBytesOfText(const GS::UniString& text, std::string& bytes);

/// Creates the folder `path` and those above it that are missing. errno value, 0 for success; what stands
/// there already need not be a folder.
int createFolders(const std::string& path, unsigned int mode);

/// The host's error code of an errno value; 0 for 0.
GSErrCode errorOfErrno(int number);

}  // namespace platform
