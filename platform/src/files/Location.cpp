#include "platform/FileSystem.h"
#include "platform/src/files/PosixPath.h"

#include <algorithm>
#include <vector>

namespace IO {

namespace {

constexpr unsigned short kSlash = '/';

GS::UniString joined(const GS::UniString& folder, const GS::UniString& name) {
    const std::size_t folderLength = folder.GetLength();
    const std::size_t nameLength = name.GetLength();
    const bool slash = folderLength > 0 && folder.ToUStr()[folderLength - 1] != kSlash;
    const std::size_t count = folderLength + (slash ? 1 : 0) + nameLength;

    unsigned short small[512];
    std::vector<unsigned short> large;
    unsigned short* units = small;
    if (count > std::size(small)) {
        large.resize(count);
        units = large.data();
    }
    unsigned short* end = std::copy_n(folder.ToUStr(), folderLength, units);
    if (slash) *end++ = kSlash;
    std::copy_n(name.ToUStr(), nameLength, end);
    return GS::UniString(units, static_cast<unsigned int>(count));
}

}  // namespace

Location::Location(const Location& folder, const Name& name)
    : path_(joined(folder.path_, name.ToUniString())) {}

Location Location::FromPosixPath(std::string_view bytes) {
    return Location(platform::textOfPosixBytes(bytes));
}

GSErrCode Location::ToPath(GS::UniString* path) const {
    if (IsEmpty()) return kErrBadLocation;
    *path = path_;
    return kNoError;
}

GSErrCode Location::ToUTF8POSIXPath(GS::FixedCapacityString<256>* path) const {
    std::string bytes;
    if (IsEmpty() || !platform::posixBytesOfText(path_, bytes)) return kErrBadLocation;
    path->Set(bytes);
    return kNoError;
}

GSErrCode Location::MoveLastLocalName(Name* name) {
    const unsigned short* units = path_.ToUStr();
    unsigned int end = path_.GetLength();
    while (end > 0 && units[end - 1] == kSlash)
        --end;
    if (end == 0) return kErrBadLocation;
    unsigned int begin = end;
    while (begin > 0 && units[begin - 1] != kSlash)
        --begin;
    unsigned int folderEnd = begin;
    while (folderEnd > 1 && units[folderEnd - 1] == kSlash)
        --folderEnd;

    if (name != nullptr) *name = Name(GS::UniString(units + begin, end - begin));
    constexpr unsigned short kWorkingFolder[] = {'.', 0};
    path_ = folderEnd == 0 ? GS::UniString(kWorkingFolder) : GS::UniString(units, folderEnd);
    return kNoError;
}

}  // namespace IO
