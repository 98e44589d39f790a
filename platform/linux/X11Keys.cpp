#include "platform/linux/X11Keys.h"

#include <Qt>

#include <xcb/xcb_keysyms.h>
#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <array>
#include <set>
#include <utility>

namespace Platform {
namespace {

struct NamedKey {
    int qt;
    std::uint32_t keysym;
};

constexpr auto namedKeys = std::to_array<NamedKey>({
    {Qt::Key_Escape, XKB_KEY_Escape},
    {Qt::Key_Tab, XKB_KEY_Tab},
    {Qt::Key_Backtab, XKB_KEY_ISO_Left_Tab},
    {Qt::Key_Backspace, XKB_KEY_BackSpace},
    {Qt::Key_Return, XKB_KEY_Return},
    {Qt::Key_Enter, XKB_KEY_KP_Enter},
    {Qt::Key_Insert, XKB_KEY_Insert},
    {Qt::Key_Delete, XKB_KEY_Delete},
    {Qt::Key_Pause, XKB_KEY_Pause},
    {Qt::Key_Print, XKB_KEY_Print},
    {Qt::Key_Home, XKB_KEY_Home},
    {Qt::Key_End, XKB_KEY_End},
    {Qt::Key_Left, XKB_KEY_Left},
    {Qt::Key_Up, XKB_KEY_Up},
    {Qt::Key_Right, XKB_KEY_Right},
    {Qt::Key_Down, XKB_KEY_Down},
    {Qt::Key_PageUp, XKB_KEY_Page_Up},
    {Qt::Key_PageDown, XKB_KEY_Page_Down},
    {Qt::Key_Menu, XKB_KEY_Menu},
    {Qt::Key_Help, XKB_KEY_Help},
    {Qt::Key_MediaPlay, XKB_KEY_XF86AudioPlay},
    {Qt::Key_MediaStop, XKB_KEY_XF86AudioStop},
    {Qt::Key_MediaPrevious, XKB_KEY_XF86AudioPrev},
    {Qt::Key_MediaNext, XKB_KEY_XF86AudioNext},
});

struct FreeSymbols {
    void operator()(xcb_key_symbols_t* symbols) const { xcb_key_symbols_free(symbols); }
};
using Symbols = std::unique_ptr<xcb_key_symbols_t, FreeSymbols>;

} // namespace

std::optional<std::uint32_t> keysymOf(int key) {
    if (key >= Qt::Key_F1 && key <= Qt::Key_F35)
        return static_cast<std::uint32_t>(XKB_KEY_F1 + (key - Qt::Key_F1));
    const auto* named = std::find_if(namedKeys.begin(), namedKeys.end(),
                                     [key](const NamedKey& one) { return one.qt == key; });
    if (named != namedKeys.end())
        return named->keysym;
    if (key <= 0 || key >= Qt::Key_Escape)
        return std::nullopt;
    // Below that, a Qt key is the upper case Unicode character on it; layouts list the lower case one first.
    const std::uint32_t keysym = xkb_keysym_to_lower(xkb_utf32_to_keysym(static_cast<std::uint32_t>(key)));
    return keysym == XKB_KEY_NoSymbol ? std::nullopt : std::optional(keysym);
}

std::vector<xcb_keycode_t> keycodesOf(const X11Display& display, std::uint32_t keysym) {
    const Symbols symbols(xcb_key_symbols_alloc(display.connection()));
    const X11Reply<xcb_keycode_t> found(symbols ? xcb_key_symbols_get_keycode(symbols.get(), keysym)
                                                : nullptr);
    std::vector<xcb_keycode_t> codes;
    for (const xcb_keycode_t* code = found.get(); code && *code != XCB_NO_SYMBOL; ++code)
        codes.push_back(*code);
    return codes;
}

X11Modifiers X11Modifiers::read(const X11Display& display) {
    X11Modifiers made;
    const auto cookie = xcb_get_modifier_mapping_unchecked(display.connection());
    const X11Reply<xcb_get_modifier_mapping_reply_t> reply(
        xcb_get_modifier_mapping_reply(display.connection(), cookie, nullptr));
    const Symbols symbols(xcb_key_symbols_alloc(display.connection()));
    if (!reply || !symbols)
        return made;
    const xcb_keycode_t* codes = xcb_get_modifier_mapping_keycodes(reply.get());
    // Rows are Shift, Lock, Control and Mod1 to Mod5; what the last five mean depends on the keys in them.
    for (int row = XCB_MAP_INDEX_1; row <= XCB_MAP_INDEX_5; ++row) {
        const auto bit = static_cast<std::uint16_t>(1U << row);
        for (int i = 0; i < reply->keycodes_per_modifier; ++i) {
            const xcb_keysym_t keysym =
                xcb_key_symbols_get_keysym(symbols.get(), codes[row * reply->keycodes_per_modifier + i], 0);
            if ((keysym == XKB_KEY_Alt_L || keysym == XKB_KEY_Alt_R) && !made.alt)
                made.alt = bit;
            else if ((keysym == XKB_KEY_Super_L || keysym == XKB_KEY_Super_R) && !made.meta)
                made.meta = bit;
            else if (keysym == XKB_KEY_Num_Lock)
                made.numLock = bit;
            else if (keysym == XKB_KEY_Scroll_Lock)
                made.scrollLock = bit;
        }
    }
    return made;
}

std::optional<std::uint16_t> X11Modifiers::mask(int modifiers) const {
    std::uint16_t made = 0;
    const auto add = [&](Qt::KeyboardModifier wanted, std::uint16_t bit) {
        if (!(modifiers & static_cast<int>(wanted)))
            return true;
        made = static_cast<std::uint16_t>(made | bit);
        return bit != 0;
    };
    const bool complete = add(Qt::ShiftModifier, XCB_MOD_MASK_SHIFT) &&
                          add(Qt::ControlModifier, XCB_MOD_MASK_CONTROL) && add(Qt::AltModifier, alt) &&
                          add(Qt::MetaModifier, meta);
    return complete ? std::optional(made) : std::nullopt;
}

std::vector<std::uint16_t> X11Modifiers::lockCombinations() const {
    std::set<std::uint16_t> made;
    for (const unsigned caps : {0U, static_cast<unsigned>(XCB_MOD_MASK_LOCK)}) {
        for (const unsigned num : {0U, static_cast<unsigned>(numLock)}) {
            for (const unsigned scroll : {0U, static_cast<unsigned>(scrollLock)})
                made.insert(static_cast<std::uint16_t>(caps | num | scroll));
        }
    }
    return {made.begin(), made.end()};
}

std::uint16_t X11Modifiers::withoutLocks(std::uint16_t state) const {
    const unsigned locks = XCB_MOD_MASK_LOCK | numLock | scrollLock;
    return static_cast<std::uint16_t>(state & 0xFFU & ~locks);
}

} // namespace Platform
