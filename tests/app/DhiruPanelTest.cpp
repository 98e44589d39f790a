#include "tests/app/DhiruHarness.h"
#include "tests/core/containers/ScriptedServer.h"

#include <QFile>

#include <atomic>
#include <csignal>
#include <unistd.h>

namespace DhiruHarness {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Testing::runFor;

TEST(DhiruPanel, StopsExactlyWhatTheQuestionShows) {
    DhiruDesk desk;
    Program server({}, QStringLiteral("/usr/share"));
    Program other;
    ASSERT_TRUE(desk.comeOut());
    ASSERT_TRUE(desk.lists(server) && desk.lists(other));
    desk.row(server)->button(DhiruAct::stop)->click();
    EXPECT_FALSE(desk.question().answerButton().isEnabled())
        << "the second half of a double click would answer";
    EXPECT_TRUE(desk.question().keepButton().hasFocus());
    EXPECT_FALSE(desk.servers().isEnabled());
    const std::string said = desk.question().said().toStdString();
    EXPECT_THAT(said, HasSubstr("PID " + std::to_string(server.pid()) + " · port " +
                                std::to_string(server.port()) + " · /usr/share"));
    desk.question().keepButton().click();
    EXPECT_TRUE(desk.row(server)->button(DhiruAct::stop)->hasFocus()) << "back where it was asked";
    ASSERT_TRUE(desk.ask(server, DhiruAct::stop));
    desk.question().answerButton().click();
    EXPECT_EQ(server.endedBy(), SIGTERM);
    EXPECT_TRUE(waitUntil([&] { return desk.row(server) == nullptr; }, 8000));
    EXPECT_TRUE(other.isRunning());
    EXPECT_TRUE(desk.servers().isEnabled());
}

TEST(DhiruPanel, AForcedEndIsAskedForAgainAndWarnsOfIt) {
    DhiruDesk desk;
    Program server(QStringLiteral("signal.signal(signal.SIGTERM, lambda *_: say('no'))"));
    ASSERT_TRUE(desk.comeOut());
    ASSERT_TRUE(desk.lists(server));
    EXPECT_EQ(desk.row(server)->button(DhiruAct::force), nullptr);
    ASSERT_TRUE(desk.ask(server, DhiruAct::stop));
    desk.question().answerButton().click();
    EXPECT_EQ(server.nextLine(), QStringLiteral("no"));
    ASSERT_TRUE(waitUntil(
        [&] { return desk.row(server)->line().note == QStringLiteral("Stop sent. Waiting for exit…"); }));
    EXPECT_EQ(desk.row(server)->button(DhiruAct::stop), nullptr);
    EXPECT_EQ(desk.row(server)->button(DhiruAct::force), nullptr) << "not within its time";
    desk.system.time.advance(5);
    desk.ability->watch().refresh();
    ASSERT_TRUE(waitUntil([&] { return desk.row(server)->button(DhiruAct::force) != nullptr; }));
    ASSERT_TRUE(desk.ask(server, DhiruAct::force));
    EXPECT_THAT(desk.question().said().toStdString(), HasSubstr("no chance to tidy up"));
    EXPECT_TRUE(server.isRunning()) << "the first press only asks";
    desk.question().answerButton().click();
    EXPECT_EQ(server.endedBy(), SIGKILL);
}

TEST(DhiruPanel, AQuestionAboutWhatHasGoneSaysSoAndDoesNothing) {
    DhiruDesk desk;
    auto server = std::make_unique<Program>();
    const Program keeper; // so that the list is not empty afterwards
    ASSERT_TRUE(desk.comeOut());
    ASSERT_TRUE(desk.lists(*server));
    ASSERT_TRUE(desk.ask(*server, DhiruAct::stop));
    server.reset();
    desk.ability->watch().refresh();
    ASSERT_TRUE(waitUntil([&] { return desk.question().said().contains(QStringLiteral("has gone")); }));
    EXPECT_TRUE(desk.question().answerButton().isHidden());
    desk.key(Qt::Key_Return);
    EXPECT_FALSE(desk.question().isAsking());
    EXPECT_TRUE(desk.panel().isPresented());
}

TEST(DhiruPanel, WhatIsProtectedHasNoStopAndSaysWhy) {
    DhiruDesk desk;
    // By its own word it is the desktop's shell, which no one stops.
    Program shell(QStringLiteral("import ctypes; ctypes.CDLL(None).prctl(15, b'gnome-shell')"));
    ASSERT_TRUE(desk.comeOut());
    ASSERT_TRUE(desk.lists(shell));
    EXPECT_EQ(desk.row(shell)->button(DhiruAct::stop), nullptr);
    EXPECT_EQ(desk.row(shell)->accessibleDescription(),
              QStringLiteral("Your desktop session needs this one."));
    desk.row(shell)->setFocus();
    desk.key(Qt::Key_Delete);
    EXPECT_FALSE(desk.question().isAsking());
}

TEST(DhiruPanel, AReadingDisturbsNothing) {
    DhiruDesk desk;
    auto first = std::make_unique<Program>();
    Program second;
    ASSERT_TRUE(desk.comeOut());
    ASSERT_TRUE(desk.lists(*first) && desk.lists(second));
    DhiruRow* const row = desk.row(second);
    row->button(DhiruAct::stop)->setFocus(Qt::TabFocusReason);
    std::vector<std::unique_ptr<Program>> more;
    for (int index = 0; index < 12; ++index) {
        more.push_back(std::make_unique<Program>());
    }
    desk.ability->watch().refresh();
    ASSERT_TRUE(desk.lists(*more.back()));
    QScrollBar& bar = *desk.servers().verticalScrollBar();
    ASSERT_TRUE(waitUntil([&] { return bar.maximum() > 40; }));
    bar.setValue(37);
    const QString gone = desk.row(*first)->line().key;
    first.reset();
    desk.ability->watch().refresh();
    ASSERT_TRUE(waitUntil([&] { return desk.servers().row(gone) == nullptr; }));
    EXPECT_EQ(desk.row(second), row);
    EXPECT_TRUE(row->button(DhiruAct::stop)->hasFocus());
    EXPECT_EQ(bar.value(), 37);
}

/// Counts how often a widget is painted.
class Paints final : public QObject {
public:
    explicit Paints(QWidget& watched) { watched.installEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

TEST(DhiruPanel, PaintsOnlyTheRowThatChanges) {
    DhiruDesk desk;
    Program still;
    Program stubborn(QStringLiteral("signal.signal(signal.SIGTERM, lambda *_: say('no'))"));
    ASSERT_TRUE(desk.comeOut());
    ASSERT_TRUE(desk.lists(still) && desk.lists(stubborn));
    ASSERT_TRUE(waitUntil([&] { return desk.row(still)->line().detail.endsWith(QStringLiteral("CPU 0%")); }));
    DhiruRow& changing = *desk.row(stubborn);
    const Paints idle(*desk.row(still));
    const Paints busy(changing);
    DhiruLines again;
    for (const DhiruRow* row : desk.servers().rows()) {
        again.lines.push_back(row->line());
    }
    again.count = static_cast<int>(again.lines.size());
    runFor(300);
    const int before = idle.count;
    const auto changed = std::ranges::find(again.lines, changing.line().key, &DhiruLine::key);
    changed->detail = QStringLiteral("other");
    desk.servers().showLines(again);
    desk.servers().showLines(again);
    runFor(200);
    EXPECT_EQ(idle.count, before);
    EXPECT_GT(busy.count, 0);
}

TEST(DhiruPanel, AContainerIsConfirmedByNameImageIdAndPorts) {
    DhiruDesk desk;
    const std::string id(64, 'a');
    const std::string ok = "HTTP/1.1 200 OK\r\n\r\n";
    std::atomic<bool> isStopped = false;
    TestSupport::ScriptedServer engine(
        desk.home / ".docker/run/docker.sock", [&](int connection, const std::string& asked) {
            const std::string entry = R"({"Id":")" + id +
                                      R"(","Names":["/web"],"Image":"shop:2","State":"running",)"
                                      R"("Ports":[{"PublicPort":8080,"Type":"tcp"}],"Labels":{}})";
            std::string answer = ok + "[" + (isStopped ? "" : entry) + "]";
            if (asked.starts_with("GET /version ")) {
                answer = ok + R"({"ApiVersion":"1.43"})";
            } else if (asked.starts_with("POST ")) {
                isStopped = true;
                answer = "HTTP/1.1 204 No Content\r\n\r\n";
            }
            TestSupport::say(connection, answer);
        });
    ASSERT_TRUE(desk.comeOut());
    desk.panel().choose(DhiruSection::containers);
    const DhiruList& list = desk.panel().list(DhiruSection::containers);
    ASSERT_TRUE(waitUntil([&] { return !list.rows().empty(); }));
    DhiruRow& row = *list.rows().front();
    row.button(DhiruAct::open)->click();
    EXPECT_THAT(desk.opened, ElementsAre("http://localhost:8080"));
    row.button(DhiruAct::stopContainer)->click();
    EXPECT_THAT(desk.question().said().toStdString(), HasSubstr("shop:2 · id aaaaaaaaaaaa · ports 8080"));
    ASSERT_TRUE(waitUntil([&] { return desk.question().answerButton().isEnabled(); }));
    desk.question().answerButton().click();
    EXPECT_TRUE(waitUntil([&] { return desk.panel().headline() == QStringLiteral("Container stopped"); }))
        << "the row that could tell has gone";
    EXPECT_THAT(engine.finish(), testing::Contains(testing::StartsWith("POST /containers/" + id + "/stop?")));
}

TEST(DhiruPanel, WorksByKeyboardAlone) {
    DhiruDesk desk;
    Program first;
    Program second;
    ASSERT_TRUE(desk.comeOut());
    ASSERT_TRUE(desk.lists(first) && desk.lists(second));
    EXPECT_TRUE(desk.panel().filter().hasFocus());
    desk.panel().filter().setText(QStringLiteral("no such server"));
    EXPECT_EQ(desk.servers().words(), QStringLiteral("Nothing matches"));
    desk.key(Qt::Key_Escape);
    ASSERT_TRUE(desk.panel().isPresented());
    EXPECT_TRUE(desk.panel().filter().text().isEmpty());
    desk.key(Qt::Key_3, Qt::ControlModifier);
    EXPECT_EQ(desk.panel().tabs().currentIndex(), 2);
    desk.key(Qt::Key_1, Qt::ControlModifier);
    desk.key(Qt::Key_Tab);
    const auto& rows = desk.servers().rows();
    ASSERT_GE(rows.size(), 2U);
    EXPECT_TRUE(rows[0]->hasFocus());
    desk.key(Qt::Key_Right);
    desk.key(Qt::Key_Right);
    desk.key(Qt::Key_Down);
    ASSERT_NE(rows[1]->button(DhiruAct::stop), nullptr);
    EXPECT_TRUE(rows[1]->button(DhiruAct::stop)->hasFocus()) << "the arrows keep to the button";
    desk.key(Qt::Key_Return);
    ASSERT_TRUE(desk.question().isAsking());
    desk.key(Qt::Key_Escape);
    EXPECT_FALSE(desk.question().isAsking());
    ASSERT_TRUE(desk.panel().isPresented()) << "Escape leaves the question first";
    desk.key(Qt::Key_Tab);
    EXPECT_TRUE(desk.panel().awakeLine().toggle().hasFocus()) << "Tab stops at one row only";
    desk.key(Qt::Key_Escape);
    EXPECT_FALSE(desk.panel().isPresented());
    EXPECT_TRUE(first.isRunning() && second.isRunning());
}

TEST(DhiruPanel, OpensAServerInTheBrowserAndTellsWhatNoRowTells) {
    DhiruDesk desk;
    Program server;
    ASSERT_TRUE(desk.comeOut());
    ASSERT_TRUE(desk.lists(server));
    desk.row(server)->button(DhiruAct::open)->click();
    EXPECT_THAT(desk.opened, ElementsAre("http://localhost:" + std::to_string(server.port())));
    desk.hasBrowser = false;
    desk.row(server)->button(DhiruAct::open)->click();
    EXPECT_THAT(desk.panel().headline().toStdString(), HasSubstr("No browser"));
    const QString back = QStringLiteral("node came back. Something restarts it automatically.");
    Q_EMIT desk.ability->watch().noticed(back);
    EXPECT_EQ(desk.panel().headline(), back);
    EXPECT_THAT(desk.told, IsEmpty());
    desk.panel().dismiss();
    Q_EMIT desk.ability->watch().noticed(back);
    EXPECT_THAT(desk.told, ElementsAre(back.toStdString()));
    desk.ability->togglePanel();
    EXPECT_THAT(desk.panel().headline().toStdString(), Not(HasSubstr("came back"))) << "old news";
}

TEST(DhiruPanel, LeavesTheDesktopWithADhiruWhoDoes) {
    DhiruDesk desk;
    Program server;
    ASSERT_TRUE(desk.comeOut());
    ASSERT_TRUE(desk.lists(server));
    EXPECT_EQ(desk.dhiru->attachments().size(), 1U);
    EXPECT_THAT(desk.ability->statusOverride()->toStdString(), HasSubstr("server"));
    desk.row(server)->button(DhiruAct::stop)->click();
    desk.dhiru->deactivate();
    EXPECT_FALSE(desk.panel().isPresented());
    EXPECT_FALSE(desk.question().isAsking()) << "a question that nobody sees";
    EXPECT_EQ(desk.ability->statusOverride(), QStringLiteral("Reading your processes…"));
    EXPECT_TRUE(server.isRunning());
}

} // namespace
} // namespace DhiruHarness
