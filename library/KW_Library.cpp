#include "library/KW_Library.h"

#include "files/KW_Location.h"
#include "foundation/KW_Units.h"
#include "platform/FileDialog.h"
#include "platform/LibraryPart.h"
#include "settings/AddonIdentity.h"

const char* const kFullLibraryStr = "QRN_Library";
const char* const kDocumentationStr = "Documentation";
const char* const kz_DATAStr = "z_DATA";

namespace {

bool addToHost(IO::Location folder) {
    return ACAPI_Environment(APIEnv_AddLibraryID, &folder, nullptr, nullptr) == kNoError;
}

bool isSuiteLibrary(const KW_Location& library, const KW_Location& suiteFolder) {
    if (KW_String::CompareIgnoreCase(library, 0, suiteFolder, 0, 0) == 0) return true;
    const KW_String name(kFullLibraryStr, KW_String::Encoding_System);
    return KW_String::CompareIgnoreCase(library.LastName(), 0, name, 0, 0) == 0;
}

}  // namespace

bool KW_Library::Libraries(KW_List<KW_Location>& libraries) {
    libraries.Reset();
    API_LibraryList loaded;
    std::int32_t embedded = -1;
    if (ACAPI_Environment(APIEnv_GetLibrariesID, &loaded, &embedded, nullptr) != kNoError) return false;
    std::int32_t position = 0;
    for (const API_LibraryInfo& library : loaded) {
        KW_Location location;
        location.Set(library.location);
        libraries.AddData(location, position++ == embedded ? 0 : -1);
    }
    return true;
}

bool KW_Library::Load(bool checkLoaded) {
    KW_Location folder = KW_Location::AddOnLocation(true);
    folder += "/";
    folder += kFullLibraryStr;
    KW_List<KW_Location> loaded;
    if (checkLoaded && Libraries(loaded)) {
        for (long i = 0; i < loaded.count; ++i)
            if (isSuiteLibrary(loaded[i], folder)) return true;
    }
    return !folder.IsFolder() || addToHost(folder);
}

bool KW_Library::Ask(const KW_String& title, bool prefixAddonName) {
    KW_String fullTitle;
    if (prefixAddonName) {
        fullTitle = sett_ADDON_NAME;
        fullTitle += ": ";
    }
    fullTitle += title;
    DG::FolderDialog chooser;
    if (fullTitle.length > 0) chooser.SetTitle(KW_UniStringOf(fullTitle));
    return chooser.Invoke() && addToHost(chooser.GetFolder());
}
