#pragma once

#include "core/base/Preferences.h"
#include "core/host/PreferenceKeys.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace FellowCore {

/// What happens to the preferences when a newer version of the program meets older ones, and which pane of
/// the settings window opens.
struct SettingsPersistence {
    static constexpr std::string_view tutorialKey = PreferenceKeys::tutorialCompleted;
    static constexpr std::string_view paneKey = PreferenceKeys::settingsPane;
    static constexpr std::int64_t version = 2;

    /// Brings the preferences to `version`; does nothing when they are there already. Someone who has used
    /// the program before is not sent through the tutorial.
    static void migrate(Preferences& preferences);

    /// The pane to open, always one of `available`: the saved one, else that of the active character, else
    /// Batti's, else the first; nothing when none is available.
    static std::optional<std::string> pane(const std::optional<std::string>& saved,
                                           const std::optional<std::string>& active,
                                           const std::vector<std::string>& available);
};

} // namespace FellowCore
