#pragma once

#include "VelmoCore/Notes/Note.h"
#include "VelmoUI/Modules/Frame/PageCommand.h"

#include <vector>

/// What can be done with a note or a task, in its menu's order.
namespace velmo::NoteCommands {

inline constexpr QStringView open = u"open";
inline constexpr QStringView pin = u"pin";
inline constexpr QStringView toggle = u"toggle";
inline constexpr QStringView remind = u"remind";
inline constexpr QStringView copy = u"copy";
inline constexpr QStringView remove = u"remove";

std::vector<PageCommand> of(const Note &note);
std::vector<PageCommand> of(const TaskItem &task);

} // namespace velmo::NoteCommands
