#include "app/desktop/PanelHeaderButton.h"

namespace DeskSprites {

PanelButton* panelHeaderButton(const QString& title, PixelIcon icon, QWidget* parent) {
    constexpr int side = 24;
    auto* button = new PanelButton(PanelButton::Shape::icon, parent);
    button->setTitle(title);
    button->setPixelIcon(icon);
    button->setEmphasis(Emphasis::quiet);
    button->setFixedSize(side, side);
    return button;
}

} // namespace DeskSprites
