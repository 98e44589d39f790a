#include "app/desktop/DialoguePalette.h"
#include "app/settings/LibraryPalette.h"
#include "app/settings/Portrait.h"

#include <QPainter>
#include <QPalette>

#include <gmock/gmock.h>

using namespace DeskSprites;

namespace {

struct SystemCase {
    const char* name;
    QPalette system;
};

std::vector<SystemCase> systems() {
    QPalette contrast(Qt::black, Qt::black);
    contrast.setColor(QPalette::WindowText, Qt::white);
    contrast.setColor(QPalette::Text, Qt::white);
    contrast.setColor(QPalette::ButtonText, Qt::white);
    return {{"light", QPalette(QColor(0xef, 0xef, 0xef), QColor(0xef, 0xef, 0xef))},
            {"dark", QPalette(QColor(0x31, 0x36, 0x3b), QColor(0x2a, 0x2e, 0x32))},
            {"high contrast", contrast}};
}

TEST(SettingsLookTest, EveryTextReachesItsContrastOnEveryGround) {
    using Pair = std::pair<QPalette::ColorRole, QPalette::ColorRole>;
    const Pair pairs[] = {
        {QPalette::WindowText, QPalette::Window},  {QPalette::PlaceholderText, QPalette::Window},
        {QPalette::BrightText, QPalette::Window},  {QPalette::Link, QPalette::Window},
        {QPalette::Text, QPalette::Base},          {QPalette::PlaceholderText, QPalette::Base},
        {QPalette::Text, QPalette::AlternateBase}, {QPalette::PlaceholderText, QPalette::AlternateBase},
        {QPalette::ButtonText, QPalette::Button},  {QPalette::HighlightedText, QPalette::Highlight},
    };
    for (const SystemCase& each : systems()) {
        const QPalette palette = LibraryPalette::forSystem(each.system);
        for (const auto& [text, ground] : pairs) {
            if (text == QPalette::Link &&
                palette.color(QPalette::Window) == each.system.color(QPalette::Window)) {
                continue; // the person's own palette, taken as it is
            }
            EXPECT_GE(contrastRatio(palette.color(text), palette.color(ground)), 4.5)
                << each.name << ": role " << text << " on role " << ground;
        }
    }
}

TEST(SettingsLookTest, APaletteForHighContrastIsLeftAlone) {
    const QPalette system = systems()[2].system;
    EXPECT_EQ(LibraryPalette::forSystem(system).color(QPalette::Window), QColor(Qt::black));
    EXPECT_NE(LibraryPalette::forSystem(systems()[1].system).color(QPalette::Window),
              systems()[1].system.color(QPalette::Window));
}

TEST(SettingsLookTest, AnAccentStandsOutOnEveryGroundWhateverItsColour) {
    for (const SystemCase& each : systems()) {
        const QColor ground = LibraryPalette::forSystem(each.system).color(QPalette::Window);
        for (const QColor accent : {QColor(Qt::black), QColor(Qt::white), QColor(196, 97, 64),
                                    QColor(128, 128, 128), QColor(255, 255, 0), QColor(0, 0, 128)}) {
            EXPECT_GE(contrastRatio(LibraryPalette::readable(accent, ground, 3), ground), 3)
                << each.name << ", " << accent.name().toStdString();
        }
    }
    const QColor already(196, 97, 64);
    EXPECT_EQ(LibraryPalette::readable(already, Qt::white, 3), already)
        << "a colour that is fine stays itself";
}

/// A figure two wide and three high, each pixel of another colour, somewhere in a larger clear canvas.
QImage figure() {
    QImage art(20, 16, QImage::Format_ARGB32);
    art.fill(Qt::transparent);
    for (int pixel = 0; pixel < 6; ++pixel) {
        art.setPixelColor(7 + pixel % 2, 4 + pixel / 2, QColor(40 * pixel, 200, 30));
    }
    return art;
}

struct PortraitCase {
    const char* fault;
    qreal ratio;
    QSize box;
    QRect figure; ///< where it must stand, device pixels
};

TEST(SettingsLookTest, APortraitStandsOnTheGroundInWholePixels) {
    const PortraitCase cases[] = {
        {"the clear margin is taken for the figure", 1, {20, 30}, {0, 0, 20, 30}},
        {"soft at a size that is no multiple", 1, {25, 31}, {3, 1, 20, 30}},
        {"floats above the ground", 1, {60, 12}, {26, 0, 8, 12}},
        {"half the resolution of the screen", 2, {20, 30}, {0, 0, 40, 60}},
    };
    for (const PortraitCase& each : cases) {
        SCOPED_TRACE(each.fault);
        QImage screen(each.box * each.ratio, QImage::Format_ARGB32_Premultiplied);
        screen.setDevicePixelRatio(each.ratio);
        screen.fill(Qt::white);
        QPainter painter(&screen);
        const QImage art = figure();
        paintPortrait(painter, art, QRect(QPoint(), each.box));
        painter.end();
        const int side = each.figure.width() / 2;
        for (int y = 0; y < screen.height(); ++y) {
            for (int x = 0; x < screen.width(); ++x) {
                const QPoint inside = QPoint(x, y) - each.figure.topLeft();
                const QColor expected = each.figure.contains(x, y)
                                            ? art.pixelColor(7 + inside.x() / side, 4 + inside.y() / side)
                                            : QColor(Qt::white);
                ASSERT_EQ(screen.pixelColor(x, y).rgb(), expected.rgb()) << x << ", " << y;
            }
        }
    }
}

TEST(SettingsLookTest, APortraitOfNothingDrawsNothing) {
    QImage clear(8, 8, QImage::Format_ARGB32);
    clear.fill(Qt::transparent);
    for (const QImage& art : {QImage(), clear}) {
        QImage screen(10, 10, QImage::Format_ARGB32_Premultiplied);
        screen.fill(Qt::white);
        QPainter painter(&screen);
        paintPortrait(painter, art, screen.rect());
        painter.end();
        EXPECT_EQ(screen.pixelColor(5, 9), QColor(Qt::white));
    }
}

} // namespace
