#pragma once

#include "VelmoCore/Calendar/MeetingLinks.h"
#include "VelmoCore/Foundation/Date.h"

namespace velmo {

/// A calendar's colour in sRGB, each part from 0 to 1.
struct CalendarColor {
    double r = 0;
    double g = 0;
    double b = 0;

    bool operator==(const CalendarColor &) const = default;
};
BOOST_DESCRIBE_STRUCT(CalendarColor, (), (r, g, b))

/// One time at which an event of any calendar takes place.
struct CalendarEvent {
    /// The store's identifier, or "ics:{subscription}:{uid}:{start}" for a feed, with the start in
    /// seconds since 1970.
    QString id;
    QString title;
    Date start;
    Date end;
    bool isAllDay = false;
    QString calendarTitle;
    CalendarColor color;
    std::optional<QString> location;
    std::optional<MeetingLink> meeting;
    bool canEdit = false; ///< an event of a store whose calendar allows changes

    Seconds duration() const { return end - start; }
    bool isHappening(Date date) const { return start <= date && date < end; }

    bool operator==(const CalendarEvent &) const = default;
};
BOOST_DESCRIBE_STRUCT(CalendarEvent, (),
                      (id, title, start, end, isAllDay, calendarTitle, color, location, meeting,
                       canEdit))

} // namespace velmo
