#include "host/console/Printers.h"
#include "host/ErrorCodes.h"
#include "host/Printable.h"
#include "platform/host/LaunchHandling.h"

#include <algorithm>
#include <iomanip>

namespace host {

namespace {

using platform::DialogItemKind;

/// The text in quotes; where it has several lines, each further one starts below the first.
std::string block(const std::string& text, std::size_t column) {
    std::string result;
    std::size_t start = 0;
    while (true) {
        const std::size_t end = text.find('\n', start);
        const std::string line = inQuotes(text.substr(start, end - start));
        if (end == std::string::npos) return result + line;
        result += line + '\n' + std::string(column, ' ');
        start = end + 1;
    }
}

std::string valueText(const platform::TraceValue& value, bool isResult) {
    if (const auto* const number = std::get_if<std::int64_t>(&value)) {
        const bool fits = *number >= INT32_MIN && *number <= INT32_MAX;
        return isResult && fits ? errorText(static_cast<GSErrCode>(*number)) : std::to_string(*number);
    }
    if (const auto* const flag = std::get_if<bool>(&value)) return *flag ? "true" : "false";
    return inQuotes(std::get<std::string>(value));
}

std::string argumentText(const platform::TraceArguments& arguments) {
    std::string text;
    for (const auto& [name, value] : arguments) {
        if (!text.empty()) text += ", ";
        text += name + ' ' + valueText(value, false);
    }
    return text;
}

/// " = 0 (flags 2)"
std::string resultText(const platform::TraceArguments& results) {
    std::string text;
    platform::TraceArguments outputs;
    for (const auto& result : results) {
        if (result.first == "result") {
            text += " = " + valueText(result.second, true);
        } else {
            outputs.push_back(result);
        }
    }
    return outputs.empty() ? text : text + " (" + argumentText(outputs) + ')';
}

/// What the icon says, or its number.
std::string iconText(const DG::Icon& icon) {
    const std::string label = platform::iconLabel(icon.module(), icon.resID());
    return printable(label.empty() ? "icon " + std::to_string(icon.resID()) : label);
}

class Writer {
public:
    explicit Writer(std::ostream& out) : out_(out) {}

    void operator()(const event::Command& it) { out_ << "> " << printable(it.text) << '\n'; }

    void operator()(const event::Loaded& it) {
        out_ << "loaded " << printable(it.addOn) << ": " << printable(it.name) << '\n';
    }

    void operator()(const event::Unloaded& it) { out_ << "unloaded " << printable(it.addOn) << '\n'; }

    void operator()(const event::AddOnListed& it) {
        out_ << printable(it.addOn) << ": " << printable(it.name) << '\n'
             << "  description " << inQuotes(it.description) << ", " << it.menus
             << (it.menus == 1 ? " menu, " : " menus, ") << it.modelessWindows
             << (it.modelessWindows == 1 ? " modeless window" : " modeless windows")
             << (it.builtInLibrary ? ", built-in library" : "") << (it.keptInMemory ? ", kept in memory" : "")
             << '\n';
    }

    void operator()(const event::MenuShown& it) {
        out_ << "menu " << it.number << ' ' << inQuotes(it.menu.title) << " (" << printable(it.addOn) << ", "
             << it.menu.resID << ")\n";
        int number = 0;
        for (const MenuItem& item : it.menu.items) {
            out_ << "  " << ++number << (item.checked() ? " [x] " : "     ") << printable(item.text) << '\n';
        }
    }

    void operator()(const event::DialogShown& it) {
        const platform::DialogState& dialog = it.dialog;
        out_ << "dialog " << dialog.id << ' ' << inQuotes(utf8(dialog.title)) << ' ' << dialog.width << " x "
             << dialog.height << (dialog.modal ? ", modal" : ", modeless") << '\n';
        for (const platform::DialogItem* const item : visibleItems(dialog))
            writeItem(*item);
    }

    void operator()(const event::DialogClosed& it) {
        out_ << "dialog " << it.id << " closed";
        if (it.item != 0) out_ << " by item " << it.item;
        out_ << '\n';
    }

    void operator()(const event::AlertShown& it) {
        out_ << "alert\n";
        for (const GS::UniString& text : it.alert.texts) {
            if (!text.IsEmpty()) out_ << "  " << block(utf8(text), 2) << '\n';
        }
        for (short button = 1; button <= 3; ++button) {
            if (it.alert.hasButton(button)) {
                out_ << "  button " << button << ' ' << inQuotes(utf8(it.alert.buttons[button - 1])) << '\n';
            }
        }
    }

    void operator()(const event::AlertAnswered& it) { out_ << "alert answered " << it.button << '\n'; }

    void operator()(const event::ChooserShown& it) {
        using Kind = platform::FileChooserState::Kind;
        const platform::FileChooserState& chooser = it.chooser;
        out_ << (chooser.kind == Kind::Folder     ? "choose a folder"
                 : chooser.kind == Kind::SaveFile ? "choose a file to save"
                                                  : "choose a file")
             << ' ' << inQuotes(chooser.title) << '\n';
        if (!chooser.folder.empty()) out_ << "  folder " << inQuotes(chooser.folder) << '\n';
        if (!chooser.name.empty()) out_ << "  name " << inQuotes(chooser.name) << '\n';
        int number = 0;
        for (const auto& filter : chooser.filters) {
            out_ << "  filter " << ++number << ' ' << inQuotes(filter.description) << " ."
                 << printable(filter.extension) << '\n';
        }
    }

