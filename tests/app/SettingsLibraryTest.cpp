#include "tests/app/SettingsHarness.h"

#include "core/host/OnScreenSet.h"

#include <QScrollBar>
#include <QWheelEvent>

#include <set>

using namespace SettingsHarness;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const char* const panes[] = {"batti", "mira", "munshi", "fourth", "collection.general"};

/// What somebody does to one control.
using Deed = std::function<void(const Library&)>;

Deed click(const char* name) {
    return [name](const Library& library) { library.find<QAbstractButton>(name)->click(); };
}

Deed key(const char* name, int pressed) {
    return [name, pressed](const Library& library) { press(library.find<QWidget>(name), pressed); };
}

struct EditCase {
    const char* fault;
    const char* pane;
    Deed deed;
    const char* call;
};

TEST(SettingsLibraryTest, EachEditMakesOneCallWithItsValue) {
    const EditCase cases[] = {
        {"focus minutes lost", "batti", key("Focus", Qt::Key_Up), "timer batti 26 5 15 4 true"},
        {"short and long rest mixed up", "batti", key("Short rest", Qt::Key_Down),
         "timer batti 25 4 15 4 true"},
        {"long rest lost", "batti", key("Long rest", Qt::Key_Up), "timer batti 25 5 16 4 true"},
        {"the cycle taken for minutes", "batti", key("Long rest after", Qt::Key_Down),
         "timer batti 25 5 15 3 true"},
        {"the switch says what was", "batti", click("Start rests automatically"),
         "timer batti 25 5 15 4 false"},
        {"a timer given to Batti", "fourth", key("Focus", Qt::Key_Up), "timer fourth 26 5 15 4 true"},
        {"an arrow key that only previews", "batti", key("Height", Qt::Key_Right), "size batti 324"},
        {"smaller makes larger", "batti", click("Smaller"), "smaller batti"},
        {"larger makes smaller", "batti", click("Larger"), "larger batti"},
        {"sounds", "batti", click("Sounds"), "sounds batti false"},
        {"percent given for a share", "batti", key("Volume", Qt::Key_Right), "volume batti 0.85"},
        {"mirrored", "batti", click("Face the other way"), "mirrored batti true"},
        {"reduced motion", "batti", click("Reduced motion"), "reduced motion batti false"},
        {"hide names the wrong one", "munshi", click("Hide"), "hide munshi"},
        {"select names the active one", "munshi", click("Select"), "select munshi"},
        {"bring out swaps", "mira", click("Bring out"), "bring out mira"},
        {"swap brings out", "mira", click("Swap with Batti"), "select mira"},
        {"interface sounds", "collection.general", click("Interface sounds"), "interface sounds false"},
        {"interface volume", "collection.general", key("Volume", Qt::Key_Left), "interface volume 0.95"},
        {"start at login", "collection.general", click("Start at login"), "start at login true"},
        {"default height", "collection.general", key("Height of new characters", Qt::Key_Left),
         "default height 316"},
        {"two radio buttons, two calls", "collection.general", click("Along the bottom edge"), "edge bottom"},
        {"compact", "collection.general", click("Compact"), "compact true"},
        {"arrange", "collection.general", click("Arrange now"), "arrange"},
        {"clear", "collection.general", click("Clear shortcut"), "no shortcut"},
        {"folder", "collection.general", click("Open the folder ~/files"), "open folder"},
    };
    for (const EditCase& each : cases) {
        SCOPED_TRACE(each.fault);
        Library library;
        library.controller.show(each.pane);
        each.deed(library);
        EXPECT_THAT(library.log, ElementsAre(each.call));
    }
}

