#include "app/characters/munshi/MunshiCapture.h"
#include "app/characters/munshi/MunshiForm.h"
#include "app/desktop/PanelControls.h"
#include "tests/app/KitHarness.h"
#include "tests/app/MunshiHarness.h"

namespace MunshiHarness {
namespace {

using testing::HasSubstr;

/// The field, open, while Munshi is not on the desktop.
struct OpenField : MunshiDesk {
    OpenField() { open(); }
    void open() {
        press("capture");
        EXPECT_TRUE(field().isWriting());
    }
    /// To the field itself: without a real key the window manager need not grant the keyboard again.
    void key(int code) {
        QKeyEvent press(QEvent::KeyPress, code, Qt::NoModifier);
        QApplication::sendEvent(&field().field(), &press);
    }
    MunshiCapture& field() { return *ability->captureField(); }
};

TEST(MunshiCaptureTest, ALineIsWrittenDownWhileHeIsAway) {
    OpenField at;
    EXPECT_TRUE(waitUntil([&] { return at.field().isActiveWindow() && at.field().field().hasFocus(); }))
        << "it opens without the keyboard";
    at.field().field().setText(QStringLiteral("- remember this"));
    at.key(Qt::Key_Return);
    EXPECT_THAT(at.field().confirmation().toStdString(), HasSubstr("remember this"));
    EXPECT_FALSE(at.field().isWriting());
    EXPECT_TRUE(waitUntil([&] { return at.other.lines() == "- remember this"; }));
    EXPECT_TRUE(waitUntil([&] { return !at.field().isPresented(); })) << "the confirmation stays";
    EXPECT_FALSE(at.munshi->isShown());
    at.open();
    EXPECT_EQ(at.field().field().text(), QString());
}

TEST(MunshiCaptureTest, EscapeAndTheShortcutCloseItAndKeepTheWords) {
    OpenField at;
    at.field().field().setText(QStringLiteral("half"));
    at.key(Qt::Key_Escape);
    EXPECT_FALSE(at.field().isPresented());
    at.open();
    EXPECT_EQ(at.field().field().text(), QStringLiteral("half"));
    at.press("capture");
    EXPECT_FALSE(at.field().isPresented());
    EXPECT_EQ(at.other.lines(), "no file") << "what was not confirmed was written down";
    at.open();
    at.field().field().clear();
    at.key(Qt::Key_Return);
    EXPECT_FALSE(at.field().isPresented()) << "an empty line is not said to be written down";
}

TEST(MunshiCaptureTest, ALineThatCannotBeSavedIsSaidToBeKept) {
    OpenField at;
    ASSERT_TRUE(waitUntil([&] { return at.book().isRead(); }));
    at.desk.files.code = ENOSPC;
    at.desk.files.failures = std::numeric_limits<int>::max() / 2;
    at.desk.files.failAt = 1;
    at.field().field().setText(QStringLiteral("milk"));
    at.key(Qt::Key_Return);
    EXPECT_TRUE(waitUntil([&] {
        return at.field().confirmation().toStdString().find("not saved yet") != std::string::npos;
    })) << at.field().confirmation().toStdString();
    at.desk.files.failAt = 0;
}

class MunshiFormTest : public testing::Test {
protected:
    MunshiDesk at;
    std::unique_ptr<MunshiForm> form;

    void SetUp() override {
        ASSERT_TRUE(at.standing());
        form = std::make_unique<MunshiForm>(at.book(), at.ability->shortcut());
        form->show();
    }
    template <typename Button>
    Button* named(const char* name) {
        for (Button* each : form->findChildren<Button*>()) {
            if (each->isVisible() && each->accessibleName() == QString::fromUtf8(name)) {
                return each;
            }
        }
        return nullptr;
    }
};

TEST_F(MunshiFormTest, EachChoiceReachesTheFileAndComesBackFromIt) {
    named<FormRadio>("Keep earlier days: 7 days")->click();
    EXPECT_TRUE(waitUntil([&] { return at.other.held().keepDays == 7; }));
    named<FormRadio>("Keep earlier days: For ever")->click();
    EXPECT_TRUE(waitUntil([&] { return !at.other.held().keepDays; }));
    named<FormSwitch>("Carry over what is not done")->click();
    EXPECT_TRUE(waitUntil([&] { return !at.other.held().carryOver; }));
    at.other.change([](MunshiLedger& ledger) { ledger.keepDays = 90; });
    EXPECT_TRUE(waitUntil([&] { return named<FormRadio>("Keep earlier days: 90 days")->isChecked(); }));
    at.other.change([](MunshiLedger& ledger) { ledger.keepDays = 14; });
    EXPECT_TRUE(waitUntil([&] {
        const auto labels = form->findChildren<QLabel*>();
        return std::ranges::any_of(labels,
                                   [](auto* label) { return label->text().contains(u"says 14 days"); });
    }));
}

TEST_F(MunshiFormTest, ErasingAsksFirst) {
    at.book().add(QStringLiteral("precious"));
    named<QPushButton>("Erase everything…")->click();
    EXPECT_EQ(at.today(), "[ ] precious");
    named<QPushButton>("Keep everything")->click();
    EXPECT_EQ(named<QPushButton>("Erase everything"), nullptr) << "the question stays";
    EXPECT_EQ(at.today(), "[ ] precious");
    named<QPushButton>("Erase everything…")->click();
    named<QPushButton>("Erase everything")->click();
    EXPECT_EQ(at.today(), "");
    EXPECT_FALSE(at.book().deleted());
}

TEST_F(MunshiFormTest, TheShortcutIsClearedForGood) {
    EXPECT_EQ(at.ability->shortcut().label(), QStringLiteral("Ctrl+Alt+N"));
    named<QPushButton>("Clear shortcut")->click();
    EXPECT_EQ(at.ability->shortcut().label(), QString());
    EXPECT_FALSE(at.ability->shortcut().registerHotKey()) << "a cleared shortcut comes back";
    EXPECT_FALSE(named<QPushButton>("Clear shortcut")->isEnabled());
}

} // namespace
} // namespace MunshiHarness
