#include "VelmoCore/Calendar/StoredEvents.h"

#include "tests/support/Printers.h"

#include <gtest/gtest.h>

namespace velmo {
namespace {

const StoredCalendar mine{"a:b", "Pessoal", {0.5, 0.5, 1}, true, "ana@example.org"};

Date date(const char *text)
{
    return *dateFromISO8601(QString(text));
}

/// A series of three days at 12:00 in São Paulo (15:00 UTC), with more lines behind it.
StoredEvent series(const QByteArray &more = {}, const QByteArray &others = {})
{
    return {"a:b", "x/1",
            "BEGIN:VEVENT\r\nUID:x/1\r\nSUMMARY:Oi\r\n"
            "DTSTART;TZID=/a.example/America/Sao_Paulo:20261123T120000\r\n"
            "DURATION:PT1H\r\nRRULE:FREQ=DAILY;COUNT=3\r\n" +
                more + "END:VEVENT\r\n" + others};
}

QStringList starts(const StoredEvent &event)
{
    QStringList all;
    for (const CalendarEvent &one : StoredEvents::events(
             {mine}, {event}, date("2026-11-01T00:00:00Z"), date("2026-12-01T00:00:00Z")))
        all << one.title + u' ' + iso8601Text(one.start).sliced(8, 5);
    return all;
}

TEST(StoredEvents, UnrollASeriesAndNameEachOccurrence)
{
    const QByteArray moved = "BEGIN:VEVENT\r\nUID:x/1\r\nSUMMARY:Tarde\r\n"
                             "RECURRENCE-ID;TZID=/a.example/America/Sao_Paulo:20261124T120000\r\n"
                             "DTSTART:20261124T200000Z\r\nDTEND:20261124T210000Z\r\nEND:VEVENT\r\n";
    EXPECT_EQ(starts(series({}, moved)), (QStringList{"Oi 23T15", "Tarde 24T20", "Oi 25T15"}));

    const auto events = StoredEvents::events(
        {mine}, {series({}, moved)}, date("2026-11-24T00:00:00Z"), date("2026-11-25T00:00:00Z"));
    ASSERT_EQ(events.size(), 1);
    EXPECT_EQ(events.front().calendarTitle, "Pessoal");
    EXPECT_TRUE(events.front().canEdit);
    EXPECT_EQ(StoredEvents::identity(events.front().id),
              (StoredEvents::Identity{"a:b", "x/1", date("2026-11-24T15:00:00Z")}))
        << "by the start that the series gives it";
    EXPECT_EQ(StoredEvents::recurrenceID(series(), date("2026-11-24T15:00:00Z")),
              "20261124T120000");
}

TEST(StoredEvents, LeaveOutWhatDoesNotTakePlaceForTheUser)
{
    EXPECT_EQ(starts(series("EXDATE:20261124T120000\r\n")), (QStringList{"Oi 23T15", "Oi 25T15"}))
        << "without a zone it is in that of the series";
    const QByteArray declined = "ATTENDEE;PARTSTAT=DECLINED:MAILTO:Ana@example.org\r\n";
    EXPECT_EQ(starts(series(declined)), QStringList());
    EXPECT_EQ(starts(series("ATTENDEE;PARTSTAT=DECLINED:mailto:bia@example.org\r\n")).size(), 3);
    const QByteArray one = "BEGIN:VEVENT\r\nUID:x/1\r\nRECURRENCE-ID:20261125T150000Z\r\n"
                           "DTSTART:20261125T150000Z\r\n" +
                           declined + "END:VEVENT\r\n";
    EXPECT_EQ(starts(series({}, one)), (QStringList{"Oi 23T15", "Oi 24T15"}));
}

TEST(StoredEvents, ReadTheirIdentifiersAndNoOthers)
{
    const StoredEvents::Identity single{"a:b", "x\ny/1%3A", {}};
    const QString text = StoredEvents::identifier(single);
    EXPECT_EQ(StoredEvents::identity(text), single);
    EXPECT_FALSE(text.contains('\n'));
    for (const char *other : {"", "ics:1:2:3", "store:a", "store:a:b:x", "store:a:b:1:2"})
        EXPECT_FALSE(StoredEvents::identity(other)) << other;
}

} // namespace
} // namespace velmo
