#include "app/characters/pump/PumpForm.h"
#include "app/settings/FormKit.h"
#include "tests/app/PumpHarness.h"

#include <QLineEdit>
#include <QLocale>

namespace PumpHarness {
namespace {

using testing::HasSubstr;

class PumpFormTest : public testing::Test {
protected:
    PumpFormTest() {
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        form.resize(560, 900);
        form.show();
    }
    ~PumpFormTest() override { QLocale::setDefault(QLocale::system()); }

    template <typename Widget>
    Widget* find(const char* name) const {
        for (Widget* each : form.findChildren<Widget*>()) {
            if (each->accessibleName() == QString::fromUtf8(name)) {
                return each;
            }
        }
        return nullptr;
    }
    QPushButton* button(const char* words) const {
        for (QPushButton* each : form.findChildren<QPushButton*>()) {
            if (each->text() == QString::fromUtf8(words)) {
                return each;
            }
        }
        return nullptr;
    }
    bool shows(const char* words) const {
        for (const QLabel* label : form.findChildren<QLabel*>()) {
            if (label->isVisibleTo(&form) && label->text().contains(QString::fromUtf8(words))) {
                return true;
            }
        }
        return false;
    }
    void type(const QString& text) {
        auto* field = find<QLineEdit>("Reference budget");
        field->selectAll();
        field->del();
        field->insert(text);
        Q_EMIT field->editingFinished();
    }
    /// Presses the button of a connection once it can be pressed.
    bool press(const char* name) {
        QPushButton* found = nullptr;
        const bool ready = waitUntil([&] {
            found = find<QPushButton>(name);
            return found && found->isEnabled() && !shows("onnecting…");
        });
        if (ready) {
            found->click();
        }
        return ready;
    }

    PumpDesk desk;
    PumpForm form{*desk.ability, nullptr};
};

TEST_F(PumpFormTest, ABudgetIsTakenOrRefusedWithItsSentence) {
    const struct {
        const char* fault;
        const char* text;
        std::optional<std::int64_t> budget;
    } cases[] = {
        {"the least", "1", 1},
        {"the most, with separators", "1,000,000,000", 1'000'000'000},
        {"zero", "0", std::nullopt},
        {"one too many", "1000000001", std::nullopt},
        {"below zero", "-5", std::nullopt},
        {"beyond 64 bits", "99999999999999999999", std::nullopt},
        {"words", "lots", std::nullopt},
        {"nothing", "", std::nullopt},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.fault);
        type(QStringLiteral("5000"));
        type(QString::fromUtf8(each.text));
        const auto& preferences = desk.ability->usage().preferences();
        EXPECT_EQ(preferences.fiveHourBudget, each.budget.value_or(5000));
        EXPECT_EQ(shows("Enter 1 to 1,000,000,000 tokens"), !each.budget);
    }
    button("Reset to plan default")->click();
    EXPECT_EQ(desk.ability->usage().preferences(), PumpPreferences());
    EXPECT_FALSE(shows("Enter 1 to"));
    find<FormRadio>("Plan: Max 5x")->click();
    EXPECT_EQ(PumpPreferences::load(desk.preferences).fiveHourBudget, 220000);
}

TEST_F(PumpFormTest, EveryConnectionIsMadeAndTakenOutByteForByte) {
    const std::string claude = "{\n  \"model\" : \"opus\",\"hooks\":{}, \"statusLine\":"
                               "{\"type\":\"command\",\"command\":\"date\"}}\n";
    const std::filesystem::path settings = desk.home / ".claude/settings.json";
    const std::filesystem::path codexSettings = desk.home / ".codex/hooks.json";
    TestSupport::writeBytes(settings, claude);
    find<FormSwitch>("Include project name")->setChecked(true);
    ASSERT_TRUE(press("Claude Code: Connect"));
    ASSERT_TRUE(waitUntil([&] { return shows("Connected · with project names"); }));
    ASSERT_TRUE(press("Claude Code status line: Connect"));
    ASSERT_TRUE(press("Codex: Connect"));
    ASSERT_TRUE(waitUntil([&] { return shows("Installed · approve in Codex: /hooks"); }));
    EXPECT_TRUE(shows("Waiting for agent activity. Old states expire automatically."));
    EXPECT_THAT(TestSupport::bytesOf(settings), HasSubstr("pump-claude-hook.sh"));
    EXPECT_THAT(TestSupport::bytesOf(codexSettings), HasSubstr("pump-codex-hook.sh"));
    ASSERT_TRUE(press("Claude Code: Disconnect"));
    ASSERT_TRUE(press("Claude Code status line: Disconnect"));
    ASSERT_TRUE(press("Codex: Disconnect"));
    ASSERT_TRUE(waitUntil([&] { return find<QPushButton>("Codex: Connect") != nullptr; }));
    EXPECT_EQ(TestSupport::bytesOf(settings), claude);
    EXPECT_FALSE(std::filesystem::exists(codexSettings));
}

TEST_F(PumpFormTest, ARefusalIsSaidAndTheSettingsStay) {
    const std::filesystem::path settings = desk.home / ".claude/settings.json";
    TestSupport::writeBytes(settings, "{ // mine\n}");
    ASSERT_TRUE(press("Claude Code: Connect"));
    EXPECT_TRUE(
        waitUntil([&] { return shows("Agent settings or hooks are invalid. They were left unchanged."); }));
    ASSERT_TRUE(press("Claude Code status line: Connect"));
    EXPECT_TRUE(waitUntil([&] { return shows("is not a valid JSON object. Fix it before connecting"); }));
    EXPECT_EQ(TestSupport::bytesOf(settings), "{ // mine\n}");
    EXPECT_NE(find<QPushButton>("Claude Code: Connect"), nullptr);
}

TEST_F(PumpFormTest, UsageIsReadWhileTheFormIsOpenThoughPumpIsAway) {
    desk.setLeft(40);
    ASSERT_TRUE(waitUntil([&] { return desk.ability->usage().snapshot().has_value(); }));
    desk.ability->usage().refresh();
    EXPECT_TRUE(waitUntil([&] { return shows("40% left · estimate"); }));
    form.hide();
    desk.setLeft(20);
    desk.ability->usage().refresh();
    Testing::runFor(100);
    EXPECT_FALSE(shows("20% left"));
}

} // namespace
} // namespace PumpHarness
