#pragma once

#include "app/desktop/DialoguePalette.h"

#include <QImage>
#include <QWidget>

namespace DeskSprites {

/// The cover of what plays, in a frame of pixels; a note where there is none.
class ThumkaCover : public QWidget {
    Q_OBJECT

public:
    static constexpr int side = 96; ///< points

    explicit ThumkaCover(QWidget* parent = nullptr);

    void setDialoguePalette(const DialoguePalette& palette);
    /// A square picture; null for the note.
    void setCover(const QImage& cover);
    bool hasCover() const { return !cover_.isNull(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    DialoguePalette palette_;
    QImage cover_;
};

} // namespace DeskSprites
