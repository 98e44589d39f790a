#pragma once

#include "app/desktop/Bubble.h"

namespace DeskSprites {

class PanelText;

/// A title behind a note, in two lines at most. A click takes it away.
class ThumkaTitleBubble : public Bubble {
    Q_OBJECT

public:
    ThumkaTitleBubble();

    void setTitle(const QString& title);

protected:
    void paletteChanged() override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    QWidget* note_ = nullptr;
    PanelText* text_ = nullptr;
};

} // namespace DeskSprites
