#include "library/KW_LibPart.h"

#include "files/KW_Location.h"
#include "foundation/KW_String.h"
#include "language/KW_Resource.h"
#include "library/KW_Library.h"

#include <algorithm>
#include <limits>

namespace {

void releaseLocation(API_LibPart& part) {
    delete part.location;
    part.location = nullptr;
}

/// What the host found, or kAPIErrMissingDefinition with nothing left to release.
GSErrCode withDefinition(API_LibPart& part) {
    if (!part.missingDef) return kNoError;
    releaseLocation(part);
    return kAPIErrMissingDefinition;
}

/// False when the name, up to its terminator, does not fit into the record.
bool setName(API_LibPart& part, const KW_String& name) {
    if (name.data == nullptr) return true;
    const unsigned short* const end = std::find(name.data, name.data + name.length, 0);
    if (static_cast<std::size_t>(end - name.data) >= kAPIPartNameUnits) return false;
    std::copy(static_cast<const unsigned short*>(name.data), end, part.name);
    return true;
}

void takeLocation(API_LibPart& part, KW_Location& location) {
    location.Set(part.location != nullptr ? *part.location : IO::Location());
    releaseLocation(part);
}

long indexWithLibrary(const KW_String& name, API_LibTypeID type, bool checkLoaded) {
    long index = KW_LibPart::Index(name, type);
    if (index >= 0) return index;
    KW_Library::Load(checkLoaded);
    index = KW_LibPart::Index(name, type);
    if (index >= 0) return index;
    if (!KW_Library::Ask(KW_Resource_GetFrameworkString(KW_FrameworkText_AskForLibrary), true)) return -1;
    return KW_LibPart::Index(name, type);
}

}  // namespace

GSErrCode KW_LibPart::Search(const KW_String& name, API_LibTypeID type, API_LibPart& part) {
    part = API_LibPart{};
    part.typeID = type;
    if (!setName(part, name)) return kAPIErrNoSuchPart;
    const GSErrCode error = ACAPI_LibPart_Search(&part, false, false);
    return error != kNoError ? error : withDefinition(part);
}

bool KW_LibPart::LibPart(const KW_String& name, API_LibTypeID type, API_LibPart& part) {
    const int dot = name.LastIndexOf('.');
    if (dot < 0) return Search(name, type, part) == kNoError;
    return Search(name.Substring(0, static_cast<unsigned int>(dot)), type, part) == kNoError;
}

bool KW_LibPart::LibPart(const KW_Location& file, API_LibTypeID type, API_LibPart& part) {
    const int dot = file.LastIndexOf('.');
    const long start = file.LastIndexOf('/') + 1L;
    const long end = dot >= 0 ? dot : static_cast<long>(file.length);
    const KW_String name =
        start < end ? file.Substring(static_cast<unsigned int>(start), static_cast<unsigned int>(end - start))
                    : KW_String("", KW_String::Encoding_System);
    return Search(name, type, part) == kNoError;
}

bool KW_LibPart::LibPart(const long& index, API_LibPart& part) {
    const long wanted = index;
    part = API_LibPart{};
    using Limits = std::numeric_limits<std::int32_t>;
    if (wanted < Limits::min() || wanted > Limits::max()) return false;
    part.index = static_cast<std::int32_t>(wanted);
    return ACAPI_LibPart_Get(&part) == kNoError && withDefinition(part) == kNoError;
}

long KW_LibPart::Index(const KW_String& name, API_LibTypeID type) {
    API_LibPart part;
    if (!LibPart(name, type, part)) return -1;
    releaseLocation(part);
    return part.index;
}

bool KW_LibPart::Location(const KW_Location& file, API_LibTypeID type, KW_Location& location) {
    API_LibPart part;
    if (!LibPart(file, type, part)) return false;
    takeLocation(part, location);
    return true;
}

bool KW_LibPart::Location(long index, KW_Location& location) {
    API_LibPart part;
    if (!LibPart(index, part)) return false;
    takeLocation(part, location);
    return true;
}

long KW_LibPart::IndexFullLib(const KW_String& name, API_LibTypeID type) {
    return indexWithLibrary(name, type, true);
}

long KW_LibPart::IndexFullLibNoCheckLibs(const KW_String& name, API_LibTypeID type) {
    return indexWithLibrary(name, type, false);
}
