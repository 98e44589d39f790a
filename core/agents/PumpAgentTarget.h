#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace FellowCore {

/// Where a click on a session leads: a terminal's tab, an editor's project, or only an application.
struct PumpAgentTarget {
    enum class Kind {
        terminal,    ///< the tab or pane that holds `tty`
        iTerm,       ///< the same in iTerm, which is asked in another way
        project,     ///< the folder `path`, opened in the editor `bundleID`
        application, ///< `bundleID` alone
    };

    Kind kind;
    std::string
        bundleID; ///< the canonical id; of a terminal too, which is what is raised when no tab is found
    std::string tty = {};  ///< of a terminal: a device path as `parseTTY` gives it
    std::string path = {}; ///< of a project: absolute

    /// Where an event with these fields leads; nothing without a bundle id. A desktop-file id
    /// ("NAME.desktop") that is no editor's counts as a terminal when the session has a tty.
    static std::optional<PumpAgentTarget> choose(const std::optional<std::string>& bundleID,
                                                 const std::optional<std::string>& tty,
                                                 const std::optional<std::string>& cwd);

    /// Whether a folder may be kept and shown: 1 to 1024 UTF-8 bytes with no control characters; an absolute
    /// path, or a bare name of at most 160 bytes.
    static bool validDirectoryMetadata(std::string_view path);
    /// A terminal's device path from its name with or without "/dev/" and white space around it: "tty" and 1
    /// to 32 ASCII letters or digits, or, on Linux, "pts/" and a number of 1 to 10 digits.
    static std::optional<std::string> parseTTY(std::string_view text);
    /// The application that a helper of an editor belongs to; any other id as it is.
    static std::string canonicalBundleID(std::string_view id);

    /// The script that brings the tab to the front on a system with Apple events, and returns "true" when it
    /// found it. Nothing for other targets, and nothing when `tty` is not exactly what `parseTTY` makes of
    /// it, since it stands in the script unescaped.
    std::optional<std::string> appleScript() const;

    friend bool operator==(const PumpAgentTarget&, const PumpAgentTarget&) = default;
};

} // namespace FellowCore
