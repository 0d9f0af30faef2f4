#include "update/KW_AddonUpdate_Internal.h"
#include "update/KW_VersionLine.h"

KW_AddonUpdate_Comparison KW_AddonUpdate_CompareVersions(KW_String const& ownLine, KW_String const& text) {
    KW_VersionLine const own{KW_UnitsOf(ownLine)};
    if (own.Kind() == KW_AddonUpdate_NoVersionLine) return KW_AddonUpdate_OwnLineInvalid;

    auto const applies = [&own](KW_VersionLine const& line) {
        return KW_UnitsEqual(line.Token(1), own.Token(1)) && line.Kind() == KW_AddonUpdate_AddonLine &&
               KW_UnitsEqual(line.Token(3), own.Token(3)) &&
               KW_UnitsEqual(line.MajorVersion(), own.MajorVersion());
    };
    KW_Units rest = KW_UnitsOf(text);
    while (!rest.empty()) {
        KW_VersionLine const line(KW_TakeLine(rest));
        if (applies(line) && line.Date() > own.Date()) return KW_AddonUpdate_UpdateAvailable;
    }
    return KW_AddonUpdate_UpToDate;
}
