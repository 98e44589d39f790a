#include "app/characters/munshi/MunshiDayList.h"
#include "app/characters/munshi/MunshiEarlierPage.h"
#include "app/characters/munshi/MunshiTodayPage.h"
#include "app/desktop/PanelControls.h"
#include "tests/app/KitHarness.h"
#include "tests/app/MunshiHarness.h"

#include <QClipboard>
#include <QListView>

namespace MunshiHarness {
namespace {

using KitHarness::key;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// The open panel with the keyboard in it.
struct OpenPanel : MunshiDesk {
    OpenPanel() {
        EXPECT_TRUE(standing());
        press("open");
        EXPECT_TRUE(KitHarness::activate(panel()));
        page().field().setFocus();
    }

    MunshiPanel& panel() { return *ability->panel(); }
    MunshiTodayPage& page() { return panel().today(); }
    MunshiRow& row(std::size_t index) { return *page().list().lines().at(index); }
    PanelCheckBox& line(std::size_t index) { return *row(index).findChild<PanelCheckBox*>(); }
    PanelField* editor(std::size_t index) {
        for (PanelField* field : row(index).findChildren<PanelField*>()) {
            if (field->isVisible()) {
                return field;
            }
        }
        return nullptr;
    }
    void write(const char* text) {
        page().field().setText(QString::fromUtf8(text));
        page().field().setFocus();
        key(panel(), Qt::Key_Return);
    }
    /// A row has the keyboard.
    void stand(std::size_t index) { line(index).setFocus(Qt::TabFocusReason); }
    /// What has it, by the text of its line.
    std::string standsAt() const {
        const auto* at = qobject_cast<PanelCheckBox*>(QApplication::focusWidget());
        return at ? at->title().toStdString() : KitHarness::focused();
    }
    std::string message() const {
        for (const PanelText* text : ability->panel()->findChildren<PanelText*>()) {
            if (text->isVisible() && text->accessibleName() == text->text() && !text->text().isEmpty()) {
                return text->text().toStdString();
            }
        }
        return {};
    }
};

TEST(MunshiPanelTest, EverythingIsDoneByKeyboardAlone) {
    OpenPanel at;
    for (const char* text : {"milk", "rent", "bank", "- tea at four"}) {
        at.write(text);
    }
    EXPECT_EQ(at.today(), "[ ] milk|[ ] rent|[ ] bank|- tea at four");
    EXPECT_TRUE(at.page().field().hasFocus()) << "the next line needs the mouse";
    key(at.panel(), Qt::Key_Down);
    EXPECT_EQ(at.standsAt(), "milk");
    key(at.panel(), Qt::Key_Space);
    key(at.panel(), Qt::Key_Down, Qt::AltModifier);
    key(at.panel(), Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(at.today(), "[ ] rent|[ ] bank|[x] milk|- tea at four");
    EXPECT_EQ(at.standsAt(), "milk") << "the moved line lost the keyboard";
    key(at.panel(), Qt::Key_Up);
    key(at.panel(), Qt::Key_F2);
    at.editor(1)->setText(QStringLiteral("- bank is closed"));
    key(at.panel(), Qt::Key_Return);
    EXPECT_EQ(at.today(), "[ ] rent|- bank is closed|[x] milk|- tea at four");
    key(at.panel(), Qt::Key_Space);
    EXPECT_EQ(at.today(), "[ ] rent|- bank is closed|[x] milk|- tea at four") << "a note was checked off";
    key(at.panel(), Qt::Key_Delete);
    EXPECT_EQ(at.standsAt(), "milk") << "nothing has the keyboard after a line was deleted";
    EXPECT_THAT(at.message(), HasSubstr("bank is closed"));
    key(at.panel(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(at.today(), "[ ] rent|- bank is closed|[x] milk|- tea at four");
    key(at.panel(), Qt::Key_Escape);
    EXPECT_FALSE(at.panel().isPresented());
}

TEST(MunshiPanelTest, AnEditIsKeptGivenUpOrRefused) {
    struct Case {
        const char* fault;
        const char* text;
        int end;
        const char* today;
    };
    const Case cases[] = {
        {"Enter loses it", "oat milk", Qt::Key_Return, "[ ] oat milk|[ ] b"},
        {"Escape keeps it", "oat milk", Qt::Key_Escape, "[ ] milk|[ ] b"},
        {"an emptied line is lost", "  ", Qt::Key_Return, "[ ] milk|[ ] b"},
        {"the keypad's Enter does nothing", "oat milk", Qt::Key_Enter, "[ ] oat milk|[ ] b"},
    };
    OpenPanel at;
    at.write("milk");
    at.write("b");
    for (const Case& each : cases) {
        SCOPED_TRACE(each.fault);
        at.book().edit(at.row(0).id(), QStringLiteral("milk"));
        at.stand(0);
        key(at.panel(), Qt::Key_Return);
        ASSERT_NE(at.editor(0), nullptr);
        EXPECT_EQ(at.editor(0)->text(), QStringLiteral("milk"));
        at.editor(0)->setText(QString::fromUtf8(each.text));
        key(at.panel(), each.end);
        EXPECT_EQ(at.today(), each.today);
        EXPECT_EQ(at.editor(0), nullptr);
        EXPECT_TRUE(at.panel().isPresented()) << "Escape closed the panel with the edit";
    }
}

TEST(MunshiPanelTest, MidnightTurnsTheDayUnderWhatIsBeingWritten) {
    OpenPanel at;
    at.write("carried");
    at.write("- yesterday's note");
    at.book().setDone(at.row(0).id(), false);
    at.stand(0);
    key(at.panel(), Qt::Key_F2);
    at.editor(0)->setText(QStringLiteral("half an edit"));
    at.page().field().setText(QStringLiteral("half a line"));
    at.editor(0)->setFocus();
    const MunshiRow* const row = &at.row(0);
    KitHarness::EventCount flicker(at.panel(), {QEvent::Hide, QEvent::Resize});
    at.desk.system.time.advance(untilMidnight);
    at.book().timeChanged();
    EXPECT_EQ(at.today(), "[ ] carried");
    EXPECT_EQ(&at.row(0), row) << "the row was made anew";
    EXPECT_EQ(at.editor(0)->text(), QStringLiteral("half an edit"));
    EXPECT_TRUE(at.editor(0)->hasFocus());
    EXPECT_EQ(at.page().field().text(), QStringLiteral("half a line"));
    EXPECT_THAT(flicker.seen, testing::Not(testing::Contains("DeskSprites::MunshiPanel")));
    key(at.panel(), Qt::Key_Return);
    EXPECT_EQ(at.today(), "[ ] half an edit");
    EXPECT_EQ(at.line(0).detail(), QStringLiteral("since yesterday"));
}

TEST(MunshiPanelTest, AnotherProgramsChangeLeavesWhatIsBeingWritten) {
    OpenPanel at;
    at.write("first");
    at.write("second");
    EXPECT_TRUE(waitUntil([&] { return at.other.lines() == "[ ] first|[ ] second"; }));
    at.stand(1);
    key(at.panel(), Qt::Key_F2);
    at.editor(1)->setText(QStringLiteral("second thoughts"));
    at.other.change([](MunshiLedger& ledger) {
        ledger.deleteItem(ledger.today[1].id);
        ledger.setDone(ledger.today[0].id, true, TestClock::start);
    });
    EXPECT_TRUE(waitUntil([&] { return at.today() == "[x] first"; }));
    ASSERT_NE(at.editor(1), nullptr) << "the edit went with the line";
    EXPECT_EQ(at.editor(1)->text(), QStringLiteral("second thoughts"));
    EXPECT_TRUE(at.line(0).isChecked());
    key(at.panel(), Qt::Key_Return);
    EXPECT_EQ(at.today(), "[ ] second thoughts|[x] first");
    EXPECT_THAT(at.message(), HasSubstr("no longer in today's list"));
    EXPECT_EQ(at.page().list().rows().size(), 2U) << "the row of the lost line stays";
}

TEST(MunshiPanelTest, AFullDiskIsSaidAndTheTextStays) {
    OpenPanel at;
    at.desk.files.code = ENOSPC;
    at.desk.files.failures = std::numeric_limits<int>::max() / 2;
    at.desk.files.failAt = 1;
    at.write("kept");
    EXPECT_TRUE(waitUntil([&] { return at.message().find("Not saved yet") == 0; })) << at.message();
    EXPECT_EQ(at.line(0).title(), QStringLiteral("kept"));
    at.desk.files.failAt = 0;
    at.write("more");
    EXPECT_TRUE(waitUntil([&] { return at.message().empty(); })) << at.message();
    EXPECT_EQ(at.other.lines(), "[ ] kept|[ ] more");
}

TEST(MunshiPanelTest, ALineIsDraggedToWhereItIsDropped) {
    struct Case {
        const char* fault;
        std::size_t row;
        int to; ///< in heights of a row, from the middle of the dragged one
        const char* today;
    };
    const Case cases[] = {{"down past two", 0, 2, "[ ] b|[ ] c|[ ] a|[ ] d"},
                          {"up to the top", 2, -3, "[ ] a|[ ] b|[ ] c|[ ] d"},
                          {"back where it was", 1, 0, "[ ] a|[ ] b|[ ] c|[ ] d"},
                          {"far below the end", 0, 9, "[ ] b|[ ] c|[ ] d|[ ] a"}};
    OpenPanel at;
    for (const char* text : {"a", "b", "c", "d"}) {
        at.write(text);
    }
    Testing::runFor(50);
    for (const Case& each : cases) {
        SCOPED_TRACE(each.fault);
        PanelCheckBox& line = at.line(each.row);
        const QPointF start = line.wordsRect().center();
        const QPointF end = start + QPointF(0, each.to * line.height() + 1);
        KitHarness::mouse(line, QEvent::MouseButtonPress, start);
        for (int step = 1; step <= 8; ++step) {
            KitHarness::mouse(line, QEvent::MouseMove, start + (end - start) * step / 8 + QPointF(12, 0));
        }
        KitHarness::mouse(line, QEvent::MouseButtonRelease, end);
        EXPECT_EQ(at.today(), each.today);
        Testing::runFor(30);
    }
}

TEST(MunshiPanelTest, EarlierDaysAreFoundAndCopiedAmongTenThousandLines) {
    OpenPanel at;
    at.other.change([](MunshiLedger& ledger) {
        ledger.keepDays.reset();
        for (int number = 0; number < 10'000; ++number) {
            const int day = 8 - number / 1250;
            ledger.history.push_back(
                {.id = FellowCore::randomUuid(),
                 .text = "line " + std::to_string(number),
                 .done = number % 2 == 0,
                 .createdAt = TestClock::start,
                 .doneAt = number % 2 == 0 ? std::optional(TestClock::start) : std::nullopt,
                 .day = "2026-05-0" + std::to_string(day)});
        }
    });
    ASSERT_TRUE(waitUntil([&] { return at.book().ledger().history.size() == 10'000; }));
    QElapsedTimer timer;
    timer.start();
    KitHarness::button(at.panel(), "Earlier days")->click();
    QApplication::processEvents();
    EXPECT_LT(timer.elapsed(), 250) << "milliseconds until the days are shown";
    MunshiEarlierPage& page = at.panel().earlier();
    EXPECT_TRUE(page.field().hasFocus());
    EXPECT_EQ(page.view().model()->rowCount(), 10'008);
    EXPECT_LT(page.findChildren<QWidget*>().size(), 40) << "a widget for each line";
    timer.restart();
    page.field().setText(QStringLiteral("LINE 999"));
    EXPECT_LT(timer.elapsed(), 100) << "milliseconds for one key";
    EXPECT_EQ(page.view().model()->rowCount(), 13) << "line 999 and 9990 to 9999, of two days";
    key(at.panel(), Qt::Key_Down);
    KitHarness::button(at.panel(), "Copy day")->click();
    EXPECT_THAT(QGuiApplication::clipboard()->text().toStdString(),
                testing::StartsWith("## 2026-05-08\n- [ ] line 1249\n- [x] line 1248"));
    key(at.panel(), Qt::Key_Escape);
    EXPECT_TRUE(at.page().field().isVisible()) << "Escape leads back to today";
}

TEST(MunshiAbilityTest, HisPoseBadgeAndWordsFollowTheLedger) {
    OpenPanel at;
    const auto shown = [&] {
        const CharacterPresentation now = at.munshi->presentation();
        return at.munshi->pose() + ", " + now.badge.value_or(QString()).toStdString() + ", " +
               now.spoken.toStdString();
    };
    EXPECT_EQ(shown(), "idle, 0, Nothing for today");
    at.page().field().setText(QStringLiteral("milk"));
    EXPECT_EQ(shown(), "writing, 0, Nothing for today");
    key(at.panel(), Qt::Key_Return);
    EXPECT_EQ(shown(), "idle, 1, 1 open \u00B7 next: milk");
    key(at.panel(), Qt::Key_Down);
    key(at.panel(), Qt::Key_Space);
    EXPECT_EQ(shown(), "all-done, 0, All done for today");
    for (int number = 0; number < 10; ++number) {
        at.book().add(QStringLiteral("task"));
    }
    EXPECT_EQ(shown(), "idle, 9+, 10 open \u00B7 next: task");
    EXPECT_EQ(at.munshi->attachments().size(), 1U);
    EXPECT_TRUE(at.munshi->clicked()) << "a click while the panel is open only closes it";
    EXPECT_THAT(at.munshi->attachments(), IsEmpty());
    EXPECT_FALSE(at.munshi->clicked());
}

TEST(MunshiAbilityTest, DroppedTextIsWrittenDownAndTold) {
    MunshiDesk at;
    ASSERT_TRUE(at.standing());
    at.desk.system.clients.back()->textDropped(QStringLiteral("one\n- two"));
    EXPECT_EQ(at.today(), "[ ] one|- two");
    EXPECT_EQ(at.munshi->pose(), "writing");
    EXPECT_TRUE(waitUntil([&] { return at.munshi->pose() == "idle"; }));
    at.desk.system.clients.back()->textDropped(QStringLiteral("\n \n"));
    EXPECT_THAT(at.log, ElementsAre("Munshi wrote down 2 lines.", "There was no text to write down."));
}

TEST(MunshiAbilityTest, OpeningBringsHimOutAndHidingKeepsHalfALine) {
    MunshiDesk at;
    at.press("open");
    EXPECT_TRUE(at.munshi->isShown());
    ASSERT_TRUE(at.ability->panel()->isPresented());
    at.ability->panel()->today().field().setText(QStringLiteral("half a line"));
    at.munshi->deactivate();
    EXPECT_FALSE(at.ability->panel()->isPresented());
    at.press("open");
    EXPECT_EQ(at.ability->panel()->today().field().text(), QStringLiteral("half a line"));
}

} // namespace
} // namespace MunshiHarness
