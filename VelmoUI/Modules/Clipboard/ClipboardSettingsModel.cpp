#include "VelmoUI/Modules/Clipboard/ClipboardSettingsModel.h"

#include "VelmoCore/Clipboard/ClipboardDefaults.h"
#include "VelmoCore/Clipboard/ClipboardStore.h"
#include "VelmoCore/Foundation/Words.h"
#include "VelmoSystem/Applications/ApplicationSearch.h"
#include "VelmoUI/Modules/Frame/NumberChoices.h"

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

ClipboardSettingsModel::ClipboardSettingsModel(ClipboardStore &store, SettingsStore &settings,
                                               Applications &applications)
    : m_store(store), m_settings(settings), m_applications(applications),
      m_observer(settings.observe([this](const auto &before, const auto &after) {
          if (before.clipboardMaxItems != after.clipboardMaxItems ||
              before.clipboardRetentionDays != after.clipboardRetentionDays)
              Q_EMIT limitsChanged();
          if (before.clipboardIgnoredBundleIDs != after.clipboardIgnoredBundleIDs)
              updateIgnored();
      }))
{
    connect(&store, &ClipboardStore::itemsChanged, this, &ClipboardSettingsModel::keptChanged);
    connect(&applications, &Applications::changed, this, &ClipboardSettingsModel::updateIgnored);
}

const AppSettings &ClipboardSettingsModel::settings() const
{
    return m_settings.settings();
}

QStringList ClipboardSettingsModel::countChoices() const
{
    return counts.numbers(settings().clipboardMaxItems);
}

int ClipboardSettingsModel::countIndex() const
{
    return counts.index(settings().clipboardMaxItems);
}

QStringList ClipboardSettingsModel::retentionChoices() const
{
    return retention.days(settings().clipboardRetentionDays);
}

int ClipboardSettingsModel::retentionIndex() const
{
    return retention.index(settings().clipboardRetentionDays);
}

QString ClipboardSettingsModel::kept() const
{
    const auto count = m_store.items().size();
    return count == 0 ? QStringLiteral("Nenhum, por enquanto.") : Words::items(count);
}

bool ClipboardSettingsModel::canRestore() const
{
    return !std::ranges::all_of(ClipboardDefaults::ignoredBundleIDs(), [this](const QString &id) {
        return ClipboardDefaults::title(id)->isEmpty() ||
               contains(settings().clipboardIgnoredBundleIDs, id);
    });
}

QString ClipboardSettingsModel::foundNote() const
{
    const bool isInVain = !m_query.isEmpty() && m_found.rowCount() == 0;
    return isInVain ? QStringLiteral("Nenhum aplicativo encontrado") : QString();
}

void ClipboardSettingsModel::refresh()
{
    m_query.clear();
    updateIgnored();
}

void ClipboardSettingsModel::setCount(int index)
{
    m_settings.update([index](AppSettings &next) {
        next.clipboardMaxItems = counts.picked(index, next.clipboardMaxItems);
    });
}

void ClipboardSettingsModel::setRetention(int index)
{
    m_settings.update([index](AppSettings &next) {
        next.clipboardRetentionDays = retention.picked(index, next.clipboardRetentionDays);
    });
}

void ClipboardSettingsModel::clear()
{
    m_store.clear(false);
}

void ClipboardSettingsModel::search(const QString &text)
{
    m_query = text.trimmed();
    updateFound();
}

void ClipboardSettingsModel::add(const QString &desktopID)
{
    const auto application = m_applications.find(desktopID);
    m_query.clear();
    if (application && !contains(settings().clipboardIgnoredBundleIDs, application->bundleID))
        m_settings.update([&](AppSettings &next) {
            next.clipboardIgnoredBundleIDs.push_back(application->bundleID);
        });
    updateFound();
}

void ClipboardSettingsModel::addFirst()
{
    if (m_found.rowCount() > 0)
        add(m_found.records().front().id);
}

void ClipboardSettingsModel::remove(int row)
{
    const auto &rows = m_ignored.records();
    if (row < 0 || row >= int(rows.size()))
        return;
    m_settings.update([id = rows[std::size_t(row)].id](AppSettings &next) {
        std::erase(next.clipboardIgnoredBundleIDs, id);
    });
}

void ClipboardSettingsModel::restore()
{
    m_settings.update([](AppSettings &next) {
        StringList ids = ClipboardDefaults::ignoredBundleIDs();
        for (const QString &id : next.clipboardIgnoredBundleIDs) {
            if (!contains(ids, id))
                ids.push_back(id);
        }
        next.clipboardIgnoredBundleIDs = ids;
    });
}

void ClipboardSettingsModel::updateIgnored()
{
    const auto installed = m_applications.installed();
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

void ClipboardSettingsModel::updateFound()
{
    std::vector<IgnoredAppRow> rows;
    if (!m_query.isEmpty()) {
        for (const auto &application : ApplicationSearch::find(m_applications, m_query)) {
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
