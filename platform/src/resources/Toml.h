#pragma once

/// The TOML reader, for one source file of the platform.
///
/// On some malformed files its own assertions fail. They stay on in every build, and end the parsing with a
/// ParserFailure instead of the process. Its functions are therefore not the ones that another image may
/// have.

namespace platform {

struct ParserFailure {};

[[noreturn]] inline void throwParserFailure() {
    throw ParserFailure();
}

}  // namespace platform

#undef NDEBUG
#define TOML_ASSERT(condition) ((condition) ? static_cast<void>(0) : platform::throwParserFailure())
#include <toml++/toml.h>
