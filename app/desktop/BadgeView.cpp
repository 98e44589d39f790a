#include "app/desktop/BadgeView.h"

#include "app/desktop/PixelDigits.h"

#include <QPainter>

namespace DeskSprites {

namespace {
const PixelDigits digits(PixelDigits::Face::large);
}

BadgeView::BadgeView(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void BadgeView::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    QWidget::update();
}

void BadgeView::setBadge(const QString& badge, const QString& spoken) {
    const bool resized = digits.size(badge) != digits.size(badge_);
    if (badge != badge_) {
        badge_ = badge;
        QWidget::update();
    }
    setAccessibleName(spoken.isEmpty() ? badge : spoken);
    if (resized) {
        updateGeometry();
    }
}

QSize BadgeView::sizeHint() const {
    return digits.size(badge_);
}

void BadgeView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    digits.paint(painter, QPoint(0, 0), badge_, palette_.ink);
}

} // namespace DeskSprites
