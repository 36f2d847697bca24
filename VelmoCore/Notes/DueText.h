#pragma once

#include "VelmoCore/Foundation/Date.h"

#include <QStringView>

#include <optional>

namespace velmo {

/// When a user wants to be reminded, as he typed it: "14:30", "9h", "meio-dia", "amanhã 9h", "hoje
/// à noite", "sexta às 8 da noite", "próxima terça", "segunda que vem", "dia 15 às 8h", "25/12
/// 9:30", "25/12/2026", "1º de maio", "em 20 min", "daqui a 2 horas", "em 3 dias". A time that is
/// over today means tomorrow's, a day without a time means 9 in the morning. In the user's time
/// zone; nothing for other text.
std::optional<Date> dueFromText(QStringView text, Date now);

} // namespace velmo
