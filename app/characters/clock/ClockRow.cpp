#include "app/characters/clock/ClockRow.h"

#include "app/characters/clock/ClockWords.h"
#include "app/desktop/PanelControls.h"
#include "app/desktop/PixelFrame.h"

#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QToolTip>

namespace DeskSprites {

namespace {
constexpr int pixel = PixelFrame::pixel;
} // namespace

ClockRowStop::ClockRowStop(QWidget* parent) : PanelPressable(parent) {
    setFocusPolicy(Qt::ClickFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ClockRowStop::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    QWidget::update();
}

void ClockRowStop::showLine(const ClockLine& line, bool isPreview) {
    if (line == line_ && isPreview == isPreview_) {
        return;
    }
    line_ = line;
    isPreview_ = isPreview;
    setCheckable(line.mark != ClockLine::Mark::home);
    setChecked(line.mark == ClockLine::Mark::pinned);
    showTip();
    QWidget::update();
}

QRect ClockRowStop::markRect() const {
    return ClockLine::markRect(rect(), font(), layoutDirection());
}

QRect ClockRowStop::buttonRect() const {
    return line_.buttonRect(rect(), font(), layoutDirection());
}

QSize ClockRowStop::sizeHint() const {
    return {PanelMetrics::contentWidth, ClockLine::height(font())};
}

bool ClockRowStop::hitButton(const QPoint& at) const {
    constexpr int reach = PanelMetrics::halfUnit;
    return isCheckable() && markRect().adjusted(-reach, -reach, reach, reach).contains(at);
}

bool ClockRowStop::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        if (hitButton(help->pos())) {
            QToolTip::showText(help->globalPos(),
                               isChecked() ? tr("Take off the tower") : tr("Show on the tower"));
            return true;
        }
    }
    return PanelPressable::event(event);
}

void ClockRowStop::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    // The row is under the mouse also where its button stands.
    const bool isOver = parentWidget()->underMouse() && !showsFocusRing();
    if (showsFocusRing()) {
        fillStepped(painter, rect(), 1, palette_.ink);
        fillStepped(painter, rect().adjusted(pixel, pixel, -pixel, -pixel), 0, palette_.paper);
    } else if (isOver) {
        fillStepped(painter, rect(), 1, palette_.hover);
    }
    line_.paint(painter, rect(), {font(), palette_, layoutDirection(), isOver, isPreview_});
}

void ClockRowStop::keyPressEvent(QKeyEvent* event) {
    if (!onKey(*event)) {
        PanelPressable::keyPressEvent(event);
    }
}

void ClockRowStop::resizeEvent(QResizeEvent* event) {
    PanelPressable::resizeEvent(event);
    showTip();
}

void ClockRowStop::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) {
        updateGeometry();
    }
    PanelPressable::changeEvent(event);
}

void ClockRowStop::showTip() {
    setToolTip(line_.fits(width(), font())
                   ? QString()
                   : QStringLiteral("%1\n%2\n%3").arg(line_.city, line_.region, line_.day));
}

ClockRow::ClockRow(std::string identifier, QWidget* parent)
    : PanelRow(parent), identifier_(std::move(identifier)), stop_(new ClockRowStop(this)),
      more_(new PanelButton(PanelButton::Shape::icon, this)) {
    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(0);
    line->addWidget(stop_, 1);
    more_->setPixelIcon(PixelIcon::chevron);
    more_->setEmphasis(Emphasis::quiet);
    more_->setFocusPolicy(Qt::NoFocus); // the keyboard has keys of its own for it
    more_->hide();
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    stop_->onKey = [this](const QKeyEvent& pressed) { return key(pressed); };
    connect(stop_, &QAbstractButton::clicked, this, [this] { onWish(ClockWish::toggleFace); });
    connect(more_, &QAbstractButton::clicked, this,
            [this] { openMenu(more_->mapToGlobal(QPoint(0, more_->height()))); });
}

void ClockRow::setDialoguePalette(const DialoguePalette& palette) {
    stop_->setDialoguePalette(palette);
    DialoguePalette onRow = palette; // it is only seen on the ground of a row under the mouse
    onRow.paper = palette.hover;
    onRow.hover = palette.pressed;
    more_->setDialoguePalette(onRow);
}

void ClockRow::showRow(const FellowCore::WorldClockRow& row, bool homeIsChosen, bool isPreview) {
    isHome_ = row.isHome;
    homeIsChosen_ = homeIsChosen;
    const ClockLine::Mark mark = row.isHome     ? ClockLine::Mark::home
                                 : row.isPinned ? ClockLine::Mark::pinned
                                                : ClockLine::Mark::face;
    stop_->showLine(ClockLine(row, mark), isPreview);
    stop_->setAccessibleName(ClockWords::place(row));
    stop_->setAccessibleDescription(ClockWords::spoken(row));
    placeMore();
    more_->setTitle(tr("More for %1").arg(QString::fromStdString(row.city)));
}

bool ClockRow::dragsFrom(const QPoint& place) const {
    return !isHome_ && !stop_->markRect().contains(place);
}

void ClockRow::showDragging(bool isDragging) {
    isDragging_ = isDragging;
    showMore();
}

void ClockRow::placeMore() {
    more_->setGeometry(stop_->buttonRect().translated(stop_->pos()));
}

void ClockRow::showMore() {
    more_->setVisible(underMouse() && !isDragging_);
    stop_->update();
}

bool ClockRow::key(const QKeyEvent& key) {
    if (key.matches(QKeySequence::Copy)) {
        onWish(ClockWish::copy);
    } else if (key.key() == Qt::Key_Delete) {
        onWish(ClockWish::remove);
    } else if ((key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) && !key.isAutoRepeat()) {
        openMenu(stop_->mapToGlobal(stop_->markRect().bottomLeft()));
    } else {
        return false;
    }
    return true;
}

void ClockRow::openMenu(const QPoint& global) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](const QString& title, ClockWish wish) {
        return menu->addAction(title, this, [this, wish] { onWish(wish); });
    };
    if (isHome_) {
        add(tr("Home is where the system is"), ClockWish::followSystem)->setEnabled(homeIsChosen_);
    } else {
        add(stop_->isChecked() ? tr("Take off the tower") : tr("Show on the tower"), ClockWish::toggleFace);
        add(tr("Make home"), ClockWish::makeHome);
    }
    add(tr("Copy the time") + QStringLiteral("\tCtrl+C"), ClockWish::copy);
    if (!isHome_) {
        menu->addSeparator();
        add(tr("Move up") + QStringLiteral("\tAlt+Up"), ClockWish::moveUp);
        add(tr("Move down") + QStringLiteral("\tAlt+Down"), ClockWish::moveDown);
        menu->addSeparator();
        add(tr("Remove") + QStringLiteral("\tDel"), ClockWish::remove);
    }
    menu->popup(global);
}

void ClockRow::enterEvent(QEnterEvent* event) {
    PanelRow::enterEvent(event);
    showMore();
}

void ClockRow::leaveEvent(QEvent* event) {
    PanelRow::leaveEvent(event);
    showMore();
}

void ClockRow::resizeEvent(QResizeEvent* event) {
    PanelRow::resizeEvent(event);
    layout()->activate();
    placeMore();
}

void ClockRow::contextMenuEvent(QContextMenuEvent* event) {
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    openMenu(byKey ? stop_->mapToGlobal(stop_->markRect().bottomLeft()) : event->globalPos());
}

} // namespace DeskSprites
