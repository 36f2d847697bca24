#pragma once

#include "VelmoCore/Settings/SettingsStore.h"

#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

#include <memory>

namespace velmo {

class AppServices;
class NotchCoordinator;

/// Orvane's item in the desktop's status area, while `showMenuBarIcon` is on and the desktop has
/// one. Its menu is built each time it opens.
class StatusItemController : public QObject {
    Q_OBJECT

public:
    StatusItemController(AppServices &services, NotchCoordinator &coordinator);

private:
    void update();
    void buildMenu();

    AppServices &m_services;
    NotchCoordinator &m_coordinator;
    QMenu m_menu;
    std::unique_ptr<QSystemTrayIcon> m_item;
    SettingsStore::Observation m_observer;
};

} // namespace velmo
