#pragma once

#include "VelmoCore/Jobs/JobCenter.h"
#include "VelmoSystem/Control/Verb.h"

namespace velmo::VerbJob {

/// Answers when the job has ended: with what `answer` makes of its outcome, else with the reason of
/// its failure. Reports its progress until then, and cancels it with the call. The job was started
/// just now.
void follow(const QString &id, JobCenter &jobs, ActivityCenter &activity, const VerbReply &reply,
            std::function<void(const JobOutcome &)> answer);

} // namespace velmo::VerbJob
