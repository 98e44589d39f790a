#include "core/agents/LinuxHostApplication.h"

#include "core/agents/PumpAgentFields.h"

#include <algorithm>
#include <array>
#include <vector>

namespace FellowCore::LinuxHostApplication {

namespace {

constexpr std::string_view ending = ".desktop";

struct Program {
    std::string_view name;
    std::string_view id;
};

constexpr std::array programs{
    Program{"gnome-terminal-", "org.gnome.Terminal"}, // gnome-terminal-server
    Program{"konsole", "org.kde.konsole"},
    Program{"yakuake", "org.kde.yakuake"},
    Program{"kgx", "org.gnome.Console"},
    Program{"ptyxis", "org.gnome.Ptyxis"},
    Program{"xfce4-terminal", "xfce4-terminal"},
    Program{"mate-terminal", "mate-terminal"},
    Program{"lxterminal", "lxterminal"},
    Program{"qterminal", "qterminal"},
    Program{"deepin-terminal", "deepin-terminal"},
    Program{"tilix", "com.gexperts.Tilix"},
    Program{"terminator", "terminator"},
    Program{"xterm", "debian-xterm"},
    Program{"urxvt", "rxvt-unicode"},
    Program{"urxvtd", "rxvt-unicode"},
    Program{"kitty", "kitty"},
    Program{"alacritty", "Alacritty"},
    Program{"foot", "org.codeberg.dnkl.foot"},
    Program{"footserver", "org.codeberg.dnkl.foot"},
    Program{"wezterm-gui", "org.wezfurlong.wezterm"},
    Program{"ghostty", "com.mitchellh.ghostty"},
    Program{"code", "code"},
    Program{"code-insiders", "code-insiders"},
    Program{"code-oss", "code-oss"},
    Program{"codium", "codium"},
    Program{"cursor", "cursor"},
    Program{"windsurf", "windsurf"},
    Program{"zed-editor", "dev.zed.Zed"},
};

constexpr std::array terminalPrograms{
    Program{"WezTerm", "org.wezfurlong.wezterm"},
    Program{"ghostty", "com.mitchellh.ghostty"},
    Program{"vscode", "code"},
};

std::optional<std::string> withEnding(std::string_view id) {
    std::string file = std::string(id).append(ending);
    return !id.empty() && PumpAgentFields::isApplicationID(file) ? std::optional(std::move(file))
                                                                 : std::nullopt;
}

template <std::size_t count>
std::optional<std::string> idOf(const std::array<Program, count>& table, std::string_view name) {
    const auto found = std::ranges::find(table, name, &Program::name);
    return found != table.end() ? withEnding(found->id) : std::nullopt;
}

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (;;) {
        const auto end = text.find(separator);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) {
            return parts;
        }
        text.remove_prefix(end + 1);
    }
}

int hexDigit(char byte) {
    return byte >= '0' && byte <= '9' ? byte - '0' : byte >= 'a' && byte <= 'f' ? byte - 'a' + 10 : -1;
}

/// Undoes systemd's escapes of bytes in unit names ("\x2d" for "-").
std::string unescaped(std::string_view text) {
    std::string plain;
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text.substr(index).starts_with("\\x") && index + 3 < text.size()) {
            const int high = hexDigit(text[index + 2]);
            const int low = hexDigit(text[index + 3]);
            if (high >= 0 && low >= 0) {
                plain.push_back(static_cast<char>(high * 16 + low));
                index += 3;
                continue;
            }
        }
        plain.push_back(text[index]);
    }
    return plain;
}

bool removeSuffix(std::string_view& text, std::string_view suffix) {
    if (!text.ends_with(suffix)) {
        return false;
    }
    text.remove_suffix(suffix.size());
    return true;
}

/// "-" inside an id is escaped, so the plain ones part launcher, id and the random end.
std::optional<std::string> fromUnit(std::string_view unit) {
    std::size_t afterId = 0;
    if (removeSuffix(unit, ".scope")) {
        afterId = 1;
    } else if (removeSuffix(unit, ".service")) {
        unit = unit.substr(0, unit.find('@'));
    } else if (!removeSuffix(unit, ".slice")) {
        return std::nullopt;
    }
    const auto parts = split(unit, '-');
    if (parts.front() != "app" || parts.size() < 2 + afterId) {
        return std::nullopt;
    }
    return withEnding(unescaped(parts[parts.size() - 1 - afterId]));
}

} // namespace

std::optional<std::string> fromProcessName(std::string_view name) {
    return idOf(programs, name);
}

std::optional<std::string> fromControlGroup(std::string_view group) {
    auto names = split(group, '/');
    for (auto name = names.rbegin(); name != names.rend(); ++name) {
        if (auto id = fromUnit(*name)) {
            return id;
        }
    }
    return std::nullopt;
}

std::optional<std::string> fromDesktopFile(std::string_view path) {
    std::string_view name = path.substr(path.rfind('/') + 1);
    return removeSuffix(name, ending) ? withEnding(name) : std::nullopt;
}

std::optional<std::string> fromTerminalProgram(std::string_view name) {
    return idOf(terminalPrograms, name);
}

std::optional<std::string> terminalName(int device) {
    // The kernel's encoding: minor in bits 0 to 7 and 20 to 31, major in bits 8 to 19.
    const auto bits = static_cast<unsigned>(device);
    const unsigned major = (bits >> 8U) & 0xFFFU;
    const unsigned minor = (bits & 0xFFU) | ((bits >> 12U) & 0xFFF00U);
    constexpr unsigned consoles = 4; // admin-guide/devices.txt
    constexpr unsigned firstSerial = 64;
    constexpr unsigned firstPseudo = 136;
    constexpr unsigned lastPseudo = 143;
    if (major >= firstPseudo && major <= lastPseudo) {
        return "pts/" + std::to_string((major - firstPseudo) * 256 + minor);
    }
    if (major == consoles && minor > 0) {
        return minor < firstSerial ? "tty" + std::to_string(minor)
                                   : "ttyS" + std::to_string(minor - firstSerial);
    }
    return std::nullopt;
}

} // namespace FellowCore::LinuxHostApplication
