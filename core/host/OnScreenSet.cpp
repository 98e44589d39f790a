#include "core/host/OnScreenSet.h"

#include <algorithm>

namespace FellowCore {

OnScreenSet::OnScreenSet(const std::vector<std::string>& ids) {
    for (const std::string& id : ids) {
        add(id);
    }
}

bool OnScreenSet::contains(std::string_view id) const {
    return std::ranges::find(ids_, id) != ids_.end();
}

bool OnScreenSet::add(std::string_view id) {
    if (id.empty() || isFull() || contains(id)) {
        return false;
    }
    ids_.emplace_back(id);
    return true;
}

bool OnScreenSet::remove(std::string_view id) {
    return std::erase(ids_, id) > 0;
}

bool OnScreenSet::swap(std::string_view id, std::string_view replacement) {
    const auto place = std::ranges::find(ids_, id);
    if (place == ids_.end() || replacement.empty()) {
        return false;
    }
    if (id != replacement && contains(replacement)) {
        return false;
    }
    *place = std::string(replacement);
    return true;
}

void OnScreenSet::filterUnlocked(const std::set<std::string>& unlocked) {
    std::erase_if(ids_, [&](const std::string& id) { return !unlocked.contains(id); });
}

OnScreenSet OnScreenSet::restore(const std::optional<std::vector<std::string>>& saved,
                                 const std::optional<std::string>& legacy,
                                 const std::set<std::string>& available, std::string_view fallback) {
    std::vector<std::string> ids = saved.value_or(std::vector{legacy.value_or(std::string(fallback))});
    std::erase_if(ids, [&](const std::string& id) { return !available.contains(id); });
    OnScreenSet set(ids);
    if (set.isEmpty() && available.contains(std::string(fallback))) {
        set.add(fallback);
    }
    return set;
}

void OnScreenSet::save(Preferences& preferences) const {
    preferences.setStrings(persistenceKey, ids_);
}

} // namespace FellowCore
