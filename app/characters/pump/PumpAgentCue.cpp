#include "app/characters/pump/PumpAgentCue.h"

#include "app/characters/pump/PumpPresentation.h"
#include "app/desktop/ControlBubble.h"

#include <QAccessible>
#include <QCoreApplication>

namespace DeskSprites {

using FellowCore::PumpAgentEvent;

namespace {

QString words(const char* source) {
    return QCoreApplication::translate("Pump", source);
}

} // namespace

PumpAgentCue::PumpAgentCue(DesktopCharacter& character, CharacterSite& site)
    : character_(character), site_(site) {}

PumpAgentCue::~PumpAgentCue() = default;

void PumpAgentCue::make() {
    if (!panel_) {
        auto bubble = std::make_unique<ControlBubble>();
        bubble_ = bubble.get();
        panel_ = std::make_unique<CharacterPanel>(character_, site_, std::move(bubble));
    }
}

bool PumpAgentCue::show(const PumpAgentEvent& event) {
    make();
    QuickAction back;
    back.id = QStringLiteral("return");
    back.title = words("Return to this session’s tab or project");
    back.emphasis = Emphasis::primary;
    back.onPress = [this, event] {
        if (onReturn) {
            onReturn(event);
        }
    };
    key_ = event.key();
    bubble_->setNotice({PumpPresentation::sentence(event), {back}, std::nullopt});
    if (!panel_->present(PanelOpening::besideActions)) {
        panel_->dismiss();
        return false;
    }
    QAccessibleEvent alert(bubble_, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
    return true;
}

void PumpAgentCue::dismiss() {
    if (panel_) {
        panel_->dismiss();
    }
}

bool PumpAgentCue::isPresented() const {
    return panel_ && panel_->isPresented();
}

std::optional<std::string> PumpAgentCue::cueKey() const {
    return isPresented() ? std::optional(key_) : std::nullopt;
}

std::vector<FellowCore::Rect> PumpAgentCue::frames() const {
    return panel_ ? panel_->frames() : std::vector<FellowCore::Rect>{};
}

void PumpAgentCue::anchor() {
    if (panel_) {
        panel_->anchor();
    }
}

} // namespace DeskSprites
