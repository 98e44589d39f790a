#pragma once

#include "app/desktop/DialoguePalette.h"

#include <QLabel>

namespace DeskSprites {

/// How text reads inside a bubble.
enum class TextRole { title, body, quiet };

/// Text in a palette's ink at the user's font size, wrapping at words. Markup is shown as it is written.
class PanelText : public QLabel {
    Q_OBJECT

public:
    explicit PanelText(TextRole role, QWidget* parent = nullptr);

    void setDialoguePalette(const DialoguePalette& palette);

protected:
    void changeEvent(QEvent* event) override;

private:
    void applyFont();
    void applySide();

    TextRole role_;
};

} // namespace DeskSprites
