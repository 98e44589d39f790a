#include "core/host/SettingsPersistence.h"

#include <algorithm>

namespace FellowCore {

namespace {

constexpr const char* firstCharacter = "batti";

} // namespace

void SettingsPersistence::migrate(Preferences& preferences) {
    if (preferences.integer(PreferenceKeys::settingsVersion).value_or(0) >= version) {
        return;
    }
    const std::optional<std::string> active = preferences.string(PreferenceKeys::activeCharacter);
    if (!preferences.boolean(tutorialKey) && active) {
        preferences.setBoolean(tutorialKey, true);
    }
    if (!preferences.string(paneKey)) {
        preferences.setString(paneKey, active.value_or(firstCharacter));
    }
    preferences.setInteger(PreferenceKeys::settingsVersion, version);
}

std::optional<std::string> SettingsPersistence::pane(const std::optional<std::string>& saved,
                                                     const std::optional<std::string>& active,
                                                     const std::vector<std::string>& available) {
    for (const auto& wanted : {saved, active, std::optional<std::string>(firstCharacter)}) {
        if (wanted && std::ranges::find(available, *wanted) != available.end()) {
            return wanted;
        }
    }
    return available.empty() ? std::nullopt : std::optional(available.front());
}

} // namespace FellowCore
