#pragma once

#include "VelmoCore/Foundation/Date.h"

#include <QDate>
#include <QString>
#include <QStringView>

/// How numbers, sizes, durations and dates read in a text, in the user's locale. For any thread.
namespace velmo::Words {

/// "1.000".
QString number(qint64 number);

/// "15%".
QString percent(int percent);

/// `one` for 1, else `many` with the number in place of its %1.
QString count(qint64 number, QStringView one, QStringView many);

/// "1 item", "1.000 itens".
QString items(qint64 number);

/// A number of bytes as a file manager shows it: "0 KB", "999 bytes", "1,2 MB".
QString size(qint64 bytes);

/// "40 min", "2 h", "1 h 20 min".
QString duration(int minutes);

/// A duration as a clock shows it, in whole seconds: "0:59", "1:00:00".
QString clock(Seconds duration);

/// The same in at most five characters: "59:59", "1h05", "120h".
QString shortClock(Seconds duration);

/// How long ago `date` was: "agora", "5 min", "3 h", "2 d"; the date itself after a week.
QString age(Date date, Date now);

/// The time of the day: "14:32".
QString time(Date date);

/// "12 mar.".
QString day(QDate day);

/// "segunda-feira, 23 de novembro".
QString longDay(QDate day);

/// "hoje, 14:32", "amanhã, 9:00", "ontem, 14:32", else "12 mar., 14:32".
QString dayAndTime(Date date, Date now);

/// The same, but only the time for today.
QString timeOrDayAndTime(Date date, Date now);

/// "12/03/2026 14:32".
QString dateAndTime(Date date);

/// The text with no line break between a number and its unit.
QString unbroken(QString text);

} // namespace velmo::Words
