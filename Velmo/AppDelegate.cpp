#include "Velmo/AppDelegate.h"

#include "Velmo/Probes.h"
#include "VelmoCore/Actions/ActionCatalog.h"
#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Foundation/Overloaded.h"
#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoSystem/FileProcessing/PrivateFolder.h"
#include "VelmoSystem/FileProcessing/QuickActions.h"
#include "VelmoSystem/Input/HotKeyController.h"
#include "VelmoSystem/Linux/Keys/KeyItemStores.h"
#include "VelmoUI/Composition/BuiltInModules.h"
#include "VelmoUI/Composition/ServiceWiring.h"
#include "VelmoUI/Modules/Frame/ModuleRegistry.h"

#include <QGuiApplication>
#include <QIcon>
#include <QSessionManager>
#include <QThreadPool>

#include <algorithm>
#include <iterator>

namespace velmo {

namespace {

/// How long the start stands still for the key.
constexpr Seconds keyPatience = 0.05s;
/// For what the first frame doesn't need.
constexpr Seconds lateDelay = 0.4s;
constexpr Seconds onboardingDelay = 0.8s;
constexpr Seconds probeOpenDelay = 1.0s;
constexpr Seconds probeDropDelay = 1.5s;
constexpr Seconds probeDropEnd = 4.0s;
constexpr Point probeDropPoint{260, 230};

/// Nothing for what is no page; pages whose subsystem isn't there are none.
std::optional<SettingsPane> settingsPane(const QString &name)
{
    SettingsPane pane{};
    if (!boost::describe::enum_from_string(name.toUtf8().constData(), pane) ||
        pane == SettingsPane::smartNotch || pane == SettingsPane::radial)
        return std::nullopt;
    return pane;
}

std::unique_ptr<DataProtectionReader> makeProtection(Scheduler &scheduler,
                                                     const QStringList &arguments)
{
    if (Probes::isSelfTest(arguments))
        return nullptr;
    return std::make_unique<DataProtectionReader>(scheduler, [](const std::stop_token &stop) {
        return std::make_unique<KeyItemStores>(KeyItemStores::standardFolder(), stop);
    });
}

} // namespace

AppDelegate::AppDelegate(ControlEndpoint &control, const QStringList &arguments)
    : m_control(control), m_protection(makeProtection(m_scheduler, arguments)),
      m_engine(std::make_unique<PanelEngine>()), m_signals([] { QCoreApplication::quit(); }),
      m_platform(m_scheduler),
      m_fieldClipboard(m_platform.ports().pasteboard, m_platform.primarySelection(), m_scheduler),
      m_accessiblePaste(m_scheduler, [this](QObject &field, int position) {
          m_fieldClipboard.pasteAt(field, position);
      })
{
    connect(qGuiApp, &QCoreApplication::aboutToQuit, this, [this] { save(); });
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, [this](QSessionManager &session) {
        session.setRestartHint(QSessionManager::RestartNever); // the login item does that
        save();
    });
}

void AppDelegate::launch(const QStringList &arguments, const std::vector<QUrl> &files)
{
    const AppPaths paths = preparePaths();
    m_pendingFiles.emplace(paths.supportFile(QStringLiteral("Pending")));
    m_services.emplace(paths, dataProtection(), m_platform.ports());
    for (auto &module : makeBuiltInModules(*m_services))
        m_services->modules->add(std::move(module));
    addQuickActions(*m_services->actions, m_services->platform.fileViewer,
                    m_services->platform.pasteboard);
    m_settingsWindow.emplace(m_services->settingsWindow());
    m_coordinator.emplace(m_services->panels(), std::move(m_engine));
    fillCallbacks();
    fillHotKeys();
    ServiceWiring::start(*m_services);
    restorePendingFiles();
    m_coordinator->start();
    m_services->hotKeys->apply();
    serveScripts();
    after(lateDelay, [this] { launchRest(); });
    startPanelProbes(arguments);
    if (!m_services->settings->settings().hasCompletedOnboarding)
        after(onboardingDelay, [this] { m_coordinator->open(); });
    m_services->openFilesInNotch(files);
    qCInfo(Log::app).noquote() << "Orvane iniciado";
}

void AppDelegate::launchRest()
{
    m_platform.startRest();
    QGuiApplication::setWindowIcon(
        QIcon(QStringLiteral(":/qt/qml/Velmo/Design/app.orvane.Orvane.svg")));
    m_statusItem.emplace(*m_services, *m_coordinator);
}

DataProtectionStatus AppDelegate::dataProtection()
{
    if (!m_protection)
        return {DataProtectionStatus::Disabled{}};
    m_protection->onRead = [this](const DataProtectionStatus &status) {
        m_services->setProtection(status);
    };
    return m_protection->waitFor(keyPatience);
}

