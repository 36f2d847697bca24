#pragma once

#include "VelmoCore/Jobs/JobCenter.h"
#include "VelmoSystem/Control/VerbTable.h"

/// The file tools for scripts. Each call is a job of its own, beside those that the Tools page runs
/// on the files chosen there, and gives the files it made.
namespace velmo::FilesVerbs {

std::vector<VerbSyntax> syntaxes();
std::vector<Verb> make(JobCenter &jobs, ActivityCenter &activity, const Scheduler &scheduler);

} // namespace velmo::FilesVerbs
