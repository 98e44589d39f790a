#include "app/characters/snake/SnakeCard.h"

#include "app/desktop/PanelControls.h"
#include "app/desktop/PixelDigits.h"
#include "app/desktop/PixelFrame.h"
#include "core/snake/SnakeWords.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

namespace DeskSprites {

using FellowCore::SnakeStatus;

namespace {

constexpr int unit = PanelMetrics::unit;
constexpr int digitPixel = 4;
constexpr int buttonWidth = 14 * unit;

QString titleOf(SnakeStatus status) {
    switch (status) {
    case SnakeStatus::paused:
        return SnakeCard::tr("Paused");
    case SnakeStatus::won:
        return SnakeCard::tr("You filled the board");
    case SnakeStatus::gameOver:
    case SnakeStatus::running:
        break;
    }
    return SnakeCard::tr("Game over");
}

QString hintOf(SnakeStatus status) {
    if (status == SnakeStatus::paused) {
        return SnakeCard::tr("Space or a click to go on  ·  Esc to quit");
    }
    const std::string_view keys = FellowCore::snakeKeysHint(status);
    return QString::fromUtf8(keys.data(), static_cast<qsizetype>(keys.size()));
}

PanelText* addText(QVBoxLayout& layout, TextRole role, QWidget* parent) {
    auto* text = new PanelText(role, parent);
    text->setAlignment(Qt::AlignCenter);
    text->setWordWrap(false);
    layout.addWidget(text);
    return text;
}

} // namespace

/// The score in large digits.
class SnakeCard::Score : public QWidget {
public:
    explicit Score(QWidget* parent) : QWidget(parent) {}

    void setScore(int score, const QColor& colour) {
        text_ = QString::number(score);
        colour_ = colour;
        setAccessibleName(SnakeCard::tr("Score %1").arg(score));
        updateGeometry();
        update();
    }
    QSize sizeHint() const override { return digits_.size(text_); }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const QSize size = digits_.size(text_);
        digits_.paint(painter, {(width() - size.width()) / 2, (height() - size.height()) / 2}, text_,
                      colour_);
    }

private:
    PixelDigits digits_{PixelDigits::Face::large, digitPixel};
    QString text_ = QStringLiteral("0");
    QColor colour_;
};

SnakeCard::SnakeCard(QWidget* parent) : QWidget(parent) {
    setCursor(Qt::ArrowCursor);
    build();
    hide();
}

void SnakeCard::build() {
    auto* layout = new QVBoxLayout(this);
    const QMargins frame = PixelFrame(size()).margins();
    layout->setContentsMargins(frame + QMargins(4 * unit, 3 * unit, 4 * unit, 3 * unit));
    layout->setSpacing(unit);
    title_ = addText(*layout, TextRole::title, this);
    score_ = new Score(this);
    layout->addSpacing(unit);
    layout->addWidget(score_);
    layout->addSpacing(unit);
    best_ = addText(*layout, TextRole::body, this);
    hint_ = addText(*layout, TextRole::quiet, this);
    layout->addSpacing(unit);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(unit);
    buttons->addStretch();
    for (PanelButton** button : {&primary_, &leave_}) {
        *button = new PanelButton(PanelButton::Shape::row, this);
        (*button)->setFocusPolicy(Qt::NoFocus);
        (*button)->setMinimumWidth(buttonWidth);
        buttons->addWidget(*button);
    }
    buttons->addStretch();
    layout->addLayout(buttons);
    primary_->setEmphasis(Emphasis::primary);
    leave_->setTitle(tr("Leave"));
    connect(primary_, &QAbstractButton::clicked, this, [this] { press(); });
    connect(leave_, &QAbstractButton::clicked, this, [this] { onLeave(); });
}

void SnakeCard::press() {
    if (status_ == SnakeStatus::paused) {
        onResume();
    } else {
        onRestart();
    }
}

void SnakeCard::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    for (PanelText* text : {title_, best_, hint_}) {
        text->setDialoguePalette(palette);
    }
    primary_->setDialoguePalette(palette);
    leave_->setDialoguePalette(palette);
    update();
}

void SnakeCard::present(SnakeStatus status, const SnakeResult& result) {
    const bool isNew = status != status_;
    status_ = status;
    setVisible(status != SnakeStatus::running);
    if (isHidden()) {
        return;
    }
    title_->setText(titleOf(status));
    score_->setScore(result.score, result.isNewBest ? palette_.accent : palette_.ink);
    QPalette bestColours = best_->palette();
    bestColours.setColor(QPalette::WindowText, result.isNewBest ? palette_.accent : palette_.ink);
    best_->setPalette(bestColours);
    best_->setText(result.isNewBest ? tr("New best") : tr("Best %1").arg(result.best));
    hint_->setText(hintOf(status));
    primary_->setTitle(status == SnakeStatus::paused ? tr("Go on") : tr("Play again"));
    setAccessibleName(
        QStringLiteral("%1. %2. %3").arg(title_->text(), score_->accessibleName(), best_->text()));
    if (isNew) {
        announce();
    }
}

void SnakeCard::announce() {
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void SnakeCard::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    PixelFrame(size()).paint(painter, palette_);
}

} // namespace DeskSprites
