#pragma once

#include "core/containers/DevWatchDockerEngines.h"
#include "core/devwatch/DevWatchActivityTracker.h"
#include "core/devwatch/DevWatchApp.h"
#include "core/devwatch/DevWatchKind.h"
#include "core/devwatch/DevWatchPresentation.h"
#include "core/devwatch/DevWatchProcessConfirmation.h"
#include "core/devwatch/DevWatchSafetyPolicy.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace DeskSprites {

/// How far the end of something has come.
enum class DevWatchStage {
    running,   ///< nothing was asked
    sending,   ///< the request is on its way
    waiting,   ///< it was asked politely, and has its time
    forceable, ///< it was asked politely, and took longer than its time
};

/// A process that listens on a port. A process has as many rows as ports.
struct DevWatchServerRow {
    FellowCore::DevWatchListener listener;
    FellowCore::DevWatchKind kind;
    std::optional<double> cpuPercent; ///< absent until it was seen twice
    bool quiet = false;               ///< for over two hours
    bool hog = false;
    std::optional<std::string> url;                           ///< where a browser finds it
    std::optional<FellowCore::DevWatchSafetyRefusal> refusal; ///< why it has no stop
    DevWatchStage stage = DevWatchStage::running;
    QString note; ///< what became of the last request; may be empty

    friend bool operator==(const DevWatchServerRow&, const DevWatchServerRow&) = default;
};

/// A process by its processor use.
struct DevWatchProcessRow {
    FellowCore::DevWatchProcess process;
    FellowCore::DevWatchKind kind;
    double cpuPercent = 0;
    bool hog = false;
    std::optional<FellowCore::DevWatchSafetyRefusal> refusal; ///< why it is not to be touched

    friend bool operator==(const DevWatchProcessRow&, const DevWatchProcessRow&) = default;
};

/// An application with windows.
struct DevWatchAppRow {
    FellowCore::DevWatchApp app;
    std::optional<double> cpuPercent; ///< of its process that owns the windows
    std::optional<FellowCore::DevWatchSafetyRefusal> refusal;
    DevWatchStage stage = DevWatchStage::running;
    QString note;

    friend bool operator==(const DevWatchAppRow&, const DevWatchAppRow&) = default;
};

/// A running container.
struct DevWatchContainerRow {
    FellowCore::DevWatchDockerEngines::Entry entry;
    DevWatchStage stage = DevWatchStage::running; ///< never `forceable`
    QString note;

    friend bool operator==(const DevWatchContainerRow&, const DevWatchContainerRow&) = default;
};

/// Everything the panel shows, as of the last reading.
struct DevWatchView {
    FellowCore::DevWatchProcessListState list = FellowCore::DevWatchProcessListState::reading;
    FellowCore::DevWatchActivityState activity = FellowCore::DevWatchActivityState::calm;
    std::optional<double> systemCPUPercent;
    std::vector<DevWatchServerRow> servers;       ///< by port, then by number
    std::vector<DevWatchProcessRow> processes;    ///< the busiest first
    std::vector<DevWatchAppRow> applications;     ///< by name
    std::vector<DevWatchContainerRow> containers; ///< by name, then by id
    QString containersNote; ///< in place of containers: unavailable, none running, not read yet

    friend bool operator==(const DevWatchView&, const DevWatchView&) = default;
};

} // namespace DeskSprites
