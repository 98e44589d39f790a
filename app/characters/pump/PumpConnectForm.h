#pragma once

#include "app/characters/pump/PumpConnections.h"
#include "app/settings/FormKit.h"

#include <array>

namespace DeskSprites {

class PumpAgentService;

/// Connects Pump to the agents and takes it out again, with the user's consent for project names.
class PumpConnectForm : public QWidget {
    Q_OBJECT

public:
    /// Both outlive the form.
    PumpConnectForm(PumpConnections& connections, PumpAgentService& agents, QWidget* parent);

private:
    struct LinkLine {
        FormRow* row = nullptr;
        QPushButton* button = nullptr;
    };

    QWidget* makeSessions();
    QWidget* makeExact();
    void addLine(FormSection& section, PumpLink link, const QString& label);
    void press(PumpLink link);
    void showAll();
    void showLine(PumpLink link, const LinkLine& line);
    QString stateWords(PumpLink link) const;
    QString activityWords(PumpLink link) const;

    PumpConnections& connections_;
    PumpAgentService& agents_;
    FormSwitch* consent_ = nullptr;
    std::array<LinkLine, 3> lines_;
};

} // namespace DeskSprites
