#include "VelmoUI/Modules/Clipboard/ClipboardModule.h"

#include "VelmoCore/Clipboard/ClipboardStore.h"
#include "VelmoSystem/Clipboard/ClipboardMonitor.h"
#include "VelmoSystem/Verbs/ClipboardVerbs.h"
#include "VelmoUI/Modules/Clipboard/ClipImageProvider.h"
#include "VelmoUI/Modules/Clipboard/ClipboardCardModel.h"
#include "VelmoUI/Modules/Clipboard/ClipboardPageModel.h"
#include "VelmoUI/Modules/Clipboard/ClipboardSettingsModel.h"

#include <QQmlEngine>

namespace velmo {

namespace {

QUrl qml(const char *name)
{
    return QUrl(QStringLiteral("qrc:/qt/qml/Velmo/Modules/Clipboard/") + QLatin1String(name));
}

} // namespace

ClipboardModule::ClipboardModule(const ClipboardServices &services, Applications &applications)
    : m_services(services), m_applications(applications)
{
    ClipboardVerbs::connectChanges(services.store, this, contentListener());
}

NotchModule::View ClipboardModule::makeView(PanelPort &panel)
{
    return {qml("ClipboardPage.qml"), std::make_unique<ClipboardPageModel>(m_services, panel)};
}

std::vector<NotchModule::Card> ClipboardModule::cards()
{
    return {{.card = HomeCard::clipboard, .make = [this](PanelPort &panel) -> View {
                 return {qml("ClipboardCard.qml"),
                         std::make_unique<ClipboardCardModel>(m_services, panel)};
             }}};
}

std::vector<NotchModule::SettingsSection> ClipboardModule::settings()
{
    return {{.pane = SettingsPane::privacy, .source = qml("ClipboardSettings.qml"), .make = [this] {
                 return std::make_unique<ClipboardSettingsModel>(
                     m_services.store, m_services.settings, m_applications);
             }}};
}

std::map<HotKeyAction, Route> ClipboardModule::hotKeys() const
{
    return {{HotKeyAction::clipboard, {.module = id()}}};
}

std::vector<Verb> ClipboardModule::verbs()
{
    return ClipboardVerbs::make(m_services.store, m_services.monitor, m_services.scheduler);
}

void ClipboardModule::prepare(QQmlEngine &engine)
{
    engine.addImageProvider(QStringLiteral("clip"),
                            new ClipImageProvider(m_services.store.imageWriter()));
}

void ClipboardModule::start()
{
    applySettings();
    connect(&m_services.store, &ClipboardStore::loaded, this,
            [this] { m_services.store.enforceLimits(m_services.scheduler.now()); });
    m_observation =
        m_services.settings.observe([this](const AppSettings &before, const AppSettings &after) {
            if (before.clipboardEnabled != after.clipboardEnabled ||
                before.clipboardMaxItems != after.clipboardMaxItems ||
                before.clipboardRetentionDays != after.clipboardRetentionDays)
                applySettings();
        });
}

void ClipboardModule::applySettings()
{
    const AppSettings &settings = m_services.settings.settings();
    m_services.store.setLimits(settings.clipboardMaxItems, settings.clipboardRetentionDays);
    m_services.store.enforceLimits(m_services.scheduler.now());
    if (settings.clipboardEnabled)
        m_services.monitor.start();
    else
        m_services.monitor.stop();
}

} // namespace velmo
