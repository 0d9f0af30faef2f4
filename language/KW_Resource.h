#pragma once

#include "foundation/KW_String.h"
#include "platform/HostInterface.h"

/// Texts of the add-on's own resources in the current language. A localised resource has one copy for each
/// language; the copy of language L has the resource ID base + L. Main thread only.

/// The add-on's menu, and the texts of its items under the item numbers.
constexpr short KW_Resource_Menu = 32500;
constexpr short KW_Resource_MenuItems = 32510;
/// Texts of an add-on's own.
constexpr short KW_Resource_Addon = 32530;
/// Texts that all add-ons of the suite have: KW_FrameworkText.
constexpr short KW_Resource_Framework = 32710;

/// The numbers of the texts that all add-ons of the suite have.
enum KW_FrameworkText : short {
    KW_FrameworkText_Cancel = 5,
    KW_FrameworkText_ErrorPrefix = 10,
    KW_FrameworkText_AskForLibrary = 13,
    KW_FrameworkText_WarningPrefix = 14,
    KW_FrameworkText_CheckFailed = 33,
    KW_FrameworkText_UpdateAvailable = 34,
    KW_FrameworkText_UpToDate = 35,
    KW_FrameworkText_WebSite = 37,
    KW_FrameworkText_OK = 64,
    KW_FrameworkText_LanguagePrompt = 65,
    KW_FrameworkText_UpdatePage = 79,
    KW_FrameworkText_AddonUpToDate = 80,
    KW_FrameworkText_AddonAvailable = 81,
    KW_FrameworkText_Library = 82,
    KW_FrameworkText_LibraryPage = 84,
    KW_FrameworkText_PartNotFound = 85,
};

/// String `index` (from 1) of string resource `resID`, which must be a base + gKW_Language; else the same
/// string in the international language; "_ERR_NO_" when it is in neither.
KW_String KW_Resource_GetString(short resID, long index);
/// The same in the current language's copy of the string resource with this base.
KW_String KW_Resource_GetCurrentString(short base, long index);
/// A text of the suite, a KW_FrameworkText, in the current language.
KW_String KW_Resource_GetFrameworkString(long index);

/// Sets the text of item `item` (from 1) of a menu. Returns the host's error code.
GSErrCode KW_Menu_SetText(short menuResID, int item, const KW_String& text);

/// Writes the texts of the five items in the current language into the menus of all languages; only one of
/// them is registered with the host, and the host's errors for the others are ignored.
void MenuUpdate();
