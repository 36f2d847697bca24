#pragma once

#include "VelmoCore/Foundation/Date.h"

#include <QString>

#include <optional>

/// Days and times of the day as people write them in Portuguese, in the user's time zone. Every
/// text has to be folded (`Text::folded`), with single spaces and none around.
namespace velmo::WhenText {

/// The time of a day that a text says.
struct TimeOfDay {
    QTime time;               ///< invalid for such as "25h"
    bool isPartOfDay = false; ///< no clock time, but "a noite"
    bool isNextDay = false;   ///< midnight ends a day
};

/// What a whole text says of the time of the day: "14:30", "as 9", "9h15", "8 da noite",
/// "meio-dia", "de manha". Nothing for a bare number.
std::optional<TimeOfDay> timeOfDay(const QString &text);

/// Takes that off the end of a text; nothing where there is none.
std::optional<TimeOfDay> takeTimeOfDay(QString &text);

/// The day that a text names, from `today` on: "amanha", "na proxima terca", "sexta que vem", "dia
/// 15", "25/12", "25/12/2026", "1o de maio", "em 3 dias". An invalid one for other text.
QDate day(const QString &text, QDate today);

/// "1h30", "45 min", "meia hora", "uma hora e meia", "2 horas e 15 minutos".
std::optional<Seconds> duration(const QString &text);

/// "em 20 min", "daqui a meia hora".
std::optional<Seconds> delay(const QString &text);

/// That time on the day that `dayText` names or, where it is empty, on the first day on which it is
/// still to come. Nothing for an unknown day and an invalid time.
std::optional<Date> moment(const QString &dayText, const TimeOfDay &time, Date now);

} // namespace velmo::WhenText
