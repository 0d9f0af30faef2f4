#include "host/console/CommandSet.h"

#include "host/console/Session.h"
#include "host/console/Texts.h"

#include <charconv>

namespace host {

using platform::UserAction;

const Command* CommandSet::find(const std::string& word) const {
    for (const Command& command : commands_) {
        if (command.word == word) return &command;
    }
    return nullptr;
}

UserAction CommandSet::run(Session& session, const std::string& line) const {
    std::vector<std::string> words;
    if (!splitWords(line, words)) {
        session.refuse("a quote is left open");
        return {};
    }
    if (words.empty() || words.front().starts_with('#')) return {};
    const Command* const command = find(words.front());
    if (command == nullptr) {
        session.refuse("unknown word " + inQuotes(words.front()) + "; \"help\" lists the words");
        return {};
    }
    words.erase(words.begin());
    if (words.size() < command->minArguments || words.size() > command->maxArguments) {
        session.refuse("usage: " + command->usage);
        return {};
    }
    return command->run(session, words);
}

bool splitWords(const std::string& line, std::vector<std::string>& words) {
    std::string word;
    bool inWord = false;
    bool isQuoted = false;
    for (std::size_t index = 0; index < line.size(); ++index) {
        const char character = line[index];
        const bool blank = character == ' ' || character == '\t';
        if (isQuoted && character == '\\' && index + 1 < line.size() &&
            (line[index + 1] == '"' || line[index + 1] == '\\')) {
            word += line[++index];
        } else if (character == '"') {
            isQuoted = !isQuoted;
            inWord = true;
        } else if (blank && !isQuoted) {
            if (inWord) words.push_back(std::move(word));
            word.clear();
            inWord = false;
        } else {
            word += character;
            inWord = true;
        }
    }
    if (inWord) words.push_back(std::move(word));
    return !isQuoted;
}

bool parseNumber(const std::string& text, short& number) {
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && rest == end;
}

}  // namespace host
