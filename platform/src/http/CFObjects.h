#pragma once

#include "platform/CFBase.h"
#include "platform/CFURL.h"

#include <optional>
#include <string>

struct CFString {
    std::string utf8;  // always valid
};

/// What a client's context hands to its callback; nothing when it asks for more than is offered.
template <typename Context>
std::optional<void*> infoOf(const Context* context) {
    if (context == nullptr) return nullptr;
    const bool plain = context->version == 0 && context->retain == nullptr && context->release == nullptr &&
                       context->copyDescription == nullptr;
    return plain ? std::optional<void*>(context->info) : std::nullopt;
}

struct CFURL {
    std::string text;  // only characters that a URL may contain
};
