#include "app/characters/dhiru/DhiruRow.h"

#include "app/desktop/LampDot.h"
#include "app/desktop/PanelControls.h"
#include "app/desktop/PanelRole.h"

#include <QHBoxLayout>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QToolTip>

#include <algorithm>

namespace DeskSprites {

namespace {

constexpr int halfUnit = PanelMetrics::halfUnit;

bool endsSomething(DhiruAct act) {
    return act != DhiruAct::open && act != DhiruAct::withdraw;
}

QString actTitle(DhiruAct act) {
    switch (act) {
    case DhiruAct::open:
        return DhiruRow::tr("Open");
    case DhiruAct::force:
        return DhiruRow::tr("Force");
    case DhiruAct::quit:
        return DhiruRow::tr("Quit");
    case DhiruAct::forceQuit:
        return DhiruRow::tr("Force quit");
    case DhiruAct::withdraw:
        return DhiruRow::tr("Keep");
    case DhiruAct::stop:
    case DhiruAct::stopContainer:
        break;
    }
    return DhiruRow::tr("Stop");
}

} // namespace

DhiruRow::DhiruRow(QWidget* parent)
    : QWidget(parent), layout_(new QHBoxLayout(this)), lamp_(new LampDot(this)) {
    setFocusPolicy(Qt::ClickFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    announceAs(*this, QAccessible::ListItem);
    layout_->setContentsMargins(0, 0, halfUnit, 0);
    layout_->setSpacing(halfUnit);
    layout_->addStretch();
    lamp_->hide();
}

void DhiruRow::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    for (const auto& [act, button] : buttons_) {
        button->setDialoguePalette(palette);
    }
    fitLamp();
    update();
}

bool DhiruRow::showLine(const DhiruLine& line) {
    if (line == line_) {
        return false;
    }
    const bool hasNews = !line_.key.isEmpty() && line.note != line_.note && line.isNews;
    const bool sameHeight =
        line.heading.isEmpty() == line_.heading.isEmpty() && line.note.isEmpty() == line_.note.isEmpty();
    line_ = line;
    setAccessibleName(line.spoken);
    setAccessibleDescription(line.note);
    fitButtons();
    fitLamp();
    if (!sameHeight) {
        layout_->setContentsMargins(0, headingHeight(), halfUnit, noteHeight());
        placeLamp();
        updateGeometry();
    }
    update();
    return hasNews;
}

PanelButton* DhiruRow::makeButton(DhiruAct act) {
    auto* button = new PanelButton(PanelButton::Shape::row, this);
    button->setTitle(actTitle(act));
    button->setDialoguePalette(palette_);
    const QSize wanted = button->sizeHint();
    button->setFixedSize(wanted.width(), wanted.height() - halfUnit); // a row is lower than a panel's control
    button->installEventFilter(this);
    connect(button, &QAbstractButton::clicked, this, [this, act] { onAct(act); });
    layout_->addWidget(button);
    return button;
}

/// A button that goes on being wanted stays the same one, with its focus.
void DhiruRow::fitButtons() {
    for (const DhiruAct act : line_.acts) {
        PanelButton*& button = buttons_[act];
        button = button ? button : makeButton(act);
        button->setAccessibleName(tr("%1 %2").arg(actTitle(act), line_.called));
        button->show();
    }
    for (const auto& [act, button] : buttons_) {
        if (std::ranges::find(line_.acts, act) == line_.acts.end()) {
            if (button->hasFocus()) {
                setFocus(Qt::TabFocusReason);
            }
            button->hide();
        }
    }
    setCurrent(current_);
}

void DhiruRow::fitLamp() {
    lamp_->setVisible(line_.lamp != DhiruLamp::none);
    lamp_->setDialoguePalette(palette_);
    lamp_->setColour(line_.lamp == DhiruLamp::alarm ? QColor(0xDC3E2E)
                     : line_.lamp == DhiruLamp::lit ? QColor(0x2EAA62)
                                                    : mixed(palette_.paper, palette_.ink, 0.3));
}

void DhiruRow::setCurrent(bool current) {
    current_ = current;
    for (QWidget* stop : stops()) {
        stop->setFocusPolicy(current ? Qt::StrongFocus : Qt::ClickFocus);
    }
}

void DhiruRow::setAsked(bool asked) {
    if (std::exchange(asked_, asked) != asked) {
        update();
    }
}

PanelButton* DhiruRow::button(DhiruAct act) const {
    const bool offered = std::ranges::find(line_.acts, act) != line_.acts.end();
    return offered ? buttons_.at(act) : nullptr;
}

std::vector<QWidget*> DhiruRow::stops() const {
    std::vector<QWidget*> found{const_cast<DhiruRow*>(this)};
    for (const DhiruAct act : line_.acts) {
        found.push_back(buttons_.at(act));
    }
    return found;
}

bool DhiruRow::holdsFocus() const {
    return std::ranges::any_of(stops(), &QWidget::hasFocus);
}

void DhiruRow::takeFocus(std::optional<DhiruAct> at) {
    PanelButton* const wanted = at ? button(*at) : nullptr;
    (wanted ? static_cast<QWidget*>(wanted) : this)->setFocus(Qt::TabFocusReason);
}

void DhiruRow::step(int by) {
    const auto focused =
        std::ranges::find_if(line_.acts, [this](DhiruAct act) { return buttons_.at(act)->hasFocus(); });
    onStep(by, focused == line_.acts.end() ? std::nullopt : std::optional(*focused));
}

void DhiruRow::keyPressEvent(QKeyEvent* event) {
    const auto ending = std::ranges::find_if(line_.acts, endsSomething);
    const int onwards = isRightToLeft() ? Qt::Key_Left : Qt::Key_Right;
    const int back = isRightToLeft() ? Qt::Key_Right : Qt::Key_Left;
    const std::vector<QWidget*> own = stops();
    const auto at = std::ranges::find_if(own, &QWidget::hasFocus);
    const int key = event->key();
    if (key == Qt::Key_Up || key == Qt::Key_Down) {
        step(key == Qt::Key_Up ? -1 : 1);
    } else if (key == onwards && at != own.end() && at + 1 != own.end()) {
        (*(at + 1))->setFocus(Qt::TabFocusReason);
    } else if (key == back && at != own.end() && at != own.begin()) {
        (*(at - 1))->setFocus(Qt::TabFocusReason);
    } else if (key == Qt::Key_Delete && ending != line_.acts.end()) {
        onAct(*ending);
    } else if ((key == Qt::Key_Return || key == Qt::Key_Enter) && !event->isAutoRepeat() &&
               !line_.acts.empty()) {
        onAct(line_.acts.front());
    } else if (key != onwards && key != back) { // sideways there is nothing beside a row
        QWidget::keyPressEvent(event);
    }
}

void DhiruRow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    placeLamp();
}

void DhiruRow::focusInEvent(QFocusEvent* event) {
    focusRing_.focusIn(*event);
    onFocused();
    update();
}

void DhiruRow::focusOutEvent(QFocusEvent* event) {
    focusRing_.focusOut(*event);
    update();
}

bool DhiruRow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn) {
        onFocused();
    }
    return QWidget::eventFilter(watched, event);
}

bool DhiruRow::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip && shortened_) {
        const QString whole =
            line_.note.isEmpty() ? line_.spoken : line_.spoken + QLatin1Char('\n') + line_.note;
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), whole.toHtmlEscaped(), this);
        return true;
    }
    return QWidget::event(event);
}

} // namespace DeskSprites
