#include "VelmoCore/Foundation/Words.h"

#include "tests/support/Printers.h"

#include <QLocale>

#include <gtest/gtest.h>

namespace velmo {
namespace {

class WordsTest : public testing::Test {
protected:
    WordsTest() { QLocale::setDefault(QLocale(QLocale::Portuguese, QLocale::Brazil)); }
    ~WordsTest() override { QLocale::setDefault(QLocale::C); }

    static Date local(const QDate &day, int hour, int minute)
    {
        return Date(std::chrono::seconds(QDateTime(day, QTime(hour, minute)).toSecsSinceEpoch()));
    }
};

TEST_F(WordsTest, CountsInSingularAndPlural)
{
    EXPECT_EQ(Words::items(0), u"0 itens");
    EXPECT_EQ(Words::items(1), u"1 item");
    EXPECT_EQ(Words::items(1000), u"1.000 itens");
    EXPECT_EQ(Words::count(1, u"Caminho copiado", u"%1 caminhos"), u"Caminho copiado");
    EXPECT_EQ(Words::percent(15), u"15%");
}

TEST_F(WordsTest, ShowsSizesAsAFileManagerDoes)
{
    const std::vector<std::pair<qint64, QString>> sizes = {
        {0, "0 KB"},         {1, "1 byte"},     {999, "999 bytes"},    {1000, "1 KB"},
        {999'499, "999 KB"}, {999'500, "1 MB"}, {1'250'000, "1,3 MB"}, {1'234'000'000, "1,23 GB"},
    };
    for (const auto &[bytes, text] : sizes)
        EXPECT_EQ(Words::size(bytes), text);
}

TEST_F(WordsTest, ShowsDurations)
{
    const std::tuple<int, QString> durations[] = {
        {0, "0 min"}, {59, "59 min"}, {60, "1 h"}, {80, "1 h 20 min"}, {1500, "25 h"}};
    for (const auto &[minutes, text] : durations)
        EXPECT_EQ(Words::duration(minutes), text);
    EXPECT_EQ(Words::unbroken(Words::duration(80)), u"1\u00a0h 20\u00a0min");

    const std::tuple<Seconds, QString, QString> clocks[] = {{0.9s, "0:00", "0:00"},
                                                            {3599s, "59:59", "59:59"},
                                                            {3600s, "1:00:00", "1h00"},
                                                            {359'999s, "99:59:59", "99h59"},
                                                            {360'000s, "100:00:00", "100h"}};
    for (const auto &[duration, text, shortText] : clocks) {
        EXPECT_EQ(Words::clock(duration), text);
        EXPECT_EQ(Words::shortClock(duration), shortText);
    }
}

TEST_F(WordsTest, ShowsAgesInTheirLargestUnit)
{
    const Date now = local({2026, 11, 23}, 12, 0);
    const std::pair<Seconds, QString> ages[] = {
        {-5s, "agora"},    {59.9s, "agora"},     {60s, "1 min"},
        {3599s, "59 min"}, {7199s, "1 h"},       {86'399s, "23 h"},
        {86'400s, "1 d"},  {7 * 86'399s, "6 d"}, {7 * 86'400s, "16/11/2026"}};
    for (const auto &[age, text] : ages)
        EXPECT_EQ(Words::age(now - age, now), text);
}

TEST_F(WordsTest, NamesTheDaysAroundToday)
{
    const QDate today(2026, 11, 23);
    const Date now = local(today, 9, 0);
    const std::tuple<QDate, QString, QString> days[] = {
        {today.addDays(-2), "21 nov., 14:32", "21 nov., 14:32"},
        {today.addDays(-1), "ontem, 14:32", "ontem, 14:32"},
        {today, "hoje, 14:32", "14:32"},
        {today.addDays(1), "amanhã, 14:32", "amanhã, 14:32"},
        {today.addDays(2), "25 nov., 14:32", "25 nov., 14:32"}};
    for (const auto &[day, text, shortText] : days) {
        EXPECT_EQ(Words::dayAndTime(local(day, 14, 32), now), text);
        EXPECT_EQ(Words::timeOrDayAndTime(local(day, 14, 32), now), shortText);
    }
    EXPECT_EQ(Words::dateAndTime(now), u"23/11/2026 09:00");
    EXPECT_EQ(Words::longDay(today), u"segunda-feira, 23 de novembro");
    QLocale::setDefault(QLocale::C); // its times have seconds
    EXPECT_EQ(Words::time(now), u"09:00");
}

} // namespace
} // namespace velmo
