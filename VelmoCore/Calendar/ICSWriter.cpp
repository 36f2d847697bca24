#include "VelmoCore/Calendar/ICSWriter.h"

#include "VelmoCore/Calendar/ICSText.h"
#include "VelmoCore/Calendar/ZoneClock.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace velmo::ICSWriter {

namespace {

constexpr Seconds dayLength = 24h;

/// Nothing at the borders of the years 1 to 9999 and beyond.
std::optional<Date> wholeSeconds(Date date)
{
    const auto isWritable = [](Date other) { return dateFromISO8601(iso8601Text(other)) == other; };
    const Date whole(Seconds(std::floor(date.time_since_epoch().count())));
    const bool isInside = isWritable(whole - 2 * dayLength) && isWritable(whole + 2 * dayLength);
    return isInside ? std::optional(whole) : std::nullopt;
}

std::int64_t seconds(Date date)
{
    return std::int64_t(date.time_since_epoch().count());
}

/// "20240705T120000Z".
QByteArray utcText(Date date)
{
    return iso8601Text(date).remove(u'-').remove(u':').toLatin1();
}

QByteArray localText(std::int64_t local)
{
    return utcText(Date(Seconds(double(local)))).chopped(1);
}

QByteArray durationText(Seconds length, bool inDays)
{
    const auto whole = qint64(length.count());
    if (inDays)
        return 'P' + QByteArray::number(qint64(length / dayLength)) + 'D';
    QByteArray text = "PT";
    if (whole >= 3600)
        text += QByteArray::number(whole / 3600) + 'H';
    if (whole / 60 % 60 > 0)
        text += QByteArray::number(whole / 60 % 60) + 'M';
    if (whole % 60 > 0 || whole == 0)
        text += QByteArray::number(whole % 60) + 'S';
    return text;
}

/// A time as a property says it.
struct Time {
    enum class Kind { day, utc, zoned, unknownZone, floating };

    QByteArray head;
    ICSParser::Moment moment;
    Kind kind = Kind::floating;

    static std::optional<Time> read(const Line *line, const QTimeZone &zone);

