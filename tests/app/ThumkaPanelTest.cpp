#include "app/characters/thumka/ThumkaPanel.h"
#include "app/characters/thumka/ThumkaCover.h"
#include "app/desktop/ElidedLines.h"
#include "app/desktop/PanelText.h"
#include "tests/app/KitHarness.h"
#include "tests/app/ThumkaHarness.h"

namespace ThumkaHarness {
namespace {

using KitHarness::button;

class ThumkaPanelTest : public testing::Test {
protected:
    void open() {
        desk.comeOut();
        desk.ability->togglePanel();
        ASSERT_NE(desk.ability->panel(), nullptr);
        ASSERT_TRUE(panel().isPresented());
    }
    ThumkaPanel& panel() { return *desk.ability->panel(); }
    bool shows(const char* words) {
        for (const PanelText* text : panel().findChildren<PanelText*>()) {
            if (text->isVisibleTo(&panel()) && (text->text() == QString::fromUtf8(words) ||
                                                text->accessibleName() == QString::fromUtf8(words))) {
                return true;
            }
        }
        return false;
    }
    bool comesToShow(const char* words) {
        return waitUntil([&] { return shows(words); });
    }

    ThumkaDesk desk;
};

TEST_F(ThumkaPanelTest, ItShowsWhatPlaysAndGreysWhatThePlayerCannotDo) {
    open();
    EXPECT_TRUE(shows("Nothing is playing. Start some music, and Thumka dances."));
    EXPECT_EQ(button(panel(), "Play")->isVisible(), false);
    QImage red(30, 30, QImage::Format_RGB32);
    red.fill(Qt::red);
    desk.helper.write(
        line(R"("playing":true,"canGoNext":true,"artworkData":")" + base64Of(red, "png") + '"'));
    ASSERT_TRUE(comesToShow("Rain"));
    EXPECT_TRUE(shows("Leela"));
    EXPECT_TRUE(shows("from Player"));
    EXPECT_TRUE(panel().cover().hasCover());
    EXPECT_EQ(panel().cover().accessibleName(), QStringLiteral("Cover of Rain"));
    EXPECT_TRUE(button(panel(), "Pause")->isEnabled());
    EXPECT_TRUE(button(panel(), "Next")->isEnabled());
    EXPECT_FALSE(button(panel(), "Previous")->isEnabled());
    EXPECT_FALSE(button(panel(), "Open the player")->isEnabled());
    desk.helper.write(change(R"("playing":false,"canRaise":true,"artworkData":"broken")"));
    ASSERT_TRUE(waitUntil([&] { return button(panel(), "Play") != nullptr; }));
    EXPECT_TRUE(button(panel(), "Open the player")->isEnabled());
    EXPECT_FALSE(panel().cover().hasCover()) << "a note in its place";
    desk.helper.write(R"({"type":"data","diff":false,"payload":{}})"
                      "\n");
    EXPECT_TRUE(comesToShow("Nothing is playing. Start some music, and Thumka dances."));
    EXPECT_FALSE(shows("Leela"));
}

TEST_F(ThumkaPanelTest, WhereMusicCannotBeFollowedItSaysSo) {
    desk.helper.behaves("exit 69");
    open();
    EXPECT_TRUE(comesToShow("Music cannot be followed here. Thumka goes on trying."));
    EXPECT_EQ(desk.ability->statusOverride(), QStringLiteral("Music cannot be followed here"));
    EXPECT_EQ(desk.thumka->pose().substr(0, 4), "idle");
}

TEST_F(ThumkaPanelTest, TheKeyboardIsEnough) {
    open();
    desk.helper.write(line(R"("playing":true,"canGoNext":true,"canGoPrevious":true,"canRaise":true)"));
    ASSERT_TRUE(comesToShow("Rain"));
    ASSERT_TRUE(KitHarness::activate(panel()));
    panel().setFocus(); // as after a click on the paper
    KitHarness::key(panel(), Qt::Key_Space);
    panel().takeKeyboard();
    EXPECT_EQ(KitHarness::focused(), "Pause");
    Log reached;
    for (const int code : {Qt::Key_Right, Qt::Key_Left, Qt::Key_Left, Qt::Key_Down}) {
        KitHarness::key(panel(), code);
        reached.push_back(KitHarness::focused());
        KitHarness::key(panel(), Qt::Key_Space);
    }
    EXPECT_THAT(reached, testing::ElementsAre("Next", "Pause", "Previous", "Open the player"));
    EXPECT_TRUE(waitUntil(
        [&] { return desk.helper.read("commands") == "play-pause\nnext\nplay-pause\nprevious\nraise\n"; }));
    KitHarness::key(panel(), Qt::Key_Escape);
    EXPECT_FALSE(panel().isPresented());
}

TEST_F(ThumkaPanelTest, HostileWordsLeaveItsShape) {
    open();
    ASSERT_TRUE(desk.plays());
    ASSERT_TRUE(comesToShow("Rain"));
    const FellowCore::Size usual = panel().preferredSize();
    const std::string wide(300, 'W');
    desk.helper.write(line(R"("displayName":")" + wide + R"(","contentItemIdentifier":"2")", wide, wide));
    ASSERT_TRUE(waitUntil([&] { return !shows("Rain"); }));
    EXPECT_EQ(panel().preferredSize().width, usual.width);
    EXPECT_LT(panel().preferredSize().height, usual.height + 40);
}

TEST(ElidedLinesTest, BreaksWordsAndShortensTheLastLine) {
    const QFont font;
    const int width = 10 * QFontMetrics(font).horizontalAdvance(QLatin1Char('m'));
    const auto lines = [&](const QString& text, int most) {
        return elidedLines(text, font, width, most).split(QLatin1Char('\n'));
    };
    EXPECT_EQ(lines(QStringLiteral("short"), 2), QStringList{QStringLiteral("short")});
    EXPECT_EQ(lines(QString(), 2), QStringList{QString()});
    for (const QString& text : {QString(400, QLatin1Char('m')), QStringLiteral("word ").repeated(80),
                                QString::fromUtf8("שיר ").repeated(80)}) {
        const QStringList broken = lines(text, 2);
        ASSERT_EQ(broken.size(), 2);
        EXPECT_TRUE(broken[1].contains(QChar(0x2026)));
        for (const QString& each : broken) {
            EXPECT_LE(QFontMetrics(font).horizontalAdvance(each), width);
        }
    }
}

} // namespace
} // namespace ThumkaHarness
