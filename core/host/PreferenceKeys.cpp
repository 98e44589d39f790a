#include "core/host/PreferenceKeys.h"

namespace FellowCore::PreferenceKeys {

namespace {

std::string characterKey(std::string_view id, std::string_view suffix) {
    return "sprites." + std::string(id) + std::string(suffix);
}

} // namespace

std::string frame(std::string_view id) {
    return characterKey(id, ".frame");
}
std::string desktopHeight(std::string_view id) {
    return characterKey(id, ".desktopHeight");
}
std::string desktopAnchor(std::string_view id) {
    return characterKey(id, ".desktopAnchor");
}
std::string arrangeHeight(std::string_view id) {
    return characterKey(id, ".arrangeHeight");
}
std::string previousCharacter(std::string_view id) {
    return characterKey(id, ".previousCharacter");
}

} // namespace FellowCore::PreferenceKeys
