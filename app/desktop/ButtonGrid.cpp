#include "app/desktop/ButtonGrid.h"

#include "app/desktop/PanelMetrics.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace DeskSprites {

namespace {

bool isPrimary(const QuickAction& action) {
    return action.emphasis == Emphasis::primary;
}

/// Where an arrow leads, as a unit vector in widget coordinates; nothing for other keys.
std::optional<QPoint> direction(int key) {
    switch (key) {
    case Qt::Key_Left:
        return QPoint(-1, 0);
    case Qt::Key_Right:
        return QPoint(1, 0);
    case Qt::Key_Up:
        return QPoint(0, -1);
    case Qt::Key_Down:
        return QPoint(0, 1);
    default:
        return std::nullopt;
    }
}

QRect placeIn(const QWidget& root, const QWidget& widget) {
    return {widget.mapTo(&root, QPoint(0, 0)), widget.size()};
}

/// How far `to` lies from `from` in the direction of `way`; nothing when it does not lie there. What is
/// straight ahead beats what is aside, and then the nearer middle wins.
std::optional<int> distanceAlong(const QRect& from, const QRect& to, const QPoint& way) {
    constexpr int aheadWeight = 1000;
    const bool level = way.x() != 0;
    const int ahead = level ? (way.x() > 0 ? to.left() - from.right() : from.left() - to.right())
                            : (way.y() > 0 ? to.top() - from.bottom() : from.top() - to.bottom());
    if (ahead < 0) {
        return std::nullopt;
    }
    const int aside = level ? std::max(to.top() - from.bottom(), from.top() - to.bottom())
                            : std::max(to.left() - from.right(), from.left() - to.right());
    const QPoint middles = to.center() - from.center();
    return (ahead + 2 * std::max(0, aside)) * aheadWeight + std::abs(level ? middles.y() : middles.x());
}

} // namespace

ButtonGrid::ButtonGrid(Arrangement arrangement, QWidget* parent)
    : QWidget(parent), arrangement_(arrangement), grid_(new QGridLayout(this)) {
    grid_->setContentsMargins(0, 0, 0, 0);
    grid_->setSpacing(arrangement == Arrangement::tiles ? PanelMetrics::halfUnit : PanelMetrics::unit);
}

void ButtonGrid::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    for (auto& [id, entry] : entries_) {
        entry.button->setDialoguePalette(palette);
    }
}

bool ButtonGrid::setActions(const std::vector<QuickAction>& actions) {
    const bool changes = !sameArrangement(actions);
    if (changes) {
        rearrange(actions);
    }
    for (const QuickAction& action : actions) {
        update(entries_[action.id], action);
    }
    setVisible(!actions.empty());
    return changes;
}

std::vector<PanelButton*> ButtonGrid::buttons() const {
    std::vector<PanelButton*> all;
    for (const QString& id : order_) {
        all.push_back(entries_.at(id).button);
    }
    return all;
}

PanelButton* ButtonGrid::button(const QString& id) const {
    const auto found = entries_.find(id);
    return found == entries_.end() ? nullptr : found->second.button;
}

bool ButtonGrid::sameArrangement(const std::vector<QuickAction>& actions) const {
    return std::equal(actions.begin(), actions.end(), order_.begin(), order_.end(),
                      [this](const QuickAction& action, const QString& id) {
                          return action.id == id && isPrimary(action) == isPrimary(entries_.at(id).action);
                      });
}

void ButtonGrid::rearrange(const std::vector<QuickAction>& actions) {
    while (QLayoutItem* item = grid_->takeAt(0)) {
        delete item;
    }
    std::map<QString, Entry> kept;
    std::vector<QString> order;
    for (const QuickAction& action : actions) {
        order.push_back(action.id);
        if (kept.contains(action.id)) {
            continue;
        }
        auto known = entries_.extract(action.id);
        Entry entry = known ? known.mapped() : Entry{nullptr, action};
        if (entry.button == nullptr) {
            const bool tile = arrangement_ == Arrangement::tiles;
            entry.button = new PanelButton(tile ? PanelButton::Shape::tile : PanelButton::Shape::row, this);
            entry.button->setDialoguePalette(palette_);
            connect(entry.button, &QAbstractButton::clicked, this, [this, id = action.id] { press(id); });
        }
        entry.action = action;
        kept.emplace(action.id, std::move(entry));
    }
    for (auto& [id, entry] : entries_) {
        // Perhaps in the middle of its own click, so not deleted here and now.
        entry.button->hide();
        entry.button->deleteLater();
    }
    entries_ = std::move(kept);
    order_ = std::move(order);
    fillGrid();
}

