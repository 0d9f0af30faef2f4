#pragma once

#include "host/session/Session.h"

#include <functional>
#include <string>
#include <vector>

namespace host {

using Arguments = std::vector<std::string>;

/// A word of the session as it is typed.
struct Word {
    std::string usage;  ///< "click ITEM [DIALOG]"
    std::string explanation;
    std::size_t minArguments;
    std::size_t maxArguments;
    /// Carries the word out; an empty refusal means the usage.
    std::function<Session::Refusal(Session&, const Arguments&)> run;

    std::string name() const { return usage.substr(0, usage.find(' ')); }
};

/// Every word, in the order in which "help" lists them.
const std::vector<Word>& words();

/// Carries out one line, and tells why not. An unknown command or a wrong number of arguments is refused.
void carryOut(Session& session, const std::string& line);

}  // namespace host
