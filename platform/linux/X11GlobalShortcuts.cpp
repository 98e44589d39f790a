#include "platform/linux/X11GlobalShortcuts.h"

#include <utility>

namespace Platform {
namespace {

/// Keys that repeat do so within half a second or so; a press of a key that seems down and is later than this
/// is a press whose release got lost.
constexpr xcb_timestamp_t lostReleaseMilliseconds = 2000;
/// A change of layout comes as a burst of news.
constexpr int remapMilliseconds = 30;

constexpr std::uint8_t xkbNewKeyboard = 0;
constexpr std::uint8_t xkbMap = 1;

} // namespace

X11GlobalShortcuts::X11GlobalShortcuts(const X11Display& display)
    : display_(display), keyboardEvent_(display.firstEvent("XKEYBOARD")),
      filter_([this](const xcb_generic_event_t& event) { received(event); }) {
    remap_.setSingleShot(true);
    remap_.setInterval(remapMilliseconds);
    connect(&remap_, &QTimer::timeout, this, &X11GlobalShortcuts::grabAgain);
    if (display_.isConnected())
        modifiers_ = X11Modifiers::read(display_);
}

X11GlobalShortcuts::~X11GlobalShortcuts() {
    for (const auto& [name, grab] : grabs_)
        ungrabKeys(grab);
}

ShortcutResult X11GlobalShortcuts::grab(const std::string& name, KeyCombination combination) {
    if (!combination.isValid())
        return ShortcutResult::invalid;
    const auto old = grabs_.find(name);
    if (old != grabs_.end() && old->second.combination == combination && !old->second.keycodes.empty())
        return ShortcutResult::registered;
    Grab made;
    made.combination = combination;
    const ShortcutResult result = display_.isConnected() ? grabKeys(made) : ShortcutResult::unsupported;
    if (result != ShortcutResult::registered)
        return result;
    release(name);
    grabs_[name] = std::move(made);
    return result;
}

void X11GlobalShortcuts::release(const std::string& name) {
    const auto found = grabs_.find(name);
    if (found == grabs_.end())
        return;
    ungrabKeys(found->second);
    grabs_.erase(found);
}

ShortcutResult X11GlobalShortcuts::grabKeys(Grab& grab) {
    const auto keysym = keysymOf(grab.combination.key);
    const auto mask = modifiers_.mask(grab.combination.modifiers);
    if (!keysym || !mask)
        return ShortcutResult::unsupported;
    const std::vector<xcb_keycode_t> keycodes = keycodesOf(display_, *keysym);
    if (keycodes.empty())
        return ShortcutResult::unsupported;
    std::vector<xcb_void_cookie_t> cookies;
    for (const xcb_keycode_t keycode : keycodes) {
        for (const std::uint16_t locks : modifiers_.lockCombinations())
            cookies.push_back(xcb_grab_key_checked(display_.connection(), 1, display_.root(),
                                                   static_cast<std::uint16_t>(*mask | locks), keycode,
                                                   XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    bool refused = false;
    for (const xcb_void_cookie_t cookie : cookies) {
        const X11Reply<xcb_generic_error_t> error(xcb_request_check(display_.connection(), cookie));
        refused = refused || error;
    }
    grab.modifiers = *mask;
    grab.keycodes = keycodes;
    if (!refused)
        return ShortcutResult::registered;
    // Some of the combinations may be ours already; half a shortcut would only confuse.
    ungrabKeys(grab);
    grab.keycodes.clear();
    return ShortcutResult::taken;
}

void X11GlobalShortcuts::ungrabKeys(const Grab& grab) {
    for (const xcb_keycode_t keycode : grab.keycodes) {
        for (const std::uint16_t locks : modifiers_.lockCombinations())
            xcb_ungrab_key(display_.connection(), keycode, display_.root(),
                           static_cast<std::uint16_t>(grab.modifiers | locks));
    }
    if (display_.isConnected())
        xcb_flush(display_.connection());
}

void X11GlobalShortcuts::received(const xcb_generic_event_t& event) {
    const std::uint8_t number = x11EventNumber(event);
    if (number == XCB_KEY_PRESS) {
        pressed(x11Event<xcb_key_press_event_t>(event));
    } else if (number == XCB_KEY_RELEASE) {
        const auto& release = x11Event<xcb_key_release_event_t>(event);
        if (release.detail == last_.keycode) {
            last_.down = false;
            last_.released = release.time;
        }
    } else if (number == XCB_MAPPING_NOTIFY) {
        remap_.start();
    } else if (keyboardEvent_ != 0 && number == keyboardEvent_) {
        // Clients that use XKB, as Qt does, may be told here instead; the kind is the byte after the number.
        const std::uint8_t kind = event.pad0;
        if (kind == xkbNewKeyboard || kind == xkbMap)
            remap_.start();
    }
}

void X11GlobalShortcuts::pressed(const xcb_key_press_event_t& event) {
    if (event.event != display_.root())
        return;
    // A held key makes presses alone, or pairs of a release and a press of the same moment.
    const bool repeats =
        last_.keycode == event.detail &&
        (last_.down ? event.time - last_.pressed < lostReleaseMilliseconds : event.time == last_.released);
    last_ = {event.detail, event.time, 0, true};
    if (repeats || !onPressed)
        return;
    const std::uint16_t state = modifiers_.withoutLocks(event.state);
    for (const auto& [name, grab] : grabs_) {
        const bool keyed =
            std::find(grab.keycodes.begin(), grab.keycodes.end(), event.detail) != grab.keycodes.end();
        if (keyed && grab.modifiers == state) {
            const std::string pressedName = name; // The listener may release it.
            onPressed(pressedName);
            return;
        }
    }
}

void X11GlobalShortcuts::grabAgain() {
    for (const auto& [name, grab] : grabs_)
        ungrabKeys(grab);
    modifiers_ = X11Modifiers::read(display_);
    for (auto& [name, grab] : grabs_) {
        grab.keycodes.clear();
        // A layout without the key leaves the shortcut without keys until a layout has it again.
        static_cast<void>(grabKeys(grab));
    }
}

} // namespace Platform
