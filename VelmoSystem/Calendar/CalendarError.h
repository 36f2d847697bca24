#pragma once

#include <QString>

/// What the user reads when a calendar cannot do what it is asked for.
namespace velmo::CalendarError {

/// A feed's address.
QString invalidURL();
QString notACalendar();
QString status(int status);

/// A change of an event.
QString notFound();
QString noCalendar();
QString readOnly();
QString notChangeable();

} // namespace velmo::CalendarError
