#include "app/desktop/PanelControls.h"
#include "tests/app/KitHarness.h"

#include <QVBoxLayout>

namespace {

using namespace KitHarness;

/// A control in a bubble of its own, as it stands in a panel.
template <typename Control>
struct Shown {
    Bubble bubble;
    Control* control = new Control;

    explicit Shown(int width = 240) {
        auto* inside = new QWidget;
        auto* column = new QVBoxLayout(inside);
        column->setContentsMargins(0, 0, 0, 0);
        column->addWidget(control);
        inside->setFixedWidth(width);
        bubble.setContent(inside);
        control->setDialoguePalette(bubble.dialoguePalette());
        EXPECT_TRUE(showStill(bubble));
    }
    QImage picture() { return control->grab().toImage(); }
};

const QString sentence = QStringLiteral("A sentence that is too long for one line of so narrow a panel");

TEST(KitCheckBox, OnlyTheBoxTakesTheMouseAndSpaceTheKeyboard) {
    Shown<PanelCheckBox> at;
    at.control->setTitle(QStringLiteral("Bread & milk"));
    struct Case {
        const char* fault;
        QPointF place;
        bool checks;
    };
    const QPointF words = at.control->wordsRect().center();
    const Case cases[] = {{"the box does nothing", {12, 16}, true},
                          {"near the box is missed", {2, 16}, true},
                          {"the words check it off", words, false}};
    for (const Case& each : cases) {
        SCOPED_TRACE(each.fault);
        at.control->setChecked(false);
        mouse(*at.control, QEvent::MouseButtonPress, each.place);
        mouse(*at.control, QEvent::MouseButtonRelease, each.place);
        EXPECT_EQ(at.control->isChecked(), each.checks);
    }
    at.control->setChecked(false);
    ASSERT_TRUE(activate(at.bubble));
    at.control->setFocus(Qt::TabFocusReason);
    key(at.bubble, Qt::Key_Space);
    EXPECT_TRUE(at.control->isChecked());
    EXPECT_EQ(spokenName(at.control), "Bread & milk");
    const auto* spoken = QAccessible::queryAccessibleInterface(at.control);
    EXPECT_EQ(spoken->role(), QAccessible::CheckBox);
    EXPECT_TRUE(spoken->state().checked);
    at.control->setMark(PanelCheckBox::Mark::dash);
    EXPECT_FALSE(at.control->isChecked());
    key(at.bubble, Qt::Key_Space);
    EXPECT_FALSE(at.control->isChecked()) << "what has no box was checked";
}

TEST(KitCheckBox, WordsWrapBetweenWordsAndTheRowGrows) {
    Shown<PanelCheckBox> at;
    at.control->setTitle(QStringLiteral("Short"));
    const int one = at.control->heightForWidth(240);
    EXPECT_EQ(one, PanelMetrics::controlHeight) << "a row breaks the rhythm";
    at.control->setTitle(sentence);
    const int many = at.control->heightForWidth(240);
    EXPECT_GT(many, one);
    EXPECT_LE(at.control->heightForWidth(1200), one);
    // The same words as one that cannot be broken need at least as many lines.
    at.control->setTitle(QString(sentence).replace(QLatin1Char(' '), QLatin1Char('x')));
    EXPECT_GT(at.control->heightForWidth(240), one) << "a long word runs out of the panel";
    at.control->setTitle(QStringLiteral("Short"));
    at.control->setDetail(QStringLiteral("since yesterday"));
    EXPECT_GT(at.control->heightForWidth(240), one);
}

TEST(KitField, KeysItHasNoUseForReachThePanel) {
    Shown<PanelField> at;
    int entered = 0;
    QObject::connect(at.control, &QLineEdit::returnPressed, [&entered] { ++entered; });
    ASSERT_TRUE(activate(at.bubble));
    at.control->setFocus();
    const QImage focused = at.picture();
    at.bubble.setFocus();
    EXPECT_NE(at.picture(), focused) << "nothing shows where the keyboard is";
    at.control->setFocus();
    at.control->setText(QStringLiteral("typed"));
    key(at.bubble, Qt::Key_Return);
    EXPECT_EQ(entered, 1);
    EXPECT_TRUE(at.bubble.isPresented());
    key(at.bubble, Qt::Key_Escape);
    EXPECT_FALSE(at.bubble.isPresented());
    EXPECT_EQ(at.control->text(), QStringLiteral("typed"));
}

TEST(KitField, EveryTextIsReadableInEitherTheme) {
    for (const DesktopTheme theme : {DesktopTheme::light, DesktopTheme::dark}) {
        const auto palette = DialoguePalette::forAccent({0.7, 0.24, 0.24}, theme);
        PanelField field;
        field.setDialoguePalette(palette);
        const QPalette own = field.palette();
        EXPECT_GE(contrastRatio(own.color(QPalette::Text), palette.paper), 4.5);
        EXPECT_GE(contrastRatio(own.color(QPalette::PlaceholderText), palette.paper), 4.5);
        EXPECT_GE(contrastRatio(own.color(QPalette::HighlightedText), own.color(QPalette::Highlight)), 4.5);
    }
}

TEST(KitScroll, TheBarComesWithTheNeedAndEveryRowCanBeReached) {
    Shown<PanelScroll> at;
    auto* rows = new QWidget;
    rows->setMinimumHeight(40);
    at.control->setFixedHeight(120);
    at.control->setRows(rows);
    EXPECT_TRUE(waitUntil([&] { return !at.control->verticalScrollBar()->isVisible(); }));
    rows->setMinimumHeight(1000);
    EXPECT_TRUE(waitUntil([&] { return at.control->verticalScrollBar()->isVisible(); }));
    EXPECT_EQ(at.control->verticalScrollBar()->maximum(), 1000 - 120);
    const QImage top = at.picture();
    at.control->verticalScrollBar()->setValue(880);
    EXPECT_NE(at.picture(), top) << "the thumb stands still";
}

TEST(KitPointer, ABubbleThatBelongsToNoOneHasNoPointer) {
    Bubble pointing;
    Bubble alone;
    alone.setPointer(BubblePointer::none);
    for (Bubble* bubble : {&pointing, &alone}) {
        auto* inside = new QWidget;
        inside->setFixedSize(100, 60);
        bubble->setContent(inside);
        bubble->setTranslucent(false); // so that the shape can be asked for
        ASSERT_TRUE(showStill(*bubble));
    }
    EXPECT_LT(alone.mask().boundingRect().width(), pointing.mask().boundingRect().width());
}

} // namespace
