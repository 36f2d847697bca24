#pragma once

#include "VelmoCore/Foundation/Date.h"

#include <QString>

#include <boost/describe.hpp>

#include <optional>

namespace velmo {

/// One time at which an event of a feed takes place.
struct ICSOccurrence {
    QString uid;
    QString title;
    Date start;
    Date end;
    bool isAllDay = false;
    std::optional<QString> location;
    std::optional<QString> notes;
    std::optional<QString> url;
    std::optional<QString> calendarName;

    bool operator==(const ICSOccurrence &) const = default;
};
BOOST_DESCRIBE_STRUCT(ICSOccurrence, (),
                      (uid, title, start, end, isAllDay, location, notes, url, calendarName))

} // namespace velmo
