#pragma once

#include <cstdint>

namespace platform {

/// Writes `count` bytes to `descriptor`; `done` says how many it took. errno value, 0 for success. A broken
/// pipe and a file size limit are such errors too: the signals that would end the process are kept off.
int writeQuietly(int descriptor, const char* bytes, std::uint64_t count, std::uint64_t& done);

}  // namespace platform