    void operator()(const event::ChooserClosed&) {}

    void operator()(const event::Opened& it) {
        const bool web = it.request.kind == platform::LaunchRequest::Kind::WebAddress;
        out_ << (web ? "opens the web page " : "opens the document ") << inQuotes(it.request.target) << '\n';
    }

    void operator()(const event::Transfers& it) {
        out_ << (it.underWay ? "a transfer is under way\n" : "the transfer has ended\n");
    }

    void operator()(const event::ProjectShown& it) {
        out_ << "project " << (it.untitled ? "untitled" : inQuotes(it.path)) << '\n';
    }

    void operator()(const event::EngineListed& it) {
        out_ << "engine " << it.number << ' ' << inQuotes(it.menuName) << (it.current ? ", current\n" : "\n");
    }

    void operator()(const event::LibraryListed& it) {
        out_ << "library " << inQuotes(it.path) << ", " << it.parts << (it.parts == 1 ? " part" : " parts")
             << (it.embedded ? ", embedded\n" : "\n");
        for (const LibraryProblem& problem : it.problems)
            out_ << "  skipped " << inQuotes(problem.path) << ": " << problem.reason << '\n';
    }

    void operator()(const event::PartListed& it) {
        out_ << "part " << inQuotes(it.name) << " (" << it.index << "), " << it.type << ", "
             << inQuotes(it.path) << (it.missing ? ", without definition\n" : "\n");
    }

    void operator()(const event::CommandListed& it) {
        out_ << "command " << inQuotes(fourCharacters(it.command.command)) << ", version "
             << it.command.version << ", module 0x" << std::hex << std::uppercase << std::setfill('0')
             << std::setw(8) << it.command.module.developerID << " 0x" << std::setw(8)
             << it.command.module.localID << std::dec << std::setfill(' ') << " (" << printable(it.addOn)
             << ")\n";
    }

    void operator()(const event::EntryPointAnswered& it) {
        out_ << "  " << it.entryPoint
             << (it.result ? " returned " + errorText(*it.result) : " threw an exception") << '\n';
    }

    void operator()(const event::Call& it) {
        const bool toAddOn = it.call.direction == platform::CallDirection::ToAddOn;
        out_ << "trace " << std::string(static_cast<std::size_t>(2 * it.depth), ' ')
             << (toAddOn ? (it.addOn.empty() ? "add-on" : printable(it.addOn)) : "host") << '.'
             << it.call.function;
        if (it.phase != event::Call::Phase::Left) out_ << '(' << argumentText(it.call.arguments) << ')';
        if (it.phase != event::Call::Phase::Entered) out_ << resultText(it.results);
        out_ << '\n';
    }

    void operator()(const event::Help& it) {
        out_ << "  " << std::left << std::setw(36) << it.usage << ' ' << it.explanation << '\n';
    }

    void operator()(const event::Refused& it) { out_ << "error: " << printable(it.reason) << '\n'; }
    void operator()(const event::Problem& it) { out_ << "problem: " << printable(it.text) << '\n'; }
    void operator()(const event::Diagnostic& it) { out_ << "diagnostic: " << printable(it.text) << '\n'; }
    void operator()(const event::Note& it) { out_ << printable(it.text) << '\n'; }

private:
    void writeItem(const platform::DialogItem& item) {
        constexpr std::size_t kTextColumn = 12;
        std::string kind = kindName(item.kind);
        out_ << std::right << std::setw(4) << item.number << ' ';
        if (item.kind == DialogItemKind::Button || item.kind == DialogItemKind::Text) {
            kind.resize(kTextColumn - 5, ' ');
            out_ << kind << block(utf8(item.text), kTextColumn);
        } else if (item.kind == DialogItemKind::Icon) {
            out_ << kind << " [" << iconText(item.icon) << ']';
        } else {
            out_ << kind;
        }
        out_ << (item.enabled ? "" : " (disabled)") << '\n';
        if (item.kind == DialogItemKind::List) writeRows(item.list);
    }

    void writeRows(const platform::ListState& list) {
        int number = 0;
        for (const platform::ListRow& row : list.rows) {
            out_ << "       row " << ++number << (row.selected ? " *" : "  ");
            for (const platform::ListCell& cell : row.cells) {
                if (cell.icon.resID() != 0) out_ << " [" << iconText(cell.icon) << ']';
                if (!cell.text.IsEmpty()) out_ << ' ' << inQuotes(utf8(cell.text));
            }
            out_ << '\n';
        }
    }

    std::ostream& out_;
};

}  // namespace

void printText(std::ostream& out, const Event& event) {
    std::visit(Writer(out), event);
    out.flush();
}

std::vector<const platform::DialogItem*> visibleItems(const platform::DialogState& dialog) {
    std::vector<const platform::DialogItem*> items;
    for (const platform::DialogItem& item : dialog.items) {
        if (item.visible) items.push_back(&item);
    }
    std::sort(items.begin(), items.end(), [](auto* a, auto* b) { return a->number < b->number; });
    return items;
}

const char* kindName(DialogItemKind kind) {
    constexpr const char* kNames[] = {"button", "text", "list", "icon", "separator"};
    return kNames[static_cast<std::size_t>(kind)];
}

}  // namespace host
