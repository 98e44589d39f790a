#pragma once

#include "app/desktop/DialoguePalette.h"
#include "app/desktop/FocusRing.h"

#include <QAbstractButton>

namespace DeskSprites {

/// A switch after its sentence.
class PanelToggle : public QAbstractButton {
    Q_OBJECT

public:
    explicit PanelToggle(const QString& title, QWidget* parent = nullptr);

    void setDialoguePalette(const DialoguePalette& palette);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QRect switchRect() const;

    DialoguePalette palette_;
    QString title_;
    FocusRing focusRing_;
};

} // namespace DeskSprites