void AppDelegate::save()
{
    if (!m_services)
        return;
    if (m_services->dataProtection.isAwaited() && m_services->files.holdsUnsaved())
        m_services->setProtection(m_protection->wait());
    m_services->flush();
}

AppPaths AppDelegate::preparePaths() const
{
    AppPaths paths = AppPaths::standard(QStringLiteral("Orvane"), QStringLiteral("Velmo"));
    try {
        paths.ensureExists();
    } catch (const LocalizedError &error) {
        qCCritical(Log::storage).noquote()
            << "Não foi possível criar os diretórios do app:" << error.description();
    }
    paths.purgeTemporary();
    QThreadPool::globalInstance()->start(&PrivateFolder::removeLeftovers); // may be gigabytes
    return paths;
}

void AppDelegate::restorePendingFiles()
{
    if (!PendingFiles::hasRecords())
        return;
    m_restoring = std::jthread([this] {
        m_scheduler.post([this, restored = PendingFiles::restore()] {
            ServiceWiring::finishRestoring(*m_services, restored);
        });
    });
}

void AppDelegate::fillCallbacks()
{
    AppServices &services = *m_services;
    services.openSettings = [this](std::optional<SettingsPane> pane) {
        m_settingsWindow->show(pane);
    };
    services.showNotch = [this] { m_coordinator->open(); };
    services.openModule = [this](const QString &moduleID) {
        m_coordinator->open({.module = moduleID});
    };
    services.openRoute = [this](const Route &route) { m_coordinator->open(route); };
    services.isPanelOpen = [this] { return m_coordinator->isAnyPanelOpen(); };
    services.isPanelShown = [this] { return m_coordinator->isAnyPanelShown(); };
    services.openFilesInNotch = [this](const std::vector<QUrl> &urls) {
        m_coordinator->openFiles(urls);
    };
}

void AppDelegate::fillHotKeys()
{
    auto &handlers = m_services->hotKeys->handlers;
    handlers[HotKeyAction::toggle] = [this] { m_coordinator->toggleFromHotKey(); };
    for (const NotchModule *module : m_services->modules->all()) {
        for (const auto &[action, route] : module->hotKeys())
            handlers[action] = [this, route = route] { m_coordinator->open(route); };
    }
}

ControlEndpoint::Commands AppDelegate::controlCommands()
{
    AppServices &services = *m_services;
    return {
        .activate = [&services] { services.openSettings(SettingsPane::general); },
        .openFiles = services.openFilesInNotch,
        .open =
            [&services](const QString &moduleID) {
                if (moduleID.isEmpty())
                    services.showNotch();
                else
                    services.openModule(moduleID);
            },
        .hasModule =
            [&services](const QString &moduleID) {
                return services.modules->find(moduleID) != nullptr;
            },
        .settings = [&services](const QString &pane) { services.openSettings(settingsPane(pane)); },
        .hasSettingsPane = [](const QString &pane) { return settingsPane(pane).has_value(); },
        .toggle = [this] { m_coordinator->toggleFromHotKey(); },
        .hide = [this] { m_coordinator->setUserHidden(true); },
        .show = [this] { m_coordinator->setUserHidden(false); },
        .quit = [] { QCoreApplication::quit(); },
        .status = [this] { return m_coordinator->statusText(); },
    };
}

void AppDelegate::serveScripts()
{
    AppServices &services = *m_services;
    m_settingsVerbs.emplace(*services.settings, m_scheduler);
    std::vector<Verb> verbs = m_settingsVerbs->verbs();
    for (NotchModule *module : services.modules->all()) {
        std::ranges::move(module->verbs(), std::back_inserter(verbs));
        connect(
            module, &NotchModule::contentChanged, this,
            [this](const QString &noun, const QString &what) { m_control.changed(noun, what); });
    }
    m_control.serve(controlCommands(), std::move(verbs));
    m_settings = services.settings->observe([this](const auto &before, const auto &after) {
        for (const QString &key : SettingsVerbs::changedKeys(before, after))
            m_control.changed(QStringLiteral("settings"), key);
    });
}

void AppDelegate::startPanelProbes(const QStringList &arguments)
{
    const auto quit = [] { QCoreApplication::quit(); };
    const auto start = overloaded{
        [&](const Probes::Open &open) {
            after(probeOpenDelay, [this] { m_coordinator->open(); });
            after(probeOpenDelay + open.duration, quit);
        },
        [&](const Probes::Drop &drop) {
            after(probeDropDelay, [this, file = drop.file] {
                m_coordinator->debugDropAnimation(file, probeDropPoint);
            });
            after(probeDropEnd, quit);
        },
    };
    for (const auto &probe : Probes::ofPanel(arguments))
        std::visit(start, probe);
}

void AppDelegate::after(Seconds delay, std::function<void()> step)
{
    m_delayedSteps.push_back(m_scheduler.after(delay, std::move(step)));
}

} // namespace velmo
