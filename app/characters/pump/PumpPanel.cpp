#include "app/characters/pump/PumpPanel.h"

#include "app/characters/pump/PumpAgentRow.h"
#include "app/characters/pump/PumpAgentService.h"
#include "app/characters/pump/PumpConnections.h"
#include "app/characters/pump/PumpSessionList.h"
#include "app/characters/pump/PumpSessionRow.h"
#include "app/characters/pump/PumpUsageService.h"
#include "app/desktop/PanelControls.h"
#include "app/desktop/PanelHeaderButton.h"
#include "app/desktop/PixelFrame.h"
#include "platform/BubbleWindow.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace DeskSprites {

namespace {

constexpr int insideWidth = 336;

QWidget* rule(QWidget* parent) {
    auto* line = new QWidget(parent);
    line->setFixedHeight(PixelFrame::pixel);
    line->setAutoFillBackground(true);
    return line;
}

} // namespace

PumpPanel::PumpPanel(PumpUsageService& usage, PumpAgentService& agents, PumpConnections& connections,
                     const Platform::Clock& clock)
    : Bubble(BubbleDismissal::explicitOnly), usage_(usage), agents_(agents), connections_(connections),
      clock_(clock) {
    auto* inside = new QWidget;
    inside->setFixedWidth(insideWidth);
    auto* column = new QVBoxLayout(inside);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(PanelMetrics::unit + PanelMetrics::halfUnit);
    column->addWidget(makeHeader());
    for (PumpAgentRow*& row : rows_) {
        row = new PumpAgentRow(inside);
        column->addWidget(row);
        if (&row == &rows_.front()) {
            exact_ = new PanelButton(PanelButton::Shape::row, inside);
            exact_->setTitle(tr("Estimate · Connect Claude Code for exact numbers"));
            column->addWidget(exact_);
            column->addWidget(rules_[0] = rule(inside));
        }
    }
    column->addWidget(rules_[1] = rule(inside));
    sessionsTitle_ = new PanelText(TextRole::title, inside);
    sessionsTitle_->setText(tr("Sessions"));
    sessions_ = new PumpSessionList(inside);
    sessions_->onChosen = [this](const FellowCore::PumpAgentEvent& session) { onSession(session); };
    connect_ = new PanelButton(PanelButton::Shape::row, inside);
    connect_->setTitle(tr("Connect an agent…"));
    column->addWidget(sessionsTitle_);
    column->addWidget(sessions_);
    column->addWidget(connect_);
    for (PanelButton* button : {exact_, connect_}) {
        connect(button, &QAbstractButton::clicked, this, [this] { onSettings(); });
    }
    connect(&usage_, &PumpUsageService::changed, this, &PumpPanel::refresh);
    connect(&agents_, &PumpAgentService::changed, this, &PumpPanel::refresh);
    connect(&connections_, &PumpConnections::changed, this, &PumpPanel::refresh);
    setWindowTitle(tr("Pump's gauge"));
    setAccessibleName(tr("Pump's gauge"));
    setContent(inside);
    showUsage();
    showSessions();
}

QWidget* PumpPanel::makeHeader() {
    auto* header = new QWidget(this);
    auto* line = new QHBoxLayout;
    line->setSpacing(PanelMetrics::halfUnit);
    title_ = new PanelText(TextRole::title, header);
    title_->setText(tr("Agent usage"));
    nearest_ = new PanelText(TextRole::quiet, header);
    refresh_ = panelHeaderButton(tr("Refresh usage now"), PixelIcon::reset, header);
    close_ = panelHeaderButton(tr("Close"), PixelIcon::close, header);
    line->addWidget(title_, 1);
    line->addWidget(refresh_);
    line->addWidget(close_);
    auto* column = new QVBoxLayout(header);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addLayout(line);
    column->addWidget(nearest_);
    connect(refresh_, &QAbstractButton::clicked, this, [this] { usage_.refresh(); });
    connect(close_, &QAbstractButton::clicked, this, [this] { dismiss(); });
    return header;
}

void PumpPanel::takeKeyboard() {
    QWidget* const first = sessions_->rows().empty() ? static_cast<QWidget*>(refresh_) : sessions_->rows()[0];
    first->setFocus(Qt::ShortcutFocusReason);
    Platform::activateBubbleWindow(*this);
}

void PumpPanel::refresh() {
    if (isPresented()) { // otherwise it is brought up to date when it is shown
        showUsage();
        showSessions();
    }
}

void PumpPanel::showUsage() {
    const FellowCore::PumpUsageSnapshot nothing{.at = clock_.wall(),
                                                .codexSource = FellowCore::PumpSourceState::loading,
                                                .claudeSource = FellowCore::PumpSourceState::loading};
    const FellowCore::PumpUsageSnapshot& snapshot = usage_.snapshot() ? *usage_.snapshot() : nothing;
    const auto rows = PumpPresentation::rows(snapshot, clock_.wall());
    for (std::size_t index = 0; index < rows.size(); ++index) {
        rows_.at(index)->showRow(rows.at(index));
    }
    nearest_->setText(usage_.snapshot() ? PumpPresentation::nearest(snapshot) : tr("Reading local history…"));
    const PumpLinkState& statusLine = connections_.state(PumpLink::statusLine);
    exact_->setVisible(PumpPresentation::couldBeExact(snapshot) && !statusLine.isConnected);
}

void PumpPanel::showSessions() {
    const bool isConnected = agents_.isConnected(FellowCore::PumpProvider::claude) ||
                             agents_.isConnected(FellowCore::PumpProvider::codex);
    sessions_->showSessions(agents_.sessions(), clock_.wall(),
                            isConnected ? tr("No sessions right now")
                                        : tr("No agent is connected, so its sessions are not seen."));
    connect_->setVisible(!isConnected);
    chainTabs();
}

void PumpPanel::chainTabs() {
    std::vector<QWidget*> order{refresh_, exact_};
    order.insert(order.end(), sessions_->rows().begin(), sessions_->rows().end());
    order.push_back(connect_);
    order.push_back(close_);
    for (std::size_t index = 1; index < order.size(); ++index) {
        setTabOrder(order[index - 1], order[index]);
    }
}

void PumpPanel::showEvent(QShowEvent* event) {
    showUsage();
    showSessions();
    Bubble::showEvent(event);
}

void PumpPanel::paletteChanged() {
    const DialoguePalette& palette = dialoguePalette();
    for (PanelText* text : {title_, nearest_, sessionsTitle_}) {
        text->setDialoguePalette(palette);
    }
    for (PanelButton* button : {refresh_, close_, exact_, connect_}) {
        button->setDialoguePalette(palette);
    }
    for (PumpAgentRow* row : rows_) {
        row->setDialoguePalette(palette);
    }
    for (QWidget* line : rules_) {
        QPalette own;
        own.setColor(QPalette::Window, palette.line());
        line->setPalette(own);
    }
    sessions_->setDialoguePalette(palette);
}

} // namespace DeskSprites
