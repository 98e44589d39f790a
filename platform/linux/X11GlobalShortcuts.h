#pragma once

#include "platform/GlobalShortcuts.h"
#include "platform/linux/X11Keys.h"

#include <QObject>
#include <QTimer>

#include <map>

namespace Platform {

/// Shortcuts by passive key grabs on the root window.
class X11GlobalShortcuts final : public QObject, public GlobalShortcuts {
public:
    explicit X11GlobalShortcuts(const X11Display& display);
    ~X11GlobalShortcuts() override;

    ShortcutResult grab(const std::string& name, KeyCombination combination) override;
    void release(const std::string& name) override;

private:
    struct Grab {
        KeyCombination combination;
        std::uint16_t modifiers = 0;
        std::vector<xcb_keycode_t> keycodes; ///< those that are grabbed now
    };
    struct Press {
        xcb_keycode_t keycode = 0;
        xcb_timestamp_t pressed = 0;
        xcb_timestamp_t released = 0;
        bool down = false;
    };

    ShortcutResult grabKeys(Grab& grab);
    void ungrabKeys(const Grab& grab);
    void received(const xcb_generic_event_t& event);
    void pressed(const xcb_key_press_event_t& event);
    void grabAgain();

    const X11Display& display_;
    std::uint8_t keyboardEvent_;
    X11Modifiers modifiers_;
    std::map<std::string, Grab> grabs_;
    Press last_;
    QTimer remap_;
    X11EventFilter filter_;
};

} // namespace Platform
