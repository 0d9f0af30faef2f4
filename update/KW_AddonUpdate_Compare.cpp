#include "update/KW_AddonUpdate_Internal.h"
#include "update/KW_VersionLine.h"

namespace {

bool startsWith(KW_Units line, KW_Units start) {
    return line.size() >= start.size() && KW_UnitsEqual(line.first(start.size()), start);
}

}  // namespace

KW_AddonUpdate_Comparison KW_AddonUpdate_CompareVersions(const KW_String& ownLine, const KW_String& text) {
    const KW_VersionLine own{KW_UnitsOf(ownLine)};
    if (own.Kind() == KW_AddonUpdate_NoVersionLine) return KW_AddonUpdate_OwnLineInvalid;

    const auto isNewer = [&own](const KW_VersionLine& line) {
        return line.Kind() == KW_AddonUpdate_AddonLine && KW_UnitsEqual(line.Token(1), own.Token(1)) &&
               KW_UnitsEqual(line.Token(3), own.Token(3)) &&
               KW_UnitsEqual(line.MajorVersion(), own.MajorVersion()) && line.Date() > own.Date();
    };
    KW_Units rest = KW_UnitsOf(text);
    while (!rest.empty()) {
        const KW_Units line = KW_TakeLine(rest);
        // Most lines tell of other products, which shows before they are taken apart.
        if (startsWith(line, own.Token(1)) && isNewer(KW_VersionLine(line)))
            return KW_AddonUpdate_UpdateAvailable;
    }
    return KW_AddonUpdate_UpToDate;
}
