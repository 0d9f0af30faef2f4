// The entry points that the bridge calls, for a test program that links the bridge and no add-on.

#include "addon/EntryPoints.h"

extern "C" {

int CheckEnvironment(API_EnvirParams*) {
    return kAPIAddonNormal;
}

GSErrCode RegisterInterface() {
    return kNoError;
}

GSErrCode Initialize() {
    return kNoError;
}

GSErrCode FreeData() {
    return kNoError;
}
}
