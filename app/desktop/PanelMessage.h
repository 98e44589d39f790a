#pragma once

#include "app/desktop/DialoguePalette.h"

#include <QWidget>

#include <functional>

namespace DeskSprites {

class PanelButton;
class PanelText;

/// A sentence inside a panel with one button beside it, announced when it appears.
class PanelMessage : public QWidget {
    Q_OBJECT

public:
    explicit PanelMessage(QWidget* parent = nullptr);

    void setDialoguePalette(const DialoguePalette& palette);
    /// The button, which calls `press`.
    void setButton(const QString& title, std::function<void()> press);
    /// Takes no button any more.
    void setNoButton();
    /// Shows a sentence; an empty one hides the message.
    void say(const QString& sentence);
    QString sentence() const;
    QWidget* button() const;

private:
    PanelText* text_;
    PanelButton* button_;
    std::function<void()> press_;
};

} // namespace DeskSprites
