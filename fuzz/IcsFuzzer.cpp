#include "VelmoCore/Calendar/ICSParser.h"

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

} // namespace
} // namespace velmo

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace velmo;

    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    checkWindow(text, january(2024), january(2025));
    checkWindow(text, january(9998), january(9999));
    for (const auto &event : ICSParser::parse(text).events) {
        if (const auto *rule = event.first(u"RRULE"))
            checkRule(rule->value);
    }
    return 0;
}
