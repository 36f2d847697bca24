#include "VelmoUI/Modules/Calendar/CalendarFeedsModel.h"

#include "VelmoUI/Modules/Frame/NumberChoices.h"

#include <QPointer>

namespace velmo {

namespace {

/// Minutes.
const NumberChoices alerts({0, 5, 10, 15, 30});

} // namespace

CalendarFeedsModel::CalendarFeedsModel(CalendarService &calendar, SettingsStore &settings)
    : m_calendar(calendar), m_settings(settings),
      m_observation(settings.observe([this](const AppSettings &before, const AppSettings &after) {
          if (before.eventAlertMinutes != after.eventAlertMinutes)
              Q_EMIT changed();
      }))
{
    connect(&calendar, &CalendarService::changed, this, &CalendarFeedsModel::update);
    update();
}

void CalendarFeedsModel::update()
{
    std::vector<CalendarFeedRow> rows;
    for (const CalendarSubscription &feed : m_calendar.subscriptions())
        rows.push_back({.id = uuidText(feed.id),
                        .name = feed.name,
                        .address = feed.url.toDisplayString(),
                        .problem = m_calendar.subscriptionError(feed.id).value_or(QString()),
                        .removal = QStringLiteral("Remover %1").arg(feed.name)});
    m_rows.setRecords(rows);
    Q_EMIT changed();
}

QStringList CalendarFeedsModel::alertTitles() const
{
    QStringList titles;
    for (const int minutes : alerts.around(m_settings.settings().eventAlertMinutes))
        titles << (minutes < 1 ? QStringLiteral("Nunca") : QStringLiteral("%1 min").arg(minutes));
    return titles;
}

int CalendarFeedsModel::alertIndex() const
{
    return alerts.index(m_settings.settings().eventAlertMinutes);
}

void CalendarFeedsModel::setAlertIndex(int index)
{
    m_settings.update([&](AppSettings &settings) {
        settings.eventAlertMinutes = alerts.picked(index, settings.eventAlertMinutes);
    });
}

void CalendarFeedsModel::add(const QString &address, const QString &name)
{
    if (m_isTesting)
        return;
    m_isTesting = true;
    m_issue.clear();
    Q_EMIT changed();
    m_calendar.addSubscription(address, name,
                               [page = QPointer(this)](const std::optional<QString> &problem) {
                                   if (!page)
                                       return;
                                   page->m_isTesting = false;
                                   page->m_issue = problem.value_or(QString());
                                   Q_EMIT page->changed();
                                   if (!problem)
                                       Q_EMIT page->added();
                               });
}

void CalendarFeedsModel::rename(const QString &id, const QString &name)
{
    if (const auto feed = uuidFromText(id))
        m_calendar.renameSubscription(*feed, name);
}

void CalendarFeedsModel::remove(const QString &id)
{
    if (const auto feed = uuidFromText(id))
        m_calendar.removeSubscription(*feed);
}

} // namespace velmo
