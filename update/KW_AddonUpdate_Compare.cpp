#include "update/KW_AddonUpdate_Internal.h"

#include <algorithm>

namespace {

bool startsWith(KW_Units line, KW_Units start) {
    return line.size() >= start.size() && std::ranges::equal(line.first(start.size()), start);
}

KW_Units majorVersion(KW_Units version) {
    return {version.begin(), std::ranges::find(version, u'.')};
}

}  // namespace

KW_AddonUpdate_Comparison KW_AddonUpdate_CompareVersions(const KW_String& ownLine, const KW_String& text) {
    std::vector<KW_Units> own;
    KW_AddonUpdate_TakeTokens(KW_UnitsOf(ownLine), own);
    const int kind = KW_AddonUpdate_KindOf(own);
    if (kind == KW_AddonUpdate_NoVersionLine) return KW_AddonUpdate_OwnLineInvalid;
    if (kind == KW_AddonUpdate_LibraryLine) return KW_AddonUpdate_UpToDate;

    const KW_String ownDate = KW_AddonUpdate_ArrangeDate(own[3]);
    std::vector<KW_Units> tokens;
    KW_Units rest = KW_UnitsOf(text);
    while (!rest.empty()) {
        const KW_Units line = KW_TakeLine(rest);
        // Most lines are about other products, which shows before they are split.
        if (!startsWith(line, own[0])) continue;
        KW_AddonUpdate_TakeTokens(line, tokens);
        if (KW_AddonUpdate_KindOf(tokens) == KW_AddonUpdate_AddonLine &&
            std::ranges::equal(tokens[0], own[0]) && std::ranges::equal(tokens[2], own[2]) &&
            std::ranges::equal(majorVersion(tokens[1]), majorVersion(own[1])) &&
            KW_AddonUpdate_ArrangeDate(tokens[3]) > ownDate) {
            return KW_AddonUpdate_UpdateAvailable;
        }
    }
    return KW_AddonUpdate_UpToDate;
}
