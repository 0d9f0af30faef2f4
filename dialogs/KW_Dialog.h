#pragma once

#include "foundation/KW_List.h"
#include "platform/FileDialog.h"

class KW_Location;
class KW_String;

/// How every part of the system communicates with the user. Static operations only; host main thread, modal.
/// Labels and prefixes are texts of the current language.
class KW_Dialog {
public:
    /// Shows up to three texts (an empty or null one leaves its field empty) with one button, OK, and returns
    /// when the user has closed them. `type` -1 is a plain message.
    static void ShowAlert(short type, const KW_String& text1, const KW_String& text2, const KW_String& text3);

    /// Shows one text as a plain message.
    static void ShowMessage(const KW_String& text);

    /// The word for an error (`firstPrefix`) or a warning, then the separator, then the text with its first
    /// character in lower (`toLower`) or upper case. Empty when the text or the separator is.
    static KW_String SetPrefixString(const KW_String& text, bool firstPrefix, const KW_String& separator,
                                     bool toLower);

    /// Asks for a file to save to, of one type: what the user sees of it, its extension without the dot and
    /// its four-character code. The chooser starts with the name and in the folder of `defaultPath`; either
    /// may be missing in it. True when the user chose a file; otherwise `file` is unchanged. The name is what
    /// the user gave: no extension is added.
    static bool SaveFile(KW_Location& file, const KW_String& typeDescription, const KW_String& extension,
                         long typeCode, const KW_String& title, const KW_String& defaultPath);

    /// The same with ready-made filters, in the order in which they are offered. The pointers may be null.
    /// `chosenFilter` receives the index of the filter that the user chose, from 0.
    static bool SaveFile(KW_Location& file, const KW_Location* defaultName, const KW_Location* defaultFolder,
                         const KW_String& title, KW_List<FTM::GeneralID>* filters, long* chosenFilter);
};
