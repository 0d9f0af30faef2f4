#pragma once

#include "foundation/KW_List.h"

class KW_Location;
class KW_String;

/// Name of the folder beside the add-on that holds the suite's object library.
extern const char* const kFullLibraryStr;
/// Names of two further folders of the suite.
extern const char* const kDocumentationStr;
extern const char* const kz_DATAStr;

/// The libraries that the host has loaded. Host main thread only.
class KW_Library {
public:
    /// Fills the list anew with the locations of the loaded libraries, the project's embedded library first,
    /// the others in the host's order. False, the list empty, when the host does not answer.
    static bool Libraries(KW_List<KW_Location>& libraries);

    /// Loads the suite's library folder beside the add-on. With `checkLoaded` nothing is added when that
    /// folder, or a library of its name from anywhere, is loaded already (letter case does not count). False
    /// only when the host refuses the folder: having nothing to load is no failure.
    static bool Load(bool checkLoaded);

    /// Asks the user for a folder and adds it to the libraries. The chooser's title is `title`, with
    /// `prefixAddonName` after the add-on's name and ": ". False when the user cancels or the host refuses.
    static bool Ask(const KW_String& title, bool prefixAddonName);
};
