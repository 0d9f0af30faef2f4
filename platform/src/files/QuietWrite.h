#pragma once

#include <cstdint>

namespace platform {

/// Writes `count` bytes to `descriptor`, which is that of a regular file or not; `done` says how many it
/// took. errno value, 0 for success. A broken pipe and a file size limit are such errors too: the signals
/// that would end the process are kept off.
int writeQuietly(int descriptor, bool regular, const char* bytes, std::uint64_t count, std::uint64_t& done);

}  // namespace platform
