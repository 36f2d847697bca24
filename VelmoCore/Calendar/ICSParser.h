#pragma once

#include "VelmoCore/Calendar/ICSOccurrence.h"

#include <QMap>
#include <QString>
#include <QStringView>
#include <QTimeZone>

#include <optional>
#include <span>
#include <utility>
#include <vector>

/// Reads the events of an iCalendar feed (RFC 5545) and unrolls them over a span of time. Nothing
/// throws: what can't be read is left out, and what goes beyond any real feed as well.
///
/// A local time that a change of clocks skips counts as that much later (02:30 becomes 03:30 where
/// the clock jumps an hour at 02:00), one that comes twice as the first of the two.
namespace velmo::ICSParser {

/// One line of a feed, behind unfolding.
struct Property {
    QString name;                  ///< in upper case
    QMap<QString, QString> params; ///< names in upper case, values without quotes around them
    QString value;                 ///< still escaped

    bool operator==(const Property &) const = default;
};

/// The properties of one event, without those of the components inside it.
struct RawEvent {
    /// A map in which a name may come more than once, in order of appearance.
    std::vector<Property> props;

    /// The first of that name, or null.
    const Property *first(QStringView name) const;
};

struct Feed {
    std::vector<RawEvent> events;
    std::optional<QString> calendarName;
    QTimeZone zone; ///< of times without one of their own
};

/// An occurrence, and what of the feed it is.
struct Instance {
    ICSOccurrence occurrence;
    const RawEvent *event = nullptr; ///< of the feed: the series, or what stands for this date
    /// Of a series: the start that the series gives the occurrence.
    std::optional<Date> original;
};

/// A point in time as a property gives it.
struct Moment {
    Date date;
    bool allDay = false;
    QTimeZone zone; ///< in which the date repeats: of an all-day value, the machine's
};

/// All occurrences that end after `from` and start before `to`, in the order of the feed. Work is
/// bounded: a feed made to repeat without end gives half a million dates or less.
std::vector<ICSOccurrence> occurrences(const QString &text, Date from, Date to);

/// The same of a feed that was read before, which outlives them.
std::vector<Instance> instances(const Feed &feed, Date from, Date to);

/// The feed's name for itself (X-WR-CALNAME).
std::optional<QString> calendarName(const QString &text);

Feed parse(const QString &text);

/// Reads one unfolded line. Absent without a ":" outside quotes.
std::optional<Property> property(QStringView line);

/// Resolves the backslashes of a TEXT value.
QString unescape(const QString &text);

/// The first property of that name, unescaped. Absent when empty.
std::optional<QString> text(const RawEvent &event, QStringView name);

/// Reads a DATE or DATE-TIME. `zone` holds for a time with neither a known TZID nor a "Z". An
/// all-day value is midnight in the machine's zone, wherever the feed comes from.
std::optional<Moment> date(const Property &property, const QTimeZone &zone);

/// The length of a DURATION such as "PT1H30M" or "-P1W".
std::optional<Seconds> parseDuration(QStringView text);

/// Windows' names of time zones with their IANA identifiers (CLDR, territory 001).
std::span<const std::pair<QStringView, const char *>> windowsZones();

/// The zone that a feed means by a name: an IANA identifier, also behind a path, a Windows name,
/// "(UTC-03:00) Brasilia" or "UTC+3".
std::optional<QTimeZone> timeZone(const QString &name);

/// The dates that the recurrence `rule` gives an event starting at `start` in `zone`, from `from`
/// and before `until`. The way from the start to `from` isn't walked.
std::vector<Date> expand(const QString &rule, Date start, const QTimeZone &zone, Date from,
                         Date until);

} // namespace velmo::ICSParser