TEST(SettingsLibraryTest, StateThatComesFromOutsideIsShownAndTellsNobody) {
    Library library;
    for (const char* pane : panes) {
        library.controller.show(pane);
    }
    CharacterSettings settings;
    settings.desktopHeight = 411.6;
    settings.sounds = false;
    settings.volume = 0.25;
    settings.mirrored = true;
    settings.reducedMotion = false;
    library.controller.setCharacter("batti", settings);
    library.controller.setTimer("batti", FellowCore::TimerSettings(50, 1, 20, 1, false));
    library.controller.show("batti");
    EXPECT_EQ(library.find<QSlider>("Height")->value(), 412);
    EXPECT_TRUE(library.shows("412 points"));
    EXPECT_FALSE(library.find<FormSwitch>("Sounds")->isChecked());
    EXPECT_EQ(library.find<QSlider>("Volume")->value(), 25);
    EXPECT_TRUE(library.find<FormSwitch>("Face the other way")->isChecked());
    EXPECT_FALSE(library.find<FormSwitch>("Reduced motion")->isChecked());
    EXPECT_EQ(library.find<NumberField>("Focus")->text(), QStringLiteral("50 minutes"));
    EXPECT_EQ(library.find<NumberField>("Short rest")->text(), QStringLiteral("1 minute"));
    EXPECT_EQ(library.find<NumberField>("Long rest after")->text(), QStringLiteral("1 focus phase"));
    EXPECT_FALSE(library.find<FormSwitch>("Start rests automatically")->isChecked());

    library.general.interfaceSounds = false;
    library.general.arrangeEdge = FellowCore::ArrangeLayout::Edge::bottom;
    library.general.startAtLogin = true;
    library.general.systemReducesMotion = true;
    library.controller.setGeneral(library.general);
    library.controller.show(LibraryWindowController::generalPane);
    EXPECT_FALSE(library.find<FormSwitch>("Interface sounds")->isChecked());
    EXPECT_TRUE(library.find<FormRadio>("Along the bottom edge")->isChecked());
    EXPECT_FALSE(library.find<FormRadio>("Along the right edge")->isChecked());
    EXPECT_TRUE(library.find<FormSwitch>("Start at login")->isChecked());
    EXPECT_TRUE(library.shows("Your system asks for reduced motion, so characters keep still."));
    EXPECT_TRUE(library.shows("Deskfellow 1.2"));
    EXPECT_THAT(library.log, IsEmpty());
}

struct PlaceCase {
    const char* fault;
    const char* pane;
    const char* active;
    std::vector<std::string> onScreen;
    DesktopVisibility visibility;
    std::set<std::string> buttons;
    const char* sentence;
};

TEST(SettingsLibraryTest, WhereACharacterStandsDecidesItsButtons) {
    const auto shown = DesktopVisibility::shown;
    const auto hidden = DesktopVisibility::hidden;
    const PlaceCase cases[] = {
        {"select offered for the active one",
         "batti",
         "batti",
         {"batti"},
         shown,
         {"Hide"},
         "On the desktop, and active."},
        {"an inactive one cannot be chosen",
         "munshi",
         "batti",
         {"batti", "munshi"},
         shown,
         {"Select", "Hide"},
         "Together with Batti."},
        {"no swap where somebody stands",
         "mira",
         "batti",
         {"batti"},
         shown,
         {"Bring out", "Swap with Batti"},
         "On the desktop now: Batti."},
        {"swap with nobody", "mira", "", {}, shown, {"Bring out"}, "Not on the desktop."},
        {"hiding what is hidden", "batti", "batti", {"batti"}, hidden, {"Show"}, "Hidden for now."},
        {"a character that is not available comes out",
         "locked",
         "batti",
         {"batti"},
         shown,
         {},
         "Locked is not available here."},
        {"an ampersand becomes a mnemonic",
         "mira",
         "fourth",
         {"fourth"},
         shown,
         {"Bring out", "Swap with A & B"},
         "On the desktop now: A & B."},
    };
    for (const PlaceCase& each : cases) {
        SCOPED_TRACE(each.fault);
        Library library;
        library.controller.setRoster({Library::entry("batti", "Batti", "Focus", true),
                                      Library::entry("mira", "Mira", "Breathing", false),
                                      Library::entry("munshi", "Munshi", "Ledger", false),
                                      Library::entry("fourth", "A & B", "", false),
                                      Library::entry("locked", "Locked", "", false)});
        library.controller.setActive(each.active, each.onScreen, {"batti", "mira", "munshi", "fourth"},
                                     each.visibility);
        library.controller.show(each.pane);
        std::set<std::string> buttons;
        for (const QPushButton* button : library.controller.window()->findChildren<QPushButton*>()) {
            const std::string name = button->accessibleName().toStdString();
            if (button->isVisible() && name != "Smaller" && name != "Larger") {
                buttons.insert(name);
                EXPECT_TRUE(button->isEnabled()) << name;
                EXPECT_EQ(
                    QString(button->text()).replace(QStringLiteral("&&"), QStringLiteral("&")).toStdString(),
                    name);
            }
        }
        EXPECT_EQ(buttons, each.buttons);
        EXPECT_TRUE(library.shows(each.sentence));
        EXPECT_FALSE(library.shows("Hide a character to make room."));
    }
}

