// What it costs that the pointer's region follows the art when a pose changes.

#include "bench/support/Figures.h"
#include "bench/support/Options.h"

#include "app/characters/manifest/ManifestSpriteView.h"
#include "core/art/DesktopSize.h"
#include "platform/System.h"
#include "platform/image/PngDecoder.h"

#include <QApplication>

#include <xcb/shape.h>
#include <xcb/xcb.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <stdexcept>

namespace {

using Clock = std::chrono::steady_clock;
using FellowCore::ManifestCharacter;

constexpr double budgetMicroseconds = 150;
constexpr int changesInBatch = 50;
constexpr int batches = 100;
constexpr int quickBatches = 20;

xcb_connection_t* connection() {
    auto* const native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (native == nullptr) {
        throw std::runtime_error("this needs an X server");
    }
    return native->connection();
}

/// Returns when the server has done all that was asked of it.
void roundTrip() {
    std::free(xcb_get_input_focus_reply(connection(), xcb_get_input_focus(connection()), nullptr));
}

/// The rectangles of a window that take the pointer, as the server has them.
std::vector<std::array<int, 4>> serverRegion(unsigned long long window) {
    xcb_connection_t* const server = connection();
    auto* const reply = xcb_shape_get_rectangles_reply(
        server, xcb_shape_get_rectangles(server, static_cast<xcb_window_t>(window), XCB_SHAPE_SK_INPUT),
        nullptr);
    std::vector<std::array<int, 4>> made;
    for (int i = 0; reply != nullptr && i < xcb_shape_get_rectangles_rectangles_length(reply); ++i) {
        const xcb_rectangle_t& one = xcb_shape_get_rectangles_rectangles(reply)[i];
        made.push_back({one.x, one.y, one.width, one.height});
    }
    std::free(reply);
    return made;
}

/// Microseconds for one call of `change`, as its batch had it: the calls, and then the server having done
/// them.
template <typename Change>
std::vector<double> measure(int rounds, const Change& change) {
    std::vector<double> each;
    for (int round = -1; round < rounds; ++round) {
        roundTrip();
        const auto start = Clock::now();
        for (int i = 0; i < changesInBatch; ++i) {
            change(i % 2);
        }
        roundTrip();
        const std::chrono::duration<double, std::micro> batch = Clock::now() - start;
        QApplication::processEvents(); // the redraws that were asked for are not part of it
        if (round >= 0) {
            each.push_back(batch.count() / changesInBatch);
        }
    }
    return each;
}

std::vector<QRectF> region(const ManifestCharacter& character, const std::string& pose,
                           const FellowCore::ManifestCharacterLayout& layout) {
    std::vector<QRectF> made;
    for (const FellowCore::AlphaRun& run : character.alphaRuns(pose)) {
        made.emplace_back(layout.artwork.x + run.x0 * layout.unit, layout.artwork.y + run.y0 * layout.unit,
                          (run.x1 - run.x0) * layout.unit, (run.y1 - run.y0) * layout.unit);
    }
    return made;
}

int run(int count, char** values) {
    const Bench::Options options(count, values);
    const QApplication application(count, values);
    const int rounds = options.quick ? quickBatches : batches;
    const auto munshi = std::make_shared<const ManifestCharacter>(options.resources / "characters" / "munshi",
                                                                  Platform::decodePng);
    const auto system = Platform::makeSystem();
    DeskSprites::ManifestSpriteView view(munshi);
    const auto surface = system->makeSurface(view);
    view.attach(*surface);
    const auto layout = munshi->layout(FellowCore::DesktopSize::standardHeight, surface->backingScale(),
                                       FellowCore::Sizing::snapped);
    surface->setFrame({100, 100, layout.size.width, layout.size.height});
    view.setLayout(layout);
    surface->show();
    QApplication::processEvents();

    Bench::Figures figures;
    const std::array regions{region(*munshi, "idle", layout), region(*munshi, "writing", layout)};
    const std::array<std::string, 2> poses{"idle", "writing"};
    const auto byRegion =
        measure(rounds, [&](int i) { surface->setInputRegion(regions.at(static_cast<std::size_t>(i))); });
    figures.add({"shape: another input region", byRegion, "us", budgetMicroseconds});
    surface->setInputRegion(regions[0]);
    const auto idle = serverRegion(surface->windowId());
    surface->setInputRegion(regions[1]);
    if (const auto writing = serverRegion(surface->windowId());
        idle.empty() || writing.empty() || idle == writing) {
        throw std::runtime_error("the regions did not reach the server");
    }
    const auto byPose = measure(rounds, [&](int i) { view.setPose(poses.at(static_cast<std::size_t>(i))); });
    figures.add({"shape: another pose, its region made anew", byPose, "us", budgetMicroseconds});
    figures.note("Munshi at the standard size; " + std::to_string(regions[0].size()) + " and " +
                 std::to_string(regions[1].size()) + " rectangles, the server's work included");
    return figures.status();
}

} // namespace

int main(int count, char** values) {
    return Bench::reporting(run, count, values);
}
