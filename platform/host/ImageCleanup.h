#pragma once

#include <functional>

/// Ending what would call into an add-on before its image goes away. A service that keeps functions of
/// add-ons (dialog callbacks, stream clients, timers) registers here how it drops those of one image; the
/// host calls endCallsIntoImage before it unloads.
namespace platform {

/// Start of the loaded image (program or shared object) that contains the function or object at `address`;
/// null when it is in none.
const void* imageOf(const void* address);
template <typename Result, typename... Arguments>
const void* imageOf(Result (*function)(Arguments...)) {
    return imageOf(reinterpret_cast<const void*>(function));
}

/// `cleanup` is called with the start of an image that is about to go away. Registered once, for good.
void addImageCleanup(std::function<void(const void* image)> cleanup);

/// Calls every registered cleanup, the last registered first, for the image that starts at `image`.
void endCallsIntoImage(const void* image);

}  // namespace platform
