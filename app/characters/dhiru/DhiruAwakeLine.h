#pragma once

#include "app/desktop/DialoguePalette.h"

#include <QWidget>

namespace DeskSprites {

class DhiruAwake;
class PanelText;
class PanelToggle;

/// The switch that keeps the machine awake, with what has come of it.
class DhiruAwakeLine : public QWidget {
    Q_OBJECT

public:
    /// `awake` outlives the line.
    explicit DhiruAwakeLine(DhiruAwake& awake, QWidget* parent = nullptr);

    void setDialoguePalette(const DialoguePalette& palette);
    PanelToggle& toggle() const { return *toggle_; }

private:
    void showState();

    DhiruAwake& awake_;
    PanelText* words_;
    PanelToggle* toggle_;
};

} // namespace DeskSprites
