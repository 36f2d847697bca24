#pragma once

#include "VelmoSystem/Calendar/CalendarService.h"
#include "VelmoSystem/Control/VerbTable.h"

namespace velmo {
class FileViewer;
}

/// The calendar for scripts.
namespace velmo::AgendaVerbs {

std::vector<VerbSyntax> syntaxes();
/// `fileViewer` opens the meeting that is joined.
std::vector<Verb> make(CalendarService &calendar, FileViewer &fileViewer, Scheduler &scheduler);
/// Until `listener` goes.
void connectChanges(const CalendarService &calendar, const QObject *listener,
                    const VerbTable::Changed &changed);
/// The next event, and each feed with what is wrong with it.
QJsonObject status(const CalendarService &calendar, Date now);

} // namespace velmo::AgendaVerbs
