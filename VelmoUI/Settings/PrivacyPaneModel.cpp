#include "VelmoUI/Settings/PrivacyPaneModel.h"

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Foundation/Overloaded.h"
#include "VelmoCore/Permissions/PermissionStatus.h"
#include "VelmoSystem/Permissions/PermissionsCenter.h"
#include "VelmoUI/Modules/Frame/ModuleRegistry.h"
#include "VelmoUI/Modules/Frame/NotchModule.h"
#include "VelmoUI/Modules/Frame/NumberChoices.h"
#include "VelmoUI/Settings/SettingsServices.h"

#include <algorithm>
#include <set>

namespace velmo {

namespace {

const NumberChoices retention({1, 7, 30});

QString idOf(PermissionKind kind)
{
    return QString::fromLatin1(boost::describe::enum_to_string(kind, ""));
}

std::optional<PermissionKind> kindOf(const QString &id)
{
    const auto found = std::ranges::find(Permissions::all, id, idOf);
    return found == Permissions::all.end() ? std::nullopt : std::optional(*found);
}

Feedback::Style style(const PermissionStatus &status)
{
    return std::visit(overloaded{
                          [](const PermissionStatus::Granted &) { return Feedback::Success; },
                          [](const PermissionStatus::Denied &) { return Feedback::Error; },
                          [](const PermissionStatus::Restricted &) { return Feedback::Error; },
                          [](const auto &) { return Feedback::Info; },
                      },
                      status.value);
}

PermissionRow permissionRow(PermissionKind kind, const PermissionStatus &status,
                            const QString &error)
{
    const PermissionTexts texts = Permissions::texts(kind);
    return {.id = idOf(kind),
            .title = texts.title,
            .symbol = texts.symbol,
            .explanation = texts.explanation,
            .usedBy = QStringLiteral("Usada por: %1").arg(texts.usedBy),
            .status = status.label(),
            .style = style(status),
            .canRequest = std::holds_alternative<PermissionStatus::NotDetermined>(status.value),
            .error = error,
            .spoken = QStringLiteral("%1: %2").arg(texts.title, status.label())};
}

} // namespace

PrivacyPaneModel::PrivacyPaneModel(const SettingsServices &services)
    : m_services(services),
      m_observer(services.settings.observe([this](const auto &before, const auto &after) {
          if (before.activityRetentionDays != after.activityRetentionDays)
              Q_EMIT retentionChanged();
      })),
      m_files(services.files.observe([this] { Q_EMIT protectionChanged(); }))
{
    connect(&services.permissions, &PermissionsCenter::changed, this, &PrivacyPaneModel::update);
    connect(&services.activity, &ActivityCenter::historyChanged, this,
            &PrivacyPaneModel::historyChanged);
    update();
}

QString PrivacyPaneModel::protectionSymbol() const
{
    return m_services.dataProtection.presentation().symbol;
}

QString PrivacyPaneModel::protectionTitle() const
{
    return m_services.dataProtection.presentation().title;
}

QString PrivacyPaneModel::protectionText() const
{
    return m_services.dataProtection.presentation().text.value_or(QString());
}

QString PrivacyPaneModel::protectionNote() const
{
    return m_services.dataProtection.presentation().note.value_or(QString());
}

QStringList PrivacyPaneModel::retentionChoices() const
{
    return retention.days(m_services.settings.settings().activityRetentionDays);
}

int PrivacyPaneModel::retentionIndex() const
{
    return retention.index(m_services.settings.settings().activityRetentionDays);
}

bool PrivacyPaneModel::hasHistory() const
{
    return !m_services.activity.history().empty();
}

void PrivacyPaneModel::refresh()
{
    m_errors.clear();
    m_services.permissions.refreshAll();
    update();
}

void PrivacyPaneModel::request(const QString &id)
{
    if (const auto kind = kindOf(id))
        m_services.permissions.request(*kind);
}

void PrivacyPaneModel::openSettings(const QString &id)
{
    const auto kind = kindOf(id);
    if (!kind)
        return;
    m_errors[*kind] = m_services.permissions.openSettings(*kind).value_or(QString());
    update();
}

void PrivacyPaneModel::setRetention(int index)
{
    m_services.settings.update([index](AppSettings &next) {
        next.activityRetentionDays = retention.picked(index, next.activityRetentionDays);
    });
}

void PrivacyPaneModel::clearHistory()
{
    m_services.activity.clearHistory();
}

void PrivacyPaneModel::update()
{
    std::set kinds{PermissionKind::notifications};
    for (const NotchModule *module : m_services.modules.ordered(m_services.settings.settings())) {
        const auto needed = module->permissions();
        kinds.insert(needed.begin(), needed.end());
    }
    std::vector<PermissionRow> rows;
    for (const PermissionKind kind : Permissions::all) {
        if (kinds.contains(kind))
            rows.push_back(
                permissionRow(kind, m_services.permissions.status(kind), m_errors[kind]));
    }
    m_permissions.setRecords(rows);
}

} // namespace velmo
