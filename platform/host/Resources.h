#pragma once

#include "platform/ResourceManager.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// The resources of an add-on bundle as the host, its dialog manager and its presenters read them. The files
/// themselves are described in docs/resources.md. All texts are UTF-8. Main thread only.
namespace platform {

// ---- Problems in resource files -------------------------------------------------------------------------

/// One problem in one resource file.
struct ResourceProblem {
    std::string file;     ///< path of the file
    int line = 0;         ///< line from 1; 0 when the problem is the whole file's (missing, unreadable)
    std::string message;  ///< one sentence without a full stop
};

/// "FILE:LINE: MESSAGE", or "FILE: MESSAGE" without a line.
std::string describe(const ResourceProblem& problem);

using ResourceProblemSink = std::function<void(const ResourceProblem&)>;

/// Sets who receives problems; each is reported once, when its file is first read. Without a sink (also after
/// setting an empty one) they go to the host's diagnostic print.
void setResourceProblemSink(ResourceProblemSink sink);

// ---- Menus ----------------------------------------------------------------------------------------------

struct MenuResource {
    std::string title;
    std::vector<std::string> items;  ///< item n is items[n - 1]
};

/// Reads menu resource `resID` into `menu`. A text that the language of `resID` lacks is taken from the
/// bundle's fallback language; an item text that is in neither is empty. Returns false, `menu` untouched,
/// when the module is not open, has no such menu, or the title is in neither language.
bool getMenuResource(RSResModule module, short resID, MenuResource& menu);

// ---- Dialogs --------------------------------------------------------------------------------------------

enum class DialogItemKind : std::uint8_t { Button, Text, List, Icon, Separator };

/// Edges of the dialog to which an item keeps its distance when the dialog's size changes. With both edges of
/// one direction the item grows; with neither it stays where it is.
enum DialogAnchor : std::uint8_t {
    kAnchorLeft = 1,
    kAnchorTop = 2,
    kAnchorRight = 4,
    kAnchorBottom = 8,
};

/// Pixels at 100 %, from the top left corner of the dialog's content.
struct ItemRect {
    short left = 0;
    short top = 0;
    short width = 0;
    short height = 0;
};

struct LayoutItem {
    short number = 0;  ///< from 1, unique in the dialog
    DialogItemKind kind = DialogItemKind::Text;
    ItemRect rect;
    std::uint8_t anchors = kAnchorLeft | kAnchorTop;  ///< DialogAnchor flags
    bool bold = false;                                ///< a text that stands out, such as a headline
    short iconID = 0;                                 ///< icon resource that an icon item shows
};

struct DialogLayout {
    short resID = 0;
    short width = 0;  ///< of the content, in pixels
    short height = 0;
    short defaultItem = 1;          ///< the button that the Return key clicks; 0 for none
    std::vector<LayoutItem> items;  ///< in the order of the keyboard focus
};

/// The layout of dialog `resID`, or null when the module is not open or has no such dialog. It lives until
/// the module is closed.
const DialogLayout* findDialogLayout(RSResModule module, short resID);

/// The language of the string that was last looked up in the module, the bundle's fallback before the first.
/// The platform knows of no other current language.
int languageInUse(RSResModule module);

/// The text that the resources give item `item` of dialog `resID` in this language, or the dialog's title for
/// item 0; empty when they give none. A text that the language lacks is taken from the fallback language.
///
/// A dialog manager asks for it when the add-on's answer to DG_MSG_INIT is there (the add-on has then set its
/// own texts, in its current language), for the items that the add-on left alone, and keeps it as long as the
/// dialog is open.
std::string dialogItemText(RSResModule module, short resID, short item, int language);

// ---- Icons ----------------------------------------------------------------------------------------------

struct IconResource {
    std::string label;  ///< what the picture says, for a presenter that shows text; may be empty
    std::string path;   ///< the SVG or PNG file; empty when there is none
    std::string image;  ///< content of that file
};

/// Icon `resID`, or null when the module is not open or has neither a picture nor a label of this number. The
/// picture is read at the first call and kept until RSRemoveModuleImageCache or until the module is closed;
/// the pointer lives as long. It is drawn at its own size, scaled down where it is higher than its row.
const IconResource* findIcon(RSResModule module, short resID);

/// The label of icon `resID` without reading the picture; empty when there is none.
std::string iconLabel(RSResModule module, short resID);

}  // namespace platform
