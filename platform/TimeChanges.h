#pragma once

#include "platform/FolderWatch.h"

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace Platform {

/// Tells when the wall clock was set, which waking from sleep may be too, and when the machine was given
/// another time zone: whoever waits for a time of day then waits anew. Costs nothing while neither happens.
/// Main thread only.
class TimeChanges {
public:
    explicit TimeChanges(std::function<void()> onChange);
    ~TimeChanges();
    TimeChanges(const TimeChanges&) = delete;
    TimeChanges& operator=(const TimeChanges&) = delete;

private:
    void arm() const;
    void clockSet();

    std::function<void()> onChange_;
    int timer_ = -1;
    std::unique_ptr<QSocketNotifier> notifier_;
    FolderWatch zone_;
};

} // namespace Platform
