#pragma once

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoSystem/Control/VerbTable.h"

/// What has happened, for scripts.
namespace velmo::ActivityVerbs {

std::vector<VerbSyntax> syntaxes();
std::vector<Verb> make(const ActivityCenter &activity);
/// Until `listener` goes.
void connectChanges(const ActivityCenter &activity, const QObject *listener,
                    const VerbTable::Changed &changed);

} // namespace velmo::ActivityVerbs
