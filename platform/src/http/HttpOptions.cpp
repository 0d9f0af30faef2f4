#include "platform/host/HttpOptions.h"

#include "platform/src/http/ConnectRules.h"
#include "platform/src/http/HttpStream.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace platform {

namespace {

std::vector<ConnectRule>& rulesInForce() {
    static std::vector<ConnectRule> rules;
    return rules;
}

/// "NAME:PORT", either of which may be empty.
std::optional<std::pair<std::string, int>> parseEndpoint(std::string_view text) {
    const std::size_t colon = text.rfind(':');
    if (colon == std::string_view::npos) return std::nullopt;
    const std::string_view name = text.substr(0, colon);
    const std::string_view digits = text.substr(colon + 1);

    const bool bracketed = name.size() > 2 && name.front() == '[' && name.back() == ']';
    const std::string_view inner = bracketed ? name.substr(1, name.size() - 2) : name;
    if (inner.find_first_of(bracketed ? "[]/= " : ":[]/= ") != std::string_view::npos) return std::nullopt;

    int port = 0;
    if (!digits.empty()) {
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), port);
        if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
        if (port < 1 || port > 65535) return std::nullopt;
    }
    return std::make_pair(std::string(name), port);
}

std::string portText(int port) {
    return port == 0 ? "" : std::to_string(port);
}

}  // namespace

std::optional<ConnectRule> parseConnectRule(std::string_view text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos) return std::nullopt;
    const auto from = parseEndpoint(text.substr(0, equals));
    const auto to = parseEndpoint(text.substr(equals + 1));
    if (!from || !to) return std::nullopt;
    return ConnectRule{from->first, from->second, to->first, to->second};
}

void setConnectRules(std::vector<ConnectRule> rules) {
    rulesInForce() = std::move(rules);
}

std::size_t transfersUnderWay() {
    const auto& all = http::streams();
    return static_cast<std::size_t>(std::count_if(all.begin(), all.end(), [](const auto& stream) {
        return stream->state() == CFReadStream::State::Running;
    }));
}

std::vector<std::string> http::connectRulesForCurl() {
    std::vector<std::string> lines;
    for (const ConnectRule& rule : rulesInForce()) {
        lines.push_back(rule.host + ':' + portText(rule.port) + ':' + rule.address + ':' +
                        portText(rule.connectPort));
    }
    return lines;
}

}  // namespace platform
