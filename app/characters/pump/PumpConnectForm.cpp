#include "app/characters/pump/PumpConnectForm.h"

#include "app/characters/pump/PumpAgentService.h"

#include <QVBoxLayout>

#include <algorithm>

namespace DeskSprites {

using FellowCore::PumpProjectConsent;
using FellowCore::PumpProvider;

namespace {

constexpr int unit = FormMetrics::unit;

void addNote(FormSection& section, const QString& note) {
    section.layout()->addWidget(makeText(note, TextStyle::help, &section));
}

} // namespace

PumpConnectForm::PumpConnectForm(PumpConnections& connections, PumpAgentService& agents, QWidget* parent)
    : QWidget(parent), connections_(connections), agents_(agents) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(3 * unit);
    column->addWidget(makeExact());
    column->addWidget(makeSessions());
    connect(&connections_, &PumpConnections::changed, this, &PumpConnectForm::showAll);
    connect(&agents_, &PumpAgentService::changed, this, &PumpConnectForm::showAll);
    showAll();
}

QWidget* PumpConnectForm::makeExact() {
    auto* section = new FormSection(tr("Exact numbers"), this);
    addLine(*section, PumpLink::statusLine, tr("Claude Code status line"));
    addNote(*section, tr("Claude Code tells its status line how much of each limit is used. Pump saves those "
                         "percentages and reset times, nothing else, and then shows your own status line."));
    return section;
}

QWidget* PumpConnectForm::makeSessions() {
    auto* section = new FormSection(tr("Agent sessions"), this);
    addNote(*section, tr("Connect installs local hooks for agent status. Only state, session ID, time and "
                         "terminal app are saved. No messages or transcripts."));
    consent_ = section->addSwitch(
        tr("Include project name"),
        tr("Saves the full folder path and terminal TTY locally for click-to-jump. For new connections."));
    addLine(*section, PumpLink::claudeHooks, tr("Claude Code"));
    addLine(*section, PumpLink::codexHooks, tr("Codex"));
    addNote(*section, tr("Restart agent sessions after connecting. In Codex, open /hooks to review and trust "
                         "Pump. Requires a Codex version with hooks."));
    addNote(*section, tr("To change consent, disconnect and reconnect."));
    addNote(*section, tr("Disconnect preserves later edits."));
    return section;
}

void PumpConnectForm::addLine(FormSection& section, PumpLink link, const QString& label) {
    LinkLine& line = lines_.at(static_cast<std::size_t>(link));
    auto* buttons = new FormButtons(&section);
    line.button = buttons->add(tr("Connect"));
    line.row = section.addRow(label, buttons);
    connect(line.button, &QPushButton::clicked, this, [this, link] { press(link); });
}

void PumpConnectForm::press(PumpLink link) {
    if (connections_.state(link).isConnected) {
        connections_.disconnectFrom(link);
    } else {
        connections_.connectTo(link, consent_->isChecked() ? PumpProjectConsent::included
                                                           : PumpProjectConsent::excluded);
    }
}

void PumpConnectForm::showAll() {
    for (const PumpLink link : {PumpLink::claudeHooks, PumpLink::codexHooks, PumpLink::statusLine}) {
        showLine(link, lines_.at(static_cast<std::size_t>(link)));
    }
}

void PumpConnectForm::showLine(PumpLink link, const LinkLine& line) {
    const PumpLinkState& state = connections_.state(link);
    const QString action = state.isConnected ? tr("Disconnect") : tr("Connect");
    setWords(line.button, action);
    const QString name = link == PumpLink::statusLine   ? tr("Claude Code status line")
                         : link == PumpLink::codexHooks ? tr("Codex")
                                                        : tr("Claude Code");
    line.button->setAccessibleName(tr("%1: %2").arg(name, action));
    line.button->setEnabled(state.isKnown); // and while busy, or the keyboard would lose its place
    QString words = stateWords(link);
    if (const QString activity = activityWords(link); !activity.isEmpty()) {
        words += QLatin1Char('\n') + activity;
    }
    line.row->setHelp(words);
    line.button->setAccessibleDescription(words);
    if (state.error != line.row->error()) {
        line.row->setError(state.error);
    }
}

QString PumpConnectForm::stateWords(PumpLink link) const {
    const PumpLinkState& state = connections_.state(link);
    if (state.isBusy) {
        return state.isConnected ? tr("Disconnecting…") : tr("Connecting…");
    }
    if (!state.isKnown) {
        return tr("Looking…");
    }
    if (!state.isConnected) {
        return link == PumpLink::statusLine ? tr("Estimate · Connect Claude Code for exact numbers")
                                            : tr("Not connected");
    }
    if (link == PumpLink::codexHooks) {
        return tr("Installed · approve in Codex: /hooks");
    }
    if (link == PumpLink::statusLine) {
        return tr("Connected");
    }
    return state.includesProject ? tr("Connected · with project names")
                                 : tr("Connected · without project names");
}

QString PumpConnectForm::activityWords(PumpLink link) const {
    if (link == PumpLink::statusLine || !connections_.state(link).isConnected) {
        return {};
    }
    const PumpProvider agent = link == PumpLink::codexHooks ? PumpProvider::codex : PumpProvider::claude;
    const auto count = std::ranges::count(agents_.sessions(), agent, &FellowCore::PumpAgentEvent::agent);
    return count == 0   ? tr("Waiting for agent activity. Old states expire automatically.")
           : count == 1 ? tr("1 live session")
                        : tr("%1 live sessions").arg(count);
}

} // namespace DeskSprites
