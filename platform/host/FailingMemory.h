#pragma once

namespace platform {

/// For tests: the next `successes` requests for memory blocks succeed and every later one fails, until it is
/// called again; a negative number ends the failing. Until then blocks get no spare room, so that each
/// resizing is a request: call it with a large number before the block in question is allocated.
void failMemoryAfter(long successes);

}  // namespace platform
