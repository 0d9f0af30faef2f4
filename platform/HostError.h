#pragma once

#include <cstdint>

/// A host function answers 0 for success, else an error code; all codes but a few old ones have the highest
/// bit set.
using GSErrCode = std::int32_t;

constexpr GSErrCode kNoError = 0;

constexpr GSErrCode hostError(std::uint32_t code) {
    return static_cast<GSErrCode>(code);
}
