#include "core/art/DesktopSizePreview.h"

#include "core/art/DesktopSize.h"

#include <utility>

namespace FellowCore {

void DesktopSizePreview::begin() {
    isEditing = true;
}

void DesktopSizePreview::request(double height) {
    if (isEditing) {
        pendingHeight = DesktopSize::clamped(height);
    }
}

std::optional<double> DesktopSizePreview::takePending() {
    return std::exchange(pendingHeight, std::nullopt);
}

void DesktopSizePreview::display(double height) {
    displayedHeight = height;
}

void DesktopSizePreview::end() {
    isEditing = false;
}

void DesktopSizePreview::settle(double to) {
    releaseHeight = to;
}

std::optional<double> DesktopSizePreview::finish() {
    const DesktopSizePreview last = std::exchange(*this, DesktopSizePreview{});
    if (last.releaseHeight) {
        return last.releaseHeight;
    }
    return last.pendingHeight ? last.pendingHeight : last.displayedHeight;
}

} // namespace FellowCore
