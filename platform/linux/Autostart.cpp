#include "platform/Autostart.h"

#include "core/base/WholeFile.h"

#include <sstream>
#include <string_view>
#include <system_error>

namespace Platform {
namespace {

constexpr std::size_t entryLimit = std::size_t{64} * 1024;
constexpr std::string_view reserved = " \t\n\"'\\><~|&;$*?#()`";
constexpr std::string_view escapedInQuotes = "\"`$\\";

/// The escapes of a value of type string (Desktop Entry Specification 1.5, "Possible value types").
std::string stringValue(std::string_view text) {
    std::string made;
    for (const char letter : text) {
        if (letter == '\\')
            made += "\\\\";
        else if (letter == '\n')
            made += "\\n";
        else if (letter == '\t')
            made += "\\t";
        else if (letter == '\r')
            made += "\\r";
        else
            made += letter;
    }
    return made;
}

std::string_view trimmedBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\r");
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

bool isSwitchedOff(const std::string& entry) {
    std::istringstream lines(entry);
    bool inGroup = false;
    for (std::string line; std::getline(lines, line);) {
        const std::string_view text = trimmedBlanks(line);
        if (text.starts_with('[')) {
            inGroup = text == "[Desktop Entry]";
            continue;
        }
        const auto equals = text.find('=');
        if (!inGroup || equals == std::string_view::npos)
            continue;
        const std::string_view key = trimmedBlanks(text.substr(0, equals));
        const std::string_view value = trimmedBlanks(text.substr(equals + 1));
        if ((key == "Hidden" && value == "true") || (key == "X-GNOME-Autostart-enabled" && value == "false"))
            return true;
    }
    return false;
}

} // namespace

std::string execArgument(const std::filesystem::path& executable) {
    const std::string text = executable.string();
    const bool quoted = text.find_first_of(reserved) != std::string::npos;
    std::string argument = quoted ? "\"" : "";
    for (const char letter : text) {
        if (escapedInQuotes.find(letter) != std::string_view::npos)
            argument += '\\';
        argument += letter;
        if (letter == '%')
            argument += '%'; // A single one would begin a field code.
    }
    if (quoted)
        argument += '"';
    return stringValue(argument);
}

Autostart::Autostart(FellowCore::FileOperations& files, std::filesystem::path folder,
                     std::filesystem::path executable)
    : files_(files), folder_(std::move(folder)), executable_(std::move(executable)) {}

std::filesystem::path Autostart::entryFile() const {
    return folder_ / "deskfellow.desktop";
}

bool Autostart::isEnabled() const {
    try {
        return !isSwitchedOff(FellowCore::readWholeFile(files_, entryFile(), entryLimit));
    } catch (const std::runtime_error&) {
        return false; // None there, or none that a desktop could read either.
    }
}

std::string Autostart::entry() const {
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Name=Deskfellow\n"
           "Comment=Characters that stand on the desktop and each do one useful job\n"
           "Exec=" +
           execArgument(executable_) +
           "\n"
           "TryExec=" +
           stringValue(executable_.string()) +
           "\n"
           "Icon=deskfellow\n"
           "Terminal=false\n"
           "StartupNotify=false\n"
           "X-GNOME-Autostart-enabled=true\n";
}

std::optional<std::string> Autostart::setEnabled(bool enabled) {
    try {
        if (enabled) {
            files_.makeFolders(folder_);
            FellowCore::writeWholeFile(files_, entryFile(), entry());
        } else if (files_.mode(entryFile())) {
            files_.remove(entryFile());
        }
        return std::nullopt;
    } catch (const std::runtime_error& error) {
        return std::string(
                   enabled
                       ? "Deskfellow could not be added to the programs that start with your session: "
                       : "Deskfellow could not be taken from the programs that start with your session: ") +
               error.what() + ".";
    }
}

} // namespace Platform
