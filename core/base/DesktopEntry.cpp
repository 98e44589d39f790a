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

/// The keys of a group and their values as they are written.
using Values = std::map<std::string_view, std::string_view>;

std::string_view withoutBlanks(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const auto first = text.find_first_not_of(blanks);
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

/// The keys of the main group; a translation has a key of its own, "Name[de]".
Values mainGroup(std::string_view text) {
    Values values;
    bool inside = false;
    while (!text.empty()) {
        const auto end = text.find('\n');
        const std::string_view line = withoutBlanks(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.starts_with('[')) {
            inside = line == "[Desktop Entry]";
            continue;
        }
        const auto equals = line.find('=');
        if (inside && equals != std::string_view::npos && !line.starts_with('#')) {
            values.try_emplace(withoutBlanks(line.substr(0, equals)), withoutBlanks(line.substr(equals + 1)));
        }
    }
    return values;
}

std::string valueOf(const Values& values, std::string_view key) {
    const auto found = values.find(key);
    return found == values.end() ? std::string() : unescaped(found->second);
}

bool isApplication(const Values& values) {
    return valueOf(values, "Type") == "Application" && valueOf(values, "Hidden") != "true";
}

/// What translations for a locale are marked with, the closest first.
Words translationMarks(std::string_view locale) {
    const auto at = std::min(locale.find('@'), locale.size());
    const std::string modifier(locale.substr(at));
    const std::string_view place = locale.substr(0, std::min(locale.find('.'), at));
    const std::string language(place.substr(0, place.find('_')));
    const std::string country(place.substr(language.size()));
    if (language.empty()) {
        return {};
    }
    return {language + country + modifier, language + country, language + modifier, language};
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
    if (!isApplication(values) || valueOf(values, "Terminal") == "true") {
        return std::nullopt;
    }
    const auto words = split(valueOf(values, "Exec"));
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

std::optional<std::string> desktopEntryName(std::string_view text, std::string_view locale) {
    const Values values = mainGroup(text);
    if (!isApplication(values)) {
        return std::nullopt;
    }
    std::string name;
    for (const std::string& mark : translationMarks(locale)) {
        if (name.empty()) {
            name = trimmed(singleLine(valueOf(values, "Name[" + mark + "]")));
        }
    }
    if (name.empty()) {
        name = trimmed(singleLine(valueOf(values, "Name")));
    }
    return name.empty() ? std::nullopt : std::optional(name);
}

std::optional<std::string> desktopEntryWindowClass(std::string_view text) {
    const Values values = mainGroup(text);
    const std::string windowClass = isApplication(values) ? valueOf(values, "StartupWMClass") : "";
    return windowClass.empty() ? std::nullopt : std::optional(windowClass);
}

} // namespace FellowCore