bool ButtonGrid::standsAlone(std::size_t index) const {
    return arrangement_ == Arrangement::rows && isPrimary(entries_.at(order_[index]).action);
}

void ButtonGrid::fillGrid() {
    int row = 0;
    int column = 0;
    for (std::size_t index = 0; index < order_.size(); ++index) {
        PanelButton* button = entries_.at(order_[index]).button;
        if (arrangement_ == Arrangement::tiles) {
            grid_->addWidget(button, 0, column++);
        } else {
            const bool partnerless = index + 1 == order_.size() || standsAlone(index + 1);
            const bool wide = column == 0 && (standsAlone(index) || partnerless);
            grid_->addWidget(button, row, column, 1, wide ? 2 : 1);
            column = wide ? 0 : 1 - column;
            row += column == 0 ? 1 : 0;
        }
    }
    // A grid keeps the columns it once had; only those in use may take room.
    const int used = arrangement_ == Arrangement::tiles ? column : 2;
    for (int index = 0; index < grid_->columnCount(); ++index) {
        grid_->setColumnStretch(index, index < used ? 1 : 0);
    }
}

void ButtonGrid::update(Entry& entry, const QuickAction& action) {
    entry.action = action;
    entry.button->setTitle(action.title);
    // Tiles are quiet by nature: there the place says how much a button matters.
    entry.button->setEmphasis(arrangement_ == Arrangement::tiles ? Emphasis::quiet : action.emphasis);
    entry.button->setPixelIcon(action.icon);
    entry.button->setOpensMenu(static_cast<bool>(action.menu));
    entry.button->setEnabled(action.enabled);
    entry.button->setToolTip(action.help);
    entry.button->setAccessibleDescription(action.help);
}

void ButtonGrid::press(const QString& id) {
    const auto found = entries_.find(id);
    if (found == entries_.end()) {
        return;
    }
    // Copied, because the closure may replace the actions or close the bubble.
    const QuickAction action = found->second.action;
    if (action.menu) {
        std::unique_ptr<QMenu> menu = action.menu();
        if (menu) {
            const PanelButton* button = found->second.button;
            menu->setAttribute(Qt::WA_DeleteOnClose);
            openMenu_ = menu.release();
            openMenu_->popup(button->mapToGlobal(QPoint(0, button->height())));
        }
        return;
    }
    if (onPressed) {
        onPressed();
    }
    if (action.onPress) {
        action.onPress();
    }
}

void ButtonGrid::hideEvent(QHideEvent* event) {
    if (openMenu_) {
        openMenu_->close();
    }
    QWidget::hideEvent(event);
}

bool takesTab(const QWidget& widget) {
    return (widget.focusPolicy() & Qt::TabFocus) == Qt::TabFocus;
}

bool moveFocusByArrow(QWidget& root, int key) {
    const std::optional<QPoint> way = direction(key);
    if (!way) {
        return false;
    }
    QWidget* from = root.focusWidget() == &root ? nullptr : root.focusWidget();
    QWidget* nearest = nullptr;
    int least = std::numeric_limits<int>::max();
    for (QWidget* widget : root.findChildren<QWidget*>()) {
        if (!takesTab(*widget) || widget == from || !widget->isEnabled() || !widget->isVisibleTo(&root)) {
            continue;
        }
        const QRect place = placeIn(root, *widget);
        // With nothing focused an arrow enters at the top.
        const std::optional<int> distance =
            from != nullptr ? distanceAlong(placeIn(root, *from), place, *way) : place.top();
        if (distance && *distance < least) {
            least = *distance;
            nearest = widget;
        }
    }
    if (nearest != nullptr) {
        nearest->setFocus(Qt::TabFocusReason);
    }
    return nearest != nullptr;
}

} // namespace DeskSprites
