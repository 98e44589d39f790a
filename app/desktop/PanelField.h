#pragma once

#include "app/desktop/DialoguePalette.h"

#include <QLineEdit>

namespace DeskSprites {

/// A field for one line of text in the house look. Enter, Escape and the arrows up and down go on to the
/// panel when the field has no use for them. The placeholder is not its name: give it an accessible name.
class PanelField : public QLineEdit {
    Q_OBJECT

public:
    enum class Frame {
        boxed, ///< a box of its own
        bare,  ///< only a line below, for text that is edited where it stands
    };

    explicit PanelField(Frame frame = Frame::boxed, QWidget* parent = nullptr);

    void setDialoguePalette(const DialoguePalette& palette);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Frame frame_;
    DialoguePalette palette_;
};

} // namespace DeskSprites
