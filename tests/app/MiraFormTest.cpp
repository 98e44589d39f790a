#include "app/characters/mira/MiraForm.h"

#include "app/characters/mira/HalfSecondField.h"
#include "app/characters/mira/PatternCurve.h"
#include "tests/app/MiraHarness.h"

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSlider>

namespace AppHarness {
namespace {

using FellowCore::BreathingMode;

class MiraFormTest : public testing::Test {
protected:
    MiraFormTest() {
        script.run("show");
        form = std::make_unique<MiraForm>(*script.mira);
        form->resize(560, form->sizeHint().height());
        form->show();
    }

    /// The visible control of that accessible name.
    template <typename Widget>
    Widget* find(const char* name) const {
        for (Widget* each : form->findChildren<Widget*>()) {
            if (each->isVisible() && each->accessibleName() == QString::fromUtf8(name)) {
                return each;
            }
        }
        return nullptr;
    }

    /// Whether some line of text is shown.
    bool shows(const char* words) const {
        const auto labels = form->findChildren<QLabel*>();
        return std::ranges::any_of(labels, [words](const QLabel* label) {
            return label->isVisible() && label->text().contains(QString::fromUtf8(words));
        });
    }

    static void key(QWidget* field, int code, const QString& text = {}) {
        QKeyEvent press(QEvent::KeyPress, code, Qt::NoModifier, text);
        QApplication::sendEvent(field, &press);
        QKeyEvent release(QEvent::KeyRelease, code, Qt::NoModifier, text);
        QApplication::sendEvent(field, &release);
    }

    /// Types over what stands in a field, and Enter.
    static void type(QWidget* field, const char* words) {
        auto* line = qobject_cast<QLineEdit*>(field);
        line = line != nullptr ? line : field->findChild<QLineEdit*>();
        line->selectAll();
        for (const QChar each : QString::fromUtf8(words)) {
            key(field, 0, each);
        }
        key(field, Qt::Key_Return);
    }

    MiraPreferences& preferences() { return script.preferences(); }

    MiraScript script;
    std::unique_ptr<MiraForm> form;
};

TEST_F(MiraFormTest, TheLengthIsToldInTheUnitThatIsChosen) {
    EXPECT_TRUE(shows("6 rounds, 1 min 3 s"));
    type(find<QSpinBox>("Rounds"), "12");
    EXPECT_TRUE(shows("12 rounds, 2 min 3 s"));
    EXPECT_EQ(script.mira->session().settings.rounds, 12) << "an idle session takes it at once";
    find<FormRadio>("4–7–8: 4 in, 7 hold, 8 out")->click();
    EXPECT_EQ(find<QSpinBox>("Rounds"), nullptr);
    type(find<QSpinBox>("Rounds of 4–7–8"), "8");
    EXPECT_EQ(preferences().fourSevenEightRounds(), 8);
    find<FormRadio>("Length in minutes")->click();
    EXPECT_EQ(find<QSpinBox>("Rounds of 4–7–8"), nullptr);
    type(find<QSpinBox>("Minutes"), "30");
    EXPECT_TRUE(shows("8 rounds, 2 min 35 s")) << "the cap is told";
    find<FormRadio>("Box · 4–4–4–4: 4 in, 4 hold, 4 out, 4 hold empty")->click();
    EXPECT_TRUE(shows("75 rounds, 20 min 3 s"));
}

TEST_F(MiraFormTest, LengthsComeInHalfSecondsAndShowAtOnce) {
    auto* field = find<HalfSecondField>("Breathe in");
    type(field, "3.3");
    EXPECT_EQ(preferences().customLengths().inhale, 3.5);
    key(field, Qt::Key_Up);
    EXPECT_EQ(preferences().customLengths().inhale, 4);
    type(field, "100");
    EXPECT_LE(preferences().customLengths().inhale, 8);
    type(field, "6");
    EXPECT_EQ(find<PatternCurve>("One round of the pattern")->accessibleDescription(),
              QLatin1String("6 in, 2 hold, 6 out; 14 seconds in all"));
    EXPECT_NE(find<FormRadio>("Custom: 6 in, 2 hold, 6 out"), nullptr);
}

TEST_F(MiraFormTest, PatternsAreKeptByName) {
    auto* name = find<QLineEdit>("Name");
    auto* patterns = find<QComboBox>("Pattern");
    find<QPushButton>("Save as new")->click();
    EXPECT_TRUE(shows("Give the pattern a name first."));
    type(name, "Sea");
    EXPECT_FALSE(shows("Give the pattern a name first."));
    EXPECT_EQ(patterns->currentText(), QLatin1String("Sea"));
    find<QPushButton>("Save as new")->click();
    EXPECT_TRUE(shows("Another pattern has this name."));
    type(name, "Shore");
    EXPECT_EQ(preferences().chosenPattern()->name, "Shore") << "Enter renames a saved one";
    type(find<HalfSecondField>("Hold, full"), "5");
    EXPECT_EQ(preferences().patterns().front().lengths.hold, 5);
    find<QPushButton>("Delete")->click();
    EXPECT_TRUE(preferences().patterns().empty());
    EXPECT_EQ(patterns->count(), 1);
    EXPECT_EQ(name->text(), QString());
    EXPECT_FALSE(find<QPushButton>("Rename")->isEnabled());
}

TEST_F(MiraFormTest, SaysThatASessionIsUnderWayAndFollowsChangesFromElsewhere) {
    EXPECT_FALSE(shows("A session is under way"));
    script.run("start");
    EXPECT_TRUE(shows("A session is under way"));
    preferences().setRhythm(BreathingMode::reset);
    script.mira->preferencesChanged();
    EXPECT_TRUE(find<FormRadio>("Reset: 3 in, 1 more, 6 out")->isChecked());
    EXPECT_EQ(script.mira->session().settings.mode(), BreathingMode::calm) << "the session goes on as it is";
    script.run("end");
    EXPECT_FALSE(shows("A session is under way"));
}

TEST_F(MiraFormTest, SoundsAndMotionAreStored) {
    find<FormSwitch>("Voice")->click();
    EXPECT_FALSE(find<QSlider>("Voice volume")->isEnabled());
    find<QSlider>("Breath volume")->setValue(80);
    find<FormSwitch>("Reduced motion")->click();
    EXPECT_EQ(preferences().voice(), (SoundChoice{false, 0.6}));
    EXPECT_EQ(preferences().breath(), (SoundChoice{true, 0.8}));
    EXPECT_TRUE(preferences().reducedMotion());
}

} // namespace
} // namespace AppHarness
