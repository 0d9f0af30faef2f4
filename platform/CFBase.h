#pragma once

#include <cstdint>

/// The operating system's strings and common types, as far as the HTTP download uses them. Main thread only.
///
/// Ownership: what an operation with Create in its name gives belongs to the caller, who ends it with
/// CFRelease. Operations that create accept null wherever another of them may have failed, and then fail
/// themselves.

using CFIndex = std::int64_t;
using CFOptionFlags = std::uint64_t;
using CFStringEncoding = std::uint32_t;

/// Memory always comes from the one default allocator.
struct CFAllocator;
using CFAllocatorRef = const CFAllocator*;
constexpr CFAllocatorRef kCFAllocatorDefault = nullptr;

struct CFBoolean;
using CFBooleanRef = const CFBoolean*;
extern const CFBooleanRef kCFBooleanTrue;

/// An immutable string of Unicode characters.
struct CFString;
using CFStringRef = const CFString*;

/// The application's 8-bit text encoding: Mac OS Roman.
CFStringEncoding CFStringGetSystemEncoding();

/// The string that the bytes up to their terminator represent. Null when `bytes` is null or malformed in the
/// encoding.
CFStringRef CFStringCreateWithCString(CFAllocatorRef allocator, const char* bytes, CFStringEncoding encoding);

/// Null is ignored.
void CFRelease(CFStringRef string);
