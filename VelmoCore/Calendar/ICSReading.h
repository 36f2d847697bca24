#pragma once

#include "VelmoCore/Calendar/ICSParser.h"
#include "VelmoCore/Calendar/ZoneClock.h"

#include <QHash>

#include <memory>

namespace velmo::ICSParser {

/// The clocks of one feed's zones, each looked up once.
class ZoneBook {
public:
    ZoneClock &machine() { return m_machine; }
    ZoneClock &utc() { return m_utc; }

    /// The clock of the zone that `timeZone` finds for a TZID, or null.
    ZoneClock *named(const QString &name);

private:
    ZoneClock m_machine{QTimeZone::systemTimeZone()};
    ZoneClock m_utc{QTimeZone::utc()};
    QHash<QString, std::shared_ptr<ZoneClock>> m_named;
};

/// A `Moment` in whole seconds since 1970.
struct Reading {
    std::int64_t time = 0;
    bool allDay = false;
    ZoneClock *clock = nullptr;
};

/// Reads a DATE or DATE-TIME that stands under these parameters, one of a list as well.
std::optional<Reading> readDate(QStringView value, const QMap<QString, QString> &params,
                                ZoneClock &zone, ZoneBook &zones);

} // namespace velmo::ICSParser
