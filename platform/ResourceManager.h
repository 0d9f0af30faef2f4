#pragma once

#include <cstdint>

/// Handle of an open resource file (the resources of one add-on bundle); -1 means none.
using RSResModule = std::int64_t;
constexpr RSResModule kNoResModule = -1;

/// How RSGetIndString_ParamAdapter hands the text over.
enum RSStringType : int {
    RSStringLocalised = 0,  ///< UTF-16 code units, buffer of kRSStringBufferUnits units
    RSStringFixed = 1,      ///< 8-bit text in the system encoding (Mac OS Roman), buffer of as many bytes
};

/// Size of the buffer that a caller of RSGetIndString_ParamAdapter provides, terminator included.
constexpr int kRSStringBufferUnits = 1000;

/// Opens the resources of the bundle folder at `bundlePath` (POSIX path, UTF-8, zero-terminated). Nothing
/// is read yet: index, texts, layouts and icons are read at first use, and a file that is missing or broken
/// makes the lookups in it fail (platform/host/Resources.h reports it to the host). Returns -1 when the
/// folder holds no resources. A folder that is open already gets another handle to the same resources, which
/// live until the last handle is closed.
RSResModule RSOpenResourceFile(const char* bundlePath);

/// Closes the module; every later lookup in it fails. Returns 0, or -1 for a handle that is not open.
int RSCloseResourceFile(RSResModule module);

/// Drops the icons that were loaded for this module. Returns their number; 0 for a handle that is not open.
int RSRemoveModuleImageCache(RSResModule module);

/// Copies string `index` (from 1) of string resource `resID` with its terminator into `buffer`
/// (kRSStringBufferUnits units or bytes, by `type`). Returns false, the buffer untouched, when the module is
/// not open, the string does not exist, or it does not fit.
bool RSGetIndString_ParamAdapter(RSStringType type, void* buffer, short resID, short index,
                                 RSResModule module);
