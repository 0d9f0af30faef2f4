#pragma once

#include "platform/StringServices.h"

namespace text {

long utf7DecodedLength(const char* bytes, long byteCount);
void utf7Decode(const char* bytes, long byteCount, char* units);
StringServices::Encoded utf7Encode(const char* units, long unitCount, char lossByte, char* target,
                                   long targetSize);

}  // namespace text
