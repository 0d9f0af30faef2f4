#pragma once

#include <string>
#include <vector>

namespace platform::http {

/// The host's connect rules in libcurl's notation.
std::vector<std::string> connectRulesForCurl();

}  // namespace platform::http
