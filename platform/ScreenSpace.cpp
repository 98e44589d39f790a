#include "platform/ScreenSpace.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace Platform {
namespace {

/// The lower edge of the primary screen's frame, in Qt's y.
double originY() {
    const QScreen* primary = QGuiApplication::primaryScreen();
    return primary ? primary->geometry().y() + primary->geometry().height() : 0;
}

double originX() {
    const QScreen* primary = QGuiApplication::primaryScreen();
    return primary ? primary->geometry().x() : 0;
}

int whole(double value) {
    // Beyond what a window system takes anyway; keeps the conversion defined.
    constexpr double limit = 1 << 24;
    return static_cast<int>(std::lround(std::isnan(value) ? 0 : std::clamp(value, -limit, limit)));
}

} // namespace

FellowCore::Rect fromQt(const QRectF& rect) {
    return {rect.x() - originX(), originY() - rect.y() - rect.height(), rect.width(), rect.height()};
}

FellowCore::Point fromQt(const QPointF& point) {
    return {point.x() - originX(), originY() - point.y()};
}

QRect toQt(const FellowCore::Rect& rect) {
    const int width = whole(rect.width);
    const int height = whole(rect.height);
    return {whole(rect.x + originX()), whole(originY() - rect.y) - height, width, height};
}

QPoint toQt(FellowCore::Point point) {
    return {whole(point.x + originX()), whole(originY() - point.y)};
}

} // namespace Platform
