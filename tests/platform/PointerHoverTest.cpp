#include "platform/linux/PointerHover.h"
#include "tests/support/Waiting.h"

#include <gmock/gmock.h>

namespace {

constexpr QPointF here(10, 10);
constexpr QPointF there(90, 10);

/// Plays a script of window-system news and collects what is told: E and L. In the script: e, l, m at "here",
/// E, L, M at "there", h and u for held and let go, w for a wait longer than the grace.
std::string told(const char* script) {
    std::string made;
    Platform::PointerHover hover;
    hover.onEnter = [&] { made += 'E'; };
    hover.onLeave = [&] { made += 'L'; };
    for (const char* step = script; *step; ++step) {
        const QPointF at = *step >= 'a' ? here : there;
        switch (*step) {
        case 'e':
        case 'E':
            hover.entered(at);
            break;
        case 'l':
        case 'L':
            hover.left(at);
            break;
        case 'm':
        case 'M':
            hover.moved(at);
            break;
        case 'h':
        case 'u':
            hover.setHeld(*step == 'h');
            break;
        default:
            Testing::runFor(Platform::PointerHover::graceMilliseconds + 60);
        }
    }
    return made;
}

TEST(PointerHoverTest, MovingCountsAndChangingUnderneathDoesNot) {
    struct Case {
        const char* fault;
        const char* script;
        const char* told;
    };
    const Case cases[] = {
        {"coming and going is not told", "emL", "EL"},
        {"a blink is a leave", "emlewm", "E"},
        {"a lasting change leaves it lit", "emlw", "EL"},
        {"a pointer that only passed stays lit", "Elw", "EL"},
        {"art that comes under a resting pointer lights up", "emLE", "EL"},
        {"the move after it is not", "emlwem", "ELE"},
        {"a drag flickers", "emhLEMu", "E"},
        {"a drag that ends elsewhere stays lit", "emhLMu", "EL"},
    };
    for (const Case& row : cases)
        EXPECT_EQ(told(row.script), row.told) << row.fault;
}

} // namespace
