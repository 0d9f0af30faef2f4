#pragma once

#include "platform/CFBase.h"
#include "platform/CFURL.h"

#include <string>

struct CFString {
    std::string utf8;  // always valid
};

struct CFURL {
    std::string text;  // only characters that may stand in a URL
};
