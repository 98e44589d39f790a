#pragma once

#include <QRect>

#include <cstdint>
#include <optional>
#include <vector>

namespace Platform {

/// What one panel keeps for itself along the edges of the whole desktop, in pixels, as
/// `_NET_WM_STRUT_PARTIAL` has it (Extended Window Manager Hints 1.5): four widths, and for each edge the
/// stretch it covers.
struct Strut {
    int left = 0, right = 0, top = 0, bottom = 0;
    int leftStart = 0, leftEnd = 0, rightStart = 0, rightEnd = 0;
    int topStart = 0, topEnd = 0, bottomStart = 0, bottomEnd = 0;

    /// From the twelve values of `_NET_WM_STRUT_PARTIAL` or the four of `_NET_WM_STRUT`, which covers whole
    /// edges. Nothing for another count, or when nothing is kept.
    static std::optional<Strut> fromValues(const std::vector<std::uint32_t>& values);
};

/// What panels leave free of one screen. All in pixels, y down, on a desktop of the size `desktop`. A strut
/// that would leave nothing of the screen does not count, because it belongs to a panel between two screens,
/// seen from the far one.
QRect freeOfStruts(const QRect& screen, QSize desktop, const std::vector<Strut>& struts);

} // namespace Platform
