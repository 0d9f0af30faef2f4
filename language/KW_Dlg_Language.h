#pragma once

/// Lets the user choose the language from those that the add-on offers (sett_ADDON_SHOWED_LANGUAGES; all when
/// that is empty). While the dialog is open, gKW_Language follows the selected row. OK keeps the choice, and
/// stores it when it differs from the language at opening; Cancel restores that one. Returns true for OK.
/// Modal, main thread.
bool KW_Dlg_Language();
