#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What a host decides and asks about the HTTP streams of its add-ons. Not for add-ons.
namespace platform {

/// Requests for `host`:`port` are sent to `address`:`connectPort`; the request itself stays the same. An
/// empty host means any host, an empty address the same address; port 0 any port or the same port.
struct ConnectRule {
    std::string host;
    int port = 0;
    std::string address;
    int connectPort = 0;
    friend bool operator==(const ConnectRule&, const ConnectRule&) = default;
};

/// Reads "NAME:PORT=ADDRESS:PORT"; an IPv6 address is in brackets. Nothing when it is not of that form.
std::optional<ConnectRule> parseConnectRule(std::string_view text);

/// For the streams opened from now on; the first rule that fits counts.
void setConnectRules(std::vector<ConnectRule> rules);

/// Number of streams that are open and have neither ended nor failed.
std::size_t transfersUnderWay();

}  // namespace platform
