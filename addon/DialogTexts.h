#pragma once

#include "foundation/KW_String.h"

/// Texts of the add-on's own dialogs, in the current language.

/// String `index` of this add-on.
KW_String AddonText(long index);
/// String `index` of those that all add-ons of the suite share.
KW_String FrameworkText(long index);

constexpr long kFrameworkTextCancel = 5;
constexpr long kFrameworkTextOK = 64;

/// 8-bit text in the system encoding.
KW_String SystemText(char const* text);

void SetDialogTitle(short dialogID, KW_String const& title);
void SetDialogItemText(short dialogID, short item, KW_String const& text);
