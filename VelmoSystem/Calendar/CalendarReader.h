#pragma once

#include "VelmoCore/Calendar/CalendarSubscription.h"
#include "VelmoCore/Calendar/ICSOccurrence.h"
#include "VelmoCore/Calendar/StoredEvents.h"

#include <map>

namespace velmo {

/// A feed's last good text.
struct CalendarFeed {
    CalendarSubscription subscription;
    QByteArray text;  ///< UTF-8
    int revision = 0; ///< another text has another one
};

/// What the calendars hold, for reading it away from the main thread.
struct CalendarSources {
    std::vector<StoredCalendar> calendars;
    std::vector<StoredEvent> stored;
    std::vector<CalendarFeed> feeds;
};

/// Makes one list of what all calendars hold. On one thread at a time.
class CalendarReader {
public:
    /// What takes place between the two, by start. What several calendars have shows once.
    std::vector<CalendarEvent> events(const CalendarSources &sources, Date from, Date to);

private:
    struct Unrolled {
        Uuid feed;
        int revision = 0;
        std::vector<ICSOccurrence> occurrences;
    };

    const std::vector<ICSOccurrence> &occurrences(const CalendarFeed &feed, Date from, Date to);

    std::map<QString, Unrolled> m_unrolled; ///< by feed and window
};

} // namespace velmo
