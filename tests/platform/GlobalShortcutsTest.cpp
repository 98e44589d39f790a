#include "platform/System.h"
#include "tests/support/OtherProgram.h"
#include "tests/support/Waiting.h"

#include <gmock/gmock.h>

#include <map>

using Platform::KeyCombination;
using Platform::ShortcutResult;
using Testing::hands;
using Testing::runFor;
using Testing::waitUntil;

namespace {

constexpr int ctrlAlt = static_cast<int>(Qt::ControlModifier | Qt::AltModifier);
constexpr int shift = static_cast<int>(Qt::ShiftModifier);

TEST(KeyCombinationTest, OnlyWhatLeavesTypingAloneIsValid) {
    struct Case {
        const char* fault;
        KeyCombination combination;
        const char* label;
    };
    const Case cases[] = {
        {"the usual case is refused", {Qt::Key_B, ctrlAlt}, "Ctrl+Alt+B"},
        {"a function key wants a modifier", {Qt::Key_F9, 0}, "F9"},
        {"a letter alone is taken from everyone", {Qt::Key_B, 0}, ""},
        {"a capital letter is taken from everyone", {Qt::Key_B, shift}, ""},
        {"a modifier counts as a key", {Qt::Key_Control, ctrlAlt}, ""},
        {"nothing counts as a key", {0, ctrlAlt}, ""},
        {"a stray number from a file counts", {Qt::Key_B, 0x7fffffff}, ""},
        {"a negative key counts", {-5, ctrlAlt}, ""},
    };
    for (const Case& row : cases) {
        EXPECT_EQ(row.combination.label().toStdString(), row.label) << row.fault;
        EXPECT_EQ(row.combination.isValid(), *row.label != '\0') << row.fault;
    }
}

class GlobalShortcutsTest : public testing::Test {
protected:
    void SetUp() override {
        shortcuts.onPressed = [this](const std::string& name) { ++pressed[name]; };
        other.openWindow({300, 300, 200, 200}, Qt::blue);
    }
    bool counts(const std::string& name, int times) {
        const bool came = waitUntil([&] { return pressed[name] >= times; }, 1500);
        runFor(60);
        return came && pressed[name] == times;
    }

    Testing::OtherProgram other;
    std::unique_ptr<Platform::System> system = Platform::makeSystem();
    Platform::GlobalShortcuts& shortcuts = system->shortcuts();
    std::map<std::string, int> pressed;
};

TEST_F(GlobalShortcutsTest, ReachTheProgramWhateverHasTheKeyboard) {
    ASSERT_EQ(shortcuts.grab("toggle", {Qt::Key_B, ctrlAlt}), ShortcutResult::registered);
    ASSERT_EQ(shortcuts.grab("other", {Qt::Key_Exclam, ctrlAlt | shift}), ShortcutResult::registered);
    ASSERT_TRUE(hands("key ctrl+alt+b"));
    EXPECT_TRUE(counts("toggle", 1));
    ASSERT_TRUE(hands("key Num_Lock key Caps_Lock key ctrl+alt+b key Caps_Lock key Num_Lock"));
    EXPECT_TRUE(counts("toggle", 2)) << "deaf while a lock is on";
    ASSERT_TRUE(hands("key ctrl+b key alt+b key ctrl+alt+shift+b key ctrl+alt+n"));
    EXPECT_TRUE(counts("toggle", 2)) << "hears another combination";
    ASSERT_TRUE(hands("key ctrl+alt+shift+1"));
    EXPECT_TRUE(counts("other", 1));
    ASSERT_TRUE(hands("keydown ctrl keydown alt keydown b sleep 1.0 keyup b keyup alt keyup ctrl"));
    EXPECT_TRUE(counts("toggle", 3)) << "a held key repeats";

    ASSERT_EQ(shortcuts.grab("toggle", {Qt::Key_Space, ctrlAlt}), ShortcutResult::registered);
    ASSERT_TRUE(hands("key ctrl+alt+b key ctrl+alt+space"));
    EXPECT_TRUE(counts("toggle", 4)) << "the old combination goes with the new one";
    shortcuts.release("toggle");
    shortcuts.release("never there");
    ASSERT_TRUE(hands("key ctrl+alt+space"));
    EXPECT_TRUE(counts("toggle", 4));
}

TEST_F(GlobalShortcutsTest, SayWhenTheyCannotBeHad) {
    const auto theirs = Platform::makeSystem();
    xcb_grab_key(other.connection(), 1, other.root(), XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1, 57,
                 XCB_GRAB_MODE_ASYNC,
                 XCB_GRAB_MODE_ASYNC); // 57 is the key "n" on every PC keyboard.
    other.sync();
    ASSERT_EQ(shortcuts.grab("toggle", {Qt::Key_B, ctrlAlt}), ShortcutResult::registered);
    EXPECT_EQ(shortcuts.grab("toggle", {Qt::Key_N, ctrlAlt}), ShortcutResult::taken);
    EXPECT_EQ(shortcuts.grab("toggle", {Qt::Key_N, 0}), ShortcutResult::invalid);
    EXPECT_EQ(shortcuts.grab("toggle", {Qt::Key_F35, ctrlAlt}), ShortcutResult::unsupported);
    ASSERT_TRUE(hands("key ctrl+alt+b"));
    EXPECT_TRUE(counts("toggle", 1)) << "a refused change loses the shortcut that worked";
    xcb_ungrab_key(other.connection(), 57, other.root(), XCB_MOD_MASK_ANY);
    other.sync();
    EXPECT_EQ(shortcuts.grab("toggle", {Qt::Key_N, ctrlAlt}), ShortcutResult::registered)
        << "parts of the refused grab were kept";
}

TEST_F(GlobalShortcutsTest, FollowTheLayout) {
    ASSERT_EQ(shortcuts.grab("toggle", {Qt::Key_Y, ctrlAlt}), ShortcutResult::registered);
    ASSERT_TRUE(Testing::run(QStringLiteral("setxkbmap"), {QStringLiteral("de")}));
    runFor(150);
    // On the German layout Y and Z have changed places: the key is 52 now, where it was 29.
    ASSERT_TRUE(hands("keydown ctrl keydown alt key 52 key 29 keyup alt keyup ctrl"));
    EXPECT_TRUE(counts("toggle", 1));
    ASSERT_TRUE(Testing::run(QStringLiteral("setxkbmap"), {QStringLiteral("us")}));
    runFor(150);
    ASSERT_TRUE(hands("key ctrl+alt+y"));
    EXPECT_TRUE(counts("toggle", 2));
}

} // namespace