TEST(SettingsLibraryTest, AFullDesktopSaysHowToMakeRoom) {
    Library library;
    library.controller.show("mira");
    EXPECT_TRUE(library.find<QPushButton>("Bring out")->isEnabled());
    library.controller.setActive("batti", {"batti", "munshi", "fourth"},
                                 {"batti", "munshi", "fourth", "mira"});
    QPushButton* bringOut = library.find<QPushButton>("Bring out");
    EXPECT_FALSE(bringOut->isEnabled());
    EXPECT_EQ(bringOut->accessibleDescription(), QStringLiteral("Hide a character to make room."));
    EXPECT_TRUE(library.shows("Hide a character to make room."));
    library.controller.setActive("batti", {"batti", "munshi"}, {"batti", "munshi", "fourth", "mira"});
    EXPECT_TRUE(bringOut->isEnabled());
    EXPECT_TRUE(bringOut->accessibleDescription().isEmpty());
    EXPECT_FALSE(library.shows("Hide a character to make room."));
}

TEST(SettingsLibraryTest, OnlyWhatACharacterHasIsShown) {
    Library library;
    library.controller.show("munshi");
    for (const QWidget* each : library.controller.window()->findChildren<QWidget*>()) {
        for (const char* absent : {"Focus", "Sounds", "Volume", "Face the other way", "Own switch"}) {
            EXPECT_FALSE(each->isVisible() && each->accessibleName() == QString::fromUtf8(absent)) << absent;
        }
    }
    library.controller.show("mira");
    EXPECT_NE(library.find<FormSwitch>("Own switch"), nullptr);
}

TEST(SettingsLibraryTest, TheListSpeaksOfEachCharacterAndWhereItStands) {
    Library library;
    library.controller.show("batti");
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(library.list());
    std::vector<std::string> spoken;
    spoken.reserve(5);
    for (int row = 0; row < list->childCount(); ++row) {
        spoken.push_back(list->child(row)->text(QAccessible::Name).toStdString());
    }
    EXPECT_THAT(spoken, ElementsAre("Batti, Focus, on screen, active", "Mira, Breathing",
                                    "Munshi, Ledger, on screen", "A & B", "General"));
}

TEST(SettingsLibraryTest, NothingInTheWindowIsWithoutAName) {
    Library library;
    for (const char* pane : panes) {
        library.controller.show(pane);
        int controls = 0;
        for (QWidget* each : library.controller.window()->findChildren<QWidget*>()) {
            const bool partOfANamedControl = each->focusProxy() != nullptr;
            const bool control =
                each->focusPolicy() != Qt::NoFocus || qobject_cast<QAbstractSlider*>(each) != nullptr;
            if (!each->isVisible() || !control || partOfANamedControl) {
                continue;
            }
            ++controls;
            EXPECT_FALSE(accessibleName(each).empty()) << pane << ": a " << each->metaObject()->className();
        }
        EXPECT_GT(controls, 3) << pane;
    }
}

TEST(SettingsLibraryTest, TheTabKeyReachesEveryControl) {
    for (const char* pane : panes) {
        SCOPED_TRACE(pane);
        Library library;
        library.controller.show(pane);
        QWidget* window = library.controller.window();
        ASSERT_TRUE(Testing::waitUntil([&] { return window->isActiveWindow(); }));
        library.list()->setFocus();
        std::set<QWidget*> reached;
        for (QWidget* at = QApplication::focusWidget(); at != nullptr && reached.insert(at).second;
             at = QApplication::focusWidget()) {
            press(at, Qt::Key_Tab);
        }
        for (QWidget* each : window->findChildren<QWidget*>()) {
            const bool wanted = each->isVisible() && each->isEnabled() && each->focusProxy() == nullptr &&
                                (each->focusPolicy() & Qt::TabFocus) != 0;
            // A group of radio buttons is one stop; arrow keys go on from there.
            const auto* radio = qobject_cast<QRadioButton*>(each);
            if (wanted && (radio == nullptr || radio->isChecked())) {
                EXPECT_TRUE(reached.count(each) == 1) << accessibleName(each);
            }
        }
    }
}

