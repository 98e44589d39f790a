#pragma once

#include <QColor>
#include <QImage>
#include <QRect>
#include <QWidget>

namespace DeskSprites {

/// Draws the opaque part of the art as large as it fits, standing on the middle of the bottom of `box`
/// (points). Null or empty art draws nothing.
void paintPortrait(QPainter& painter, const QImage& art, const QRect& box);

/// A character on a soft ground. Says nothing by itself: the name stands beside it.
class PortraitView : public QWidget {
    Q_OBJECT
public:
    explicit PortraitView(QWidget* parent = nullptr);
    void setArt(const QImage& art);
    QSize sizeHint() const override { return {160, 228}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage art_;
};

} // namespace DeskSprites
