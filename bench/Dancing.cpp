// What Thumka costs while she dances: processor time of the program and its wake-ups, and the poses that were
// seen meanwhile.

#include "bench/support/CharacterWatch.h"
#include "bench/support/Figures.h"
#include "bench/support/Options.h"
#include "bench/support/SilentPlayer.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <xcb/xcb.h>

#include <memory>
#include <set>
#include <stdexcept>
#include <string>

namespace {

constexpr double processorBudgetPercent = 1;
constexpr int settlingSeconds = 6; ///< the first title goes meanwhile
constexpr int seconds = 60;
constexpr int quickSeconds = 10;
constexpr int poses = 7;

/// Answers on the bus meanwhile.
void waitFor(std::chrono::milliseconds duration) {
    QEventLoop loop;
    QTimer::singleShot(duration, &loop, &QEventLoop::quit);
    loop.exec();
}

/// The lower right of the screen, where a character comes out, as it looks at one moment.
std::string look(xcb_connection_t* connection) {
    constexpr std::uint16_t side = 420;
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const auto cookie =
        xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, screen->root,
                      static_cast<std::int16_t>(screen->width_in_pixels - side),
                      static_cast<std::int16_t>(screen->height_in_pixels - side), side, side, ~0U);
    const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> image(
        xcb_get_image_reply(connection, cookie, nullptr), &std::free);
    if (!image) {
        throw std::runtime_error("the X server does not show its screen");
    }
    const std::uint8_t* bytes = xcb_get_image_data(image.get());
    return {bytes, bytes + xcb_get_image_data_length(image.get())};
}

/// How many different pictures eight poses make.
std::size_t posesSeen() {
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    std::set<std::string> seen;
    for (int count = 0; count < 24; ++count) {
        seen.insert(look(connection.get()));
        waitFor(std::chrono::milliseconds(200));
    }
    return seen.size();
}

int run(int count, char** values) {
    const Bench::Options options(count, values);
    const QCoreApplication application(count, values);
    const Bench::SilentPlayer player;
    const Bench::TemporaryHome home({"thumka"});
    Bench::CharacterWatch watch;
    const Bench::RunningProgram program(options.program, home);
    watch.wait(1);
    waitFor(std::chrono::seconds(settlingSeconds));
    const Bench::Usage before = program.usage();
    const auto start = std::chrono::steady_clock::now();
    waitFor(std::chrono::seconds(options.quick ? quickSeconds : seconds));
    const Bench::Usage after = program.usage();
    const double elapsed = Bench::millisecondsBetween(start, std::chrono::steady_clock::now());
    if (!player.wasAsked() || posesSeen() < poses) {
        throw std::runtime_error("she did not dance, so nothing was measured");
    }
    Bench::Figures figures;
    const double used = static_cast<double>(after.processorNanoseconds - before.processorNanoseconds) / 1e6;
    figures.add({"Thumka dancing: processor", {100 * used / elapsed}, "%", processorBudgetPercent, 2});
    figures.add({"Thumka dancing: wake-ups",
                 {1000 * static_cast<double>(after.wakeups - before.wakeups) / elapsed},
                 "/s",
                 {},
                 2});
    figures.note("two poses a second at the standard size; the X server's share not counted");
    return figures.status();
}

} // namespace

int main(int count, char** values) {
    return Bench::reporting(run, count, values);
}
