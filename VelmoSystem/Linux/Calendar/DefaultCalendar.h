#pragma once

#include <QString>

#include <stop_token>

namespace velmo::DefaultCalendar {

/// The UID of the calendar that the user chose for new events, in GNOME's or Evolution's settings;
/// empty without, or when `stop` ends it. May wait for files and for the bus.
QString read(const std::stop_token &stop);

} // namespace velmo::DefaultCalendar
