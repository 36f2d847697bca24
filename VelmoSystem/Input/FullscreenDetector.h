#pragma once

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoSystem/Ports/Displays.h"
#include "VelmoSystem/Ports/Workspace.h"

#include <functional>
#include <optional>
#include <set>

namespace velmo {

/// Which screens a full-screen window covers. A change counts when a second look confirms it.
class FullscreenDetector : public QObject {
    Q_OBJECT

public:
    static constexpr Seconds confirmationDelay = 0.35s;
    /// How far a window may fall short of its screen's edges, in points.
    static constexpr double tolerance = 80;

    FullscreenDetector(Workspace &workspace, Displays &displays, Scheduler &scheduler);

    void start();
    const std::set<DisplayID> &fullscreenDisplays() const { return m_fullscreenDisplays; }

    std::function<void()> onChange;

private:
    std::set<DisplayID> detect() const;
    void evaluate();

    Workspace &m_workspace;
    Displays &m_displays;
    Scheduler &m_scheduler;
    std::set<DisplayID> m_fullscreenDisplays;
    std::optional<std::set<DisplayID>> m_candidate;
    ScheduledTask m_pending;
};

} // namespace velmo
