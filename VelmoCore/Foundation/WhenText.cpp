#include "VelmoCore/Foundation/WhenText.h"

#include "VelmoCore/Foundation/DurationText.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>

namespace velmo::WhenText {

namespace {

const QTime morning(9, 0);
const QTime noon(12, 0);
const QTime afternoon(15, 0);
const QTime evening(20, 0);

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

/// Without a year the first such day from `today` on.
QDate dayInYear(int day, int month, QStringView year, QDate today)
{
    if (!year.isEmpty())
        return {year.toInt() + (year.size() == 2 ? 2000 : 0), month, day};
    const QDate thisYear(today.year(), month, day);
    return thisYear.isValid() && thisYear >= today ? thisYear : QDate(today.year() + 1, month, day);
}

/// "25/12", "25/12/2026", "25 de dezembro".
QDate dayOfMonth(const QString &text, QDate today)
{
    constexpr std::array<QStringView, 12> months{u"jan", u"fev", u"mar", u"abr", u"mai", u"jun",
                                                 u"jul", u"ago", u"set", u"out", u"nov", u"dez"};
    static const QRegularExpression numbers(
        QStringLiteral(R"(^(\d{1,2})/(\d{1,2})(?:/(\d{4}|\d{2}))?$)"));
    static const QRegularExpression name(
        QStringLiteral(R"(^(\d{1,2})o?\s+(?:de\s+)?(jan(?:eiro)?|fev(?:ereiro)?|mar(?:co)?|)"
                       R"(abr(?:il)?|maio?|jun(?:ho)?|jul(?:ho)?|ago(?:sto)?|set(?:embro)?|)"
                       R"(out(?:ubro)?|nov(?:embro)?|dez(?:embro)?)(?:\s+(?:de\s+)?(\d{4}))?$)"));
    if (const auto match = numbers.match(text); match.hasMatch())
        return dayInYear(match.capturedView(1).toInt(), match.capturedView(2).toInt(),
                         match.capturedView(3), today);
    const auto match = name.match(text);
    if (!match.hasMatch())
        return {};
    const auto month = std::ranges::find(months, match.capturedView(2).first(3));
    return dayInYear(match.capturedView(1).toInt(), int(month - months.begin()) + 1,
                     match.capturedView(3), today);
}

/// "terca", "na proxima terca-feira", "terca que vem": the next one behind `today`.
QDate nextWeekday(const QString &text, QDate today)
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

TimeOfDay timeOfPart(QStringView part)
{
    return {.time = part == u"tarde"   ? afternoon
                    : part == u"noite" ? evening
                                       : morning,
            .isPartOfDay = true};
}

/// "8 da noite" is 20:00.
QTime clockTime(int hour, int minute, QStringView part)
{
    const bool isLate = part == u"tarde" || part == u"noite";
    return {isLate && hour < 12 ? hour + 12 : hour, minute};
}

} // namespace

std::optional<TimeOfDay> timeOfDay(const QString &text)
{
    QString rest = text;
    const auto time = takeTimeOfDay(rest);
    return rest.isEmpty() ? time : std::nullopt;
}

std::optional<TimeOfDay> takeTimeOfDay(QString &text)
{
    static const QRegularExpression time(QStringLiteral(
        R"(^(?<rest>.*?)(?:^|\s+)(?:(?<at>as?|ao)\s+)?(?:(?:(?<noon>meio[- ]dia)|)"
        R"((?<midnight>meia[- ]noite)|(?<hour>\d{1,2})(?::(?<minute>\d{2})|)"
        R"(\s*(?<h>h)s?(?:\s*(?<past>\d{2})(?:(?<=h\d\d)min)?)?|\s+(?<hours>horas?))?)"
        R"((?<half>\s+e\s+meia)?)(?:\s+d[ae]\s+(?<of>madrugada|manha|tarde|noite))?|)"
        R"((?:(?:de|da|pela)\s+)?(?<part>cedo|manha|tarde|noite))$)"));
    const auto match = time.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const auto said = [&](QStringView group) { return match.capturedView(group); };
    const auto says = [&](QStringView group) { return !said(group).isEmpty(); };
    // A bare number is no time of the day.
    if (says(u"hour") && !says(u"minute") && !says(u"h") && !says(u"of") && said(u"at") != u"as" &&
        !(says(u"at") && says(u"hours")))
        return std::nullopt;
    text = match.captured(QStringLiteral("rest"));
    if (says(u"noon"))
        return TimeOfDay{noon};
    if (says(u"midnight"))
        return TimeOfDay{.time = QTime(0, 0), .isNextDay = true};
    if (says(u"part"))
        return timeOfPart(said(u"part"));
    const int minute = says(u"half") ? 30 : said(u"minute").toInt() + said(u"past").toInt();
    return TimeOfDay{clockTime(said(u"hour").toInt(), minute, said(u"of"))};
}

QDate day(const QString &text, QDate today)
{
    static const QRegularExpression later(
        QStringLiteral(R"(^(?:em|daqui a|dentro de)\s+(\d{1,3}|uma?)\s+(dia|semana)s?$)"));
    static const QRegularExpression numbered(QStringLiteral(R"(^(?:n?o\s+)?dia\s+(.+)$)"));
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
    if (const auto match = numbered.match(text); match.hasMatch()) {
        bool isNumber = false;
        const int number = match.capturedView(1).toInt(&isNumber);
        return isNumber ? nextWithNumber(number, today) : dayOfMonth(match.captured(1), today);
    }
    const QDate day = nextWeekday(text, today);
    return day.isValid() ? day : dayOfMonth(text, today);
}

std::optional<Seconds> duration(const QString &text)
{
    static const QRegularExpression one(QStringLiteral(R"(^uma?(?=\s))"));
    static const QRegularExpression two(QStringLiteral(R"(^duas(?=\s))"));
    static const QRegularExpression half(QStringLiteral(R"((?<=h|hora|horas)\s+e\s+meia$)"));
    static const QRegularExpression with(QStringLiteral(R"((?<=h|hora|horas)\s+e\s+(?=\d))"));
    static const QRegularExpression hours(QStringLiteral(R"((?<=\d)\s*hs\b)"));
    if (text == u"meia hora")
        return 30min;
    QString plain = text;
    plain.replace(one, QStringLiteral("1")).replace(two, QStringLiteral("2"));
    plain.replace(hours, QStringLiteral("h"));
    plain.replace(half, QStringLiteral(" 30 min")).replace(with, QStringLiteral(" "));
    return durationFromText(plain);
}

std::optional<Seconds> delay(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral(R"(^(?:em|daqui a|dentro de)\s+(.+)$)"));
    const auto match = pattern.match(text);
    return match.hasMatch() ? duration(match.captured(1)) : std::nullopt;
}

std::optional<Date> moment(const QString &dayText, const TimeOfDay &time, Date now)
{
    const QDateTime local = localDateTime(now);
    QDate date = dayText.isEmpty() ? local.date() : day(dayText, local.date());
    if (!date.isValid() || !time.time.isValid())
        return std::nullopt;
    if (time.isNextDay)
        date = date.addDays(1);
    QDateTime moment(date, time.time);
    if (moment <= local) {
        const QDate tomorrow = local.date().addDays(1);
        if (dayText.isEmpty())
            moment = QDateTime(tomorrow, time.time);
        else if (dayText.contains(u"dia "))
            moment = QDateTime(day(dayText, tomorrow), time.time);
        else if (time.isPartOfDay && date == local.date())
            moment = local.addSecs(3600); // that part has begun
    }
    return Date(Seconds(double(moment.toSecsSinceEpoch())));
}

} // namespace velmo::WhenText
