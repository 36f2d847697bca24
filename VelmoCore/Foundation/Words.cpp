#include "VelmoCore/Foundation/Words.h"

#include <QLocale>
#include <QRegularExpression>

#include <array>
#include <cmath>

namespace velmo {

namespace {

struct Unit {
    const char *name;
    int decimals;
};
constexpr std::array<Unit, 6> units = {
    {{"bytes", 0}, {"KB", 0}, {"MB", 1}, {"GB", 2}, {"TB", 2}, {"PB", 2}}};

double rounded(double value, int decimals)
{
    const double scale = std::pow(10, decimals);
    return std::round(value * scale) / scale;
}

QString twoDigits(qint64 number)
{
    return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
}

qint64 daysBetween(Date from, Date to)
{
    return localDateTime(from).date().daysTo(localDateTime(to).date());
}

} // namespace

QString Words::number(qint64 number)
{
    return QLocale().toString(number);
}

QString Words::percent(int percent)
{
    return number(percent) + u'%';
}

QString Words::count(qint64 number, QStringView one, QStringView many)
{
    return number == 1 ? one.toString() : many.toString().arg(Words::number(number));
}

QString Words::items(qint64 number)
{
    return count(number, u"1 item", u"%1 itens");
}

QString Words::size(qint64 bytes)
{
    if (bytes == 0)
        return QStringLiteral("0 KB");
    auto value = static_cast<double>(bytes);
    std::size_t unit = 0;
    while (rounded(value, units[unit].decimals) >= 1000 && unit + 1 < units.size()) {
        value /= 1000;
        ++unit;
    }
    const QString number = QLocale().toString(rounded(value, units[unit].decimals), 'f',
                                              QLocale::FloatingPointShortest);
    return number + u' ' + (bytes == 1 ? QStringLiteral("byte") : QLatin1String(units[unit].name));
}

QString Words::duration(int minutes)
{
    const QString rest = QStringLiteral("%1 min").arg(number(minutes % 60));
    if (minutes < 60)
        return rest;
    const QString hours = QStringLiteral("%1 h").arg(number(minutes / 60));
    return minutes % 60 == 0 ? hours : hours + u' ' + rest;
}

QString Words::clock(Seconds duration)
{
    const auto seconds = qint64(duration.count());
    if (seconds < 3600)
        return QStringLiteral("%1:%2").arg(seconds / 60).arg(twoDigits(seconds % 60));
    return QStringLiteral("%1:%2:%3")
        .arg(seconds / 3600)
        .arg(twoDigits(seconds / 60 % 60), twoDigits(seconds % 60));
}

QString Words::shortClock(Seconds duration)
{
    const auto minutes = qint64(duration.count()) / 60;
    if (minutes < 60)
        return clock(duration);
    if (minutes < 100 * 60)
        return QStringLiteral("%1h%2").arg(minutes / 60).arg(twoDigits(minutes % 60));
    return QStringLiteral("%1h").arg(minutes / 60);
}

QString Words::age(Date date, Date now)
{
    constexpr int hour = 60;
    constexpr int day = 24 * hour;
    const auto minutes = qint64((now - date) / 60s);
    if (minutes < 1)
        return QStringLiteral("agora");
    if (minutes >= 7 * day)
        return QLocale().toString(localDateTime(date).date(), QLocale::ShortFormat);
    if (minutes >= day)
        return QStringLiteral("%1 d").arg(number(minutes / day));
    return duration(int(minutes < hour ? minutes : minutes / hour * hour));
}

QString Words::time(Date date)
{
    const QLocale locale;
    const QString format = locale.timeFormat(QLocale::ShortFormat).remove(QStringLiteral(":ss"));
    return locale.toString(localDateTime(date).time(), format);
}

QString Words::day(QDate day)
{
    return QLocale().toString(day, QStringLiteral("d MMM"));
}

QString Words::longDay(QDate day)
{
    static const QRegularExpression year(QStringLiteral(R"((?:,?\s*'[^']*'|,)?\s*y+\s*('.')?)"));
    const QLocale locale;
    return locale.toString(day, locale.dateFormat(QLocale::LongFormat).remove(year).trimmed());
}

QString Words::dayAndTime(Date date, Date now)
{
    const qint64 days = daysBetween(now, date);
    const QString day = days == 0    ? QStringLiteral("hoje")
                        : days == 1  ? QStringLiteral("amanhã")
                        : days == -1 ? QStringLiteral("ontem")
                                     : Words::day(localDateTime(date).date());
    return QStringLiteral("%1, %2").arg(day, time(date));
}

QString Words::timeOrDayAndTime(Date date, Date now)
{
    return daysBetween(now, date) == 0 ? time(date) : dayAndTime(date, now);
}

QString Words::dateAndTime(Date date)
{
    return QLocale().toString(localDateTime(date).date(), QLocale::ShortFormat) + u' ' + time(date);
}

QString Words::unbroken(QString text)
{
    static const QRegularExpression afterNumber(QStringLiteral(R"((?<=\d) )"),
                                                QRegularExpression::UseUnicodePropertiesOption);
    return text.replace(afterNumber, QString(QChar::Nbsp));
}

} // namespace velmo
