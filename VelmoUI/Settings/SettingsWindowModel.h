#pragma once

#include "VelmoSystem/Device/LaunchAtLoginService.h"
#include "VelmoUI/Modules/Frame/SettingsModel.h"
#include "VelmoUI/Settings/DataPaneModel.h"
#include "VelmoUI/Settings/DisplaysPaneModel.h"
#include "VelmoUI/Settings/HotKeysModel.h"
#include "VelmoUI/Settings/ModulesPaneModel.h"
#include "VelmoUI/Settings/PrivacyPaneModel.h"
#include "VelmoUI/Settings/SettingsServices.h"

namespace velmo {

/// A page of the settings, in the sidebar.
struct SettingsPaneRow {
    QString id;
    QString title;
    QString symbol;
    bool isSelected = false;

    bool operator==(const SettingsPaneRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(SettingsPaneRow, (), (id, title, symbol, isSelected))

/// A section of a pane that a module adds.
struct SettingsSectionRow {
    int id = 0;
    QUrl source;
    QObject *content = nullptr; ///< what it shows; null if the settings are enough

    bool operator==(const SettingsSectionRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(SettingsSectionRow, (), (id, source, content))

/// Everything that the settings window shows.
class SettingsWindowModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the settings window")
    Q_PROPERTY(QAbstractItemModel *panes READ panes CONSTANT)
    /// The row of the pane that shows.
    Q_PROPERTY(int paneIndex READ paneIndex NOTIFY paneChanged)
    Q_PROPERTY(QUrl paneSource READ paneSource NOTIFY paneChanged)
    Q_PROPERTY(bool isLight READ isLight NOTIFY appearanceChanged)
    Q_PROPERTY(bool reducedMotion READ isReducedMotion NOTIFY appearanceChanged)
    /// What went wrong when the settings were read; empty if nothing did.
    Q_PROPERTY(QString loadIssue READ loadIssue CONSTANT)
    Q_PROPERTY(velmo::SettingsModel *settings READ settings CONSTANT)
    Q_PROPERTY(velmo::HotKeysModel *hotKeys READ hotKeys CONSTANT)
    Q_PROPERTY(velmo::DisplaysPaneModel *displays READ displays CONSTANT)
    Q_PROPERTY(velmo::ModulesPaneModel *modules READ modules CONSTANT)
    Q_PROPERTY(velmo::PrivacyPaneModel *privacy READ privacy CONSTANT)
    Q_PROPERTY(velmo::DataPaneModel *data READ data CONSTANT)
    Q_PROPERTY(bool launchesAtLogin READ launchesAtLogin NOTIFY launchAtLoginChanged)
    Q_PROPERTY(QString launchAtLoginMessage READ launchAtLoginMessage NOTIFY launchAtLoginChanged)
    Q_PROPERTY(QString version READ version CONSTANT)
    Q_PROPERTY(QString dataFolder READ dataFolder CONSTANT)

public:
    SettingsWindowModel(const SettingsServices &services, SettingsPane pane);
    ~SettingsWindowModel() override;

    SettingsPane pane() const { return m_pane; }
    void setPane(SettingsPane pane);

    QAbstractItemModel *panes() { return &m_panes; }
    int paneIndex() const;
    QUrl paneSource() const;
    bool isLight() const;
    bool isReducedMotion() const;
    QString loadIssue() const;
    SettingsModel *settings() { return &m_settings; }
    HotKeysModel *hotKeys() { return &m_hotKeys; }
    DisplaysPaneModel *displays() { return &m_displays; }
    ModulesPaneModel *modules() { return &m_modules; }
    PrivacyPaneModel *privacy() { return &m_privacy; }
    DataPaneModel *data() { return &m_data; }
    bool launchesAtLogin() const;
    QString launchAtLoginMessage() const { return m_services.launchAtLogin.message(); }
    QString version() const;
    QString dataFolder() const { return m_services.paths.support; }

    Q_INVOKABLE void selectPane(const QString &id);
    /// What the modules bring for a pane, in their order.
    Q_INVOKABLE QAbstractItemModel *sections(const QString &pane);
    /// Selects by place in the sidebar; out of range does nothing.
    void selectPane(int index);
    Q_INVOKABLE void setLaunchesAtLogin(bool launches);

Q_SIGNALS:
    void paneChanged();
    void appearanceChanged();
    void launchAtLoginChanged();

private:
    void updatePanes();
    void makeSections();

    const SettingsServices m_services;
    SettingsPane m_pane;
    RecordListModel<SettingsPaneRow> m_panes;
    SettingsModel m_settings;
    HotKeysModel m_hotKeys;
    DisplaysPaneModel m_displays;
    ModulesPaneModel m_modules;
    PrivacyPaneModel m_privacy;
    DataPaneModel m_data;
    std::vector<std::unique_ptr<QObject>> m_contents; ///< of the sections
    std::map<SettingsPane, RecordListModel<SettingsSectionRow>> m_sections;
};

} // namespace velmo
