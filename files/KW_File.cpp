#include "files/KW_File.h"

#include <cstdint>
#include <limits>

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

int openForWriting(IO::File& file, bool append) {
    return codeOf(
        file.Open(append ? IO::File::WriteAppendMode : IO::File::WriteEmptyMode, IO::ReportAccessDenied));
}

/// Writes all bytes or, as far as the file allows, none.
int writeOrRecover(IO::File& file, const char* bytes, unsigned long count) {
    const GSErrCode error = file.Write(bytes, count, nullptr);
    if (error != kNoError) (void)file.RecoverFromFailedWrite();
    return codeOf(error);
}

/// False when fewer bytes could be read than `*size`, or with 0 than the file has; `*size` then keeps its
/// value.
bool readFrom(IO::File& file, char* buffer, unsigned long* size, unsigned long position) {
    std::uint32_t whole = 0;
    if (*size == 0 && file.GetLength(&whole) != kNoError) return false;
    const unsigned long wanted = *size != 0 ? *size : whole;
    if (wanted == 0) return true;
    if (buffer == nullptr || wanted > std::numeric_limits<std::uint32_t>::max()) return false;
    if (file.SetPosition(position) != kNoError) return false;
    if (file.Read(buffer, static_cast<std::uint32_t>(wanted), nullptr) != kNoError) return false;
    *size = wanted;
    return true;
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
    target.file = std::make_unique<IO::File>(location, IO::File::Create);
    const int code = openForWriting(*target.file, append);
    return code == kSuccess ? target.WriteFullText(text, encoding, writeBOM, nullptr) : code;
}

int KW_File::ReadBin(const KW_Location& location, char* buffer, unsigned long* size, bool* exists,
                     const unsigned long& position) {
    IO::File source(location, IO::File::Fail);
    if (exists != nullptr) *exists = source.GetStatus() == kNoError;
    if (source.GetStatus() != kNoError) return kSuccess;
    const GSErrCode error = source.Open(IO::File::ReadMode, IO::ReportAccessDenied);
    if (error != kNoError) return codeOf(error);
    unsigned long wholeFile = 0;
    (void)readFrom(source, buffer, size != nullptr ? size : &wholeFile, position);
    return codeOf(source.Close());
}

int KW_File::ReadBinBounded(const KW_Location& location, char* buffer, unsigned long capacity,
                            unsigned long* size, bool* exists) {
    *size = 0;
    IO::File source(location, IO::File::Fail);
    if (exists != nullptr) *exists = source.GetStatus() == kNoError;
    if (source.GetStatus() == IO::kErrNotFound) return kSuccess;
    const GSErrCode error = source.Open(IO::File::ReadMode, IO::ReportAccessDenied);
    if (error != kNoError) return codeOf(error);
    std::uint64_t length = 0;
    const GSErrCode lengthError = source.GetRemainingLength(&length);
    if (lengthError != kNoError) return codeOf(lengthError);
    if (length > capacity || length > std::numeric_limits<std::uint32_t>::max()) return kOtherFailure;
    const GSErrCode readError = source.Read(buffer, static_cast<std::uint32_t>(length), nullptr);
    if (readError != kNoError) return codeOf(readError);
    *size = length;
    return codeOf(source.Close());
}

int KW_File::WriteBin(const KW_Location& location, const char* data, long size, bool append, bool create) {
    if (size < 0 || (data == nullptr && size > 0)) return kOtherFailure;
    if (!create && IO::File(location, IO::File::Fail).GetStatus() != kNoError) return kOtherFailure;
    IO::File target(location, IO::File::Create);
    if (const int code = openForWriting(target, append); code != kSuccess) return code;
    const int code = writeOrRecover(target, data, static_cast<unsigned long>(size));
    (void)target.Close();
    return code;
}

bool KW_File::Delete(const KW_Location& location) {
    IO::Location folder = location;
    IO::Name name;
    if (folder.MoveLastLocalName(&name) != kNoError) return false;
    return IO::Folder(folder, IO::Folder::Fail)
               .Delete(name, IO::Folder::DeleteForGood, IO::ReportAccessDenied) == kNoError;
}
