#include "app/characters/clock/ClockSearch.h"

#include "app/characters/clock/ClockCharacter.h"
#include "app/characters/clock/ClockSearchDelegate.h"
#include "app/characters/clock/ClockSearchModel.h"
#include "app/desktop/PanelControls.h"
#include "core/worldclock/WorldClockFolding.h"

#include <QKeyEvent>
#include <QListView>
#include <QLocale>
#include <QVBoxLayout>

namespace DeskSprites {

namespace {
constexpr int mostLetters = 100; // no city's name is longer
constexpr int page = 4;
} // namespace

ClockSearch::ClockSearch(ClockCharacter& clock, PanelField& field, QWidget* parent)
    : QWidget(parent), clock_(clock), field_(field), model_(new ClockSearchModel(clock, this)),
      delegate_(new ClockSearchDelegate(*model_, this)), view_(new QListView(this)),
      bar_(settleInPanel(*view_)), none_(new PanelText(TextRole::quiet, this)),
      more_(new PanelText(TextRole::quiet, this)) {
    view_->setUniformItemSizes(true);
    view_->setItemDelegate(delegate_);
    view_->setModel(model_);
    view_->setMouseTracking(true);
    view_->setFocusPolicy(Qt::NoFocus);
    view_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    view_->setAccessibleName(tr("Cities found"));
    none_->setContentsMargins(0, PanelMetrics::unit, 0, 0);
    none_->setAlignment(Qt::AlignTop | Qt::AlignLeading);
    more_->setContentsMargins(0, PanelMetrics::halfUnit, 0, 0);
    for (PanelText* text : {none_, more_}) {
        text->setIndent(PanelMetrics::unit);
    }
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(view_, 1);
    column->addWidget(none_, 1);
    column->addWidget(more_);
    field_.setMaxLength(mostLetters);
    field_.installEventFilter(this);
    connect(&field_, &QLineEdit::textChanged, this, &ClockSearch::search);
    connect(view_, &QListView::clicked, this, [this](const QModelIndex& at) { take(at.row()); });
    search();
}

void ClockSearch::setDialoguePalette(const DialoguePalette& palette) {
    none_->setDialoguePalette(palette);
    more_->setDialoguePalette(palette);
    bar_->setDialoguePalette(palette);
    delegate_->setDialoguePalette(palette);
    view_->viewport()->update();
}

bool ClockSearch::isSearching() const {
    const std::string folded = FellowCore::worldClockFolded(field_.text().toStdString());
    return !FellowCore::worldClockWords(folded).empty();
}

void ClockSearch::clear() {
    field_.clear();
}

void ClockSearch::refresh() {
    if (waits_) {
        search();
    } else {
        delegate_->setPreview(clock_.isPreviewing());
        model_->clocksChanged();
        describeField();
    }
}

void ClockSearch::search() {
    waits_ = isSearching() && !clock_.searchIsReady();
    const bool searches = isSearching() && !waits_;
    model_->show(searches ? clock_.catalog().search(field_.text().toStdString())
                          : std::vector<const FellowCore::WorldClockCity*>{});
    delegate_->setPreview(clock_.isPreviewing());
    selection_ = {};
    showCount();
    showSelection();
    if (onSearching) {
        onSearching();
    }
}

void ClockSearch::showCount() {
    const bool any = model_->rowCount() > 0;
    view_->setVisible(any);
    none_->setVisible(!any);
    none_->setText(waits_ ? tr("Looking at the map…") : tr("No city matches"));
    more_->setVisible(model_->found() > ClockSearchModel::mostShown);
    more_->setText(
        tr("…and %1 more. Type on to narrow it down.")
            .arg(QLocale().toString(qulonglong(model_->found() - std::size_t(model_->rowCount())))));
}

void ClockSearch::showSelection() {
    // Without a selection the first city counts as selected: it is the one that Enter takes.
    view_->setCurrentIndex(model_->index(selection_.index.value_or(0), 0));
    if (!selection_.index) {
        view_->scrollToTop();
    }
    describeField();
}

/// What a screen reader says of the field, which keeps the keyboard while cities are chosen below it.
void ClockSearch::describeField() {
    const QString resting = tr("Type a city, a country or an airport's code");
    const int count = model_->rowCount();
    const int row = selection_.index.value_or(0);
    const QString chosen =
        count == 0 ? none_->text()
                   : tr("%1 of %2: %3").arg(row + 1).arg(model_->found()).arg(model_->spoken(row));
    field_.setAccessibleDescription(isSearching() ? chosen : resting);
}

void ClockSearch::move(int by) {
    selection_.move(by, model_->rowCount());
    showSelection();
}

bool ClockSearch::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &field_ && event->type() == QEvent::KeyPress && isSearching()) {
        const auto& pressed = static_cast<QKeyEvent&>(*event);
        const bool isPlain = (pressed.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
        return isPlain && key(pressed.key());
    }
    return QWidget::eventFilter(watched, event);
}

bool ClockSearch::key(int key) {
    switch (key) {
    case Qt::Key_Up:
        move(-1);
        return true;
    case Qt::Key_Down:
        move(1);
        return true;
    case Qt::Key_PageUp:
        move(-page);
        return true;
    case Qt::Key_PageDown:
        move(page);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        take(selection_.index.value_or(0));
        return true;
    case Qt::Key_Escape:
        clear();
        return true;
    default:
        return false;
    }
}

void ClockSearch::take(int row) {
    if (row < model_->rowCount()) {
        const std::string identifier = model_->city(row).identifier;
        clear();
        onTaken(identifier);
    }
}

} // namespace DeskSprites