TEST(SettingsLibraryTest, ThePaneIsToldOnlyWhenThePersonChoosesIt) {
    Library library;
    library.controller.show("nobody");
    EXPECT_EQ(library.controller.pane(), LibraryWindowController::generalPane);
    library.controller.show("mira");
    EXPECT_THAT(library.log, IsEmpty());
    press(library.list(), Qt::Key_Down);
    EXPECT_THAT(library.log, ElementsAre("pane munshi"));
    EXPECT_EQ(library.controller.pane(), "munshi");
    library.controller.show({});
    EXPECT_EQ(library.controller.pane(), "munshi");

    library.controller.setRoster({Library::entry("batti", "Batti", "Focus", true)});
    EXPECT_EQ(library.controller.pane(), LibraryWindowController::generalPane) << "the open character left";
    EXPECT_NE(library.find<FormSwitch>("Interface sounds"), nullptr);
    EXPECT_EQ(library.log.size(), 1U);
}

TEST(SettingsLibraryTest, AClosedWindowIsGoneAndComesBackAsItWas) {
    Library library;
    EXPECT_EQ(library.controller.window(), nullptr);
    library.controller.show("batti");
    const QPointer<QWidget> first = library.controller.window();
    EXPECT_EQ(first->windowTitle(), QStringLiteral("Deskfellow"));
    library.controller.close();
    EXPECT_FALSE(library.controller.isVisible());
    library.controller.show({});
    EXPECT_TRUE(library.controller.isVisible());
    EXPECT_NE(library.controller.window(), first.data()) << "the one that is being destroyed was shown again";
    EXPECT_EQ(library.controller.pane(), "batti");
    EXPECT_TRUE(Testing::waitUntil([&] { return first.isNull(); }));
    EXPECT_TRUE(library.controller.isVisible());
}

TEST(SettingsLibraryTest, ATypedNumberCountsOnceWhenItIsFinished) {
    Library library;
    library.controller.show("batti");
    ASSERT_TRUE(Testing::waitUntil([&] { return library.controller.window()->isActiveWindow(); }));
    auto* focus = library.find<NumberField>("Focus");
    focus->setFocus();
    focus->selectAll();
    press(focus, Qt::Key_4, {}, QStringLiteral("4"));
    press(focus, Qt::Key_5, {}, QStringLiteral("5"));
    EXPECT_THAT(library.log, IsEmpty()) << "four minutes were never meant";
    library.controller.close();
    EXPECT_THAT(library.log, ElementsAre("timer batti 45 5 15 4 true"));
}

TEST(SettingsLibraryTest, ADragPreviewsAndEndsInOneChoice) {
    Library library;
    library.controller.show("batti");
    auto* height = library.find<QSlider>("Height");
    height->setSliderDown(true);
    height->setValue(400);
    height->setValue(500);
    library.controller.setCharacter("batti", CharacterSettings{});
    EXPECT_EQ(height->value(), 500) << "the handle was pulled from under the pointer";
    height->setSliderDown(false);
    EXPECT_THAT(library.log,
                ElementsAre("size preview batti 400", "size preview batti 500", "size batti 500"));

    library.log.clear();
    height->setSliderDown(true);
    height->setSliderDown(false);
    EXPECT_THAT(library.log, IsEmpty()) << "a press on the handle is no choice";
}

TEST(SettingsLibraryTest, AWheelThatScrollsThePageChangesNoControlOnItsWay) {
    Library library;
    library.controller.show("batti");
    library.list()->setFocus();
    for (const char* name : {"Focus", "Height"}) {
        auto* control = library.find<QWidget>(name);
        QWheelEvent wheel(QPointF(5, 5), control->mapToGlobal(QPointF(5, 5)), {}, QPoint(0, -120),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(control, &wheel);
    }
    EXPECT_THAT(library.log, IsEmpty());
}

TEST(SettingsLibraryTest, AFailureToStartAtLoginIsSaidAndTheSwitchGoesBack) {
    Library library;
    library.controller.show(LibraryWindowController::generalPane);
    library.startAtLoginAnswer = QStringLiteral("The folder is read-only.");
    auto* start = library.find<FormSwitch>("Start at login");
    start->click();
    EXPECT_FALSE(start->isChecked());
    EXPECT_TRUE(library.shows("The folder is read-only."));
    library.startAtLoginAnswer.clear();
    start->click();
    EXPECT_TRUE(start->isChecked());
    EXPECT_FALSE(library.shows("The folder is read-only."));
    EXPECT_THAT(library.log, ElementsAre("start at login true", "start at login true"));
}

} // namespace
