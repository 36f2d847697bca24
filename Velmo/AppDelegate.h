#pragma once

#include "VelmoCore/Files/PendingFiles.h"
#include "VelmoCore/Foundation/SystemScheduler.h"
#include "VelmoSystem/Linux/DBus/AccessiblePaste.h"
#include "VelmoSystem/Linux/LinuxPlatform.h"
#include "VelmoSystem/Linux/ProcessSignals.h"
#include "VelmoSystem/Ports/ControlEndpoint.h"
#include "VelmoSystem/Storage/DataProtectionReader.h"
#include "VelmoSystem/Verbs/SettingsVerbs.h"
#include "VelmoUI/Composition/AppServices.h"
#include "VelmoUI/Composition/StatusItemController.h"
#include "VelmoUI/Design/FieldClipboard.h"
#include "VelmoUI/Notch/NotchCoordinator.h"
#include "VelmoUI/Settings/SettingsWindowController.h"

#include <QObject>
#include <QStringList>

#include <memory>
#include <optional>
#include <thread>

namespace velmo {

/// Launches Orvane and owns all of it. One for the run, on the main thread; made when this process
/// has the right to run.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    /// Throws `LocalizedError` without an X server; nothing else stops a launch.
    /// `arguments` may hold self-test flags.
    AppDelegate(ControlEndpoint &control, const QStringList &arguments);

    /// `files` are handed to the panel.
    void launch(const QStringList &arguments, const std::vector<QUrl> &files);

private:
    void launchRest();
    AppPaths preparePaths() const;
    /// Asks for the key. It is worth a moment, lest pages show empty first.
    DataProtectionStatus dataProtection();
    /// Saves all; what the key store keeps closed waits for its answer.
    void save();
    void restorePendingFiles();
    void fillCallbacks();
    void fillHotKeys();
    ControlEndpoint::Commands controlCommands();
    void serveScripts();
    void startPanelProbes(const QStringList &arguments);
    void after(Seconds delay, std::function<void()> step);

    ControlEndpoint &m_control;
    SystemScheduler m_scheduler;
    // What takes its time on other threads begins first.
    std::unique_ptr<DataProtectionReader> m_protection; ///< unless it is a self-test
    std::unique_ptr<PanelEngine> m_engine;              ///< until the coordinator has it
    ProcessSignals m_signals;
    LinuxPlatform m_platform;
    std::optional<PendingFiles::Folder> m_pendingFiles;
    FieldClipboard m_fieldClipboard;
    AccessiblePaste m_accessiblePaste;
    std::optional<AppServices> m_services;
    std::optional<SettingsVerbs> m_settingsVerbs;
    SettingsStore::Observation m_settings; ///< for scripts
    std::optional<SettingsWindowController> m_settingsWindow;
    std::optional<NotchCoordinator> m_coordinator;
    std::optional<StatusItemController> m_statusItem;
    std::vector<ScheduledTask> m_delayedSteps;
    std::jthread m_restoring; ///< what a killed run left
};

} // namespace velmo
