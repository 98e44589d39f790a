#include "core/base/DesktopEntry.h"

#include "core/base/Text.h"

#include <algorithm>
#include <map>

namespace FellowCore {

namespace {

using Words = std::vector<std::string>;

/// Undoes the escapes of a value ("\s" and the like); what is no escape stays, for quoting has some too.
std::string unescaped(std::string_view value) {
    static const std::map<char, char> meant{{'s', ' '}, {'n', '\n'}, {'t', '\t'}, {'r', '\r'}, {'\\', '\\'}};
    std::string plain;
    for (std::size_t at = 0; at < value.size(); ++at) {
        const auto found =
            value[at] == '\\' && at + 1 < value.size() ? meant.find(value[at + 1]) : meant.end();
        plain.push_back(found == meant.end() ? value[at] : found->second);
        at += found == meant.end() ? 0 : 1;
    }
    return plain;
}

/// The plain keys of the main group; translations have another key.
std::map<std::string, std::string, std::less<>> mainGroup(std::string_view text) {
    std::map<std::string, std::string, std::less<>> values;
    bool inside = false;
    while (!text.empty()) {
        const auto end = text.find('\n');
        const std::string line = trimmed(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.starts_with('[')) {
            inside = line == "[Desktop Entry]";
            continue;
        }
        const auto equals = line.find('=');
        if (inside && equals != std::string::npos && !line.starts_with('#')) {
            values.try_emplace(trimmed(line.substr(0, equals)), unescaped(trimmed(line.substr(equals + 1))));
        }
    }
    return values;
}

/// One word of the command as it was written; a quoted one holds no field codes.
struct Word {
    std::string text;
    bool quoted = false;
};

/// Takes a quoted part off the front of `command`, its quotes too; false when it has no end.
bool takeQuoted(std::string_view& command, std::string& into) {
    command.remove_prefix(1);
    while (!command.empty() && command.front() != '"') {
        if (command.front() == '\\' && command.size() > 1) {
            command.remove_prefix(1);
        }
        into.push_back(command.front());
        command.remove_prefix(1);
    }
    if (command.empty()) {
        return false;
    }
    command.remove_prefix(1);
    return true;
}

std::optional<std::vector<Word>> split(std::string_view command) {
    std::vector<Word> words;
    while (true) {
        command.remove_prefix(std::min(command.find_first_not_of(' '), command.size()));
        if (command.empty()) {
            return words;
        }
        Word word;
        while (!command.empty() && command.front() != ' ') {
            if (command.front() == '"') {
                word.quoted = true;
                if (!takeQuoted(command, word.text)) {
                    return std::nullopt;
                }
            } else {
                word.text.push_back(command.front());
                command.remove_prefix(1);
            }
        }
        words.push_back(std::move(word));
    }
}

/// A word with what its field codes stand for; codes that ask for what we do not have stand for nothing.
void expand(const std::string& word, const Words& paths, Words& into) {
    if (word == "%F" || word == "%U") {
        into.insert(into.end(), paths.begin(), paths.end());
        return;
    }
    std::string text;
    bool hadCode = false;
    for (std::size_t at = 0; at < word.size(); ++at) {
        if (word[at] != '%' || at + 1 == word.size()) {
            text.push_back(word[at]);
            continue;
        }
        const char code = word[++at];
        hadCode = true;
        if (code == '%') {
            text.push_back('%');
        } else if ((code == 'f' || code == 'u') && !paths.empty()) {
            text += paths.front();
        }
    }
    if (!text.empty() || !hadCode) {
        into.push_back(std::move(text));
    }
}

} // namespace

std::optional<Words> desktopEntryCommand(std::string_view text, const Words& paths) {
    const auto values = mainGroup(text);
    const auto value = [&](std::string_view key) {
        const auto found = values.find(key);
        return found == values.end() ? std::string() : found->second;
    };
    if (value("Type") != "Application" || value("Hidden") == "true" || value("Terminal") == "true") {
        return std::nullopt;
    }
    const auto words = split(value("Exec"));
    if (!words) {
        return std::nullopt;
    }
    Words command;
    for (const Word& word : *words) {
        if (word.quoted) {
            command.push_back(word.text);
        } else {
            expand(word.text, paths, command);
        }
    }
    return command.empty() || command.front().empty() ? std::nullopt : std::optional(command);
}

} // namespace FellowCore
