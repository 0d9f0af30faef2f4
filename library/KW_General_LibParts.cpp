// The two operations by which the suite's add-ons find a library part, whatever it takes.

#include "dialogs/KW_Dialog.h"
#include "foundation/KW_String.h"
#include "language/KW_Resource.h"
#include "library/KW_General.h"
#include "library/KW_LibPart.h"

namespace {

/// Whether the index is one of a part. If it is not, informs the user if requested.
bool foundOrAlert(long index, bool showAlert, const KW_String& message) {
    if (index < 0 && showAlert) {
        KW_Dialog::ShowMessage(
            message.length > 0 ? message : KW_Resource_GetFrameworkString(KW_FrameworkText_PartNotFound));
    }
    return index >= 0;
}

}  // namespace

bool KW_General::GetLPIdxFullLib(const KW_String& name, long& index, bool showAlert, const KW_String& message,
                                 API_LibTypeID type) {
    index = KW_LibPart::IndexFullLib(name, type);
    return foundOrAlert(index, showAlert, message);
}

bool KW_General::GetLPIdxFullLibNoCheckLibs(const KW_String& name, long& index, bool showAlert,
                                            const KW_String& message, API_LibTypeID type) {
    index = KW_LibPart::IndexFullLibNoCheckLibs(name, type);
    return foundOrAlert(index, showAlert, message);
}
