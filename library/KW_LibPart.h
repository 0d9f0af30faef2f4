#pragma once

#include "platform/LibraryPart.h"

class KW_Location;
class KW_String;

/// Looks up single library parts of the host. Host main thread only.
///
/// A part whose definition is missing counts as not found everywhere. A name is the part's own or that of its
/// file: what follows the last "." is left out. The record that a successful lookup fills holds a location
/// that the caller has to release (delete API_LibPart::location); after a failed one there is none to
/// release.
class KW_LibPart {
public:
    /// Searches for the very name, dots and all. Returns 0 when found, kAPIErrMissingDefinition when the
    /// definition is missing, else the host's error; kAPIErrNoSuchPart without asking the host for a name
    /// that is longer than a part's name can be.
    static GSErrCode Search(const KW_String& name, API_LibTypeID type, API_LibPart& part);

    /// By name, with or without an extension.
    static bool LibPart(const KW_String& name, API_LibTypeID type, API_LibPart& part);
    /// By the name of the file at this location, wherever the part's own file is.
    static bool LibPart(const KW_Location& file, API_LibTypeID type, API_LibPart& part);
    /// By index.
    static bool LibPart(const long& index, API_LibPart& part);

    /// The part's index, -1 when not found.
    static long Index(const KW_String& name, API_LibTypeID type);

    /// The location of the part that the host holds. `location` is set only when found.
    static bool Location(const KW_Location& file, API_LibTypeID type, KW_Location& location);
    static bool Location(long index, KW_Location& location);

    /// The part's index, -1 when not found. When the part is missing, loads the suite's library folder unless
    /// one of its name is loaded already; when it is still missing, asks the user for a library folder.
    static long IndexFullLib(const KW_String& name, API_LibTypeID type);
    /// The same, but loads the suite's library folder without looking at the loaded libraries first.
    static long IndexFullLibNoCheckLibs(const KW_String& name, API_LibTypeID type);
};
