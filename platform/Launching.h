#pragma once

#include <cstdint>

/// Opening documents, folders and web pages in the programs that the desktop associates with them. All calls
/// on the main thread.

// ---- Documents and folders ------------------------------------------------------------------------------

/// Opens the document or folder at `path` (POSIX path in bytes, zero-terminated) and returns when the
/// desktop's opener has finished. The path reaches the opener as one argument, whatever it holds. Returns 0
/// when the opener was started; whether it found a program for the document is not reported. An opener that
/// does not finish within some seconds continues on its own.
int OpenDocument(const char* path);

// ---- Web pages: the Internet Config service ---------------------------------------------------------------

/// One opened service; 0 means none.
using ICInstance = std::uint32_t;

/// Errors of the service.
constexpr int kICBadArgument = 1;  ///< an instance that is not open, or a selection outside the data
constexpr int kICNoAddress = 2;    ///< the text is not a web address with the scheme http or https
constexpr int kICNoOpener = 3;     ///< the desktop's opener could not be started

/// Opens the service for the program with the four-character `signature`. Returns 0, or kICBadArgument
/// when `instance` is null.
int ICStart(ICInstance* instance, std::uint32_t signature);
/// Opens the web address in data[*selectionStart, *selectionEnd), 8-bit text in the system encoding. `hint`,
/// a length-prefixed text, is not read here. Only http and https addresses are handed on. Returns 0 when the
/// desktop's opener was started, else one of the errors above.
int ICLaunchURL(ICInstance instance, const unsigned char* hint, const char* data, long length,
                long* selectionStart, long* selectionEnd);
/// Closes the service. Returns 0, or kICBadArgument when it is not open.
int ICStop(ICInstance instance);
