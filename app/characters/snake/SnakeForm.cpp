#include "app/characters/snake/SnakeForm.h"

#include "app/characters/snake/SnakeTile.h"
#include "core/snake/SnakeWords.h"

#include <QCoreApplication>
#include <QPainter>
#include <QSlider>
#include <QVBoxLayout>

#include <cmath>

namespace DeskSprites {

using FellowCore::SnakeSpeed;
using FellowCore::SnakeStore;

namespace {

constexpr int unit = FormMetrics::unit;
constexpr int previewPixel = 3;
constexpr int previewTile = previewPixel * FellowCore::SnakeBoardLayout::artUnitsPerTile;
constexpr int previewColumns = 8;
constexpr int previewRows = 3;

int percentOf(double dim) {
    return static_cast<int>(std::lround(dim * 100));
}

QString speedWords(int level) {
    const std::string title(SnakeSpeed(level).title());
    return QStringLiteral("%1 · %2").arg(level).arg(QCoreApplication::translate("Snake", title.c_str()));
}

/// The food stands to the right of the head, where the preview shows it.
FellowCore::SnakeCell aheadOfStart(const FellowCore::SnakeFreeCells& free) {
    return {free.columns() / 2 + 2, free.rows() / 2};
}

} // namespace

SnakeDimPreview::SnakeDimPreview(QWidget* parent)
    : QWidget(parent), game_(previewColumns, previewColumns, aheadOfStart) {
    setFixedSize(sizeHint());
    setAccessibleName(tr("How dark the desktop will be"));
}

void SnakeDimPreview::setDim(double dim) {
    dim_ = dim;
    update();
}

QSize SnakeDimPreview::sizeHint() const {
    return {previewColumns * previewTile, previewRows * previewTile};
}

void SnakeDimPreview::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    // A page of someone's work, with a few lines on it.
    painter.fillRect(rect(), QColor(244, 242, 236));
    for (int y = unit; y < height(); y += unit + unit / 2) {
        painter.fillRect(unit, y, width() - 2 * unit - (y * 7 % 40), unit / 2, QColor(176, 172, 164));
    }
    painter.fillRect(rect(), QColor::fromRgbF(0.125F, 0.078F, 0.102F, static_cast<float>(dim_)));
    const int ground = game_.rows() / 2 - previewRows / 2; // the lowest row that is shown
    const auto put = [&](FellowCore::SnakeCell cell, const QImage& tile) {
        const int top = (previewRows - 1 - (cell.y - ground)) * previewTile;
        painter.drawImage(QRect(cell.x * previewTile, top, previewTile, previewTile), tile);
    };
    for (std::size_t i = 0; i < game_.body().size(); ++i) {
        put(game_.body()[i], SnakeTile::segment(game_, i, SnakeLook::awake));
    }
    put(*game_.food(), SnakeTile::food());
}

SnakeForm::SnakeForm(SnakeStore& store, SnakePreferencesNotice& notice, QWidget* parent)
    : FormSection(tr("Game"), parent), store_(store) {
    addSettings();
    addBest();
    showStored();
    showAsking(false);
    connect(&notice, &SnakePreferencesNotice::changed, this, &SnakeForm::showStored);
}

void SnakeForm::addSettings() {
    const auto percent = [](int value) { return tr("%1 %").arg(value); };
    speed_ = addSlider(tr("Speed"), {SnakeSpeed::slowest, SnakeSpeed::fastest, 1, 2}, speedWords,
                       tr("Plus and minus change it while you play."));
    ramp_ = addSwitch(tr("Speed up as she eats"), tr("Each bite makes the next step a little quicker."));
    sounds_ = addSwitch(tr("Sounds"), tr("When she eats, and when the game ends."));
    dim_ = addSlider(tr("Darken the desktop"), {0, percentOf(SnakeStore::darkestDim), 5, 10}, percent);
    preview_ = new SnakeDimPreview(this);
    addRow(QString(), preview_);
    connect(speed_, &FormSlider::chosen, this, [this](int level) { store_.setSpeed(SnakeSpeed(level)); });
    connect(ramp_, &QCheckBox::toggled, this, [this](bool on) { store_.setRampAsEating(on); });
    connect(sounds_, &QCheckBox::toggled, this, [this](bool on) { store_.setSounds(on); });
    connect(dim_, &FormSlider::preview, this, [this](int value) { preview_->setDim(value / 100.0); });
    connect(dim_, &FormSlider::chosen, this, [this](int value) { store_.setBackdropDim(value / 100.0); });
}

void SnakeForm::addBest() {
    auto* line = new QWidget(this);
    auto* column = new QVBoxLayout(line);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(unit);
    best_ = makeText(QString(), TextStyle::body, line);
    auto* buttons = new FormButtons(line);
    forget_ = buttons->add(tr("Reset best score…"));
    confirm_ = buttons->add(tr("Reset it"));
    keep_ = buttons->add(tr("Keep it"));
    column->addWidget(best_);
    column->addWidget(buttons);
    addRow(tr("Best score"), line);
    connect(forget_, &QPushButton::clicked, this, [this] { showAsking(true); });
    connect(keep_, &QPushButton::clicked, this, [this] { showAsking(false); });
    connect(confirm_, &QPushButton::clicked, this, [this] {
        store_.forgetBest();
        showAsking(false);
    });
}

void SnakeForm::showStored() {
    speed_->setQuietly(store_.speed().level);
    ramp_->setQuietly(store_.rampAsEating());
    sounds_->setQuietly(store_.sounds());
    dim_->setQuietly(percentOf(store_.backdropDim()));
    preview_->setDim(store_.backdropDim());
    const int best = store_.bestScore();
    best_->setText(best > 0 ? QString::number(best) : tr("None yet"));
    forget_->setEnabled(best > 0);
}

void SnakeForm::showAsking(bool asks) {
    const bool hadFocus = forget_->hasFocus() || confirm_->hasFocus() || keep_->hasFocus();
    forget_->setVisible(!asks);
    confirm_->setVisible(asks);
    keep_->setVisible(asks);
    if (asks) {
        best_->setText(tr("%1 will be forgotten. This cannot be undone.").arg(store_.bestScore()));
    } else {
        showStored();
    }
    if (hadFocus) {
        (asks ? keep_ : forget_)->setFocus(Qt::OtherFocusReason);
    }
}

} // namespace DeskSprites
