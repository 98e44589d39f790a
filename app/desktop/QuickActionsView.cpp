#include "app/desktop/QuickActionsView.h"

#include "app/desktop/PanelMetrics.h"
#include "app/desktop/PixelFrame.h"

#include <QHBoxLayout>

#include <algorithm>
#include <iterator>

namespace DeskSprites {

QuickActionsView::QuickActionsView(QWidget* parent)
    : QWidget(parent), name_(new PanelText(TextRole::title, this)),
      role_(new PanelText(TextRole::quiet, this)), lamp_(new LampDot(this)),
      status_(new PanelText(TextRole::body, this)), badge_(new BadgeView(this)),
      progress_(new SegmentBar(this)), extraPlace_(new QVBoxLayout),
      actions_(new ButtonGrid(ButtonGrid::Arrangement::rows, this)), rule_(new QWidget(this)),
      size_(new SizeControl(this)), footer_(new ButtonGrid(ButtonGrid::Arrangement::tiles, this)) {
    setMinimumWidth(PanelMetrics::contentWidth);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(PanelMetrics::unit + PanelMetrics::halfUnit);
    buildHeader(*column);
    column->addLayout(extraPlace_);
    column->addWidget(actions_);
    buildFooter(*column);
    progress_->setAccessibleName(tr("Progress"));
}

void QuickActionsView::buildHeader(QVBoxLayout& column) {
    auto* names = new QHBoxLayout;
    names->setSpacing(PanelMetrics::unit);
    name_->setWordWrap(false);
    role_->setWordWrap(false);
    names->addWidget(name_, 0, Qt::AlignBaseline);
    names->addWidget(role_, 0, Qt::AlignBaseline);
    names->addStretch(1);
    auto* state = new QHBoxLayout;
    state->setSpacing(PanelMetrics::unit);
    state->addWidget(lamp_);
    state->addWidget(status_, 1);
    auto* words = new QVBoxLayout;
    words->setSpacing(PanelMetrics::halfUnit);
    words->addLayout(names);
    words->addLayout(state);
    auto* line = new QHBoxLayout;
    line->setSpacing(2 * PanelMetrics::unit);
    line->addLayout(words, 1);
    line->addWidget(badge_, 0, Qt::AlignVCenter);
    auto* header = new QVBoxLayout;
    header->setSpacing(PanelMetrics::unit + PanelMetrics::halfUnit);
    header->addLayout(line);
    header->addWidget(progress_);
    column.addLayout(header);
}

void QuickActionsView::buildFooter(QVBoxLayout& column) {
    rule_->setFixedHeight(PixelFrame::pixel);
    column.addWidget(rule_);
    column.addWidget(size_);
    column.addWidget(footer_);
}

void QuickActionsView::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    name_->setDialoguePalette(palette);
    role_->setDialoguePalette(palette);
    lamp_->setDialoguePalette(palette);
    status_->setDialoguePalette(palette);
    badge_->setDialoguePalette(palette);
    progress_->setDialoguePalette(palette);
    actions_->setDialoguePalette(palette);
    size_->setDialoguePalette(palette);
    footer_->setDialoguePalette(palette);
    QPalette line;
    line.setColor(QPalette::Window, palette.line());
    rule_->setAutoFillBackground(true);
    rule_->setPalette(line);
}

void QuickActionsView::setContent(const QuickActionsContent& content) {
    const auto setText = [](PanelText& label, const QString& text) {
        label.setText(text);
        label.setVisible(!text.isEmpty());
    };
    setText(*name_, content.name);
    setText(*role_, content.role);
    setText(*status_, content.status);
    if (content.lamp) {
        lamp_->setColour(*content.lamp);
    }
    lamp_->setVisible(content.lamp.has_value());
    if (content.badge) {
        badge_->setBadge(*content.badge, content.badgeSpoken);
    }
    badge_->setVisible(content.badge.has_value());
    if (content.progress) {
        progress_->setFraction(*content.progress);
    }
    progress_->setVisible(content.progress.has_value());
    bool changed = setExtra(content.extra);
    changed = actions_->setActions(content.actions) || changed;
    if (content.size) {
        size_->setRow(*content.size);
    }
    size_->setVisible(content.size.has_value());
    changed = footer_->setActions(content.footer) || changed;
    rule_->setVisible(content.size.has_value() || !content.footer.empty());
    if (changed) {
        chainTabOrder();
    }
}

bool QuickActionsView::setExtra(QWidget* extra) {
    if (extra == extra_) {
        return false;
    }
    if (extra_) {
        extra_->hide();
        extra_->deleteLater();
    }
    extra_ = extra;
    if (extra_) {
        extraPlace_->addWidget(extra_);
        extra_->show();
    }
    return true;
}

std::vector<QWidget*> QuickActionsView::controls() const {
    std::vector<QWidget*> all;
    const auto add = [&all](const auto& widgets) {
        std::copy_if(widgets.begin(), widgets.end(), std::back_inserter(all),
                     [](const QWidget* widget) { return takesTab(*widget); });
    };
    if (extra_) {
        add(extra_->findChildren<QWidget*>());
    }
    add(actions_->buttons());
    add(size_->findChildren<QWidget*>());
    add(footer_->buttons());
    return all;
}

void QuickActionsView::chainTabOrder() const {
    QWidget* previous = nullptr;
    for (QWidget* control : controls()) {
        if (previous != nullptr) {
            setTabOrder(previous, control);
        }
        previous = control;
    }
}

QWidget* QuickActionsView::firstControl() const {
    const std::vector<QWidget*> all = controls();
    const auto first = std::find_if(all.begin(), all.end(), [this](const QWidget* control) {
        return control->isEnabled() && control->isVisibleTo(this);
    });
    return first == all.end() ? nullptr : *first;
}

} // namespace DeskSprites
