#include "VelmoUI/Settings/SettingsWindowModel.h"

#include "VelmoSystem/Device/LaunchAtLoginService.h"
#include "VelmoSystem/Ports/DesktopAppearance.h"
#include "VelmoSystem/Ports/LoginItem.h"
#include "VelmoSystem/Ports/Platform.h"

#include <QCoreApplication>
#include <QQmlEngine>

#include <algorithm>
#include <array>

namespace velmo {

namespace {

struct Pane {
    SettingsPane pane;
    const char16_t *title;
    const char16_t *symbol;
    const char16_t *source;
};

/// Those whose subsystem is there, as the sidebar lists them.
constexpr std::array available = {
    Pane{SettingsPane::general, u"Geral", u"gearshape", u"GeneralPane"},
    Pane{SettingsPane::appearance, u"Aparência", u"paintbrush", u"AppearancePane"},
    Pane{SettingsPane::displays, u"Telas", u"display", u"DisplaysPane"},
    Pane{SettingsPane::modules, u"Módulos", u"square.grid.2x2", u"ModulesPane"},
    Pane{SettingsPane::privacy, u"Privacidade", u"hand.raised", u"PrivacyPane"},
    Pane{SettingsPane::data, u"Dados", u"internaldrive", u"DataPane"},
    Pane{SettingsPane::about, u"Sobre", u"info.circle.fill", u"AboutPane"},
};

QString idOf(SettingsPane pane)
{
    return QString::fromLatin1(boost::describe::enum_to_string(pane, ""));
}

} // namespace

SettingsWindowModel::SettingsWindowModel(const SettingsServices &services, SettingsPane pane)
    : m_services(services), m_pane(pane), m_settings(services.settings),
      m_hotKeys(services.settings, services.hotKeys, services.platform.hotKeyGrabber),
      m_displays(services.settings, services.platform.displays),
      m_modules(services.settings, services.modules), m_privacy(m_services),
      m_data(services.settings, services.paths, services.platform.fileViewer,
             services.platform.scheduler)
{
    services.launchAtLogin.refresh();
    connect(&services.settings, &SettingsStore::settingsChanged, this,
            &SettingsWindowModel::appearanceChanged);
    connect(&services.platform.appearance, &DesktopAppearance::changed, this,
            &SettingsWindowModel::appearanceChanged);
    connect(&services.launchAtLogin, &LaunchAtLoginService::changed, this,
            &SettingsWindowModel::launchAtLoginChanged);
    updatePanes();
    makeSections();
}

SettingsWindowModel::~SettingsWindowModel() = default;

void SettingsWindowModel::setPane(SettingsPane pane)
{
    const bool isThere = std::ranges::find(available, pane, &Pane::pane) != available.end();
    if (pane == m_pane || !isThere)
        return;
    m_hotKeys.stopRecording();
    m_pane = pane;
    updatePanes();
    Q_EMIT paneChanged();
}

int SettingsWindowModel::paneIndex() const
{
    return int(std::ranges::find(available, m_pane, &Pane::pane) - available.begin());
}

QUrl SettingsWindowModel::paneSource() const
{
    const Pane &pane = available[std::size_t(paneIndex())];
    return QUrl(
        QStringLiteral("qrc:/qt/qml/Velmo/Settings/%1.qml").arg(QString::fromUtf16(pane.source)));
}

bool SettingsWindowModel::isLight() const
{
    switch (m_services.settings.settings().theme) {
    case ThemePreference::system:
        return !m_services.platform.appearance.prefersDarkScheme();
    case ThemePreference::light:
        return true;
    case ThemePreference::dark:
        return false;
    }
    Q_UNREACHABLE();
}

bool SettingsWindowModel::isReducedMotion() const
{
    return m_services.platform.appearance.shouldReduceMotion();
}

QString SettingsWindowModel::loadIssue() const
{
    return m_services.settings.loadIssue().value_or(QString());
}

bool SettingsWindowModel::launchesAtLogin() const
{
    return m_services.launchAtLogin.status() == LoginItem::Status::enabled;
}

QString SettingsWindowModel::version() const
{
    return QCoreApplication::applicationVersion();
}

void SettingsWindowModel::selectPane(const QString &id)
{
    SettingsPane pane{};
    if (boost::describe::enum_from_string(id.toUtf8().constData(), pane))
        setPane(pane);
}

void SettingsWindowModel::selectPane(int index)
{
    if (index >= 0 && index < int(available.size()))
        setPane(available[std::size_t(index)].pane);
}

void SettingsWindowModel::setLaunchesAtLogin(bool launches)
{
    m_services.launchAtLogin.setEnabled(launches);
}

QAbstractItemModel *SettingsWindowModel::sections(const QString &pane)
{
    SettingsPane key{};
    boost::describe::enum_from_string(pane.toUtf8().constData(), key);
    QAbstractItemModel &sections = m_sections[key];
    QQmlEngine::setObjectOwnership(&sections, QQmlEngine::CppOwnership); // else QML takes it
    return &sections;
}

void SettingsWindowModel::makeSections()
{
    std::map<SettingsPane, std::vector<SettingsSectionRow>> rows;
    int id = 0;
    for (NotchModule *module : m_services.modules.all()) {
        for (const NotchModule::SettingsSection &section : module->settings()) {
            if (section.make)
                m_contents.push_back(section.make());
            rows[section.pane].push_back(
                {++id, section.source, section.make ? m_contents.back().get() : nullptr});
        }
    }
    for (const auto &[pane, sections] : rows)
        m_sections[pane].setRecords(sections);
}

void SettingsWindowModel::updatePanes()
{
    std::vector<SettingsPaneRow> rows;
    for (const Pane &pane : available)
        rows.push_back({idOf(pane.pane), QString::fromUtf16(pane.title),
                        QString::fromUtf16(pane.symbol), pane.pane == m_pane});
    m_panes.setRecords(rows);
}

} // namespace velmo
