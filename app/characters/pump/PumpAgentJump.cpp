#include "app/characters/pump/PumpAgentJump.h"

#include "core/agents/LinuxHostApplication.h"
#include "core/base/Text.h"
#include "platform/ApplicationLauncher.h"

#include <algorithm>
#include <fstream>

namespace DeskSprites {

using FellowCore::PumpAgentEvent;
using Platform::RunningApplication;
using Platform::TerminalPlace;

namespace {

std::string withoutEnding(const std::string& id) {
    constexpr std::string_view ending = ".desktop";
    return id.ends_with(ending) ? id.substr(0, id.size() - ending.size()) : id;
}

std::string processName(long pid) {
    std::ifstream file("/proc/" + std::to_string(pid) + "/comm");
    std::string name;
    std::getline(file, name);
    return name;
}

/// Whether the window is of the application with this desktop-file id. What windows call themselves is
/// custom rather than rule, so a process that is known by its name counts too.
bool isOf(const RunningApplication& window, const std::string& id) {
    const std::string bare = FellowCore::lowercased(withoutEnding(id));
    const std::string last = bare.substr(bare.rfind('.') + 1);
    const std::string names[] = {window.desktopFile.value_or(""), window.windowClass, window.windowInstance};
    const bool isNamed = std::ranges::any_of(names, [&](const std::string& name) {
        const std::string lower = FellowCore::lowercased(name);
        return lower == bare || lower == last;
    });
    return isNamed || (window.pid > 0 && FellowCore::LinuxHostApplication::fromProcessName(
                                             processName(window.pid)) == withoutEnding(id) + ".desktop");
}

/// The window of a terminal: the one that was told, or the topmost one of the closest process that has any.
const RunningApplication* windowOf(const TerminalPlace& place,
                                   const std::vector<RunningApplication>& windows) {
    const auto told = std::ranges::find_if(windows, [&](const RunningApplication& window) {
        const bool isTold = place.window == window.window;
        return isTold && (window.pid == 0 || std::ranges::count(place.processes, window.pid) > 0);
    });
    if (told != windows.end()) {
        return &*told;
    }
    for (const long pid : place.processes) {
        const auto found = std::ranges::find(windows, pid, &RunningApplication::pid);
        if (found != windows.end()) {
            return &*found;
        }
    }
    return nullptr;
}

} // namespace

PumpAgentJump::PumpAgentJump(DesktopServices& services)
    : services_(services), queue_("Deskfellow.Pump.jump") {}

PumpAgentJump::~PumpAgentJump() = default;

void PumpAgentJump::to(const PumpAgentEvent& event) {
    const auto target = Target::choose(event.terminalBundleID, event.tty, event.cwd);
    const bool isTerminal = target ? target->kind == Target::Kind::terminal : event.tty.has_value();
    if (isTerminal) {
        const std::string device = target ? target->tty : *event.tty;
        queue_.post([this, target, device] {
            QMetaObject::invokeMethod(
                this,
                [this, target, place = Platform::revealTerminal(device)] { raiseTerminal(place, target); },
                Qt::QueuedConnection);
        });
    } else if (target) {
        raiseApplication(*target);
    }
}

void PumpAgentJump::raiseTerminal(const std::optional<TerminalPlace>& place,
                                  const std::optional<Target>& target) {
    const std::vector<RunningApplication> windows = services_.system.windows().list();
    const RunningApplication* window = place ? windowOf(*place, windows) : nullptr;
    if (window && services_.system.windows().activate(*window)) {
        return;
    }
    if (target) {
        raiseApplication(*target);
    }
}

void PumpAgentJump::raiseApplication(const Target& target) {
    const bool isRaised = raiseWindowOf(target);
    if (target.kind == Target::Kind::project) {
        // The editor brings the window with the folder to the front, or opens one.
        Platform::launchApplication(target.bundleID, {target.path});
    } else if (!isRaised) {
        Platform::launchApplication(target.bundleID);
    }
}

bool PumpAgentJump::raiseWindowOf(const Target& target) {
    for (const RunningApplication& window : services_.system.windows().list()) {
        if (!window.isOurs && isOf(window, target.bundleID)) {
            return services_.system.windows().activate(window);
        }
    }
    return false;
}

} // namespace DeskSprites
