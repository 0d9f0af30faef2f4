#include "tools/VersionsFile.h"

#include "host/ExitCodes.h"
#include "update/KW_AddonUpdate_Internal.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <tuple>

namespace tools {

namespace {

constexpr off_t kMaxSize = 16 << 20;

KW_String stringOf(KW_Units units) {
    KW_String text;
    KW_SetUnits(text, units);
    return text;
}

VersionsEntry entryOf(int number, int kind, KW_Units line, const std::vector<KW_Units>& tokens) {
    VersionsEntry entry;
    entry.line = number;
    entry.name = utf8Of(tokens[0]);
    if (kind == KW_AddonUpdate_LibraryLine) {
        KW_AddonUpdate_Library library;
        KW_AddonUpdate_SplitLibVersion(stringOf(line), library);
        entry.isLibrary = true;
        entry.date = utf8Of(KW_UnitsOf(library.date));
        return entry;
    }
    KW_AddonUpdate_Addon addon;
    KW_AddonUpdate_SplitAddonVersion(stringOf(line), addon);
    entry.version = utf8Of(tokens[1]);
    entry.major = entry.version.substr(0, entry.version.find('.'));
    entry.hostTag = utf8Of(tokens[2]);
    entry.host = addon.hostVersion;
    entry.date = utf8Of(KW_UnitsOf(addon.date));
    return entry;
}

int readDescriptor(int file, std::string& bytes, std::string& problem) {
    struct stat status;
    if (fstat(file, &status) != 0) {
        problem = std::strerror(errno);
        return host::kExitUnreadable;
    }
    if (!S_ISREG(status.st_mode)) {
        problem = "not a regular file";
        return host::kExitUnreadable;
    }
    if (status.st_size > kMaxSize) {
        problem = "over 16 MiB, which the check for updates does not read";
        return host::kExitRefused;
    }
    bytes.resize(static_cast<std::size_t>(status.st_size));
    std::size_t have = 0;
    while (have < bytes.size()) {
        const ssize_t count = read(file, bytes.data() + have, bytes.size() - have);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) {
            problem = std::strerror(errno);
            return host::kExitUnreadable;
        }
        if (count == 0) break;
        have += static_cast<std::size_t>(count);
    }
    bytes.resize(have);
    return host::kExitDone;
}

}  // namespace

bool VersionsEntry::sameProduct(const VersionsEntry& other) const {
    return std::tie(isLibrary, name, hostTag, major) ==
           std::tie(other.isLibrary, other.name, other.hostTag, other.major);
}

int readVersionsFile(const std::string& path, std::string& bytes, std::string& problem) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    int code = host::kExitUnreadable;
    if (file < 0) {
        problem = std::strerror(errno);
    } else {
        code = readDescriptor(file, bytes, problem);
        close(file);
    }
    problem = path + ": " + problem;
    return code;
}

VersionsTexts decodeVersions(const std::string& bytes) {
    VersionsTexts texts;
    const auto size = static_cast<unsigned int>(bytes.size());
    const KW_String::Encoding used =
        KW_String::TextToString(texts.read, bytes.data(), size, false, KW_String::Encoding_UTF8);
    KW_String::TextToString(texts.checked, bytes.data(), size, true, KW_String::Encoding_System);
    KW_String::Encoding marked;
    const bool hasText = size > KW_String::DetectBOM(bytes.data(), size, marked);
    texts.isDecoded = used != KW_String::Encoding_Unsupported && (texts.read.length > 0 || !hasText);
    return texts;
}

std::vector<VersionsEntry> versionsEntries(const KW_String& text) {
    std::vector<VersionsEntry> entries;
    std::vector<KW_Units> tokens;
    KW_Units rest = KW_UnitsOf(text);
    for (int number = 1; !rest.empty(); ++number) {
        const KW_Units line = KW_TakeLine(rest);
        KW_List<KW_AddonUpdate_Message> messages;
        KW_List<KW_AddonUpdate_Addon> addons;
        KW_List<KW_AddonUpdate_Library> libraries;
        KW_AddonUpdate_ReadVersions(stringOf(line), messages, addons, libraries);
        if (addons.count + libraries.count == 0) continue;
        KW_AddonUpdate_TakeTokens(line, tokens);
        entries.push_back(entryOf(number, KW_AddonUpdate_KindOf(tokens), line, tokens));
    }
    return entries;
}

std::string utf8Of(KW_Units units) {
    return GS::UniStringToUtf8(KW_UniStringOf(units));
}

}  // namespace tools
