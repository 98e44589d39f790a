#include "app/settings/Portrait.h"

#include "app/desktop/PixelArtwork.h"
#include "app/desktop/PixelFrame.h"

#include <QPainter>
#include <QPixmapCache>

#include <cmath>

namespace DeskSprites {

namespace {

bool isRowClear(const QImage& art, int y, int left, int right) {
    for (int x = left; x <= right; ++x) {
        if (qAlpha(art.pixel(x, y)) != 0) {
            return false;
        }
    }
    return true;
}

bool isColumnClear(const QImage& art, int x) {
    for (int y = 0; y < art.height(); ++y) {
        if (qAlpha(art.pixel(x, y)) != 0) {
            return false;
        }
    }
    return true;
}

QRect opaqueRect(const QImage& art) {
    int left = 0, right = art.width() - 1, top = 0, bottom = art.height() - 1;
    while (left <= right && isColumnClear(art, left)) {
        ++left;
    }
    while (right > left && isColumnClear(art, right)) {
        --right;
    }
    while (top <= bottom && isRowClear(art, top, left, right)) {
        ++top;
    }
    while (bottom > top && isRowClear(art, bottom, left, right)) {
        --bottom;
    }
    return {QPoint(left, top), QPoint(right, bottom)};
}

/// The opaque part of the art, scaled to fit into `box` (points). The last results are kept, because a list
/// repaints often.
QPixmap portraitPixmap(const QImage& art, QSize box, qreal devicePixelRatio) {
    const QString key = QStringLiteral("portrait-%1-%2x%3@%4")
                            .arg(art.cacheKey())
                            .arg(box.width())
                            .arg(box.height())
                            .arg(devicePixelRatio);
    QPixmap portrait;
    if (QPixmapCache::find(key, &portrait)) {
        return portrait;
    }
    const QRect opaque = art.isNull() ? QRect() : opaqueRect(art);
    if (opaque.isEmpty()) {
        return {};
    }
    const QSize room = (QSizeF(box) * devicePixelRatio).toSize();
    QSize size = opaque.size().scaled(room, Qt::KeepAspectRatio);
    // Where a whole multiple fits, it is the crispest; a little smaller is better than a little soft.
    if (const int multiple = size.height() / opaque.height(); multiple >= 1) {
        size = opaque.size() * multiple;
    }
    // Premultiplied, so that the colour of a clear pixel does not leak into an average.
    const QImage cut = art.copy(opaque).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    portrait = QPixmap::fromImage(PixelArtwork::scaled(cut, size.expandedTo({1, 1})));
    portrait.setDevicePixelRatio(devicePixelRatio);
    QPixmapCache::insert(key, portrait);
    return portrait;
}

} // namespace

void paintPortrait(QPainter& painter, const QImage& art, const QRect& box) {
    const qreal ratio = painter.device()->devicePixelRatioF();
    const QPixmap portrait = portraitPixmap(art, box.size(), ratio);
    if (portrait.isNull()) {
        return;
    }
    const QSizeF size = portrait.deviceIndependentSize();
    // On whole device pixels, or the art is smeared over two.
    const qreal left = std::round((box.x() + (box.width() - size.width()) / 2) * ratio) / ratio;
    painter.drawPixmap(QPointF(left, box.y() + box.height() - size.height()), portrait);
}

PortraitView::PortraitView(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void PortraitView::setArt(const QImage& art) {
    art_ = art;
    update();
}

void PortraitView::paintEvent(QPaintEvent*) {
    constexpr int margin = 12;
    constexpr int floorHeight = 2;
    QPainter painter(this);
    fillStepped(painter, rect(), 4, palette().color(QPalette::AlternateBase));
    const QRect inside = rect().adjusted(margin, margin, -margin, -margin - floorHeight);
    painter.fillRect(inside.left(), inside.bottom() + 1, inside.width(), floorHeight,
                     palette().color(QPalette::Mid));
    paintPortrait(painter, art_, inside);
}

} // namespace DeskSprites
