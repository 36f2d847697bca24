#include "VelmoSystem/Input/FullscreenDetector.h"

#include "VelmoCore/Foundation/Log.h"

namespace velmo {

namespace {

bool covers(const Rect &window, const Rect &screen)
{
    constexpr double tolerance = FullscreenDetector::tolerance;
    return window.minX() <= screen.minX() + tolerance &&
           window.maxX() >= screen.maxX() - tolerance &&
           window.minY() <= screen.minY() + tolerance && window.maxY() >= screen.maxY() - tolerance;
}

} // namespace

FullscreenDetector::FullscreenDetector(Workspace &workspace, Displays &displays,
                                       Scheduler &scheduler)
    : m_workspace(workspace), m_displays(displays), m_scheduler(scheduler)
{
}

void FullscreenDetector::start()
{
    connect(&m_workspace, &Workspace::activeSpaceChanged, this, &FullscreenDetector::evaluate);
    connect(&m_workspace, &Workspace::frontApplicationChanged, this, &FullscreenDetector::evaluate);
    connect(&m_workspace, &Workspace::windowsChanged, this, &FullscreenDetector::evaluate);
    connect(&m_displays, &Displays::changed, this, &FullscreenDetector::evaluate);
    evaluate();
}

std::set<DisplayID> FullscreenDetector::detect() const
{
    std::set<DisplayID> covered;
    const auto screens = m_displays.allDescriptors();
    for (const Workspace::Window &window : m_workspace.windows())
        for (const ScreenDescriptor &screen : screens)
            if (window.isFullscreen && covers(window.frame, screen.frame))
                covered.insert(screen.displayID);
    return covered;
}

void FullscreenDetector::evaluate()
{
    auto now = detect();
    if (now == m_fullscreenDisplays) {
        m_candidate.reset();
        m_pending.cancel();
        return;
    }
    if (m_candidate == now && m_pending.isPending())
        return;
    const bool isConfirmed = m_candidate == now;
    m_candidate = std::move(now);
    if (!isConfirmed) {
        m_pending = m_scheduler.after(confirmationDelay, [this] { evaluate(); });
        return;
    }
    m_fullscreenDisplays = *std::exchange(m_candidate, std::nullopt);
    qCInfo(Log::notch, "Telas em tela cheia: %zu", m_fullscreenDisplays.size());
    if (onChange)
        onChange();
}

} // namespace velmo
