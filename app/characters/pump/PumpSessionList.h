#pragma once

#include "app/desktop/DialoguePalette.h"
#include "core/agents/PumpAgentEvent.h"

#include <QWidget>

#include <functional>
#include <vector>

class QVBoxLayout;

namespace DeskSprites {

class PanelScroll;
class PanelText;
class PumpSessionRow;

/// The live sessions, one below the other; long lists scroll.
class PumpSessionList : public QWidget {
    Q_OBJECT

public:
    static constexpr int mostVisible = 4;

    explicit PumpSessionList(QWidget* parent = nullptr);

    std::function<void(const FellowCore::PumpAgentEvent&)> onChosen;

    void setDialoguePalette(const DialoguePalette& palette);
    /// `emptyWords` stand in place of sessions while there are none.
    void showSessions(const std::vector<FellowCore::PumpAgentEvent>& sessions, FellowCore::Instant now,
                      const QString& emptyWords);
    const std::vector<PumpSessionRow*>& rows() const { return rows_; }

private:
    void fitRows(std::size_t count);

    DialoguePalette palette_;
    PanelText* empty_;
    PanelScroll* scroll_;
    QWidget* column_;
    QVBoxLayout* lines_;
    std::vector<PumpSessionRow*> rows_;
};

} // namespace DeskSprites
