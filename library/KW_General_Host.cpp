// What the host reports about the open project and its rendering engines.

#include "files/KW_Location.h"
#include "foundation/KW_String.h"
#include "library/KW_General.h"
#include "platform/HostInterface.h"
#include "platform/ProjectInfo.h"
#include "platform/Rendering.h"

namespace {

constexpr unsigned int kMaxTitleUnits = 255;

bool CurrentRenderingEngine(MDID& engine) {
    engine = MDID{};
    return ACAPI_Environment(APIEnv_GetRenderingEngineID, &engine, nullptr, nullptr) == kNoError;
}

bool MenuNameContains(const MDID& engine, const KW_String& partOfName) {
    GS::UniString menuName;
    EXPGetRendMenuStr(&engine, &menuName);
    return KW_String(menuName.ToUStr(), menuName.GetLength()).IndexOfIgnoreCase(partOfName, 0) >= 0;
}

}  // namespace

bool KW_General::ArchiCADProjectTitle(KW_String& title, bool* untitled) {
    title = "";
    if (untitled != nullptr) *untitled = true;

    API_ProjectInfo project{};
    if (ACAPI_Environment(APIEnv_ProjectID, &project, nullptr, nullptr) != kNoError) return false;
    if (project.untitled) return true;

    const KW_Location file(project.location);
    if (file.data != nullptr) title = file.LastName().Substring(0, kMaxTitleUnits);
    if (untitled != nullptr) *untitled = false;
    return true;
}

short KW_General::CheckCurrentRenderingEngine(const KW_String& partOfName) {
    MDID engine;
    if (!CurrentRenderingEngine(engine)) return -1;
    return MenuNameContains(engine, partOfName) ? 1 : 0;
}

bool KW_General::SetRenderingEngine(const KW_String& partOfName) {
    const short count = EXPGetRendCount();
    MDID wanted{};
    int index = 1;  // wider than the count, which may be a short's largest value
    while (index <= count && (EXPGetRendMDID(static_cast<short>(index), &wanted) != kNoError ||
                              !MenuNameContains(wanted, partOfName)))
        ++index;
    if (index > count) return false;

    MDID current;
    if (!CurrentRenderingEngine(current)) return false;
    if (current == wanted) return true;
    return ACAPI_Environment(APIEnv_SetRenderingEngineID, &wanted, nullptr, nullptr) == kNoError;
}
