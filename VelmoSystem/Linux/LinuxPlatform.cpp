#include "VelmoSystem/Linux/LinuxPlatform.h"

namespace velmo {

LinuxPlatform::LinuxPlatform(Scheduler &scheduler)
    : m_scheduler(scheduler), m_displays(m_connection, ScreenCutouts::ofThisMachine()),
      m_pointer(m_connection, m_displays, scheduler), m_dragPasteboard(m_connection),
      m_hotKeyGrabber(m_connection), m_workspace(m_connection, m_displays),
      m_panelWindows(m_connection), m_fileViewer(QDBusConnection::sessionBus()),
      m_appearance(QDBusConnection::sessionBus()), m_sleep(QDBusConnection::systemBus())
{
    QObject::connect(&m_sleep, &SleepMonitor::didWake, &m_workspace, &X11Workspace::wake);
}

Platform LinuxPlatform::ports()
{
    return {m_scheduler, m_displays,     m_pointer,    m_dragPasteboard, m_hotKeyGrabber,
            m_workspace, m_panelWindows, m_fileViewer, m_appearance};
}

} // namespace velmo
