#pragma once

#include "app/desktop/Bubble.h"
#include "core/agents/PumpAgentEvent.h"
#include "platform/Clock.h"

#include <array>
#include <functional>

namespace DeskSprites {

class PanelButton;
class PanelText;
class PumpAgentRow;
class PumpAgentService;
class PumpConnections;
class PumpSessionList;
class PumpUsageService;

/// Pump's panel, open: what each agent has left, and the sessions that are alive.
class PumpPanel : public Bubble {
    Q_OBJECT

public:
    /// All outlive the panel.
    PumpPanel(PumpUsageService& usage, PumpAgentService& agents, PumpConnections& connections,
              const Platform::Clock& clock);

    /// The user chose a session.
    std::function<void(const FellowCore::PumpAgentEvent&)> onSession;
    /// The user wants to connect something.
    std::function<void()> onSettings;

    /// Gives the keyboard to the panel, with the focus on its first session or button.
    void takeKeyboard();
    PumpSessionList& sessions() const { return *sessions_; }

protected:
    void paletteChanged() override;
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makeHeader();
    void refresh();
    void showUsage();
    void showSessions();
    void chainTabs();

    PumpUsageService& usage_;
    PumpAgentService& agents_;
    PumpConnections& connections_;
    const Platform::Clock& clock_;
    PanelText* title_ = nullptr;
    PanelText* nearest_ = nullptr;
    PanelButton* refresh_ = nullptr;
    PanelButton* close_ = nullptr;
    std::array<PumpAgentRow*, 2> rows_{};
    PanelButton* exact_ = nullptr;
    PanelText* sessionsTitle_ = nullptr;
    PumpSessionList* sessions_ = nullptr;
    PanelButton* connect_ = nullptr;
    std::array<QWidget*, 2> rules_{};
};

} // namespace DeskSprites
