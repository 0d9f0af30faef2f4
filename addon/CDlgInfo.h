#pragma once

#include "foundation/KW_List.h"
#include "foundation/KW_String.h"
#include "update/KW_AddonUpdate.h"

class KW_Location;

/// The Info dialog: what a user quotes when asking for support. It saves these lines as a text file and opens
/// the maker's update page.
class CDlgInfo {
public:
    short dialogID = 0;            ///< while the dialog is open, else 0
    KW_AddonUpdate_Addon version;  ///< this add-on's own, while the dialog runs

    /// No dialog, and an empty version record.
    void Reset();
    /// Runs the dialog. True when it ended with OK.
    bool ShowDialog();
    /// Writes title and item texts in the current language.
    void SetItems();

    /// The lines of the dialog and of the report.
    KW_String GetSuiteStr() const;
    KW_String GetVersionStr() const;
    KW_String GetDateStr() const;
    KW_String GetSystemStr() const;
    KW_String GetACVersionStr() const;

    /// Asks where to save the report. False when the name that the user gave does not end in ".txt"; true
    /// otherwise, with `cancelled` when the user gave none (`file` is unchanged then).
    bool AskForFileSave(KW_Location& file, bool& cancelled);
    /// Fills `lines` with the lines of the report, each with its line feed.
    void BuildData(KW_List<KW_String>& lines) const;
    /// Replaces the file's content by the lines, in UTF-8. Whether every line was written.
    bool WriteData(KW_Location& file, KW_List<KW_String>& lines) const;

    /// Handles a click: returns the item with which the dialog closes, or 0.
    short MsgClick(short item);
};
