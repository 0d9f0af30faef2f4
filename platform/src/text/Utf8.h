#pragma once

#include "platform/StringServices.h"

namespace text {

long utf8DecodedLength(const char* bytes, long byteCount);
void utf8Decode(const char* bytes, long byteCount, char* units);
StringServices::Encoded utf8Encode(const char* units, long unitCount, char lossByte, char* target,
                                   long targetSize);

}  // namespace text
