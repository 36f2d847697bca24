#include "VelmoCore/Calendar/ICSParser.h"
#include "VelmoCore/Calendar/ICSWriter.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace velmo {
namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

Date january(int year)
{
    const QDateTime date(QDate(year, 1, 1), QTime(), Qt::UTC);
    return Date{Seconds(double(date.toSecsSinceEpoch()))};
}

/// What is unrolled takes place in its window, whatever the feed says.
void checkWindow(const QString &text, Date from, Date to)
{
    for (const ICSOccurrence &found : ICSParser::occurrences(text, from, to))
        require(found.end > from && found.start < to && !found.title.isEmpty());
}

/// The dates from a later day on are those of the whole expansion from that day on.
void checkRule(const QString &rule)
{
    const QTimeZone zone("America/New_York");
    const Date start = january(2001);
    const Date later = january(2019);
    const Date end = january(2020);
    auto whole = ICSParser::expand(rule, start, zone, start, end);
    std::erase_if(whole, [&](Date date) { return date < later; });
    require(ICSParser::expand(rule, start, zone, later, end) == whole);
}

using ICSParser::Property;
using ICSParser::RawEvent;

const RawEvent *master(const ICSParser::Feed &feed)
{
    for (const RawEvent &event : feed.events) {
        if (!event.first(u"RECURRENCE-ID"))
            return &event;
    }
    return feed.events.empty() ? nullptr : &feed.events.front();
}

/// What a change of title and times leaves alone.
std::vector<Property> otherProperties(const RawEvent &event)
{
    std::vector<Property> others = event.props;
    std::erase_if(others, [](const Property &property) {
        const QStringView written[] = {u"SUMMARY",  u"DTSTART", u"DTEND",         u"DURATION",
                                       u"SEQUENCE", u"DTSTAMP", u"LAST-MODIFIED", u"EXDATE"};
        return std::ranges::find(written, property.name) != std::end(written);
    });
    return others;
}

std::optional<ICSParser::Moment> dateOf(const RawEvent &event, QStringView name,
                                        const QTimeZone &zone)
{
    const Property *property = event.first(name);
    return property ? ICSParser::date(*property, zone) : std::nullopt;
}

/// What was changed reads back as it was meant, and all other events as before.
void checkChange(const QByteArray &bytes, const ICSParser::Feed &before)
{
    const QString title = QStringLiteral("Título; \\n 🙂, ").repeated(9);
    const Date start = january(2024) + 90min;
    const auto changed = ICSWriter::changed(bytes, {title, start, 2h}, january(2023));
    if (!changed)
        return;
    const auto after = ICSParser::parse(QString::fromUtf8(*changed));
    require(after.events.size() == before.events.size());
    for (std::size_t i = 0; i < after.events.size(); ++i)
        require(otherProperties(after.events[i]) == otherProperties(before.events[i]));
    const RawEvent &event = *master(after);
    require(ICSParser::text(event, u"SUMMARY") == title);
    const auto begin = dateOf(event, u"DTSTART", after.zone);
    require(begin && (begin->allDay || begin->date == start));
    const auto end = dateOf(event, u"DTEND", after.zone);
    const auto length = ICSParser::text(event, u"DURATION");
    if (!begin->allDay && end && end->date > start)
        require(end->date == start + 2h);
    else if (!begin->allDay)
        require(length && ICSParser::parseDuration(*length) == Seconds(2h));
}

/// An occurrence that is taken out of its series is named as the series has it.
void checkOccurrence(const QByteArray &bytes, const ICSParser::Feed &feed, Date now)
{
    const RawEvent *event = master(feed);
    const auto start = event ? dateOf(*event, u"DTSTART", feed.zone) : std::nullopt;
    const Property *rule = start ? event->first(u"RRULE") : nullptr;
    const auto dates =
        rule ? ICSParser::expand(rule->value, start->date, start->zone, now, january(2025))
             : std::vector<Date>();
    if (dates.empty())
        return;
    if (const auto text = ICSWriter::overridden(bytes, dates[0], {}, now)) {
        const auto single = ICSParser::parse(QString::fromUtf8(*text));
        require(single.events.size() == 1);
    }
    if (const auto text = ICSWriter::excluded(bytes, dates[0], now)) {
        const auto rest = ICSParser::parse(QString::fromUtf8(*text));
        require(rest.events.size() <= feed.events.size());
        require(otherProperties(*master(rest)) == otherProperties(*event));
        require(ICSWriter::excluded(*text, dates[0], now).has_value());
    }
}

} // namespace
} // namespace velmo

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace velmo;

    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    checkWindow(text, january(2024), january(2025));
    checkWindow(text, january(9998), january(9999));
    const auto feed = ICSParser::parse(text);
    for (const auto &event : feed.events) {
        if (const auto *rule = event.first(u"RRULE"))
            checkRule(rule->value);
    }
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    checkChange(bytes, feed);
    checkOccurrence(bytes, feed, january(2024));
    return 0;
}
