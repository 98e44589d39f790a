#include "app/desktop/ShortcutKeeper.h"

#include "core/host/PreferenceKeys.h"

#include <QCoreApplication>

#include <limits>

namespace DeskSprites {

namespace Keys = FellowCore::PreferenceKeys;
using Platform::KeyCombination;
using Platform::ShortcutResult;

namespace {

const char* const shortcutName = "toggle";
const KeyCombination standardCombination{Qt::Key_B, static_cast<int>(Qt::ControlModifier | Qt::AltModifier)};

int asInt(std::int64_t value) {
    const bool fits = value >= 0 && value <= std::numeric_limits<int>::max();
    return fits ? static_cast<int>(value) : 0;
}

} // namespace

ShortcutKeeper::ShortcutKeeper(FellowCore::Preferences& preferences, Platform::GlobalShortcuts& shortcuts)
    : preferences_(preferences), shortcuts_(shortcuts) {}

KeyCombination ShortcutKeeper::saved() const {
    const auto key = preferences_.integer(Keys::shortcutKey);
    if (!key) {
        return standardCombination;
    }
    return {asInt(*key), asInt(preferences_.integer(Keys::shortcutModifiers).value_or(0))};
}

std::optional<QString> ShortcutKeeper::registerHotKey() {
    const KeyCombination wanted = saved();
    if (!wanted.isValid()) {
        return std::nullopt; // the user cleared it
    }
    const ShortcutResult result = shortcuts_.grab(shortcutName, wanted);
    supported_ = result != ShortcutResult::unsupported;
    if (result == ShortcutResult::taken) {
        return QCoreApplication::translate("ShortcutKeeper",
                                           "Another program already uses %1, so it does not "
                                           "show and hide Deskfellow.")
            .arg(wanted.label());
    }
    return std::nullopt;
}

ShortcutResult ShortcutKeeper::change(const KeyCombination& combination, const QString& label) {
    const ShortcutResult result = shortcuts_.grab(shortcutName, combination);
    if (result == ShortcutResult::registered) {
        preferences_.setInteger(Keys::shortcutKey, combination.key);
        preferences_.setInteger(Keys::shortcutModifiers, combination.modifiers);
        preferences_.setString(Keys::shortcutLabel, label.toStdString());
    }
    return result;
}

void ShortcutKeeper::clear() {
    release();
    preferences_.setInteger(Keys::shortcutKey, 0);
    preferences_.setInteger(Keys::shortcutModifiers, 0);
    preferences_.setString(Keys::shortcutLabel, {});
}

void ShortcutKeeper::release() {
    shortcuts_.release(shortcutName);
}

QString ShortcutKeeper::label() const {
    return saved().label();
}

} // namespace DeskSprites
