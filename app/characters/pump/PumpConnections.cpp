#include "app/characters/pump/PumpConnections.h"

#include "core/agents/ClaudeStatusLineConnector.h"
#include "core/agents/PumpAgentConnector.h"

#include <exception>

namespace DeskSprites {

using FellowCore::ClaudeStatusLineConnector;
using FellowCore::PumpAgentConnector;
using FellowCore::PumpProjectConsent;
using FellowCore::PumpProvider;

namespace {

constexpr std::array allLinks{PumpLink::claudeHooks, PumpLink::codexHooks, PumpLink::statusLine};

PumpAgentConnector hooksOf(PumpLink link, const DesktopServices& services,
                           const std::filesystem::path& program) {
    const PumpProvider agent = link == PumpLink::codexHooks ? PumpProvider::codex : PumpProvider::claude;
    return {services.files, services.folders, agent, program};
}

ClaudeStatusLineConnector statusLineOf(const DesktopServices& services,
                                       const std::filesystem::path& program) {
    return {services.files, services.folders, program};
}

} // namespace

PumpConnections::PumpConnections(DesktopServices& services, std::filesystem::path hookProgram)
    : services_(services), hookProgram_(std::move(hookProgram)), queue_("Deskfellow.Pump.connect") {}

PumpConnections::~PumpConnections() = default;

void PumpConnections::look() {
    queue_.post([this] {
        for (const PumpLink link : allLinks) {
            QMetaObject::invokeMethod(
                this, [this, link, state = found(link)] { show(link, state, Attempt::look); },
                Qt::QueuedConnection);
        }
    });
}

void PumpConnections::connectTo(PumpLink link, PumpProjectConsent consent) {
    change(link, [this, consent](PumpLink to) {
        if (to == PumpLink::statusLine) {
            statusLineOf(services_, hookProgram_).connect();
        } else {
            hooksOf(to, services_, hookProgram_).connect(consent);
        }
    });
}

void PumpConnections::disconnectFrom(PumpLink link) {
    change(link, [this](PumpLink from) {
        if (from == PumpLink::statusLine) {
            statusLineOf(services_, hookProgram_).disconnect();
        } else {
            hooksOf(from, services_, hookProgram_).disconnect();
        }
    });
}

void PumpConnections::change(PumpLink link, const std::function<void(PumpLink)>& work) {
    if (stateOf(link).isBusy) {
        return;
    }
    stateOf(link).isBusy = true;
    stateOf(link).error.clear();
    Q_EMIT changed();
    queue_.post([this, link, work] {
        QString error;
        try {
            work(link);
        } catch (const std::exception& failure) {
            error = QString::fromUtf8(failure.what());
        }
        PumpLinkState state = found(link);
        state.error = error;
        QMetaObject::invokeMethod(
            this, [this, link, state] { show(link, state, Attempt::change); }, Qt::QueuedConnection);
    });
}

/// On the queue.
PumpLinkState PumpConnections::found(PumpLink link) const {
    PumpLinkState state;
    state.isKnown = true;
    try {
        if (link == PumpLink::statusLine) {
            const auto status = statusLineOf(services_, hookProgram_).status();
            state.isConnected = status == ClaudeStatusLineConnector::Status::connected;
        } else {
            const PumpAgentConnector hooks = hooksOf(link, services_, hookProgram_);
            state.isConnected = hooks.connected();
            state.includesProject = state.isConnected && hooks.includesProject();
        }
    } catch (const std::exception& failure) {
        state.error = QString::fromUtf8(failure.what());
    }
    return state;
}

void PumpConnections::show(PumpLink link, const PumpLinkState& state, Attempt attempt) {
    PumpLinkState& shown = stateOf(link);
    if (attempt == Attempt::look && shown.isBusy) {
        return; // what comes of the change is newer
    }
    const QString complaint = shown.error;
    shown = state;
    if (attempt == Attempt::look && shown.error.isEmpty()) {
        shown.error = complaint; // it stands until the next attempt
    }
    Q_EMIT changed();
    if (attempt == Attempt::change) {
        Q_EMIT settled();
    }
}

} // namespace DeskSprites
