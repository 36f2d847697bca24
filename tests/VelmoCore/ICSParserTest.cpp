#include "VelmoCore/Calendar/ICSParser.h"

#include "VelmoCore/Calendar/CalendarSubscription.h"

#include "tests/support/Printers.h"

#include <gmock/gmock.h>

namespace velmo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

Date at(QStringView text)
{
    return dateFromISO8601(text).value();
}

QString feed(const QString &events)
{
    return QStringLiteral("BEGIN:VCALENDAR\nX-WR-TIMEZONE:America/Sao_Paulo\nBEGIN:VEVENT\n%1\n"
                          "END:VEVENT\nEND:VCALENDAR\n")
        .arg(events);
}

/// "title start end" of what takes place in July 2024.
std::vector<QString> july(const QString &text)
{
    qputenv("TZ", "UTC");
    std::vector<QString> lines;
    for (const auto &found :
         ICSParser::occurrences(text, at(u"2024-07-01T00:00:00Z"), at(u"2024-08-01T00:00:00Z")))
        lines.push_back(found.title + u' ' + iso8601Text(found.start).mid(5, 11) + u' ' +
                        iso8601Text(found.end).mid(5, 11));
    return lines;
}

/// The offset in seconds of the zone of that name, in January and July 2024; nothing without one.
std::vector<int> offsets(const QString &name)
{
    const auto zone = ICSParser::timeZone(name);
    if (!zone)
        return {};
    return {zone->offsetFromUtc(QDateTime(QDate(2024, 1, 1), QTime(), Qt::UTC)),
            zone->offsetFromUtc(QDateTime(QDate(2024, 7, 1), QTime(), Qt::UTC))};
}

TEST(ICSParser, CutsALineAtTheFirstColonOutsideQuotes)
{
    const auto found = ICSParser::property(u"dtstart;tzid=\"(UTC-03:00) A;B\";X=1:2024:07");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->name, u"DTSTART");
    EXPECT_EQ(found->params.value(QStringLiteral("TZID")), u"(UTC-03:00) A;B");
    EXPECT_EQ(found->params.value(QStringLiteral("X")), u"1");
    EXPECT_EQ(found->value, u"2024:07");
    for (const QStringView line : {u"", u"SUMMARY", u"A;B=1", u"A;B=\"c:d"})
        EXPECT_FALSE(ICSParser::property(line)) << line.toUtf8().constData();
}

TEST(ICSParser, JoinsFoldedLinesWithEveryKindOfLineEnd)
{
    for (const QString &end :
         {QStringLiteral("\n"), QStringLiteral("\r\n"), QStringLiteral("\r")}) {
        auto text =
            QStringLiteral("X-WR-CALNAME:Casa\\, sol\nBEGIN:VEVENT\nSUMMARY:Reu\n n\n\ti\xe3"
                           "o\nBEGIN:VALARM\nSUMMARY:Alarme\nEND:VALARM\nURL:x\nEND:VEVENT");
        const auto read = ICSParser::parse(text.replace(u'\n', end));
        EXPECT_EQ(read.calendarName, u"Casa, sol");
        ASSERT_THAT(read.events, SizeIs(1));
        EXPECT_THAT(read.events[0].props, SizeIs(2));
        EXPECT_EQ(ICSParser::text(read.events[0], u"SUMMARY"), u"Reuni\xe3o");
    }
}

TEST(ICSParser, ResolvesEscapes)
{
    EXPECT_EQ(ICSParser::unescape(QStringLiteral(R"(Linha 1\nLinha 2\, fim\;\\n\)")),
              u"Linha 1\nLinha 2, fim;\\n");
}

TEST(ICSParser, ReadsDurations)
{
    const std::pair<QStringView, std::optional<Seconds>> cases[] = {
        {u"PT1H30M", 5400s}, {u"-P1W", -604800s}, {u"+P1DT5S", 86405s},
        {u"P0D", 0s},        {u"P", {}},          {u"PT", {}},
        {u"P1", {}},         {u"1D", {}},         {u"PD", {}},
        {u"P1T2H", {}},      {u"", {}},           {u"P1X", {}},
    };
    for (const auto &[text, length] : cases)
        EXPECT_EQ(ICSParser::parseDuration(text), length) << text.toUtf8().constData();
}

