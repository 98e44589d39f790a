#pragma once

#include "app/desktop/DialoguePalette.h"

#include <QProgressBar>

namespace DeskSprites {

/// A thin bar of square segments that fills from the start of the line.
class SegmentBar : public QProgressBar {
    Q_OBJECT

public:
    explicit SegmentBar(QWidget* parent = nullptr);

    void setDialoguePalette(const DialoguePalette& palette);
    /// How full, forced into 0...1; a value that is not finite counts as 0.
    void setFraction(double fraction);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    DialoguePalette palette_;
};

} // namespace DeskSprites
