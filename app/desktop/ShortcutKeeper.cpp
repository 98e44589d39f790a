#include "app/desktop/ShortcutKeeper.h"

#include <limits>
#include <utility>

namespace DeskSprites {

using Platform::KeyCombination;
using Platform::ShortcutResult;

namespace {

int asInt(std::int64_t value) {
    const bool fits = value >= 0 && value <= std::numeric_limits<int>::max();
    return fits ? static_cast<int>(value) : 0;
}

} // namespace

ShortcutKeeper::ShortcutKeeper(FellowCore::Preferences& preferences, Platform::GlobalShortcuts& shortcuts,
                               ShortcutPurpose purpose, std::function<void()> onPressed)
    : preferences_(preferences), shortcuts_(shortcuts), purpose_(std::move(purpose)),
      onPressed_(std::move(onPressed)) {}

KeyCombination ShortcutKeeper::saved() const {
    const auto key = preferences_.integer(purpose_.keyPreference);
    if (!key) {
        return purpose_.standard;
    }
    return {asInt(*key), asInt(preferences_.integer(purpose_.modifiersPreference).value_or(0))};
}

std::optional<QString> ShortcutKeeper::registerHotKey() {
    const KeyCombination wanted = saved();
    if (!wanted.isValid()) {
        return std::nullopt; // the user cleared it
    }
    const ShortcutResult result = shortcuts_.grab(purpose_.name, wanted);
    supported_ = result != ShortcutResult::unsupported;
    if (result == ShortcutResult::taken) {
        return purpose_.refusal.arg(wanted.label());
    }
    return std::nullopt;
}

ShortcutResult ShortcutKeeper::change(const KeyCombination& combination, const QString& label) {
    const ShortcutResult result = shortcuts_.grab(purpose_.name, combination);
    if (result == ShortcutResult::registered) {
        preferences_.setInteger(purpose_.keyPreference, combination.key);
        preferences_.setInteger(purpose_.modifiersPreference, combination.modifiers);
        preferences_.setString(purpose_.labelPreference, label.toStdString());
    }
    return result;
}

void ShortcutKeeper::clear() {
    release();
    preferences_.setInteger(purpose_.keyPreference, 0);
    preferences_.setInteger(purpose_.modifiersPreference, 0);
    preferences_.setString(purpose_.labelPreference, {});
}

void ShortcutKeeper::release() {
    shortcuts_.release(purpose_.name);
}

QString ShortcutKeeper::label() const {
    return saved().label();
}

} // namespace DeskSprites
