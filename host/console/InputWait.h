#pragma once

namespace host {

/// Waits until `descriptor` can be read or the main run loop has something to do, and dispatches the loop in
/// the second case. Returns whether the descriptor can be read (or has ended).
bool waitForInput(int descriptor);

}  // namespace host
