#pragma once

#include "platform/DialogManager.h"
#include "platform/host/Resources.h"

#include <utility>
#include <vector>

/// What a dialog shows, as plain data: the dialog manager keeps one DialogState per open dialog, presenters
/// and programs read it.
namespace platform {

/// One field (column) of a list row.
struct ListCell {
    GS::UniString text;
    DG::Icon icon;
};

struct ListRow {
    std::vector<ListCell> cells;  ///< one per tab field
    bool selected = false;
};

/// Where a tab field is and how its text is set.
struct ListField {
    short begin = 0;
    short end = 0;
    short justification = 0;
    int truncationFlags = 0;
    bool separator = false;
    bool last = false;
};

struct ListState {
    short rowHeight = 0;  ///< 0: the presenter's own
    bool drawing = true;
    std::vector<ListField> fields = std::vector<ListField>(1);
    std::vector<ListRow> rows;
};

struct DialogItem : LayoutItem {
    GS::UniString text;  ///< line feeds separate the lines of a static text
    DG::Icon icon;       ///< of an icon item
    bool visible = true;
    bool enabled = true;
    ListState list;  ///< of a list
};

struct DialogState {
    short id = 0;
    short resID = 0;
    RSResModule dialogModule = kNoResModule;
    RSResModule imageModule = kNoResModule;
    bool modal = false;
    bool visible = false;  ///< on the screen
    GS::UniString title;
    short width = 0;
    short height = 0;
    short defaultItem = 0;  ///< the button that the Return key clicks; 0 for none
    short focus = DG_NO_ITEM;
    std::vector<DialogItem> items;  ///< in the order of the keyboard focus

    const DialogItem* find(short item) const {
        for (const DialogItem& each : items) {
            if (each.number == item) return &each;
        }
        return nullptr;
    }
    DialogItem* find(short item) { return const_cast<DialogItem*>(std::as_const(*this).find(item)); }
};

}  // namespace platform
