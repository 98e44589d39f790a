#include "app/desktop/DialoguePalette.h"

#include <QPalette>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using namespace DeskSprites;
using Accent = FellowCore::CharacterManifest::Accent;

struct AccentCase {
    const char* fault;
    Accent accent;
};

const AccentCase accentCases[] = {
    {"Batti", {0.77, 0.38, 0.25}},
    {"Mira", {0.27, 0.48, 0.42}},
    {"the interns", {0.31, 0.39, 0.6}},
    {"Nori", {0.7, 0.4, 0.2}},
    {"yellow is far too light for cream", {1, 1, 0}},
    {"pure green is light and has one channel", {0, 1, 0}},
    {"pure blue is far too dark for a dark desktop", {0, 0, 1}},
    {"black has no hue to keep", {0, 0, 0}},
    {"white has no hue to keep", {1, 1, 1}},
    {"the paper itself has no contrast to begin with", {0.992, 0.961, 0.902}},
    {"the dark paper itself", {0.165, 0.125, 0.133}},
    {"beyond its range", {7, -3, 0.5}},
    {"no number", {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 0}},
};

TEST(KitPalette, TextIsReadableWithEveryAccentOnEitherDesktop) {
    for (const DesktopTheme theme : {DesktopTheme::light, DesktopTheme::dark}) {
        for (const AccentCase& row : accentCases) {
            SCOPED_TRACE(testing::Message()
                         << row.fault << (theme == DesktopTheme::dark ? ", dark" : ", light"));
            const DialoguePalette palette = DialoguePalette::forAccent(row.accent, theme);
            EXPECT_EQ(palette.theme(), theme);
            EXPECT_GE(contrastRatio(palette.ink, palette.paper), 7);
            EXPECT_GE(contrastRatio(palette.ink, palette.hover), 4.5);
            EXPECT_GE(contrastRatio(palette.ink, palette.pressed), 4.5);
            EXPECT_GE(contrastRatio(palette.quietInk(), palette.paper), 4.5);
            EXPECT_GE(contrastRatio(palette.quietInk(), palette.hover), 4.5);
            for (const QColor& ground : {palette.accent, palette.accentHover(), palette.accentPressed()}) {
                EXPECT_GE(contrastRatio(palette.paper, ground), 4.5) << ground.name().toStdString();
            }
            EXPECT_NE(palette.hover, palette.paper);
            EXPECT_NE(palette.pressed, palette.hover);
            EXPECT_NE(palette.accentHover(), palette.accent);
        }
    }
}

TEST(KitPalette, AnAccentIsShiftedNoFurtherThanItMust) {
    const DialoguePalette light = DialoguePalette::forAccent({0.27, 0.48, 0.42}, DesktopTheme::light);
    EXPECT_EQ(light.accent, QColor(69, 122, 107)) << "readable as it is";
    const DialoguePalette dark = DialoguePalette::forAccent({0.27, 0.48, 0.42}, DesktopTheme::dark);
    EXPECT_NE(dark.accent, light.accent);
    EXPECT_LT(contrastRatio(dark.accent, dark.paper), 4.8);
    EXPECT_NEAR(dark.accent.hslHueF(), light.accent.hslHueF(), 0.02);
}

TEST(KitPalette, ADarkenedYellowGoesBrownNotOlive) {
    const QColor accent = DialoguePalette::forAccent({0.95, 0.8, 0.1}, DesktopTheme::light).accent;
    EXPECT_GT(accent.red(), accent.green() + 30) << accent.name().toStdString();
}

TEST(KitPalette, ContrastFollowsTheWebGuidelines) {
    EXPECT_NEAR(contrastRatio(Qt::black, Qt::white), 21, 1e-6);
    EXPECT_NEAR(contrastRatio(Qt::white, Qt::black), 21, 1e-6) << "the order must not matter";
    EXPECT_NEAR(contrastRatio(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.005)
        << "the well-known near miss";
    EXPECT_NEAR(contrastRatio(Qt::red, Qt::white), 4.0, 0.005) << "channels weigh differently";
    EXPECT_NEAR(contrastRatio(Qt::blue, Qt::blue), 1, 1e-9);
}

TEST(KitPalette, TheThemeIsReadFromTheWindowColours) {
    QPalette desktop;
    desktop.setColor(QPalette::Window, QColor(0x2b, 0x2b, 0x30));
    desktop.setColor(QPalette::WindowText, Qt::white);
    EXPECT_EQ(desktopTheme(desktop), DesktopTheme::dark);
    desktop.setColor(QPalette::Window, QColor(0xef, 0xef, 0xef));
    desktop.setColor(QPalette::WindowText, Qt::black);
    EXPECT_EQ(desktopTheme(desktop), DesktopTheme::light);
}

} // namespace
