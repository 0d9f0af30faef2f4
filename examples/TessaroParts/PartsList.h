#pragma once

#include "foundation/KW_List.h"
#include "foundation/KW_String.h"
#include "platform/LibraryPart.h"

/// One entry of a parts list: so many pieces of a library part.
struct PartsEntry {
    KW_String name;
    API_LibTypeID type;
    long pieces;
};

/// Reads a parts list: entries of a type ("object", "door", "window", "lamp"), a number of pieces and a name
/// in double quotes, separated by white space; text between /* and */ is skipped. Appends to
/// `entries`. Returns 0, or the number (from 1) of the entry that is not valid.
long readPartsList(const KW_String& text, KW_List<PartsEntry>& entries);
