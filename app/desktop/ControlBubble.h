#pragma once

#include "app/desktop/Bubble.h"
#include "app/desktop/QuickAction.h"
#include "core/base/Instant.h"

#include <QTimer>

#include <vector>

namespace DeskSprites {

class ButtonGrid;
class PanelButton;
class PanelText;

/// What a notice says and offers.
struct ControlNotice {
    QString text;
    std::vector<QuickAction> actions;            ///< a press also dismisses the notice
    std::optional<FellowCore::Seconds> lifetime; ///< it goes by itself after this; absent means that it stays
};

/// A notice beside a character: a sentence, perhaps a button or two, and a way to close it.
class ControlBubble : public Bubble {
    Q_OBJECT

public:
    ControlBubble();

    /// Replaces what is shown. The lifetime runs from when the bubble is on screen, and waits while the
    /// pointer is on it.
    void setNotice(const ControlNotice& notice);
    const ControlNotice& notice() const { return notice_; }

protected:
    void paletteChanged() override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    void startLifetime();

    ControlNotice notice_;
    PanelText* text_;
    PanelButton* close_;
    ButtonGrid* buttons_;
    QTimer lifetime_;
};

} // namespace DeskSprites
