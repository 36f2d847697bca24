#include "VelmoCore/Settings/SettingsBounds.h"

namespace velmo {

std::optional<Bounds> SettingsBounds::of(const QString &key)
{
    if (key == u"hoverDelay")
        return hoverDelay;
    if (key == u"closeDelay")
        return closeDelay;
    if (key == u"activityRetentionDays")
        return activityRetentionDays;
    if (key == u"focusMinutes")
        return focusMinutes;
    if (key == u"shortBreakMinutes" || key == u"longBreakMinutes")
        return breakMinutes;
    if (key == u"cyclesBeforeLongBreak")
        return cyclesBeforeLongBreak;
    return std::nullopt;
}

} // namespace velmo
