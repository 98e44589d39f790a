#pragma once

#include "app/desktop/DialoguePalette.h"

#include <QWidget>

namespace DeskSprites {

/// A small lamp beside a status. It repeats what the status says, so assistive tools need not hear of it.
class LampDot : public QWidget {
    Q_OBJECT

public:
    explicit LampDot(QWidget* parent = nullptr);

    void setDialoguePalette(const DialoguePalette& palette);
    void setColour(const QColor& colour);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    DialoguePalette palette_;
    QColor colour_;
};

} // namespace DeskSprites
