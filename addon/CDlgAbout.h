#pragma once

/// The About dialog: what the add-on does, and two buttons that open its documentation, two PDF files that
/// are beside the add-on.
class CDlgAbout {
public:
    short dialogID = 0;  ///< while the dialog is open, else 0

    /// Runs the dialog. True when it ended with OK.
    bool ShowDialog();
    /// Writes title and item texts in the current language.
    void SetItems();
    /// Handles a click: returns the item with which the dialog closes, or 0.
    short MsgClick(short item);
};
