#include "VelmoSystem/Linux/LinuxPlatform.h"

#include "VelmoSystem/Linux/Calendar/DefaultCalendar.h"

namespace velmo {

LinuxPlatform::LinuxPlatform(Scheduler &scheduler)
    : m_scheduler(scheduler), m_displays(m_connection, ScreenCutouts::ofThisMachine()),
      m_pointer(m_connection, m_displays, scheduler), m_dragPasteboard(m_connection),
      m_hotKeyGrabber(m_connection), m_workspace(m_connection, m_displays),
      m_panelWindows(m_connection, scheduler), m_fileViewer(QDBusConnection::sessionBus()),
      m_appearance(QDBusConnection::sessionBus()), m_sleep(QDBusConnection::systemBus()),
      m_powerDevices(QDBusConnection::systemBus()), m_power(m_powerDevices),
      m_accessories(m_powerDevices), m_network(QDBusConnection::systemBus()),
      m_bluetooth(QDBusConnection::systemBus()),
      m_permissions(QDBusConnection::sessionBus(), m_bluetooth),
      m_notifications(QDBusConnection::sessionBus()), m_loginItem(XdgAutostart::standardFolder()),
      m_statusArea(QDBusConnection::sessionBus(), m_connection),
      m_pasteboard(m_connection, scheduler),
      m_primarySelection(m_connection, scheduler, "PRIMARY", X11Pasteboard::Owners::ignored),
      m_frontApplication(m_connection, m_applications),
      m_calendars(QDBusConnection::sessionBus(), scheduler, &DefaultCalendar::read)
{
    QObject::connect(&m_sleep, &SleepMonitor::didWake, &m_workspace, &X11Workspace::wake);
}

void LinuxPlatform::startRest()
{
    m_appearance.start();
    m_statusArea.start();
    m_browserWindows.start();
}

Platform LinuxPlatform::ports()
{
    return {m_scheduler,      m_displays,     m_pointer,      m_dragPasteboard,
            m_hotKeyGrabber,  m_workspace,    m_panelWindows, m_fileViewer,
            m_appearance,     m_power,        m_accessories,  m_network,
            m_bluetooth,      m_load,         m_applications, m_permissions,
            m_notifications,  m_sounds,       m_loginItem,    m_statusArea,
            m_pasteboard,     m_share,        m_thumbnailer,  m_frontApplication,
            m_servers,        m_downloads,    m_calendars,    m_browserWindows,
            m_captureDevices, m_webPageButton};
}

} // namespace velmo