    /// Another time in this form; nothing where the form can't say it.
    std::optional<QByteArray> value(Date date) const;
    /// Another time under this head, at worst in UTC.
    Line line(Date date) const;
    /// The same form for a property of another name.
    Time named(const char *name) const;
    /// A day as long as that begins at the midnight of its start.
    Date after(Date start, Seconds length) const;
};

std::optional<Time> Time::read(const Line *line, const QTimeZone &zone)
{
    const auto moment = line ? ICSParser::date(line->property, zone) : std::nullopt;
    if (!moment)
        return std::nullopt;
    const auto &params = line->property.params;
    const auto name = params.constFind(QStringLiteral("TZID"));
    Kind kind = Kind::floating;
    if (moment->allDay)
        kind = Kind::day;
    else if (line->property.value.trimmed().endsWith(u'Z'))
        kind = Kind::utc;
    else if (name != params.cend())
        kind = ICSParser::timeZone(*name) ? Kind::zoned : Kind::unknownZone;
    return Time{line->head(), *moment, kind};
}

std::optional<QByteArray> Time::value(Date date) const
{
    if (kind == Kind::utc)
        return utcText(date);
    ZoneClock clock(moment.zone);
    const std::int64_t local = clock.localFromUtc(seconds(date));
    if (kind == Kind::day)
        return localText(local).first(8);
    // Of two times that the clock shows alike this would be the first.
    const bool isExact = kind != Kind::unknownZone && clock.utcFromLocal(local) == seconds(date);
    return isExact ? std::optional(localText(local)) : std::nullopt;
}

Line Time::line(Date date) const
{
    if (const auto same = value(date))
        return Line::make(head, *same);
    return Line::make(withoutParameters(head, {u"TZID"}), utcText(date));
}

Time Time::named(const char *name) const
{
    const QByteArray parameters = withParameters(head, {u"TZID", u"VALUE"});
    const qsizetype first = parameters.indexOf(';');
    return {first < 0 ? QByteArray(name) : name + parameters.sliced(first), moment, kind};
}

Date Time::after(Date start, Seconds length) const
{
    if (kind != Kind::day)
        return start + length;
    ZoneClock clock(moment.zone);
    const auto local = double(clock.localFromUtc(seconds(start)));
    const Seconds midnight = std::floor(local / dayLength.count()) * dayLength;
    return Date(Seconds(double(clock.utcFromLocal(std::int64_t((midnight + length).count())))));
}

/// A length that an event of that kind can have.
Seconds usable(Seconds length, Time::Kind kind)
{
    if (kind == Time::Kind::day)
        return std::max(std::round(length / dayLength), 1.0) * dayLength;
    return Seconds(std::max(std::floor(length.count()), 0.0));
}

/// As the parser reads it.
Seconds lengthOf(const Block &event, const Time &start, const QTimeZone &zone)
{
    const auto end = Time::read(event.first(u"DTEND"), zone);
    const Line *duration = event.first(u"DURATION");
    Seconds length = 0s;
    if (end && end->moment.date > start.moment.date)
        length = end->moment.date - start.moment.date;
    else if (duration)
        length = ICSParser::parseDuration(ICSParser::unescape(duration->property.value))
                     .value_or(length);
    return usable(length, start.kind);
}

bool isSeries(const Block &event)
{
    return !event.has(u"RECURRENCE-ID") && (event.has(u"RRULE") || event.has(u"RDATE"));
}

void writeEnd(Block &event, const Time &start, Date end, const QTimeZone &zone)
{
    const Line *old = event.first(u"DTEND");
    const auto oldEnd = Time::read(old, zone);
    const bool isAlike = oldEnd && oldEnd->moment.allDay == start.moment.allDay &&
                         (oldEnd->kind != Time::Kind::floating || start.kind == oldEnd->kind);
    const Line line = (isAlike ? *oldEnd : start.named("DTEND")).line(end);
    if (old)
        event.put(line);
    else
        event.putBehind(u"DTSTART", line);
}

void writeLength(Block &event, const Time &start, Seconds length)
{
    const Line *old = event.first(u"DURATION");
    event.put(Line::make(old ? old->head() : "DURATION",
                         durationText(length, start.kind == Time::Kind::day)));
}

/// False for times that can't be written.
bool setTimes(Block &event, const EventChange &change, const QTimeZone &zone)
{
    if (!change.start && !change.duration)
        return true;
    const auto start = Time::read(event.first(u"DTSTART"), zone);
    if (!start)
        return false;
    const Seconds length = lengthOf(event, *start, zone);
    const Seconds newLength = change.duration ? usable(*change.duration, start->kind) : length;
    const auto newStart = wholeSeconds(change.start.value_or(start->moment.date));
    if (!newStart || !wholeSeconds(*newStart + newLength))
        return false;
    const bool isMoved = start->after(*newStart, 0s) != start->moment.date;
    if (!isMoved && newLength == length)
        return true;
    if (isMoved && isSeries(event))
        return false;
    if (isMoved)
        event.put(start->line(*newStart));

    const bool isDay = start->kind == Time::Kind::day;
    const bool hasEnd = event.has(u"DTEND");
    // Only a length says the end where we and others may read the start in different zones.
    const bool isRelative = start->kind == Time::Kind::unknownZone && !isMoved;
    if (isRelative || (!hasEnd && event.has(u"DURATION"))) {
        event.remove({u"DTEND"});
        if (newLength != length)
            writeLength(event, *start, newLength);
        return true;
    }
    event.remove({u"DURATION"});
    if (newLength == 0s)
        event.remove({u"DTEND"});
    else if (hasEnd || !isDay || newLength != dayLength)
        writeEnd(event, *start, start->after(*newStart, newLength), zone);
    return true;
}

void setTitle(Block &event, const std::optional<QString> &title)
{
    const Line *old = event.first(u"SUMMARY");
    if (title && (!old || ICSParser::unescape(old->property.value) != *title))
        event.put(Line::make(old ? old->head() : "SUMMARY", escaped(*title)));
}

/// A new revision.
void stamp(Block &event, Date now)
{
    const Line *old = event.first(u"SEQUENCE");
    const int sequence = old ? old->property.value.trimmed().toInt() : 0;
    const bool isNumber = sequence >= 0 && sequence < std::numeric_limits<int>::max();
    event.put(Line::make(old ? old->head() : "SEQUENCE",
                         QByteArray::number(isNumber ? sequence + 1 : 1)));
    for (const char *name : {"DTSTAMP", "LAST-MODIFIED"}) {
        const Line *time = event.first(QString::fromLatin1(name));
        const QByteArray head =
            time ? withoutParameters(time->head(), {u"TZID", u"VALUE"}) : QByteArray(name);
        event.put(Line::make(head, utcText(now)));
    }
}

bool apply(Block &event, const EventChange &change, const QTimeZone &zone, Date now)
{
    if (!setTimes(event, change, zone))
        return false;
    setTitle(event, change.title);
    stamp(event, now);
    return true;
}

/// A component with its events.
class Component {
public:
    explicit Component(const QByteArray &text)
        : m_blocks(blocks(text)), m_zone(ICSParser::parse(QString::fromUtf8(text)).zone),
          m_seriesZone(m_zone)
    {
        const Block *series = master();
        const auto start = series ? Time::read(series->first(u"DTSTART"), m_zone) : std::nullopt;
        if (start && start->kind != Time::Kind::day && isSeries(*series))
            m_seriesZone = start->moment.zone;
    }

    /// Of times without one of their own.
    const QTimeZone &zone() const { return m_zone; }
    /// Of such times that name an occurrence: some stores leave theirs out.
    const QTimeZone &seriesZone() const { return m_seriesZone; }
    QByteArray text() const { return joined(m_blocks); }

