#include "VelmoCore/Notes/DueText.h"

#include "VelmoCore/Foundation/Text.h"
#include "VelmoCore/Foundation/WhenText.h"

namespace velmo {

std::optional<Date> dueFromText(QStringView text, Date now)
{
    const WhenText::TimeOfDay morning{QTime(9, 0)};
    QString day = Text::folded(text.toString()).simplified();
    if (const auto delay = WhenText::delay(day))
        return now + *delay;
    const auto time = WhenText::takeTimeOfDay(day);
    if (!time && day.isEmpty())
        return std::nullopt;
    return WhenText::moment(day, time.value_or(morning), now);
}

} // namespace velmo
