#include "app/settings/ShortcutRecorder.h"
#include "tests/app/SettingsHarness.h"

using namespace SettingsHarness;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const char* const invalid = "Hold Ctrl, Alt or Super together with a key.";
const char* const taken = "That shortcut is already taken by another program.";

/// The General pane with the recorder listening.
struct Recording {
    Recording() {
        library.controller.show(LibraryWindowController::generalPane);
        Testing::waitUntil([this] { return library.controller.window()->isActiveWindow(); });
        recorder = library.controller.window()->findChild<ShortcutRecorder*>();
        recorder->setFocus();
        press(recorder, Qt::Key_Space);
        EXPECT_TRUE(recorder->isRecording());
    }
    Library library;
    ShortcutRecorder* recorder = nullptr;
};

struct KeyCase {
    const char* fault;
    int key;
    Qt::KeyboardModifiers modifiers;
    const char* call; ///< null: no call
    bool goesOn;      ///< still recording afterwards
    bool refused;
};

TEST(SettingsShortcutTest, ACombinationIsTakenAndABareKeyIsNot) {
    const auto ctrlAlt = Qt::ControlModifier | Qt::AltModifier;
    const KeyCase cases[] = {
        {"a combination is lost", Qt::Key_B, ctrlAlt, "shortcut Ctrl+Alt+B", false, false},
        {"Super does not count", Qt::Key_D, Qt::MetaModifier, "shortcut Meta+D", false, false},
        {"a function key needs no modifier", Qt::Key_F9, {}, "shortcut F9", false, false},
        {"Space presses the button instead", Qt::Key_Space, Qt::ControlModifier, "shortcut Ctrl+Space", false,
         false},
        {"the keypad is taken for a modifier", Qt::Key_5, Qt::ControlModifier | Qt::KeypadModifier,
         "shortcut Ctrl+5", false, false},
        {"a letter would be lost to every program", Qt::Key_B, {}, nullptr, true, true},
        {"a capital letter too", Qt::Key_B, Qt::ShiftModifier, nullptr, true, true},
        {"a modifier alone ends it", Qt::Key_Control, {}, nullptr, true, false},
        {"Escape becomes a shortcut", Qt::Key_Escape, {}, nullptr, false, false},
        {"Tab is caught", Qt::Key_Tab, {}, nullptr, false, false},
    };
    for (const KeyCase& each : cases) {
        SCOPED_TRACE(each.fault);
        Recording recording;
        press(recording.recorder, each.key, each.modifiers);
        EXPECT_EQ(recording.recorder->isRecording(), each.goesOn);
        EXPECT_EQ(recording.library.shows(invalid), each.refused);
        if (each.call != nullptr) {
            EXPECT_THAT(recording.library.log, ElementsAre(each.call));
        } else {
            EXPECT_THAT(recording.library.log, IsEmpty());
        }
    }
}

TEST(SettingsShortcutTest, ATakenShortcutIsSaidAndTheOldOneStays) {
    Recording recording;
    recording.library.shortcutAnswer = Platform::ShortcutResult::taken;
    press(recording.recorder, Qt::Key_B, Qt::ControlModifier);
    EXPECT_TRUE(recording.library.shows(taken));
    EXPECT_EQ(recording.recorder->text(), QStringLiteral("Ctrl+Alt+D"));

    recording.library.shortcutAnswer = Platform::ShortcutResult::registered;
    recording.recorder->click();
    EXPECT_FALSE(recording.library.shows(taken)) << "an old complaint beside a new attempt";
    press(recording.recorder, Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(recording.recorder->text(), QStringLiteral("Ctrl+N"));
    EXPECT_FALSE(recording.library.shows(taken));
}

TEST(SettingsShortcutTest, WhereTheDesktopHasNoneTheFieldSaysWhatToDo) {
    Library library;
    library.general.shortcutSupported = false;
    library.general.shortcutLabel.clear();
    library.controller.setGeneral(library.general);
    library.controller.show(LibraryWindowController::generalPane);
    EXPECT_FALSE(library.controller.window()->findChild<ShortcutRecorder*>()->isEnabled());
    EXPECT_FALSE(library.find<QPushButton>("Clear shortcut")->isEnabled());
    EXPECT_TRUE(
        library.shows("This desktop gives programs no shortcuts. Bind \"deskfellow --toggle\" to keys in its "
                      "own settings."));
}

} // namespace
