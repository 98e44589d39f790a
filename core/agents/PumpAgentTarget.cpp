#include "core/agents/PumpAgentTarget.h"

#include "core/agents/PumpAgentFields.h"

#include <algorithm>
#include <array>

namespace FellowCore {

namespace {

constexpr std::string_view appleTerminal = "com.apple.Terminal";
constexpr std::string_view iTermApplication = "com.googlecode.iterm2";
constexpr std::string_view desktopFileEnding = ".desktop";

constexpr std::array<std::string_view, 4> editorBundles{
    "com.microsoft.VSCode",
    "com.microsoft.VSCodeInsiders",
    "com.todesktop.230313mzl4w4u92",
    "com.exafunction.windsurf",
};

/// Desktop-file ids of the editors that open a folder given on their command line, under the names of their
/// own packages, of distributions and of Flatpak. The second is a helper entry of the same editor, if any.
struct DesktopEditor {
    std::string_view id;
    std::string_view helper;
};
constexpr std::array<DesktopEditor, 11> desktopEditors{{
    {"code.desktop", "code-url-handler.desktop"},
    {"code-insiders.desktop", "code-insiders-url-handler.desktop"},
    {"code-oss.desktop", "code-oss-url-handler.desktop"},
    {"com.visualstudio.code.desktop", "com.visualstudio.code-url-handler.desktop"},
    {"code_code.desktop", "code_code-url-handler.desktop"},
    {"codium.desktop", "codium-url-handler.desktop"},
    {"com.vscodium.codium.desktop", "com.vscodium.codium-url-handler.desktop"},
    {"cursor.desktop", "cursor-url-handler.desktop"},
    {"windsurf.desktop", "windsurf-url-handler.desktop"},
    {"dev.zed.Zed.desktop", ""},
    {"zed.desktop", ""},
}};

constexpr std::size_t maximumPathBytes = 1024;
constexpr std::size_t maximumNameBytes = 160;

bool isEditor(std::string_view id) {
    return std::ranges::find(editorBundles, id) != editorBundles.end() ||
           std::ranges::find(desktopEditors, id, &DesktopEditor::id) != desktopEditors.end();
}

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

bool isLetterOrDigit(char byte) {
    return isDigit(byte) || (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

/// The rest after a prefix, if it has 1 to `maximum` bytes and all of them are allowed.
bool isNamed(std::string_view text, std::string_view prefix, std::size_t maximum, bool (*allowed)(char)) {
    if (!text.starts_with(prefix)) {
        return false;
    }
    const std::string_view rest = text.substr(prefix.size());
    return !rest.empty() && rest.size() <= maximum && std::ranges::all_of(rest, allowed);
}

std::string_view withoutWhiteSpace(std::string_view text) {
    constexpr std::string_view whiteSpace = " \t\n\v\f\r";
    const auto first = text.find_first_not_of(whiteSpace);
    return first == std::string_view::npos
               ? std::string_view()
               : text.substr(first, text.find_last_not_of(whiteSpace) - first + 1);
}

std::string terminalScript(const std::string& tty) {
    return "tell application id \"com.apple.Terminal\"\n"
           "    repeat with w in windows\n"
           "        repeat with t in tabs of w\n"
           "            if tty of t is \"" +
           tty +
           "\" then\n"
           "                set selected of t to true\n"
           "                set miniaturized of w to false\n"
           "                set index of w to 1\n"
           "                return true\n"
           "            end if\n"
           "        end repeat\n"
           "    end repeat\n"
           "end tell\n"
           "return false\n";
}

std::string iTermScript(const std::string& tty) {
    return "tell application id \"com.googlecode.iterm2\"\n"
           "    repeat with w in windows\n"
           "        repeat with t in tabs of w\n"
           "            repeat with s in sessions of t\n"
           "                if tty of s is \"" +
           tty +
           "\" then\n"
           "                    select s\n"
           "                    select t\n"
           "                    set miniaturized of w to false\n"
           "                    select w\n"
           "                    return true\n"
           "                end if\n"
           "            end repeat\n"
           "        end repeat\n"
           "    end repeat\n"
           "end tell\n"
           "return false\n";
}

std::string withTimeout(const std::string& body) {
    return "with timeout of 5 seconds\n" + body + "end timeout\n";
}

} // namespace

std::optional<PumpAgentTarget> PumpAgentTarget::choose(const std::optional<std::string>& bundleID,
                                                       const std::optional<std::string>& tty,
                                                       const std::optional<std::string>& cwd) {
    if (!bundleID) {
        return std::nullopt;
    }
    const std::string id = canonicalBundleID(*bundleID);
    if (const auto device = tty ? parseTTY(*tty) : std::nullopt) {
        if (id == iTermApplication) {
            return PumpAgentTarget{Kind::iTerm, id, *device};
        }
        if (id == appleTerminal || (id.ends_with(desktopFileEnding) && !isEditor(id))) {
            return PumpAgentTarget{Kind::terminal, id, *device};
        }
    }
    if (cwd && isEditor(id) && cwd->starts_with('/') && validDirectoryMetadata(*cwd)) {
        return PumpAgentTarget{.kind = Kind::project, .bundleID = id, .path = *cwd};
    }
    return PumpAgentTarget{Kind::application, id};
}

bool PumpAgentTarget::validDirectoryMetadata(std::string_view path) {
    if (path.empty() || path.size() > maximumPathBytes || PumpAgentFields::holdsControlCharacter(path)) {
        return false;
    }
    return path.front() == '/' ||
           (path.find('/') == std::string_view::npos && path.size() <= maximumNameBytes);
}

std::optional<std::string> PumpAgentTarget::parseTTY(std::string_view text) {
    constexpr std::string_view devices = "/dev/";
    std::string_view name = withoutWhiteSpace(text);
    if (name.starts_with(devices)) {
        name.remove_prefix(devices.size());
    }
    if (!isNamed(name, "tty", 32, isLetterOrDigit) && !isNamed(name, "pts/", 10, isDigit)) {
        return std::nullopt;
    }
    return std::string(devices).append(name);
}

std::string PumpAgentTarget::canonicalBundleID(std::string_view id) {
    for (const std::string_view base : editorBundles) {
        if (id == base || (id.starts_with(base) && id.substr(base.size()).starts_with('.'))) {
            return std::string(base);
        }
    }
    for (const DesktopEditor& editor : desktopEditors) {
        if (id == editor.helper && !id.empty()) {
            return std::string(editor.id);
        }
    }
    return std::string(id);
}

std::optional<std::string> PumpAgentTarget::appleScript() const {
    if ((kind != Kind::terminal && kind != Kind::iTerm) || parseTTY(tty) != tty) {
        return std::nullopt;
    }
    return withTimeout(kind == Kind::iTerm ? iTermScript(tty) : terminalScript(tty));
}

} // namespace FellowCore
