#include "app/characters/pump/PumpSessionList.h"

#include "app/characters/pump/PumpSessionRow.h"
#include "app/desktop/PanelControls.h"

#include <QVBoxLayout>

#include <algorithm>

namespace DeskSprites {

using FellowCore::PumpAgentEvent;

PumpSessionList::PumpSessionList(QWidget* parent)
    : QWidget(parent), empty_(new PanelText(TextRole::body, this)), scroll_(new PanelScroll(this)),
      column_(new QWidget), lines_(new QVBoxLayout(column_)) {
    lines_->setContentsMargins(0, 0, 0, 0);
    lines_->setSpacing(PanelMetrics::halfUnit);
    lines_->addStretch();
    scroll_->setRows(column_);
    auto* own = new QVBoxLayout(this);
    own->setContentsMargins(0, 0, 0, 0);
    own->setSpacing(0);
    own->addWidget(empty_);
    own->addWidget(scroll_);
}

void PumpSessionList::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    empty_->setDialoguePalette(palette);
    scroll_->setDialoguePalette(palette);
    for (PumpSessionRow* row : rows_) {
        row->setDialoguePalette(palette);
    }
}

void PumpSessionList::showSessions(const std::vector<PumpAgentEvent>& sessions, FellowCore::Instant now,
                                   const QString& emptyWords) {
    empty_->setText(emptyWords);
    empty_->setVisible(sessions.empty());
    scroll_->setVisible(!sessions.empty());
    // A session that goes on needing its row keeps it, so that the keyboard stays where it is.
    std::vector<PumpSessionRow*> kept;
    for (const PumpAgentEvent& session : sessions) {
        const auto found = std::ranges::find_if(
            rows_, [&](const PumpSessionRow* row) { return row && row->session().key() == session.key(); });
        PumpSessionRow* row = found != rows_.end() ? std::exchange(*found, nullptr) : nullptr;
        if (!row) {
            row = new PumpSessionRow(column_);
            row->setDialoguePalette(palette_);
            connect(row, &QAbstractButton::clicked, this, [this, row] {
                if (onChosen) {
                    onChosen(row->session());
                }
            });
        }
        row->showSession(session, now);
        kept.push_back(row);
    }
    for (PumpSessionRow* row : rows_) {
        if (row) {
            row->hide();
            row->deleteLater();
        }
    }
    rows_ = std::move(kept);
    for (std::size_t index = 0; index < rows_.size(); ++index) {
        lines_->removeWidget(rows_[index]);
        lines_->insertWidget(static_cast<int>(index), rows_[index]);
        rows_[index]->show();
        if (index > 0) {
            setTabOrder(rows_[index - 1], rows_[index]);
        }
    }
    fitRows(rows_.size());
}

void PumpSessionList::fitRows(std::size_t count) {
    if (count == 0) {
        return;
    }
    const int shown = static_cast<int>(std::min<std::size_t>(count, mostVisible));
    scroll_->setFixedHeight(shown * rows_.front()->sizeHint().height() +
                            (shown - 1) * PanelMetrics::halfUnit);
}

} // namespace DeskSprites
