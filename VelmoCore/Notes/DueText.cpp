#include "VelmoCore/Notes/DueText.h"

#include "VelmoCore/Foundation/Text.h"
#include "VelmoCore/Timers/DurationText.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>

namespace velmo {

namespace {

const QTime morning(9, 0);
const QTime noon(12, 0);
const QTime afternoon(15, 0);
const QTime evening(20, 0);

/// What the end of a text says of the time of day.
struct TypedTime {
    QTime time;
    bool isPartOfDay = false; ///< no clock time, but "à noite"
    bool isNextDay = false;   ///< midnight ends a day
};

/// The first day from `first` on with that number in its month; an invalid one where none has it.
QDate nextWithNumber(int number, QDate first)
{
    if (number < 1 || number > 31)
        return {};
    for (QDate month(first.year(), first.month(), 1);; month = month.addMonths(1)) {
        const QDate day(month.year(), month.month(), number);
        if (day.isValid() && day >= first)
            return day;
    }
}

/// "25/12" or "25/12/2026".
QDate dayFromNumbers(const QString &text, QDate today)
{
    static const QRegularExpression numbers(
        QStringLiteral(R"(^(\d{1,2})/(\d{1,2})(?:/(\d{4}))?$)"));
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

/// "terca", "na proxima terca-feira", "terca que vem": the next one behind `today`.
QDate dayFromWeekday(const QString &text, QDate today)
{
    constexpr std::array<QStringView, 7> weekdays{u"seg", u"ter", u"qua", u"qui",
                                                  u"sex", u"sab", u"dom"};
    static const QRegularExpression weekday(QStringLiteral(
        R"(^(?:(?:n?[ao]|n?est[ae]|proxim[ao])\s+)*)"
        R"(((?:seg(?:unda)?|ter(?:ca)?|qua(?:rta)?|qui(?:nta)?|sex(?:ta)?)(?:[- ]feira)?|)"
        R"(sab(?:ado)?|dom(?:ingo)?)(?:\s+que\s+vem|\s+proxim[ao])?$)"));
    const auto match = weekday.match(text);
    if (!match.hasMatch())
        return {};
    const auto found = std::ranges::find(weekdays, match.capturedView(1).first(3));
    const int number = int(found - weekdays.begin()) + 1;
    return today.addDays((number - today.dayOfWeek() + 6) % 7 + 1);
}

/// The day that the text names, from `today` on; an invalid one for other text.
QDate dayFromText(const QString &text, QDate today)
{
    static const QRegularExpression later(
        QStringLiteral(R"(^(?:em|daqui a|dentro de)\s+(\d{1,3}|uma?)\s+(dia|semana)s?$)"));
    static const QRegularExpression monthDay(QStringLiteral(R"(^(?:no\s+)?dia\s+(.+)$)"));
    if (text == u"hoje")
        return today;
    if (text == u"amanha")
        return today.addDays(1);
    if (text == u"depois de amanha")
        return today.addDays(2);
    if (text == u"semana que vem" || text == u"proxima semana")
        return today.addDays(7);
    if (const auto match = later.match(text); match.hasMatch()) {
        const int count =
            match.capturedView(1).startsWith(u"um") ? 1 : match.capturedView(1).toInt();
        return today.addDays(match.capturedView(2) == u"dia" ? count : 7 * count);
    }
    if (const auto match = monthDay.match(text); match.hasMatch()) {
        bool isNumber = false;
        const int number = match.capturedView(1).toInt(&isNumber);
        return isNumber ? nextWithNumber(number, today) : dayFromNumbers(match.captured(1), today);
    }
    const QDate day = dayFromWeekday(text, today);
    return day.isValid() ? day : dayFromNumbers(text, today);
}

/// Takes the time off the end of `text`; nothing where there is none. It may be invalid.
std::optional<TypedTime> takeTime(QString &text)
{
    static const QRegularExpression time(QStringLiteral(
        R"(^(.*?)(?:^|\s+)(?:(?:as|a|ao)\s+)?)"
        R"((?:(\d{1,2}):(\d{2})|(\d{1,2})\s*h\s*(\d{2})?|(meio[- ]dia)|(meia[- ]noite)|)"
        R"((?:(?:de|da|pela)\s+)?(cedo|manha|tarde|noite))$)"));
    const auto match = time.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const auto says = [&](int group) { return match.capturedLength(group) > 0; };
    const auto number = [&](int group) { return match.capturedView(group).toInt(); };
    text = match.captured(1);
    if (says(6))
        return TypedTime{noon};
    if (says(7))
        return TypedTime{.time = QTime(0, 0), .isNextDay = true};
    if (!says(8))
        return TypedTime{QTime(number(2) + number(4), number(3) + number(5))};
    const auto part = match.capturedView(8);
    return TypedTime{.time = part == u"tarde"   ? afternoon
                             : part == u"noite" ? evening
                                                : morning,
                     .isPartOfDay = true};
}

/// "em 20 min", "daqui a meia hora".
std::optional<Seconds> delayFromText(const QString &text)
{
    static const QRegularExpression delay(QStringLiteral(R"(^(?:em|daqui a|dentro de)\s+(.+)$)"));
    static const QRegularExpression one(QStringLiteral("^uma?(?=\\s)"));
    const auto match = delay.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    if (match.capturedView(1) == u"meia hora")
        return 30min;
    return durationFromText(match.captured(1).replace(one, QStringLiteral("1")));
}

} // namespace

std::optional<Date> dueFromText(QStringView text, Date now)
{
    QString dayText = Text::folded(text.toString()).simplified();
    if (const auto delay = delayFromText(dayText))
        return now + *delay;
    const QDateTime local = localDateTime(now);
    const auto typed = takeTime(dayText);
    if (!typed && dayText.isEmpty())
        return std::nullopt;
    const TypedTime time = typed.value_or(TypedTime{morning});
    QDate day = dayText.isEmpty() ? local.date() : dayFromText(dayText, local.date());
    if (!day.isValid() || !time.time.isValid())
        return std::nullopt;
    if (time.isNextDay)
        day = day.addDays(1);
    QDateTime due(day, time.time);
    if (due <= local) {
        const QDate tomorrow = local.date().addDays(1);
        if (dayText.isEmpty())
            due = QDateTime(tomorrow, time.time);
        else if (dayText.contains(u"dia "))
            due = QDateTime(dayFromText(dayText, tomorrow), time.time);
        else if (time.isPartOfDay && day == local.date())
            due = local.addSecs(3600); // that part has begun
    }
    return Date(Seconds(double(due.toSecsSinceEpoch())));
}

} // namespace velmo
