#include "platform/linux/X11PointerPresses.h"

#include "platform/ScreenSpace.h"

#include <QCursor>

#include <xcb/xinput.h>

#include <utility>

namespace Platform {

X11PointerPresses::X11PointerPresses(const X11Display& display) : display_(display) {
    if (display_.isConnected()) {
        const xcb_query_extension_reply_t* found =
            xcb_get_extension_data(display_.connection(), &xcb_input_id);
        extension_ = found && found->present ? found->major_opcode : 0;
    }
}

void X11PointerPresses::setOnPress(std::function<void(FellowCore::Point)> handler) {
    const bool wasWatching = static_cast<bool>(handler_);
    handler_ = std::move(handler);
    if (extension_ == 0 || wasWatching == static_cast<bool>(handler_))
        return;
    if (handler_) {
        filter_.emplace([this](const xcb_generic_event_t& event) { received(event); });
        select(XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS);
    } else {
        select(0);
        filter_.reset();
    }
}

void X11PointerPresses::select(std::uint32_t events) {
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } const wanted{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, events};
    xcb_input_xi_select_events(display_.connection(), display_.root(), 1, &wanted.head);
    xcb_flush(display_.connection());
}

void X11PointerPresses::received(const xcb_generic_event_t& event) {
    if (x11EventNumber(event) != XCB_GE_GENERIC)
        return;
    const auto& generic = x11Event<xcb_ge_generic_event_t>(event);
    if (generic.extension != extension_ || generic.event_type != XCB_INPUT_RAW_BUTTON_PRESS)
        return;
    const auto& press = x11Event<xcb_input_raw_button_press_event_t>(event);
    constexpr std::uint32_t lastRealButton = 3; // 4 and up are the wheel
    if (press.detail <= lastRealButton && handler_) {
        const auto handler = handler_; // it may take itself away
        handler(fromQt(QPointF(QCursor::pos())));
    }
}

} // namespace Platform
