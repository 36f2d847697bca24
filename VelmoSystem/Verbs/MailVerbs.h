#pragma once

#include "VelmoSystem/Control/VerbTable.h"
#include "VelmoSystem/Mail/MailService.h"

/// Mail for scripts.
namespace velmo::MailVerbs {

std::vector<VerbSyntax> syntaxes();
std::vector<Verb> make(MailService &mail, const Scheduler &scheduler);
/// Until `listener` goes.
void connectChanges(const MailService &mail, const QObject *listener,
                    const VerbTable::Changed &changed);
/// Of each account its state, unread messages and last check.
QJsonArray status(const MailService &mail);

} // namespace velmo::MailVerbs
