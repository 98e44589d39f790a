#include "app/settings/LibraryState.h"

#include "core/host/OnScreenSet.h"

#include <algorithm>

namespace DeskSprites {

namespace {

bool contains(const std::vector<std::string>& ids, const std::string& id) {
    return std::find(ids.begin(), ids.end(), id) != ids.end();
}

} // namespace

bool LibraryDesktop::isOnScreen(const std::string& id) const {
    return contains(onScreen, id);
}

bool LibraryDesktop::isAvailable(const std::string& id) const {
    return contains(available, id);
}

bool LibraryDesktop::isFull() const {
    return onScreen.size() >= FellowCore::OnScreenSet::maximum;
}

const LibraryEntry* LibraryState::entry(const std::string& id) const {
    const auto found =
        std::find_if(roster.begin(), roster.end(), [&](const LibraryEntry& each) { return each.id == id; });
    return found == roster.end() ? nullptr : &*found;
}

} // namespace DeskSprites
