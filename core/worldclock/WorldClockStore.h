#pragma once

#include "core/base/Preferences.h"
#include "core/worldclock/WorldClockState.h"

#include <string>
#include <string_view>

namespace FellowCore {

/// Keeps a `WorldClockState` in the user's preferences, as JSON text.
class WorldClockStore {
public:
    static constexpr std::string_view key = "clock.worldClocks.v1";
    static constexpr std::size_t mostBytes = 1'000'000; ///< longer text is bad data

    /// Both must outlive the store.
    WorldClockStore(Preferences& defaults, const WorldClockCatalog& catalog);

    /// The stored state, normalised; an empty one when nothing is stored that can be understood.
    WorldClockState load(std::string_view systemTimeZone) const;
    /// Normalises the state and stores it.
    void save(WorldClockState state, std::string_view systemTimeZone);

    static std::string encoded(const WorldClockState& state);
    /// Not normalised. Throws `JsonError` unless the text is a JSON object; a field of the wrong type counts
    /// as absent, and so does a member of a list that is no text.
    static WorldClockState decoded(std::string_view text);

private:
    Preferences& defaults_;
    const WorldClockCatalog& catalog_;
};

} // namespace FellowCore
