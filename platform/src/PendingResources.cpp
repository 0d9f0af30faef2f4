#include "platform/Resources.h"

namespace platform {

__attribute__((weak)) const DialogResource* findDialogResource(RSResModule, short) { return nullptr; }
__attribute__((weak)) std::string dialogItemText(RSResModule, short, short) { return {}; }

}  // namespace platform
