#pragma once

#include "foundation/KW_String.h"
#include "platform/HostInterface.h"

/// Texts of the add-on's own resources in the current language. A localised resource has one copy for each
/// language; the copy of language L has the resource ID base + L. Main thread only.

/// The add-on's menu, and the texts of its items under the item numbers.
constexpr short KW_Resource_Menu = 32500;
constexpr short KW_Resource_MenuItems = 32510;
/// Texts that all add-ons of the suite have.
constexpr short KW_Resource_Framework = 32710;

/// String `index` (from 1) of string resource `resID`, which must be a base + gKW_Language; else the same
/// string in the international language; "_ERR_NO_" when it is in neither.
KW_String KW_Resource_GetString(short resID, long index);

/// Sets the text of item `item` (from 1) of a menu. Returns the host's error code.
GSErrCode KW_Menu_SetText(short menuResID, int item, const KW_String& text);

/// Writes the texts of the five items in the current language into the menus of all languages; only one of
/// them is registered with the host, and the host's errors for the others are ignored.
void MenuUpdate();
