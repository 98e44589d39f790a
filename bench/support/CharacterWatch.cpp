#include "bench/support/CharacterWatch.h"

#include <poll.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <thread>

namespace Bench {

namespace {

constexpr auto patience = std::chrono::seconds(10);
constexpr auto betweenLooks = std::chrono::microseconds(200);
constexpr std::uint8_t depthWithAlpha = 32;
constexpr int smallestCharacter = 32; ///< pixels; helper windows of a toolkit are smaller

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};
template <typename Reply>
using Owned = std::unique_ptr<Reply, Free>;

struct Alphas {
    bool transparent = false;
    bool opaque = false;
};

void collect(xcb_connection_t* connection, xcb_get_image_cookie_t cookie, Alphas& alphas) {
    const Owned<xcb_get_image_reply_t> image(xcb_get_image_reply(connection, cookie, nullptr));
    if (!image) {
        return; // gone, or not shown yet
    }
    const std::uint8_t* bytes = xcb_get_image_data(image.get());
    const int count = xcb_get_image_data_length(image.get());
    for (int i = 3; i < count; i += 4) {
        alphas.transparent = alphas.transparent || bytes[i] == 0;
        alphas.opaque = alphas.opaque || bytes[i] == 255;
    }
}

} // namespace

CharacterWatch::CharacterWatch() : connection_(xcb_connect(nullptr, nullptr), xcb_disconnect) {
    if (xcb_connection_has_error(connection_.get()) != 0) {
        throw std::runtime_error("no X server answers; run this under tools/with-desktop");
    }
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data->root;
    const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_.get(), root, XCB_CW_EVENT_MASK, &events);
    const Owned<xcb_get_input_focus_reply_t> answered(
        xcb_get_input_focus_reply(connection_.get(), xcb_get_input_focus(connection_.get()), nullptr));
}

CharacterWatch::~CharacterWatch() = default;

std::vector<Appearance> CharacterWatch::wait(std::size_t count) {
    std::vector<Appearance> appeared;
    pending_.clear();
    const Time end = std::chrono::steady_clock::now() + patience;
    while (appeared.size() < count) {
        readEvents();
        std::erase_if(pending_, [&](const Pending& one) {
            if (!isDrawn(one.window)) {
                return false;
            }
            appeared.push_back({one.mapped, std::chrono::steady_clock::now()});
            return true;
        });
        if (std::chrono::steady_clock::now() > end) {
            throw std::runtime_error("no character came on the screen in ten seconds");
        }
        if (pending_.empty()) {
            pollfd waiting{xcb_get_file_descriptor(connection_.get()), POLLIN, 0};
            ::poll(&waiting, 1, 100);
        } else {
            std::this_thread::sleep_for(betweenLooks);
        }
    }
    return appeared;
}

void CharacterWatch::readEvents() {
    while (const Owned<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
        if ((event->response_type & 0x7F) != XCB_MAP_NOTIFY) {
            continue;
        }
        const Time now = std::chrono::steady_clock::now();
        const auto* map = reinterpret_cast<const xcb_map_notify_event_t*>(event.get());
        if (map->override_redirect != 0 && isCharacter(map->window)) {
            pending_.push_back({map->window, now});
        }
    }
}

bool CharacterWatch::isCharacter(xcb_window_t window) const {
    const Owned<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection_.get(), xcb_get_geometry(connection_.get(), window), nullptr));
    return geometry && geometry->depth == depthWithAlpha && geometry->width > smallestCharacter &&
           geometry->height > smallestCharacter;
}

bool CharacterWatch::isDrawn(xcb_window_t window) const {
    xcb_connection_t* const server = connection_.get();
    const Owned<xcb_get_geometry_reply_t> size(
        xcb_get_geometry_reply(server, xcb_get_geometry(server, window), nullptr));
    if (!size) {
        return false;
    }
    const auto image = [&](int x, int y, int width, int height) {
        return xcb_get_image(server, XCB_IMAGE_FORMAT_Z_PIXMAP, window, static_cast<std::int16_t>(x),
                             static_cast<std::int16_t>(y), static_cast<std::uint16_t>(width),
                             static_cast<std::uint16_t>(height), ~0U);
    };
    const auto column = image(size->width / 2, 0, 1, size->height);
    const auto row = image(0, size->height / 2, size->width, 1);
    // A new window shows what lies below it, which is all opaque; art has both kinds.
    Alphas alphas;
    collect(server, column, alphas);
    collect(server, row, alphas);
    return alphas.transparent && alphas.opaque;
}

} // namespace Bench
