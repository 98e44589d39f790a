#include "app/desktop/ControlledRuntime.h"

namespace DeskSprites {

ControlledRuntime::ControlledRuntime(DesktopCharacter& character, DesktopServices& services)
    : character_(character), services_(services) {}

ControlledRuntime::~ControlledRuntime() = default;

void ControlledRuntime::setPaused(bool paused) {
    if (paused == paused_) {
        return;
    }
    paused_ = paused;
    if (!activated_) {
        return;
    }
    if (paused) {
        character_.deactivate();
        rest();
    } else {
        wake();
        character_.prepareForActivation();
        character_.activate();
    }
}

void ControlledRuntime::prepareForActivation() {
    if (!paused_) {
        character_.prepareForActivation();
    }
}

void ControlledRuntime::activate() {
    activated_ = true;
    if (paused_) {
        rest();
    } else {
        character_.activate();
    }
}

void ControlledRuntime::deactivate() {
    activated_ = false;
    if (paused_) {
        wake();
    } else {
        character_.deactivate();
    }
}

void ControlledRuntime::rest() {
    if (!view_) {
        view_ = std::make_unique<RestingArtView>(character_.companion().pack, character_.portrait());
        panel_ = services_.system.makeSurface(*view_);
        view_->attach(*panel_);
        view_->onClick = [this] {
            if (onClick) {
                onClick();
            }
        };
        view_->menuProvider = [this] {
            return character_.menuProvider ? character_.menuProvider() : nullptr;
        };
        panel_->setAccessible(character_.name() + QStringLiteral(", resting, open message"), {},
                              character_.name() + QStringLiteral(" companion"));
    }
    syncArt();
    panel_->show();
}

void ControlledRuntime::syncArt() {
    if (view_) {
        view_->setLayout(character_.layoutAt(character_.visibleHeight(), FellowCore::Sizing::snapped));
        panel_->setFrame(character_.geometry().frame);
    }
}

void ControlledRuntime::wake() {
    if (panel_) {
        panel_->hide();
    }
}

} // namespace DeskSprites