    /// The event that stands for all, or null.
    Block *master()
    {
        const auto found = std::ranges::find_if(m_blocks, [](const Block &block) {
            return block.isEvent && !block.has(u"RECURRENCE-ID");
        });
        if (found != m_blocks.end())
            return &*found;
        const auto any = std::ranges::find_if(m_blocks, &Block::isEvent);
        return any == m_blocks.end() ? nullptr : &*any;
    }

    bool isOverride(const Block &block, Date occurrence) const
    {
        const auto original = Time::read(block.first(u"RECURRENCE-ID"), m_seriesZone);
        return block.isEvent && original && original->moment.date == occurrence;
    }

    Block *overrideOf(Date occurrence)
    {
        const auto found = std::ranges::find_if(
            m_blocks, [&](const Block &block) { return isOverride(block, occurrence); });
        return found == m_blocks.end() ? nullptr : &*found;
    }

    void removeOverride(Date occurrence)
    {
        std::erase_if(m_blocks, [&](const Block &block) { return isOverride(block, occurrence); });
    }

private:
    std::vector<Block> m_blocks;
    QTimeZone m_zone;
    QTimeZone m_seriesZone;
};

/// A property that names an occurrence in the form of the series' start.
std::optional<Line> occurrenceLine(const Block &series, const char *name, Date occurrence,
                                   const QTimeZone &zone)
{
    const auto start = Time::read(series.first(u"DTSTART"), zone);
    const auto date = wholeSeconds(occurrence);
    const auto value = start && date ? start->value(*date) : std::nullopt;
    return value ? std::optional(Line::make(start->named(name).head, *value)) : std::nullopt;
}

bool isExcluded(const Block &series, Date occurrence, const QTimeZone &zone)
{
    return std::ranges::any_of(series.lines, [&](const Line &line) {
        if (!line.isOwn || line.property.name != u"EXDATE")
            return false;
        const QStringList pieces = line.property.value.split(u',');
        return std::ranges::any_of(pieces, [&](const QString &piece) {
            const auto date =
                ICSParser::date({line.property.name, line.property.params, piece}, zone);
            return date && date->date == occurrence;
        });
    });
}

} // namespace

std::optional<QByteArray> created(const QString &uid, const QString &title, Date start,
                                  Seconds duration, Date now)
{
    const auto begin = wholeSeconds(start);
    const auto end = begin ? wholeSeconds(*begin + usable(duration, Time::Kind::utc)) : begin;
    if (!end)
        return std::nullopt;
    Block event;
    const auto add = [&](const char *head, const QByteArray &value) {
        event.lines.push_back(Line::make(head, value));
    };
    add("BEGIN", "VEVENT");
    add("UID", escaped(uid));
    add("CREATED", utcText(now));
    add("DTSTAMP", utcText(now));
    add("LAST-MODIFIED", utcText(now));
    add("SEQUENCE", "0");
    add("DTSTART", utcText(*begin));
    if (*end > *begin)
        add("DTEND", utcText(*end));
    add("SUMMARY", escaped(title));
    add("END", "VEVENT");
    return joined({event});
}

std::optional<QByteArray> changed(const QByteArray &component, const EventChange &change, Date now)
{
    Component read(component);
    Block *event = read.master();
    if (!event || !apply(*event, change, read.zone(), now))
        return std::nullopt;
    return read.text();
}

std::optional<QByteArray> overridden(const QByteArray &component, Date occurrence,
                                     const EventChange &change, Date now)
{
    Component read(component);
    if (Block *known = read.overrideOf(occurrence)) {
        const bool isWritten = apply(*known, change, read.zone(), now);
        return isWritten ? std::optional(joined({*known})) : std::nullopt;
    }
    const Block *series = read.master();
    if (!series || !isSeries(*series))
        return std::nullopt;
    const auto line = occurrenceLine(*series, "RECURRENCE-ID", occurrence, read.zone());
    if (!line)
        return std::nullopt;
    Block event = *series;
    event.remove({u"RRULE", u"RDATE", u"EXDATE", u"EXRULE"});
    event.putBehind(u"DTSTART", *line);
    EventChange own = change;
    own.start = change.start.value_or(occurrence);
    const bool isWritten = apply(event, own, read.zone(), now);
    return isWritten ? std::optional(joined({event})) : std::nullopt;
}

std::optional<QByteArray> excluded(const QByteArray &component, Date occurrence, Date now)
{
    Component read(component);
    Block *series = read.master();
    if (!series || !isSeries(*series))
        return std::nullopt;
    const auto line = occurrenceLine(*series, "EXDATE", occurrence, read.zone());
    if (!line)
        return std::nullopt;
    if (!isExcluded(*series, occurrence, read.seriesZone()))
        series->putBehind(series->has(u"EXDATE") ? u"EXDATE" : u"DTSTART", *line);
    stamp(*series, now);
    read.removeOverride(occurrence);
    return read.text();
}

} // namespace velmo::ICSWriter
