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
KW_String SystemText(const char* text);

void SetDialogTitle(short dialogID, const KW_String& title);
void SetDialogItemText(short dialogID, short item, const KW_String& text);
