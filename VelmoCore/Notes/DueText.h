#pragma once

#include "VelmoCore/Foundation/Date.h"

#include <QStringView>

#include <optional>

namespace velmo {

/// When a user wants to be reminded, as he typed it: "14:30", "9h", "amanhã 9h", "sexta 18h",
/// "25/12 9:30", "25/12/2026", "em 20 min", "em 2 h". A time that is over today means tomorrow's, a
/// day without a time means 9 in the morning. In the user's time zone; nothing for other text.
std::optional<Date> dueFromText(QStringView text, Date now);

} // namespace velmo
