#pragma once

#include <string>

/// Services of the host's runtime to the image hooks of a bundle.

/// A loaded bundle: the folder that holds a module's shared object and its resources.
struct GSCFXBundle;
using GSCFXBundleRef = GSCFXBundle*;

/// The bundle of the image that contains `address` (any function or object of that image). Null when the
/// image is not known. Release it with GSCFXBundleRelease.
GSCFXBundleRef GSCFXBundleCreateFromMachHeader(const void* address);
/// Path of the bundle folder: absolute POSIX path in the bytes that it has, UTF-8 as a rule; without trailing
/// "/".
const std::string& GSCFXBundlePath(GSCFXBundleRef bundle);
void GSCFXBundleRelease(GSCFXBundleRef bundle);

using GSInitImageProc = int (*)();
/// Whether the image's initialisation has to wait; the host then calls `init` later. Here it never has to.
bool GSRoot_DelayInitImage(GSInitImageProc init);

/// Diagnostic print of the host, printf-style, to the standard error stream unless a program takes it
/// (platform/host/Diagnostics.h).
void DBPrintf(const char* format, ...) __attribute__((format(printf, 1, 2)));
