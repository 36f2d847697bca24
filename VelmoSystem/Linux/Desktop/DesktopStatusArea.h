#pragma once

#include "VelmoSystem/Linux/X11/X11Connection.h"
#include "VelmoSystem/Ports/StatusArea.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>

namespace velmo {

/// `StatusArea` of a desktop with a StatusNotifierItem host or an X11 system tray. Qt decides for
/// one of the two when the first item is made, and never again: so none is made before one is
/// there, and the host has answered.
class DesktopStatusArea : public StatusArea {
    Q_OBJECT

public:
    DesktopStatusArea(QDBusConnection sessionBus, X11Connection &connection);

    void start();

    bool isAvailable() const override { return m_isAvailable; }

private Q_SLOTS:
    void askForHost();

private:
    void watchTray();
    void lookForTray();
    void setAvailable();

    QDBusConnection m_bus;
    QDBusServiceWatcher m_watcher;
    X11Connection &m_connection;
    xcb_atom_t m_tray;
    X11Connection::Subscription m_trayChanges;
    bool m_isAvailable = false;
};

} // namespace velmo
