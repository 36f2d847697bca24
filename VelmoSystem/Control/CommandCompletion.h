#pragma once

#include "VelmoSystem/Control/Verb.h"

/// What a shell reads to complete Orvane's commands, from the table of `CommandLine`.
namespace velmo::CommandCompletion {

/// `shell` is "bash", "zsh" or "fish".
QString script(const std::vector<VerbSyntax> &table, const QString &shell);

} // namespace velmo::CommandCompletion
