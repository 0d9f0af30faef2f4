#include "host/console/Printers.h"
#include "host/ErrorCodes.h"
#include "host/Printable.h"
#include "platform/host/LaunchHandling.h"

#include <array>
#include <cstdio>
#include <nlohmann/json.hpp>

namespace host {

namespace {

using Json = nlohmann::ordered_json;

Json valueJson(const platform::TraceValue& value) {
    return std::visit([](const auto& each) { return Json(each); }, value);
}

Json argumentsJson(const platform::TraceArguments& arguments) {
    Json object = Json::object();
    for (const auto& [name, value] : arguments)
        object[name] = valueJson(value);
    return object;
}

Json iconJson(const DG::Icon& icon) {
    return {{"resource", icon.resID()}, {"label", platform::iconLabel(icon.module(), icon.resID())}};
}

Json rowsJson(const platform::ListState& list) {
    Json rows = Json::array();
    for (const platform::ListRow& row : list.rows) {
        Json cells = Json::array();
        for (const platform::ListCell& cell : row.cells) {
            Json object{{"text", utf8(cell.text)}};
            if (cell.icon.resID() != 0) object["icon"] = iconJson(cell.icon);
            cells.push_back(std::move(object));
        }
        rows.push_back({{"row", rows.size() + 1}, {"selected", row.selected}, {"cells", std::move(cells)}});
    }
    return rows;
}

Json itemJson(const platform::DialogItem& item) {
    Json object{{"item", item.number}, {"kind", kindName(item.kind)}, {"enabled", item.enabled}};
    switch (item.kind) {
        case platform::DialogItemKind::Button:
        case platform::DialogItemKind::Text:
            object["text"] = utf8(item.text);
            break;
        case platform::DialogItemKind::List:
            object["rows"] = rowsJson(item.list);
            break;
        case platform::DialogItemKind::Icon:
            object["icon"] = iconJson(item.icon);
            break;
        case platform::DialogItemKind::Separator:
            break;
    }
    return object;
}

void appendEscaped(std::string& json, std::string_view, std::int32_t character) {
    std::array<char, 8> escape{};
    std::snprintf(escape.data(), escape.size(), "\\u%04X", static_cast<unsigned int>(character));
    json += escape.data();
}

/// The event's name and its fields.
struct Writer {
    Json operator()(const event::Command& it) const { return {{"event", "command"}, {"text", it.text}}; }
    Json operator()(const event::Loaded& it) const {
        return {{"event", "loaded"}, {"addOn", it.addOn}, {"name", it.name}, {"description", it.description}};
    }
    Json operator()(const event::Unloaded& it) const { return {{"event", "unloaded"}, {"addOn", it.addOn}}; }
    Json operator()(const event::AddOnListed& it) const {
        return {{"event", "addOn"},
                {"addOn", it.addOn},
                {"name", it.name},
                {"description", it.description},
                {"menus", it.menus},
                {"modelessWindows", it.modelessWindows},
                {"builtInLibrary", it.builtInLibrary},
                {"keptInMemory", it.keptInMemory}};
    }
    Json operator()(const event::MenuShown& it) const {
        Json items = Json::array();
        for (const MenuItem& item : it.menu.items) {
            items.push_back({{"item", items.size() + 1}, {"text", item.text}, {"checked", item.checked()}});
        }
        return {{"event", "menu"},           {"menu", it.number},      {"addOn", it.addOn},
                {"resource", it.menu.resID}, {"title", it.menu.title}, {"items", std::move(items)}};
    }
    Json operator()(const event::DialogShown& it) const {
        using Change = event::DialogShown::Change;
        Json items = Json::array();
        for (const platform::DialogItem* const item : visibleItems(it.dialog))
            items.push_back(itemJson(*item));
        return {{"event", "dialog"},
                {"change", it.change == Change::Shown     ? "shown"
                           : it.change == Change::Changed ? "changed"
                                                          : "listed"},
                {"dialog", it.dialog.id},
                {"resource", it.dialog.resID},
                {"modal", it.dialog.modal},
                {"title", utf8(it.dialog.title)},
                {"width", it.dialog.width},
                {"height", it.dialog.height},
                {"items", std::move(items)}};
    }
    Json operator()(const event::DialogClosed& it) const {
        return {{"event", "dialogClosed"}, {"dialog", it.id}, {"item", it.item}};
    }
    Json operator()(const event::AlertShown& it) const {
        Json texts = Json::array();
        for (const GS::UniString& text : it.alert.texts)
            texts.push_back(utf8(text));
        Json buttons = Json::array();
        for (short button = 1; button <= 3; ++button) {
            if (!it.alert.hasButton(button)) continue;
            buttons.push_back({{"button", button}, {"text", utf8(it.alert.buttons[button - 1])}});
        }
        return {{"event", "alert"},
                {"type", it.alert.type},
                {"texts", std::move(texts)},
                {"buttons", std::move(buttons)}};
    }
    Json operator()(const event::AlertAnswered& it) const {
        return {{"event", "alertAnswered"}, {"button", it.button}};
    }
    Json operator()(const event::ChooserShown& it) const {
        using Kind = platform::FileChooserState::Kind;
        Json filters = Json::array();
        for (const auto& filter : it.chooser.filters)
            filters.push_back({{"description", filter.description}, {"extension", filter.extension}});
        return {{"event", "chooser"},
                {"kind", it.chooser.kind == Kind::Folder     ? "folder"
                         : it.chooser.kind == Kind::SaveFile ? "save"
                                                             : "open"},
                {"title", it.chooser.title},
                {"folder", it.chooser.folder},
                {"name", it.chooser.name},
                {"filters", std::move(filters)}};
    }
    Json operator()(const event::ChooserClosed&) const { return {{"event", "chooserClosed"}}; }
    Json operator()(const event::Opened& it) const {
        const bool web = it.request.kind == platform::LaunchRequest::Kind::WebAddress;
        return {{"event", "opened"}, {"kind", web ? "webPage" : "document"}, {"target", it.request.target}};
    }
    Json operator()(const event::Transfers& it) const {
        return {{"event", "transfer"}, {"underWay", it.underWay}};
    }
    Json operator()(const event::ProjectShown& it) const {
        return {{"event", "project"}, {"untitled", it.untitled}, {"file", it.path}};
    }
    Json operator()(const event::EngineListed& it) const {
        return {{"event", "engine"}, {"number", it.number}, {"name", it.menuName}, {"current", it.current}};
    }
    Json operator()(const event::LibraryListed& it) const {
        Json problems = Json::array();
        for (const LibraryProblem& problem : it.problems)
            problems.push_back({{"path", problem.path}, {"reason", problem.reason}});
        return {{"event", "library"},
                {"path", it.path},
                {"parts", it.parts},
                {"embedded", it.embedded},
                {"problems", std::move(problems)}};
    }
    Json operator()(const event::PartListed& it) const {
        return {{"event", "part"}, {"index", it.index}, {"name", it.name},
                {"type", it.type}, {"path", it.path},   {"missing", it.missing}};
    }
    Json operator()(const event::CommandListed& it) const {
        return {{"event", "moduleCommand"},
                {"addOn", it.addOn},
                {"developer", it.command.module.developerID},
                {"module", it.command.module.localID},
                {"command", fourCharacters(it.command.command)},
                {"version", it.command.version}};
    }
    Json operator()(const event::EntryPointAnswered& it) const {
        return {{"event", "entryPoint"},
                {"entryPoint", it.entryPoint},
                {"result", it.result ? Json(*it.result) : Json(nullptr)}};
    }
    Json operator()(const event::Call& it) const {
        using Phase = event::Call::Phase;
        Json object{{"event", "call"},
                    {"phase", it.phase == Phase::Entered ? "entered"
                              : it.phase == Phase::Left  ? "left"
                                                         : "whole"},
                    {"depth", it.depth},
                    {"callee", it.call.direction == platform::CallDirection::ToHost ? "host" : "addOn"},
                    {"addOn", it.addOn},
                    {"function", it.call.function}};
        if (it.phase != Phase::Left) object["arguments"] = argumentsJson(it.call.arguments);
        if (it.phase != Phase::Entered) object["results"] = argumentsJson(it.results);
        return object;
    }
    Json operator()(const event::Help& it) const {
        return {{"event", "help"}, {"usage", it.usage}, {"explanation", it.explanation}};
    }
    Json operator()(const event::Refused& it) const { return {{"event", "error"}, {"reason", it.reason}}; }
    Json operator()(const event::Problem& it) const { return {{"event", "problem"}, {"text", it.text}}; }
    Json operator()(const event::Diagnostic& it) const {
        return {{"event", "diagnostic"}, {"text", it.text}};
    }
    Json operator()(const event::Note& it) const { return {{"event", "note"}, {"text", it.text}}; }
};

}  // namespace

void printJson(std::ostream& out, const Event& event) {
    constexpr int kSchemaVersion = 1;
    Json object{{"schema", kSchemaVersion}};
    object.update(std::visit(Writer(), event));
    // A byte that is not UTF-8 becomes U+FFFD.
    out << escaped(object.dump(-1, ' ', false, Json::error_handler_t::replace), appendEscaped) << '\n';
    out.flush();
}

}  // namespace host
