#include "VelmoCore/Calendar/StoredEvents.h"

#include "VelmoCore/Calendar/ICSParser.h"

#include <QDateTime>
#include <QUrl>

#include <algorithm>

namespace velmo {

namespace {

/// In front of the parts of an identifier, which are percent-encoded.
QString scheme()
{
    return QStringLiteral("store");
}

QString encoded(const QString &part)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(part));
}

QString decoded(const QString &part)
{
    return QUrl::fromPercentEncoding(part.toLatin1());
}

/// Times without a zone are in that of the series: some stores leave it out where they take single
/// dates away.
ICSParser::Feed feed(const StoredEvent &stored)
{
    ICSParser::Feed feed = ICSParser::parse(QString::fromUtf8(stored.text));
    for (const ICSParser::RawEvent &event : feed.events) {
        const auto *start = event.first(u"DTSTART");
        if (!start || event.first(u"RECURRENCE-ID"))
            continue;
        if (const auto moment = ICSParser::date(*start, feed.zone); moment && !moment->allDay)
            feed.zone = moment->zone;
    }
    return feed;
}

bool isDeclined(const ICSParser::RawEvent &event, const QString &address)
{
    if (address.isEmpty())
        return false;
    return std::ranges::any_of(event.props, [&](const ICSParser::Property &property) {
        return property.name == u"ATTENDEE" &&
               property.value.compare(QStringLiteral("mailto:") + address, Qt::CaseInsensitive) ==
                   0 &&
               property.params.value(QStringLiteral("PARTSTAT")).toUpper() == u"DECLINED";
    });
}

} // namespace

QString StoredEvents::identifier(const Identity &identity)
{
    QStringList parts{scheme(), encoded(identity.calendar), encoded(identity.uid)};
    if (identity.occurrence)
        parts << QString::number(qint64(identity.occurrence->time_since_epoch().count()));
    return parts.join(u':');
}

std::optional<StoredEvents::Identity> StoredEvents::identity(const QString &identifier)
{
    const QStringList parts = identifier.split(u':');
    if (parts.size() < 3 || parts.size() > 4 || parts.front() != scheme())
        return std::nullopt;
    Identity identity{decoded(parts[1]), decoded(parts[2]), {}};
    if (parts.size() == 4) {
        bool isNumber = false;
        identity.occurrence = Date(Seconds(double(parts[3].toLongLong(&isNumber))));
        if (!isNumber)
            return std::nullopt;
    }
    return identity;
}

QString StoredEvents::recurrenceID(const StoredEvent &series, Date occurrence)
{
    const ICSParser::Feed read = feed(series);
    for (const ICSParser::RawEvent &event : read.events) {
        const auto *start = event.first(u"DTSTART");
        const auto moment = start && !event.first(u"RECURRENCE-ID")
                                ? ICSParser::date(*start, read.zone)
                                : std::nullopt;
        if (!moment)
            continue;
        const auto time = QDateTime::fromSecsSinceEpoch(
            qint64(occurrence.time_since_epoch().count()), moment->zone);
        if (moment->allDay)
            return time.toString(QStringLiteral("yyyyMMdd"));
        const bool isUTC = start->value.trimmed().endsWith(u'Z');
        return time.toString(QStringLiteral("yyyyMMdd'T'HHmmss")) +
               (isUTC ? QStringLiteral("Z") : QString());
    }
    return {};
}

std::vector<CalendarEvent> StoredEvents::events(const std::vector<StoredCalendar> &calendars,
                                                const std::vector<StoredEvent> &stored, Date from,
                                                Date to)
{
    std::vector<CalendarEvent> events;
    for (const StoredEvent &one : stored) {
        const auto calendar = std::ranges::find(calendars, one.calendar, &StoredCalendar::id);
        if (calendar == calendars.end())
            continue;
        const ICSParser::Feed read = feed(one);
        for (const auto &[occurrence, event, original] : ICSParser::instances(read, from, to)) {
            if (isDeclined(*event, calendar->address))
                continue;
            events.push_back({.id = identifier({one.calendar, one.uid, original}),
                              .title = occurrence.title,
                              .start = occurrence.start,
                              .end = occurrence.end,
                              .isAllDay = occurrence.isAllDay,
                              .calendarTitle = calendar->title,
                              .color = calendar->color,
                              .location = occurrence.location,
                              .meeting = MeetingLinks::first(
                                  {occurrence.url, occurrence.location, occurrence.notes}),
                              .canEdit = calendar->canEdit});
        }
    }
    return events;
}

} // namespace velmo
