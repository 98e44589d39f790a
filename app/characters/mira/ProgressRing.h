#pragma once

#include "app/desktop/DialoguePalette.h"

#include <QProgressBar>

namespace DeskSprites {

/// A thin ring of square pixels that fills from the top, clockwise.
class ProgressRing : public QProgressBar {
    Q_OBJECT

public:
    /// `steps` is the value at which the ring is whole.
    explicit ProgressRing(int steps, QWidget* parent = nullptr);

    void setDialoguePalette(const DialoguePalette& palette);
    /// 0...`steps`.
    void setStep(int step);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    DialoguePalette palette_;
};

} // namespace DeskSprites
