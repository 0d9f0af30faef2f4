#include "files/KW_File.h"

#include <cstdint>
#include <limits>
#include <utility>

namespace {

constexpr int kSuccess = 0;
constexpr int kNoFile = 1;
constexpr int kOtherFailure = 6;
constexpr unsigned int kLastOpenMode = OpenMode_Append;

int codeOf(GSErrCode error) {
    switch (error) {
        case kNoError:
            return kSuccess;
        case hostError(0x81010102):
            return 2;
        case hostError(0x81010100):
            return 3;
        case hostError(0x81010103):
            return 4;
        case hostError(0x81000100):
            return 5;
        default:
            return kOtherFailure;
    }
}

unsigned int terminatorWidth(KW_String::Encoding encoding) {
    switch (encoding) {
        case KW_String::Encoding_UTF16LE:
        case KW_String::Encoding_UTF16BE:
            return 2;
        case KW_String::Encoding_UTF32LE:
        case KW_String::Encoding_UTF32BE:
            return 4;
        default:
            return 1;
    }
}

/// Writes all bytes or, as far as the file allows, none.
int writeOrRecover(IO::File& file, const char* bytes, unsigned long count) {
    const GSErrCode error = file.Write(bytes, count, nullptr);
    if (error != kNoError) (void)file.RecoverFromFailedWrite();
    return codeOf(error);
}

}  // namespace

int KW_File::Open(const KW_Location& location, const KW_File_OpenMode& mode) {
    file.reset();
    file = std::make_unique<IO::File>(location, mode == OpenMode_Read ? IO::File::Fail : IO::File::Create);
    if (file->GetStatus() != kNoError) return codeOf(file->GetStatus());
    if (mode > kLastOpenMode) return kOtherFailure;
    return codeOf(file->Open(static_cast<IO::File::OpenMode>(mode), IO::ReportAccessDenied));
}

int KW_File::ReadFullText(KW_String& text, bool detect, KW_String::Encoding encoding) {
    if (!file) return kNoFile;
    std::uint64_t count = 0;
    const GSErrCode lengthError = file->GetRemainingLength(&count);
    if (lengthError != kNoError) return codeOf(lengthError);
    if (count > std::numeric_limits<std::uint32_t>::max()) return kOtherFailure;

    const auto size = static_cast<std::uint32_t>(count);
    const auto bytes = std::make_unique_for_overwrite<char[]>(size);
    const GSErrCode readError = file->Read(bytes.get(), size, nullptr);
    if (readError != kNoError) return codeOf(readError);
    KW_String::TextToString(text, bytes.get(), size, detect, encoding);
    return kSuccess;
}

int KW_File::WriteFullText(const KW_String& text, KW_String::Encoding encoding, bool writeBOM,
                           unsigned long* written) {
    unsigned long count = 0;
    const KW_CString mark = KW_String::GetBOM(encoding);
    if (writeBOM && mark.size > 0) {
        if (!file) return kNoFile;
        if (const int code = writeOrRecover(*file, mark.data, mark.size); code != kSuccess) return code;
        count = mark.size;
    }
    if (written != nullptr) *written = count;

    const KW_CString bytes = text.ToCStr(encoding);
    if (!file) return kNoFile;
    if (bytes.data == nullptr && text.length > 0) return kOtherFailure;
    const unsigned long textSize = bytes.data != nullptr ? bytes.size - terminatorWidth(encoding) : 0;
    if (const int code = writeOrRecover(*file, bytes.data, textSize); code != kSuccess) return code;
    if (written != nullptr) *written += textSize;
    return kSuccess;
}

int KW_File::ReadFullText(const KW_Location& location, KW_String& text, bool detect,
                          KW_String::Encoding encoding) {
    KW_File source;
    const int code = source.Open(location, OpenMode_Read);
    return code == kSuccess ? source.ReadFullText(text, detect, encoding) : code;
}

int KW_File::WriteFullText(const KW_Location& location, const KW_String& text, KW_String::Encoding encoding,
                           bool writeBOM, bool append) {
    KW_File target;
    const int code = target.Open(location, append ? OpenMode_Append : OpenMode_Write);
    return code == kSuccess ? target.WriteFullText(text, encoding, writeBOM, nullptr) : code;
}

int KW_File::ReadBin(const KW_Location& location, char* buffer, unsigned long* size, bool* exists,
                     const unsigned long& position) {
    KW_File source;
    const int opened = source.Open(location, OpenMode_Read);
    const bool found = source.file->GetStatus() == kNoError;
    if (exists != nullptr) *exists = found;
    if (!found || opened != kSuccess) return found ? opened : kSuccess;
    std::uint32_t whole = 0;
    (void)source.file->GetLength(&whole);
    const unsigned long wanted = size != nullptr && *size != 0 ? *size : whole;
    const bool read = buffer != nullptr && wanted <= std::numeric_limits<std::uint32_t>::max() &&
                      source.file->SetPosition(position) == kNoError &&
                      source.file->Read(buffer, static_cast<std::uint32_t>(wanted), nullptr) == kNoError;
    if (read && size != nullptr) *size = wanted;
    return codeOf(source.file->Close());
}

int KW_File::ReadWhole(const KW_Location& location, std::string& bytes, std::uint32_t most) {
    KW_File source;
    const int opened = source.Open(location, OpenMode_Read);
    if (source.file->GetStatus() == IO::kErrNotFound) {
        bytes.clear();
        return kSuccess;
    }
    if (opened != kSuccess) return opened;
    std::uint32_t size = 0;
    if (const GSErrCode error = source.file->GetLength(&size); error != kNoError) return codeOf(error);
    if (size > most) return kOtherFailure;
    std::string content(size, '\0');
    const GSErrCode error = source.file->Read(content.data(), size, nullptr);
    if (error == kNoError) bytes = std::move(content);
    return codeOf(error);
}

int KW_File::WriteBin(const KW_Location& location, const char* data, long size, bool append, bool create) {
    if (size < 0 || (data == nullptr && size > 0)) return kOtherFailure;
    if (!create && !location.IsFile()) return kOtherFailure;
    KW_File target;
    const int code = target.Open(location, append ? OpenMode_Append : OpenMode_Write);
    return code == kSuccess ? writeOrRecover(*target.file, data, static_cast<unsigned long>(size)) : code;
}

bool KW_File::Delete(const KW_Location& location) {
    IO::Location folder = location;
    IO::Name name;
    if (folder.MoveLastLocalName(&name) != kNoError) return false;
    return IO::Folder(folder, IO::Folder::Fail)
               .Delete(name, IO::Folder::DeleteForGood, IO::ReportAccessDenied) == kNoError;
}
