#include "platform/linux/WorkArea.h"

#include <algorithm>
#include <array>
#include <limits>

namespace Platform {

std::optional<Strut> Strut::fromValues(const std::vector<std::uint32_t>& values) {
    if (values.size() != 4 && values.size() != 12)
        return std::nullopt;
    constexpr std::uint32_t limit = std::numeric_limits<std::int16_t>::max(); // of any X coordinate
    std::array<int, 12> in{};
    for (std::size_t i = 0; i < values.size(); ++i)
        in[i] = static_cast<int>(std::min(values[i], limit));
    if (values.size() == 4)
        in[5] = in[7] = in[9] = in[11] = limit;
    if (in[0] == 0 && in[1] == 0 && in[2] == 0 && in[3] == 0)
        return std::nullopt;
    return Strut{in[0], in[1], in[2], in[3], in[4], in[5], in[6], in[7], in[8], in[9], in[10], in[11]};
}

QRect freeOfStruts(const QRect& screen, QSize desktop, const std::vector<Strut>& struts) {
    QRect free = screen;
    const auto covers = [&](int start, int end, int low, int high) { return start < high && end >= low; };
    const int right = screen.x() + screen.width();
    const int bottom = screen.y() + screen.height();
    for (const Strut& strut : struts) {
        if (covers(strut.leftStart, strut.leftEnd, screen.y(), bottom) && strut.left < right)
            free.setLeft(std::max(free.left(), strut.left));
        const int rightEdge = desktop.width() - strut.right;
        if (covers(strut.rightStart, strut.rightEnd, screen.y(), bottom) && rightEdge > screen.x())
            free.setRight(std::min(free.right(), rightEdge - 1));
        if (covers(strut.topStart, strut.topEnd, screen.x(), right) && strut.top < bottom)
            free.setTop(std::max(free.top(), strut.top));
        const int bottomEdge = desktop.height() - strut.bottom;
        if (covers(strut.bottomStart, strut.bottomEnd, screen.x(), right) && bottomEdge > screen.y())
            free.setBottom(std::min(free.bottom(), bottomEdge - 1));
    }
    return free.isValid() ? free : screen;
}

} // namespace Platform
