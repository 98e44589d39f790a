#pragma once

#include "app/desktop/DialoguePalette.h"
#include "app/desktop/PanelPressable.h"
#include "core/agents/PumpAgentEvent.h"

namespace DeskSprites {

/// One live session in the panel: its lamp, its project, what it is doing and since when. A press leads
/// there.
class PumpSessionRow : public PanelPressable {
    Q_OBJECT

public:
    explicit PumpSessionRow(QWidget* parent = nullptr);

    void setDialoguePalette(const DialoguePalette& palette);
    void showSession(const FellowCore::PumpAgentEvent& session, FellowCore::Instant now);
    const FellowCore::PumpAgentEvent& session() const { return *session_; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QFont titleFont() const;
    void paintGround(QPainter& painter) const;

    DialoguePalette palette_;
    std::optional<FellowCore::PumpAgentEvent> session_;
    QString title_;
    QString detail_;
};

} // namespace DeskSprites
