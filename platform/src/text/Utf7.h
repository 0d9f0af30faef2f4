#pragma once

#include "platform/StringServices.h"

namespace text {

/// See StringServices for what these promise.
long utf7Decode(const char* bytes, long byteCount, char* units);
StringServices::Encoded utf7Encode(const char* units, long unitCount, char lossByte, char* target,
                                   long targetSize);

}  // namespace text
