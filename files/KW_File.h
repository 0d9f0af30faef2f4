#pragma once

#include "files/KW_Location.h"
#include "foundation/KW_String.h"
#include "platform/FileSystem.h"

#include <cstdint>
#include <memory>
#include <string>

/// How KW_File::Open opens a file. The host's modes 1 and 3 (writing, and reading and writing, in place) have
/// no names here.
enum KW_File_OpenMode : unsigned int {
    OpenMode_Read = 0,    ///< the file must exist
    OpenMode_Write = 2,   ///< created when missing; what is written replaces the content
    OpenMode_Append = 4,  ///< created when missing; what is written goes to the end
};

/// Whole files in and out. Every operation but Delete answers one of these codes:
///
///   0  success
///   1  no host file is open (members only)
///   2  the host's 0x81010102: access denied
///   3  the host's 0x81010100: not found
///   4  the host's 0x81010103: no space
///   5  the host's 0x81000100: busy, or the system is short of something
///   6  any other failure: another host error, an unknown open mode, a missing file that may not be created
class KW_File {
public:
    /// The host's file object, owned; null when there is none. Closed and deleted with the KW_File. When it
    /// is closed after writing in OpenMode_Write, the new content takes the place of the old.
    std::unique_ptr<IO::File> file;

    /// Opens the file; one that was held is closed first. The new host file is held whatever the result; with
    /// OpenMode_Read excepted it has been created if it was missing.
    int Open(const KW_Location& location, const KW_File_OpenMode& mode);

    /// Decodes what the open file holds from its position on, which right after opening is everything: by
    /// its byte-order mark when it has one, else with `detect` by what its bytes look like, else by
    /// `encoding`. On failure `text` is unchanged.
    int ReadFullText(KW_String& text, bool detect, KW_String::Encoding encoding);
    /// Writes the text to the open file, with `writeBOM` the encoding's byte-order mark (if it has one)
    /// before it. `written` (may be null) receives the bytes written; on failure the failed part is taken
    /// back and not counted, and `written` is untouched when it was the mark.
    int WriteFullText(const KW_String& text, KW_String::Encoding encoding, bool writeBOM,
                      unsigned long* written);

    static int ReadFullText(const KW_Location& location, KW_String& text, bool detect,
                            KW_String::Encoding encoding);
    /// Replaces the file's content, or appends to it; a missing file is created.
    static int WriteFullText(const KW_Location& location, const KW_String& text, KW_String::Encoding encoding,
                             bool writeBOM, bool append);

    /// Reads `*size` bytes (0: as many as the file has) from `position` on into `buffer`, which must hold
    /// them, and sets `*size` to their number. A missing file is 0 with `*exists` (may be null) false and the
    /// rest untouched. When less can be read than asked for, `*size` keeps its value and the result does not
    /// tell.
    static int ReadBin(const KW_Location& location, char* buffer, unsigned long* size, bool* exists,
                       const unsigned long& position);
    /// Reads the whole file, which is refused with 6 when it has more than `most` bytes. A missing file is 0
    /// without bytes, one that cannot be read its code with `bytes` unchanged.
    static int ReadWhole(const KW_Location& location, std::string& bytes, std::uint32_t most);
    /// Replaces the file's content by `size` bytes, or appends them. Without `create` a missing file is 6,
    /// and stays missing. The result is that of writing, not that of the closing after it.
    static int WriteBin(const KW_Location& location, const char* data, long size, bool append, bool create);
    /// Whether the file was deleted. A folder is not.
    static bool Delete(const KW_Location& location);
};
