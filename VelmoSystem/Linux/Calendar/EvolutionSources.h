#pragma once

#include "VelmoCore/Calendar/StoredEvents.h"

#include <map>

/// What Evolution Data Server's registry says of accounts and calendars: a key file (desktop entry
/// syntax) a source, by UID.
namespace velmo::EvolutionSources {

using Texts = std::map<QString, QString>;

/// The calendars that are switched on, and whose accounts are, by title. Only of those that
/// the server keeps in its own files it is known that they can be changed.
std::vector<StoredCalendar> calendars(const Texts &sources);

} // namespace velmo::EvolutionSources
