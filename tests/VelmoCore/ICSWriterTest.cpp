#include "VelmoCore/Calendar/ICSWriter.h"

#include "VelmoCore/Calendar/ICSParser.h"

#include "tests/support/Printers.h"

#include <gmock/gmock.h>

namespace velmo {
namespace {

using ICSWriter::EventChange;
using testing::ElementsAre;

Date at(QStringView text)
{
    return dateFromISO8601(text).value();
}

const Date now = at(u"2024-06-01T10:00:00Z");

class ICSWriterTest : public testing::Test {
protected:
    ICSWriterTest() { qputenv("TZ", "America/Sao_Paulo"); }
    ~ICSWriterTest() override { qunsetenv("TZ"); }
};

/// An event of those lines, with what a writer has to leave alone.
QByteArray event(QByteArray lines)
{
    return "BEGIN:VEVENT\r\nUID:1\r\nx-nota;X-P=\"a:b;c\":dob\r\n rad\r\n\ta \\, \xff\r\n" +
           lines.replace('|', "\r\n") +
           "\r\nBEGIN:VALARM\r\nSUMMARY:Alarme\r\nDURATION:PT5M\r\nDTSTART:x\r\nEND:VALARM\r\n"
           "ATTENDEE;CN=\"Ana, Bia\":mailto:a@x\r\nEND:VEVENT\r\n";
}

/// The lines that went and came, but for those of the revision.
QByteArray difference(const QByteArray &before, const std::optional<QByteArray> &after)
{
    if (!after)
        return "absent";
    QByteArrayList old = before.split('\n');
    QByteArrayList lines;
    for (const QByteArray &line : after->split('\n')) {
        if (!old.removeOne(line))
            lines.append('+' + line.trimmed());
    }
    for (auto line = old.rbegin(); line != old.rend(); ++line)
        lines.prepend('-' + line->trimmed());
    lines.removeIf([](const QByteArray &line) {
        return line.contains("SEQUENCE:") || line.contains("DTSTAMP:") ||
               line.contains("LAST-MODIFIED:");
    });
    return lines.join(' ');
}

/// "title start end" of what takes place from June 2024 to February 2025.
std::vector<QString> occurrences(const QByteArray &text)
{
    std::vector<QString> lines;
    for (const auto &found : ICSParser::occurrences(
             QString::fromUtf8(text), at(u"2024-06-01T00:00:00Z"), at(u"2025-02-01T00:00:00Z")))
        lines.push_back(found.title + u' ' + iso8601Text(found.start).mid(5, 11) + u' ' +
                        iso8601Text(found.end).mid(5, 11));
    return lines;
}

TEST_F(ICSWriterTest, KeepsTheKindOfTimeAndAllElse)
{
    const auto to = [](QStringView start, Seconds duration) {
        return EventChange{u"A"_qs, at(start), duration};
    };
    const EventChange longer{.title = {}, .start = {}, .duration = 90min};
    struct Case {
        const char *lines;
        EventChange change;
        const char *difference;
        const char *occurrence;
    };
    const Case cases[] = {
        {"SUMMARY;LANGUAGE=pt:A|DTSTART;TZID=\"(UTC-03:00) Brasilia\":20240705T090000"
         "|DTEND;TZID=Europe/Lisbon:20240705T130000",
         to(u"2024-07-06T12:00:00Z", 2h),
         "-DTSTART;TZID=\"(UTC-03:00) Brasilia\":20240705T090000 "
         "-DTEND;TZID=Europe/Lisbon:20240705T130000 "
         "+DTSTART;TZID=\"(UTC-03:00) Brasilia\":20240706T090000 "
         "+DTEND;TZID=Europe/Lisbon:20240706T150000",
         "A 07-06T12:00 07-06T14:00"},
        {"SUMMARY:a|DTSTART:20240705T120000Z|DTEND:20240705T130000Z",
         to(u"2024-07-05T12:00:00Z", 30min),
         "-SUMMARY:a -DTEND:20240705T130000Z +SUMMARY:A +DTEND:20240705T123000Z",
         "A 07-05T12:00 07-05T12:30"},
        {"DTSTART;VALUE=DATE-TIME:20240705T090000", to(u"2024-07-05T13:00:00Z", 1h),
         "-DTSTART;VALUE=DATE-TIME:20240705T090000 +DTSTART;VALUE=DATE-TIME:20240705T100000 "
         "+DTEND;VALUE=DATE-TIME:20240705T110000 +SUMMARY:A",
         "A 07-05T13:00 07-05T14:00"},
        {"SUMMARY:A|DTSTART;VALUE=DATE:20240705|DTEND;VALUE=DATE:20240707",
         to(u"2024-07-08T03:00:00Z", 71h),
         "-DTSTART;VALUE=DATE:20240705 -DTEND;VALUE=DATE:20240707 +DTSTART;VALUE=DATE:20240708 "
         "+DTEND;VALUE=DATE:20240711",
         "A 07-08T03:00 07-11T03:00"},
        {"SUMMARY:A|DTSTART:20240705", to(u"2024-07-06T13:00:00Z", 1h),
         "-DTSTART:20240705 +DTSTART:20240706", "A 07-06T03:00 07-07T03:00"},
        {"SUMMARY:A|DTSTART:20240705T120000Z|DURATION:P0DT60M",
         {.title = {}, .start = at(u"2024-07-05T13:00:00Z"), .duration = {}},
         "-DTSTART:20240705T120000Z +DTSTART:20240705T130000Z",
         "A 07-05T13:00 07-05T14:00"},
        {"SUMMARY:A|DTSTART:20240705T120000Z|DURATION;X=1:PT1H", longer,
         "-DURATION;X=1:PT1H +DURATION;X=1:PT1H30M", "A 07-05T12:00 07-05T13:30"},
        {"SUMMARY:A|DTSTART:20240705T120000Z|DTEND:20240705T110000Z|DURATION:PT1H", longer,
         "-DTEND:20240705T110000Z -DURATION:PT1H +DTEND:20240705T133000Z",
         "A 07-05T12:00 07-05T13:30"},
        {"SUMMARY:A|DTSTART:20240705T120000Z|DTEND:20240705T130000Z",
         {.title = {}, .start = {}, .duration = 0s},
         "-DTEND:20240705T130000Z",
         "A 07-05T12:00 07-05T12:00"},
        // 01:30 comes twice that day.
        {"SUMMARY:A|DTSTART;TZID=America/New_York;X=1:20240705T090000",
         to(u"2024-11-03T06:30:00Z", 1h),
         "-DTSTART;TZID=America/New_York;X=1:20240705T090000 +DTSTART;X=1:20241103T063000Z "
         "+DTEND;TZID=America/New_York:20241103T023000",
         "A 11-03T06:30 11-03T07:30"},
        {"SUMMARY:A|DTSTART;TZID=Nada:20240705T090000", to(u"2024-07-05T13:00:00Z", 1h),
         "-DTSTART;TZID=Nada:20240705T090000 +DTSTART:20240705T130000Z +DTEND:20240705T140000Z",
         "A 07-05T13:00 07-05T14:00"},
        {"SUMMARY:A|DTSTART;TZID=Nada:20240705T090000|DTEND;TZID=Nada:20240705T100000", longer,
         "-DTEND;TZID=Nada:20240705T100000 +DURATION:PT1H30M", "A 07-05T12:00 07-05T13:30"},
        {"SUMMARY:A|DTSTART:20240705T120000Z|RRULE:FREQ=DAILY;COUNT=1", longer,
         "+DTEND:20240705T133000Z", "A 07-05T12:00 07-05T13:30"},
    };
    for (const auto &[lines, change, expected, occurrence] : cases) {
        const QByteArray before = event(lines);
        const auto after = ICSWriter::changed(before, change, now);
        EXPECT_EQ(difference(before, after), expected) << lines;
        EXPECT_THAT(occurrences(after.value_or("")), ElementsAre(QString::fromUtf8(occurrence)));
    }
    const Date next = at(u"2024-07-06T12:00:00Z");
    for (const auto &[lines, start] : {std::pair("DTSTART:20240705T120000Z|RRULE:FREQ=DAILY", next),
                                       {"DTSTART:x", next},
                                       {"SUMMARY:A", next},
                                       {"DTSTART:20240705T120000Z", Date(Seconds(1e300))},
                                       {"DTSTART:20240705T120000Z", Date(Seconds(std::nan("")))}})
        EXPECT_EQ(
            ICSWriter::changed(event(lines), {.title = {}, .start = start, .duration = {}}, now),
            std::nullopt)
            << lines;
    EXPECT_EQ(ICSWriter::changed("BEGIN:VTODO\r\nEND:VTODO\r\n", {}, now), std::nullopt);
}

TEST_F(ICSWriterTest, WritesTextsAndRevisionsThatReadBack)
{
    const QByteArray before =
        event("SEQUENCE;X=1:4|DTSTAMP;TZID=Asia/Tokyo:20200101T000000").replace("\r\n", "\n");
    const QString long_ = u"\"é\\, ;:"_qs + u"ação🙂"_qs.repeated(30) + u"\n  fim"_qs;
    for (const QString &title : {long_, u"x"_qs.repeated(67), u"x"_qs.repeated(68),
                                 u" "_qs.repeated(150), u"a\r\nb\rc\x01"_qs}) {
        const auto after = ICSWriter::changed(before, {title, {}, {}}, now).value();
        const auto read = ICSParser::parse(QString::fromUtf8(after));
        ASSERT_EQ(read.events.size(), 1U);
        EXPECT_EQ(
            ICSParser::text(read.events[0], u"SUMMARY"),
            QString(title).replace(u"\r\n"_qs, u"\n"_qs).replace(u'\r', u'\n').remove(QChar(1)));
        EXPECT_EQ(read.events[0].first(u"ATTENDEE")->value, u"mailto:a@x");
        EXPECT_EQ(after.count('\n'), after.count("\r\n"));
        for (const QByteArray &line : after.split('\n')) {
            EXPECT_LE(line.size(), 76);
            EXPECT_TRUE(line.contains('\xff') || QString::fromUtf8(line).toUtf8() == line);
        }
        for (const char *line : {"SEQUENCE;X=1:5\r\n", "DTSTAMP:20240601T100000Z\r\n",
                                 "LAST-MODIFIED:20240601T100000Z\r\nBEGIN:VALARM\r\n"})
            EXPECT_TRUE(after.contains(line)) << line;
    }
}

TEST_F(ICSWriterTest, TakesOneOccurrenceOutOfASeries)
{
    struct Case {
        const char *lines;
        QStringView occurrence;
        const char *id;
        const char *start;
        std::vector<QString> left;
        QString moved;
    };
    const Case cases[] = {
        {"DTSTART;X=1;TZID=America/New_York:20241028T090000|DTEND;TZID=America/"
         "New_York:20241028T100000|"
         "RRULE:FREQ=WEEKLY;COUNT=3|EXDATE;TZID=America/New_York:20241111T090000",
         u"2024-11-04T14:00:00Z",
         ";TZID=America/New_York:20241104T090000",
         "DTSTART;X=1;TZID=America/New_York:20241105T100000",
         {u"A 10-28T13:00 10-28T14:00"_qs},
         u"B 11-05T15:00 11-05T16:00"_qs},
        {"DTSTART:20240705T120000Z|DURATION:PT1H|RDATE:20240708T120000Z|RRULE:FREQ=DAILY;COUNT=2",
         u"2024-07-06T12:00:00Z",
         ":20240706T120000Z",
         "DTSTART:20240707T130000Z",
         {u"A 07-05T12:00 07-05T13:00"_qs},
         u"B 07-07T13:00 07-07T14:00"_qs},
        {"DTSTART;VALUE=DATE:20240705|RRULE:FREQ=DAILY;COUNT=2",
         u"2024-07-05T03:00:00Z",
         ";VALUE=DATE:20240705",
         "DTSTART;VALUE=DATE:20240706",
         {u"A 07-06T03:00 07-07T03:00"_qs},
         u"B 07-06T03:00 07-07T03:00"_qs},
    };
    for (const auto &[lines, date, id, start, left, moved] : cases) {
        const Date occurrence = at(date);
        const QByteArray series = event(QByteArray("SUMMARY:A|") + lines);
        const EventChange change{u"B"_qs, occurrence + 25h, {}};
        const auto single = ICSWriter::overridden(series, occurrence, change, now).value();
        EXPECT_TRUE(single.contains(QByteArray("RECURRENCE-ID") + id + "\r\n"))
            << single.constData();
        EXPECT_TRUE(single.contains(QByteArray(start) + "\r\n")) << single.constData();
        EXPECT_TRUE(single.startsWith("BEGIN:VEVENT\r\nUID:1\r\nx-nota;X-P=\"a:b;c\":dob\r\n rad"));
        for (const char *name : {"RRULE", "RDATE", "EXDATE"})
            EXPECT_FALSE(single.contains(name)) << single.constData();
        const QByteArray calendar = "BEGIN:VCALENDAR\r\n" + series + single + "END:VCALENDAR\r\n";
        auto both = left;
        both.push_back(moved);
        EXPECT_THAT(occurrences(calendar), testing::UnorderedElementsAreArray(both)) << lines;

        const auto again =
            ICSWriter::overridden(calendar, occurrence, {u"C"_qs, {}, {}}, now).value();
        EXPECT_EQ(difference(single, again), "-SUMMARY:B +SUMMARY:C");
        const auto without = ICSWriter::excluded(calendar, occurrence, now).value();
        EXPECT_EQ(occurrences(without), left) << lines;
        EXPECT_FALSE(without.contains("SUMMARY:B"));
        EXPECT_EQ(difference(series, ICSWriter::excluded(series, occurrence, now)),
                  QByteArray("+EXDATE") + id);
        EXPECT_EQ(difference(without, ICSWriter::excluded(without, occurrence, now)), "");
    }
    // Some stores name occurrences without their zone.
    const QByteArray bare = event("DTSTART;TZID=Asia/Tokyo:20240705T090000|RRULE:FREQ=DAILY"
                                  "|EXDATE:20240706T090000") +
                            event("RECURRENCE-ID:20240705T090000|DTSTART:20240705T010000Z");
    EXPECT_TRUE(ICSWriter::overridden(bare, at(u"2024-07-05T00:00:00Z"), {}, now)
                    ->contains("DTSTART:20240705T010000Z"));
    EXPECT_EQ(ICSWriter::excluded(bare, at(u"2024-07-06T00:00:00Z"), now)->count("EXDATE"), 1);
    const Date date = at(u"2024-07-05T12:00:00Z");
    for (const char *lines :
         {"DTSTART:20240705T120000Z", "DTSTART;TZID=Nada:20240705T090000|RRULE:FREQ=DAILY",
          "RECURRENCE-ID:x|DTSTART:20240705T120000Z|RRULE:FREQ=DAILY", "RRULE:FREQ=DAILY"}) {
        EXPECT_EQ(ICSWriter::overridden(event(lines), date, {}, now), std::nullopt) << lines;
        EXPECT_EQ(ICSWriter::excluded(event(lines), date, now), std::nullopt) << lines;
    }
}

TEST_F(ICSWriterTest, MakesAnEvent)
{
    const Date start = at(u"2024-07-05T12:00:00Z");
    const auto text = ICSWriter::created(u"a;1"_qs, u"Reunião, às 9"_qs, start, 45min, now).value();
    EXPECT_THAT(occurrences(text), ElementsAre(u"Reunião, às 9 07-05T12:00 07-05T12:45"_qs));
    EXPECT_EQ(ICSParser::text(ICSParser::parse(QString::fromUtf8(text)).events[0], u"UID"), u"a;1");
    EXPECT_FALSE(ICSWriter::created(u"1"_qs, u"A"_qs, start, 0s, now)->contains("DTEND"));
    EXPECT_EQ(ICSWriter::created(u"1"_qs, u"A"_qs, start, Seconds(1e12), now), std::nullopt);
}

} // namespace
} // namespace velmo