TEST(ICSParser, FindsTheZoneThatANameMeans)
{
    const std::pair<const char *, std::vector<int>> cases[] = {
        {"America/Sao_Paulo", {-10800, -10800}},
        {" \"E. South America Standard Time\" ", {-10800, -10800}},
        {"gmt standard time", {0, 3600}},
        {"/freeassociation.sourceforge.net/Tzfile/America/New_York", {-18000, -14400}},
        {"/x/America/Argentina/Ushuaia", {-10800, -10800}},
        {"(UTC+01:00) Graz, Berlin", {3600, 7200}},
        {"(UTC-07:00) Los Angeles", {-28800, -25200}},
        {"(UTC-03:00) Brasilia", {-10800, -10800}},
        {"(UTC-09:00) Alaska", {-32400, -28800}},
        {"(UTC+02:00) Helsinque, Kiev", {7200, 10800}},
        {"(UTC-03:30) Newfoundland", {-12600, -9000}},
        {"(UTC+10:00) Canberra, Melbourne, Sydney", {39600, 36000}},
        {"tzone://Microsoft/Utc", {0, 0}},
        {"/x/y/america/new_york", {-18000, -14400}},
        {"UTC+3", {10800, 10800}},
        {"GMT -0330", {-12600, -12600}},
        {"UTC+5:45", {20700, 20700}},
        {"Asia/Calcutta", {19800, 19800}},
        {"europe/paris", {3600, 7200}},
        {"EST5EDT", {-18000, -14400}},
        {"Lugar Nenhum", {}},
        {"XYZ3", {}},
        {"../../etc/localtime", {}},
        {"UTC+99", {}},
        {"  ", {}},
    };
    for (const auto &[name, expected] : cases)
        EXPECT_EQ(offsets(QString::fromLatin1(name)), expected) << name;
    EXPECT_THAT(ICSParser::windowsZones(), SizeIs(141));
    for (const auto &[key, identifier] : ICSParser::windowsZones())
        EXPECT_THAT(offsets(key.toString()), SizeIs(2)) << identifier;
}

TEST(ICSParser, ReadsDatesInTheirZone)
{
    qputenv("TZ", "Asia/Tokyo");
    const QTimeZone zone("America/New_York");
    const std::pair<QStringView, QStringView> cases[] = {
        {u"DTSTART:20240705T120000Z", u"2024-07-05T12:00:00Z"},
        {u"DTSTART: 20240705T120000 ", u"2024-07-05T16:00:00Z"},
        {u"DTSTART;TZID=\"(UTC-03:00) Brasilia\":20240705T090000", u"2024-07-05T12:00:00Z"},
        {u"DTSTART;TZID=Nada:20240705T120000", u"2024-07-05T16:00:00Z"},
        {u"DTSTART;VALUE=date:20240705T120000", u"2024-07-04T15:00:00Z"},
        {u"DTSTART:20240705", u"2024-07-04T15:00:00Z"},
        {u"DTSTART:20240310T023000", u"2024-03-10T07:30:00Z"}, // skipped
        {u"DTSTART:20241103T013000", u"2024-11-03T05:30:00Z"}, // twice
        {u"DTSTART:20161231T235960Z", u"2016-12-31T23:59:59Z"},
        {u"DTSTART:20240230", u""},
        {u"DTSTART:20240705Z", u""},
        {u"DTSTART:2024070", u""},
        {u"DTSTART:20240705T1200", u""},
        {u"DTSTART:2024-07-05", u""},
        {u"DTSTART:20240705T240000", u""},
    };
    for (const auto &[line, expected] : cases) {
        const auto found = ICSParser::date(*ICSParser::property(line), zone);
        EXPECT_EQ(found ? iso8601Text(found->date) : QString(), expected)
            << line.toUtf8().constData();
    }
    qunsetenv("TZ");
}

TEST(ICSParser, GivesAnEventItsLength)
{
    const std::pair<const char16_t *, const char16_t *> cases[] = {
        {u"DTSTART:20240705T120000Z\nDTEND:20240705T130000Z", u"07-05T12:00 07-05T13:00"},
        {u"DTSTART:20240705T120000Z\nDURATION:PT2H", u"07-05T12:00 07-05T14:00"},
        {u"DTSTART:20240705T120000Z\nDTEND:20240705T120000Z", u"07-05T12:00 07-05T12:00"},
        {u"DTSTART;VALUE=DATE:20240705\nDTEND;VALUE=DATE:20240705", u"07-05T00:00 07-06T00:00"},
        {u"DTSTART:20240630T120000Z\nDTEND:20240802T120000Z", u"06-30T12:00 08-02T12:00"},
    };
    for (const auto &[event, expected] : cases)
        EXPECT_THAT(july(feed(QString::fromUtf16(event))),
                    ElementsAre(QStringLiteral("Sem título ") + QString::fromUtf16(expected)));
    for (const auto *event :
         {u"SUMMARY:A", u"DTSTART:20240801T000000Z", u"DTSTART:20240701T000000Z",
          u"DTSTART:20240705T120000Z\nSTATUS:Cancelled"})
        EXPECT_THAT(july(feed(QString::fromUtf16(event))), IsEmpty());
}

