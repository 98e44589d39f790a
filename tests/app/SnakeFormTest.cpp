#include "app/characters/snake/SnakeForm.h"
#include "app/characters/snake/SnakeJob.h"
#include "tests/app/SnakeHarness.h"

#include <QSlider>

namespace SnakeHarness {
namespace {

using testing::HasSubstr;

/// What the form shows, in its own words.
std::string shown(const QWidget& form) {
    std::string text;
    for (const auto* slider : form.findChildren<FormSlider*>()) {
        text += std::to_string(slider->value()) + " ";
    }
    for (const auto* toggle : form.findChildren<FormSwitch*>()) {
        text += toggle->isChecked() ? "on " : "off ";
    }
    for (const auto* label : form.findChildren<QLabel*>()) {
        if (label->text() == QStringLiteral("None yet") || label->text().toInt() > 0) {
            text += label->text().toStdString();
        }
    }
    return text;
}

QPushButton* button(const QWidget& form, const char* words) {
    for (auto* each : form.findChildren<QPushButton*>()) {
        if (each->text() == QString::fromUtf8(words) && !each->isHidden()) {
            return each;
        }
    }
    return nullptr;
}

TEST(SnakeForm, ShowsAndKeepsEverySettingAtOnce) {
    SnakeDesk desk;
    desk.preferences.setInteger(SnakeStore::bestKey, 23);
    QWidget parent;
    const QWidget& form = *makeSnakeForm(*desk.snake, desk.site, &parent);
    EXPECT_EQ(shown(form), "4 15 on on 23");

    int changes = 0;
    QObject::connect(&desk.ability->preferences(), &SnakePreferencesNotice::changed, [&] { ++changes; });
    const auto sliders = form.findChildren<FormSlider*>();
    Q_EMIT sliders.at(0)->chosen(8);
    Q_EMIT sliders.at(1)->chosen(60);
    for (auto* toggle : form.findChildren<FormSwitch*>()) {
        toggle->click();
    }
    EXPECT_EQ(changes, 4) << "each edit is told once, and showing it is no edit";
    EXPECT_EQ(shown(form), "8 60 off off 23");
    EXPECT_EQ(desk.store().speed().level, 8);
    EXPECT_EQ(desk.store().backdropDim(), 0.6);
    EXPECT_FALSE(desk.store().rampAsEating() || desk.store().sounds());

    ASSERT_TRUE(desk.play());
    desk.key(Qt::Key_Plus);
    EXPECT_EQ(shown(form), "9 60 off off 23") << "what the game changes shows in an open form";
}

TEST(SnakeForm, TheBestScoreIsForgottenOnlyAfterAQuestion) {
    SnakeDesk desk;
    desk.preferences.setInteger(SnakeStore::bestKey, 23);
    QWidget parent;
    const QWidget& form = *makeSnakeForm(*desk.snake, desk.site, &parent);
    for (const bool sure : {false, true}) {
        ASSERT_NE(button(form, "Reset best score…"), nullptr);
        EXPECT_EQ(button(form, "Reset it"), nullptr);
        button(form, "Reset best score…")->click();
        EXPECT_EQ(desk.store().bestScore(), 23);
        button(form, sure ? "Reset it" : "Keep it")->click();
        EXPECT_EQ(desk.store().bestScore(), sure ? 0 : 23);
    }
    EXPECT_THAT(shown(form), HasSubstr("None yet"));
    EXPECT_FALSE(button(form, "Reset best score…")->isEnabled()) << "there is nothing left to forget";
    EXPECT_EQ(desk.snake->status(), QStringLiteral("Ready to play"));
}

TEST(SnakeForm, APreviewDarkensWithoutKeepingAnything) {
    SnakeDesk desk;
    QWidget parent;
    const QWidget& form = *makeSnakeForm(*desk.snake, desk.site, &parent);
    auto* preview = form.findChild<SnakeDimPreview*>();
    const auto corner = [preview] { return preview->grab().toImage().pixelColor(1, 1).lightness(); };
    const int before = corner();
    Q_EMIT form.findChildren<FormSlider*>().at(1)->preview(80);
    EXPECT_LT(corner(), before / 2);
    EXPECT_EQ(desk.store().backdropDim(), SnakeStore::defaultDim);
}

} // namespace
} // namespace SnakeHarness
