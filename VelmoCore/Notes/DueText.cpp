#include "VelmoCore/Notes/DueText.h"

#include "VelmoCore/Foundation/Text.h"
#include "VelmoCore/Timers/DurationText.h"

#include <QRegularExpression>

#include <array>

namespace velmo {

namespace {

const QTime morning(9, 0);

/// The day that the text names, counted from `today`; an invalid one for other text.
QDate dayFromText(const QString &text, QDate today)
{
    constexpr std::array<QStringView, 7> weekdays{u"seg", u"ter", u"qua", u"qui",
                                                  u"sex", u"sab", u"dom"};
    static const QRegularExpression weekday(
        QStringLiteral("^(seg|ter|qua|qui|sex)(?:unda|ca|rta|nta|ta)?(?:-feira)?$|"
                       "^(sab)(?:ado)?$|^(dom)(?:ingo)?$"));
    static const QRegularExpression numbers(
        QStringLiteral(R"(^(\d{1,2})/(\d{1,2})(?:/(\d{4}))?$)"));
    if (text == u"hoje")
        return today;
    if (text == u"amanha")
        return today.addDays(1);
    if (text == u"depois de amanha")
        return today.addDays(2);
    if (weekday.match(text).hasMatch()) {
        for (int number = 1; number <= 7; ++number) {
            if (text.startsWith(weekdays[std::size_t(number - 1)]))
                return today.addDays((number - today.dayOfWeek() + 6) % 7 + 1);
        }
    }
    const auto match = numbers.match(text);
    if (!match.hasMatch())
        return {};
    const int day = match.capturedView(1).toInt();
    const int month = match.capturedView(2).toInt();
    if (match.capturedLength(3) > 0)
        return {match.capturedView(3).toInt(), month, day};
    const QDate thisYear(today.year(), month, day);
    return thisYear.isValid() && thisYear >= today ? thisYear : QDate(today.year() + 1, month, day);
}

} // namespace

std::optional<Date> dueFromText(QStringView text, Date now)
{
    static const QRegularExpression time(QStringLiteral(
        R"(^(.*?)(?:^|\s+)(?:(?:as|a)\s+)?(?:(\d{1,2}):(\d{2})|(\d{1,2})\s*h\s*(\d{2})?)$)"));
    const QString typed = Text::folded(text.toString()).simplified();
    if (typed.startsWith(u"em ")) {
        const auto duration = durationFromText(QStringView(typed).sliced(3));
        return duration ? std::optional(now + *duration) : std::nullopt;
    }
    const QDateTime local = localDateTime(now);
    const auto match = time.match(typed);
    const QString dayText = match.hasMatch() ? match.captured(1) : typed;
    const QTime timeOfDay =
        match.hasMatch() ? QTime(match.capturedView(2).toInt() + match.capturedView(4).toInt(),
                                 match.capturedView(3).toInt() + match.capturedView(5).toInt())
                         : morning;
    const QDate day = dayText.isEmpty() ? local.date() : dayFromText(dayText, local.date());
    if (!day.isValid() || !timeOfDay.isValid() || (dayText.isEmpty() && !match.hasMatch()))
        return std::nullopt;
    QDateTime due(day, timeOfDay);
    if (dayText.isEmpty() && due <= local)
        due = QDateTime(day.addDays(1), timeOfDay);
    return Date(Seconds(double(due.toSecsSinceEpoch())));
}

} // namespace velmo