TEST(ICSParser, PutsOverridesInThePlaceOfTheirDates)
{
    const auto master =
        QStringLiteral("UID:1\nSUMMARY:A\nDTSTART:20240702T120000\nDTEND:20240702T130000\n"
                       "RRULE:FREQ=WEEKLY;COUNT=5\nEXDATE:20240709T120000,x,20240806T120000"
                       "\nEND:VEVENT\nBEGIN:VEVENT\nUID:1\nRECURRENCE-ID:");
    const QString first = QStringLiteral("A 07-02T15:00 07-02T16:00");
    const QString third = QStringLiteral("A 07-16T15:00 07-16T16:00");
    const QString fourth = QStringLiteral("A 07-23T15:00 07-23T16:00");
    const QString fifth = QStringLiteral("A 07-30T15:00 07-30T16:00");
    const QString b = QStringLiteral("B 07-03T15:00 07-03T15:00");
    const QString bStart = QStringLiteral("\nSUMMARY:B\nDTSTART:20240703T120000");
    const auto with = [&](const char *date, const QString &rest) {
        return july(feed(master + QString::fromLatin1(date) + rest));
    };
    EXPECT_THAT(with("20240702T120000", bStart), ElementsAre(b, third, fourth, fifth));
    EXPECT_THAT(with("20240702T120000", QStringLiteral("\nSTATUS:CANCELLED")),
                ElementsAre(third, fourth, fifth));
    EXPECT_THAT(with("20240820T120000", bStart), ElementsAre(first, third, fourth, fifth, b));
    for (const char *excluded : {"20240709T120000", "20240806T120000"})
        EXPECT_THAT(with(excluded, bStart), ElementsAre(first, third, fourth, fifth)) << excluded;
    for (const char *rule : {"", "RRULE:FREQ=HOURLY\n"})
        EXPECT_THAT(
            july(feed(QStringLiteral("UID:1\nDTSTART:20240702T120000\n") +
                      QString::fromLatin1(rule) +
                      QStringLiteral("EXDATE:20240702T120000\nEND:VEVENT\nBEGIN:VEVENT\nUID:1\n"
                                     "RECURRENCE-ID:20240702T120000") +
                      bStart)),
            IsEmpty())
            << rule;
}

TEST(ICSParser, ReadsAFeedCutAnywhere)
{
    const QString whole = feed(QStringLiteral(
        "UID:1\r\nSUMMARY:Dob\r\n rado \\, \xe7\r\nDTSTART;TZID=\"(UTC-03:00) "
        "Brasilia\":20240705T09\r\n"
        " 0000\r\nRRULE:FREQ=MONTHLY;BYDAY=-1FR,2MO;BYSETPOS=-1;UNTIL=20250101T000000Z\r\n"
        "EXDATE:20240726T120000Z\r\nDURATION:P1W"));
    for (qsizetype cut = 0; cut < whole.size(); ++cut)
        EXPECT_THAT(july(whole.first(cut)), SizeIs(testing::Le(1U)));
    auto endless = whole;
    endless.insert(whole.indexOf(u"SUMMARY:") + 8, QString(25'000'000, u'x'));
    EXPECT_THAT(july(endless), IsEmpty());
}

TEST(CalendarSubscription, TakesAddressesOfPagesAndCalendars)
{
    const std::pair<const char16_t *, const char16_t *> cases[] = {
        {u" WebCal://host/x.ics\n", u"https://host/x.ics"},
        {u"HTTP://host/A", u"http://host/A"},
        {u"ftp://host/x", u""},
        {u"https:///x", u""},
        {u"agenda", u""},
    };
    for (const auto &[text, expected] : cases) {
        const auto url = CalendarSubscription::normalizedURL(QString::fromUtf16(text));
        EXPECT_EQ(url ? url->toString() : QString(), QString::fromUtf16(expected));
    }
}

} // namespace
} // namespace velmo
