// tessaro versions: looks after the file by which the maker publishes releases.

#include "host/ExitCodes.h"
#include "host/Printable.h"
#include "tools/Commands.h"
#include "tools/VersionsLint.h"

#include <algorithm>
#include <CLI/CLI.hpp>
#include <iostream>
#include <nlohmann/json.hpp>

namespace tools {

namespace {

using Json = nlohmann::ordered_json;

struct VersionsOptions {
    std::string file;
    std::string rule;
    bool json = false;
};

/// Nothing of it moves a terminal's cursor: whatever is not plain ASCII is escaped.
void print(const Json& json) {
    std::cout << json.dump(-1, ' ', true, Json::error_handler_t::replace) << '\n';
}

Json orNull(const std::string& text, bool isNull) {
    return isNull ? Json() : Json(text);
}

Json jsonOf(const VersionsFinding& finding) {
    return {{"rule", finding.rule->id},
            {"severity", severityName(finding.rule->severity)},
            {"line", finding.line == 0 ? Json() : Json(finding.line)},
            {"column", finding.line == 0 ? Json() : Json(finding.column)},
            {"message", finding.message}};
}

Json jsonOf(const VersionsEntry& entry) {
    return {{"line", entry.line},
            {"kind", entry.isLibrary ? "library" : "addon"},
            {"name", entry.name},
            {"version", orNull(entry.version, entry.isLibrary)},
            {"host", entry.isLibrary ? Json() : Json(entry.host)},
            {"date", entry.date}};
}

void printFinding(const std::string& path, const VersionsFinding& finding) {
    std::string place = path;
    if (finding.line != 0) place += ":" + std::to_string(finding.line) + ":" + std::to_string(finding.column);
    std::cout << host::printable(place) << ": " << severityName(finding.rule->severity) << ": "
              << host::printable(finding.message) << " [" << finding.rule->id << "]\n";
}

int explain(const std::string& id) {
    const auto rules = versionsRules();
    const auto rule = std::ranges::find(rules, id, &VersionsRule::id);
    if (rule == rules.end()) {
        std::string known;
        for (const VersionsRule& each : rules)
            known += (known.empty() ? "" : " ") + std::string(each.id);
        return fail(host::kExitUsage, "versions lint", "no rule " + id + "; there are: " + known);
    }
    std::cout << rule->id << " (" << severityName(rule->severity) << ")\n" << rule->explanation << '\n';
    return host::kExitDone;
}

int lint(const VersionsOptions& options) {
    if (!options.rule.empty()) return explain(options.rule);
    if (options.file.empty()) return fail(host::kExitUsage, "versions lint", "FILE or --explain is required");
    std::string bytes;
    std::string problem;
    const int code = readVersionsFile(options.file, bytes, problem);
    if (code != host::kExitDone) return fail(code, "versions lint", problem);
    const VersionsTexts texts = decodeVersions(bytes);
    const std::vector<VersionsFinding> findings = lintVersions(texts);
    if (options.json) {
        Json json{{"schema", 1}, {"findings", Json::array()}, {"entries", Json::array()}};
        for (const VersionsFinding& finding : findings)
            json["findings"].push_back(jsonOf(finding));
        for (const VersionsEntry& entry : versionsEntries(texts.read))
            json["entries"].push_back(jsonOf(entry));
        print(json);
    } else {
        for (const VersionsFinding& finding : findings)
            printFinding(options.file, finding);
    }
    const bool bad = std::ranges::any_of(
        findings, [](const VersionsFinding& finding) { return finding.rule->severity != Severity::Note; });
    return bad ? host::kExitFindings : host::kExitDone;
}

void addLint(CLI::App& versions, Chosen& chosen) {
    CLI::App* const command = versions.add_subcommand("lint", "Find lines that do not do what they seem to");
    static VersionsOptions options;
    command->add_option("file", options.file, "Versions file")->type_name("FILE");
    command->add_option("--explain", options.rule, "Explain a rule")->type_name("RULE");
    command->add_flag("--json", options.json, "Print one JSON object");
    command->footer(
        "Examples:\n"
        "  tessaro versions lint samples/update-server/update_plugins/versions16.txt\n"
        "  tessaro versions lint --explain host-tag");
    command->callback([&chosen] { chosen = [] { return lint(options); }; });
}

}  // namespace

void addVersions(CLI::App& app, Chosen& chosen) {
    CLI::App* const versions = app.add_subcommand("versions", "Look after a versions file");
    versions->require_subcommand(1);
    addLint(*versions, chosen);
}

}  // namespace tools
