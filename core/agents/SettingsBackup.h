#pragma once

#include <string>
#include <string_view>

namespace FellowCore {

/// What a connector keeps so that it can undo itself. Its file's presence is what being connected means.
struct SettingsBackup {
    std::string original;  ///< the settings' bytes before; empty when there was no file
    std::string installed; ///< the settings' bytes as they were written
    bool existed = false;  ///< whether there was a settings file before
    std::string command;   ///< exactly as it stands in the settings
    std::string script;    ///< the helper's bytes as they were written
    bool includeProject = false;

    /// JSON; the byte fields in base64.
    std::string encoded() const;
    /// Throws `JsonError`.
    static SettingsBackup decoded(std::string_view text);

    friend bool operator==(const SettingsBackup&, const SettingsBackup&) = default;
};

} // namespace FellowCore
