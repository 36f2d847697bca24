#pragma once

#include "VelmoCore/Foundation/Date.h"

#include <QStringView>

#include <optional>

namespace velmo {

/// The duration that a user typed: "1:30" (minutes and seconds), "1:20:00", "90" (minutes), "1h20",
/// "45 s", "1h 20min 30s". Nothing for other text, for 0 and for more than 99 hours.
std::optional<Seconds> durationFromText(QStringView text);

} // namespace velmo
