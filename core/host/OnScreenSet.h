#pragma once

#include "core/base/Preferences.h"
#include "core/host/PreferenceKeys.h"

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace FellowCore {

/// The characters on the desktop, in the order in which they came: no empty identifier, none twice, at most
/// three.
class OnScreenSet {
public:
    static constexpr std::size_t maximum = 3;
    static constexpr std::string_view persistenceKey = PreferenceKeys::onScreen;

    OnScreenSet() = default;
    /// Keeps the first occurrence of each identifier that is not empty, and of those the first three.
    explicit OnScreenSet(const std::vector<std::string>& ids);

    const std::vector<std::string>& ids() const { return ids_; }
    bool isEmpty() const { return ids_.empty(); }
    bool isFull() const { return ids_.size() >= maximum; }
    bool contains(std::string_view id) const;

    /// False, with no change, when the identifier is empty or present already, or the set is full.
    bool add(std::string_view id);
    /// Whether there was something to remove.
    bool remove(std::string_view id);
    /// Puts `replacement` in the place of `id`. False, with no change, when `id` is absent, or the
    /// replacement is empty or stands elsewhere in the set; true when the two are equal and present.
    bool swap(std::string_view id, std::string_view replacement);
    /// Drops what is not unlocked.
    void filterUnlocked(const std::set<std::string>& unlocked);

    /// The set to start with. `saved` is nothing when the preference was never written; then `legacy`, or
    /// else `fallback`, stands alone. What is not available falls away, and when nothing is left `fallback`
    /// comes, if it is available.
    static OnScreenSet restore(const std::optional<std::vector<std::string>>& saved,
                               const std::optional<std::string>& legacy,
                               const std::set<std::string>& available, std::string_view fallback);
    void save(Preferences& preferences) const;

    friend bool operator==(const OnScreenSet&, const OnScreenSet&) = default;

private:
    std::vector<std::string> ids_;
};

} // namespace FellowCore
