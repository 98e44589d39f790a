#pragma once

#include "platform/PointerPresses.h"
#include "platform/linux/X11Display.h"

#include <cstdint>
#include <optional>

namespace Platform {

/// Raw button presses of the X Input extension, version 2, which reach whoever asks the root window for them.
class X11PointerPresses final : public PointerPresses {
public:
    explicit X11PointerPresses(const X11Display& display);

    void setOnPress(std::function<void(FellowCore::Point)> handler) override;

private:
    void select(std::uint32_t events);
    void received(const xcb_generic_event_t& event);

    const X11Display& display_;
    std::uint8_t extension_ = 0; ///< the extension's major opcode; 0 without it
    std::function<void(FellowCore::Point)> handler_;
    std::optional<X11EventFilter> filter_; ///< only while someone listens
};

} // namespace Platform
