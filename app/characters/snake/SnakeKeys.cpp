#include "app/characters/snake/SnakeKeys.h"

#include <QKeyEvent>

#include <algorithm>
#include <array>

namespace DeskSprites {

using FellowCore::SnakeKey;

namespace {

struct KeyMeaning {
    std::uint32_t code;
    SnakeKey key;
};

template <std::size_t count>
std::optional<SnakeKey> meaning(const std::array<KeyMeaning, count>& table, std::uint32_t code) {
    const auto found = std::ranges::find(table, code, &KeyMeaning::code);
    return found == table.end() ? std::nullopt : std::optional(found->key);
}

constexpr std::array keys = {
    KeyMeaning{Qt::Key_Up, SnakeKey::up},        KeyMeaning{Qt::Key_Down, SnakeKey::down},
    KeyMeaning{Qt::Key_Left, SnakeKey::left},    KeyMeaning{Qt::Key_Right, SnakeKey::right},
    KeyMeaning{Qt::Key_W, SnakeKey::w},          KeyMeaning{Qt::Key_A, SnakeKey::a},
    KeyMeaning{Qt::Key_S, SnakeKey::s},          KeyMeaning{Qt::Key_D, SnakeKey::d},
    KeyMeaning{Qt::Key_Plus, SnakeKey::plus},    KeyMeaning{Qt::Key_Equal, SnakeKey::plus},
    KeyMeaning{Qt::Key_Minus, SnakeKey::minus},  KeyMeaning{Qt::Key_Underscore, SnakeKey::minus},
    KeyMeaning{Qt::Key_Space, SnakeKey::space},  KeyMeaning{Qt::Key_Escape, SnakeKey::escape},
    KeyMeaning{Qt::Key_Return, SnakeKey::enter}, KeyMeaning{Qt::Key_Enter, SnakeKey::enter},
};

/// The numbers of the keys themselves, as evdev has them and X adds 8 to.
constexpr std::array places = {
    KeyMeaning{17 + 8, SnakeKey::w},
    KeyMeaning{30 + 8, SnakeKey::a},
    KeyMeaning{31 + 8, SnakeKey::s},
    KeyMeaning{32 + 8, SnakeKey::d},
};

constexpr int lastLatin = 0xff;

bool isForeignLetter(const QKeyEvent& event) {
    const QString text = event.text();
    const bool isLetter = !text.isEmpty() && text.front().unicode() > lastLatin;
    return isLetter && (event.key() == 0 || event.key() > lastLatin);
}

} // namespace

std::optional<FellowCore::SnakeKeyPress> snakeKeyPress(const QKeyEvent& event) {
    std::optional<SnakeKey> key = meaning(keys, static_cast<std::uint32_t>(event.key()));
    if (!key && isForeignLetter(event)) {
        key = meaning(places, event.nativeScanCode());
    }
    if (!key) {
        return std::nullopt;
    }
    const bool modified = event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    return FellowCore::SnakeKeyPress{*key, event.isAutoRepeat(), modified};
}

} // namespace DeskSprites
