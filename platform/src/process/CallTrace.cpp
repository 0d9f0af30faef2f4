#include "platform/host/CallTrace.h"

namespace platform {

namespace {
CallObserver* sObserver = nullptr;
}

void setCallObserver(CallObserver* observer) {
    sObserver = observer;
}

CallObserver* callObserver() {
    return sObserver;
}

}  // namespace platform
