#pragma once

#include "VelmoSystem/Control/Verb.h"

/// What a reader learns of the commands: help on the terminal and the manual page, both from the
/// table of `CommandLine`.
namespace velmo::CommandHelp {

using Table = std::vector<VerbSyntax>;

/// "clipboard show N"
QString usage(const VerbSyntax &syntax);

/// The nouns in the order of the table, each once.
QStringList nouns(const Table &table);
std::vector<VerbSyntax> verbsOf(const Table &table, const QString &noun);

/// The help of all commands, or of those whose words `topic` holds. Lines ended.
QString text(const Table &table, const QStringList &topic);
/// Where a mistaken reader finds that help.
QString hint(const QStringList &topic);

/// The manual page (man(7) macros).
QString manual(const Table &table, const QString &version);

} // namespace velmo::CommandHelp
