#include "VelmoUI/Settings/ClipboardSectionModel.h"

#include "VelmoUI/App/AppServices.h"
#include "VelmoUI/App/ApplicationSearch.h"
#include "VelmoUI/Settings/NumberChoices.h"

#include <algorithm>

namespace velmo {

namespace {

const NumberChoices counts({50, 100, 200, 500});
const NumberChoices retention({1, 7, 30, 90});
constexpr std::size_t mostFound = 5;

bool contains(const StringList &list, const QString &id)
{
    return std::ranges::find(list, id) != list.end();
}

} // namespace

ClipboardSectionModel::ClipboardSectionModel(AppServices &services)
    : m_services(services),
      m_observer(services.settings.observe([this](const auto &before, const auto &after) {
          if (before.clipboardMaxItems != after.clipboardMaxItems ||
              before.clipboardRetentionDays != after.clipboardRetentionDays)
              Q_EMIT limitsChanged();
          if (before.clipboardIgnoredBundleIDs != after.clipboardIgnoredBundleIDs)
              updateIgnored();
      }))
{
    connect(&services.clipboard, &ClipboardStore::itemsChanged, this,
            &ClipboardSectionModel::keptChanged);
    connect(&services.platform.applications, &Applications::changed, this,
            &ClipboardSectionModel::updateIgnored);
}

ClipboardSectionModel::~ClipboardSectionModel()
{
    m_services.settings.removeObserver(m_observer);
}

const AppSettings &ClipboardSectionModel::settings() const
{
    return m_services.settings.settings();
}

QStringList ClipboardSectionModel::countChoices() const
{
    return counts.numbers(settings().clipboardMaxItems);
}

int ClipboardSectionModel::countIndex() const
{
    return counts.index(settings().clipboardMaxItems);
}

QStringList ClipboardSectionModel::retentionChoices() const
{
    return retention.days(settings().clipboardRetentionDays);
}

int ClipboardSectionModel::retentionIndex() const
{
    return retention.index(settings().clipboardRetentionDays);
}

QString ClipboardSectionModel::kept() const
{
    const auto count = m_services.clipboard.items().size();
    if (count == 0)
        return QStringLiteral("Nenhum, por enquanto.");
    return count == 1 ? QStringLiteral("1 item") : QStringLiteral("%L1 itens").arg(count);
}

bool ClipboardSectionModel::canRestore() const
{
    return !std::ranges::all_of(ClipboardDefaults::ignoredBundleIDs(), [this](const QString &id) {
        return ClipboardDefaults::title(id)->isEmpty() ||
               contains(settings().clipboardIgnoredBundleIDs, id);
    });
}

QString ClipboardSectionModel::foundNote() const
{
    const bool isInVain = !m_query.isEmpty() && m_found.rowCount() == 0;
    return isInVain ? QStringLiteral("Nenhum aplicativo encontrado") : QString();
}

void ClipboardSectionModel::refresh()
{
    m_query.clear();
    updateIgnored();
}

void ClipboardSectionModel::setCount(int index)
{
    m_services.settings.update([index](AppSettings &next) {
        next.clipboardMaxItems = counts.picked(index, next.clipboardMaxItems);
    });
}

void ClipboardSectionModel::setRetention(int index)
{
    m_services.settings.update([index](AppSettings &next) {
        next.clipboardRetentionDays = retention.picked(index, next.clipboardRetentionDays);
    });
}

void ClipboardSectionModel::clear()
{
    m_services.clipboard.clear(false);
}

void ClipboardSectionModel::search(const QString &text)
{
    m_query = text.trimmed();
    updateFound();
}

void ClipboardSectionModel::add(const QString &desktopID)
{
    const auto application = m_services.platform.applications.find(desktopID);
    m_query.clear();
    if (application && !contains(settings().clipboardIgnoredBundleIDs, application->bundleID))
        m_services.settings.update([&](AppSettings &next) {
            next.clipboardIgnoredBundleIDs.push_back(application->bundleID);
        });
    updateFound();
}

void ClipboardSectionModel::addFirst()
{
    if (m_found.rowCount() > 0)
        add(m_found.records().front().id);
}

void ClipboardSectionModel::remove(int row)
{
    const auto &rows = m_ignored.records();
    if (row < 0 || row >= int(rows.size()))
        return;
    m_services.settings.update([id = rows[std::size_t(row)].id](AppSettings &next) {
        std::erase(next.clipboardIgnoredBundleIDs, id);
    });
}

void ClipboardSectionModel::restore()
{
    m_services.settings.update([](AppSettings &next) {
        StringList ids = ClipboardDefaults::ignoredBundleIDs();
        for (const QString &id : next.clipboardIgnoredBundleIDs) {
            if (!contains(ids, id))
                ids.push_back(id);
        }
        next.clipboardIgnoredBundleIDs = ids;
    });
}

void ClipboardSectionModel::updateIgnored()
{
    const auto installed = m_services.platform.applications.installed();
    std::vector<IgnoredAppRow> rows;
    for (const QString &id : settings().clipboardIgnoredBundleIDs) {
        const auto application =
            std::ranges::find(installed, id, &Applications::Application::bundleID);
        const bool isInstalled = application != installed.end();
        const auto builtIn = ClipboardDefaults::title(id);
        if (builtIn == QString() && !isInstalled)
            continue; // it doesn't exist here
        IgnoredAppRow row{.id = id, .title = builtIn.value_or(id)};
        if (isInstalled) {
            row.title = application->name;
            row.icon = ApplicationSearch::iconSource(*application);
        }
        if (builtIn)
            row.detail = QStringLiteral("Padrão do Orvane");
        else if (!isInstalled)
            row.detail = QStringLiteral("Não está instalado");
        row.spoken =
            row.detail.isEmpty() ? row.title : row.title + QStringLiteral(", ") + row.detail;
        rows.push_back(row);
    }
    m_ignored.setRecords(rows);
    Q_EMIT ignoredChanged();
    updateFound();
}

void ClipboardSectionModel::updateFound()
{
    std::vector<IgnoredAppRow> rows;
    if (!m_query.isEmpty()) {
        for (const auto &application :
             ApplicationSearch::find(m_services.platform.applications, m_query)) {
            if (!contains(settings().clipboardIgnoredBundleIDs, application.bundleID) &&
                rows.size() < mostFound)
                rows.push_back({.id = application.id,
                                .title = application.name,
                                .icon = ApplicationSearch::iconSource(application),
                                .spoken = QStringLiteral("Adicionar %1").arg(application.name)});
        }
    }
    m_found.setRecords(rows);
    Q_EMIT foundChanged();
}

} // namespace velmo
