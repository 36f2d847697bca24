#pragma once

#include "VelmoSystem/Control/Verb.h"

#include <QString>
#include <QStringList>

#include <variant>
#include <vector>

/// What the words behind the program's name ask for. Looks at the words alone: no file, no bus.
namespace velmo::CommandLine {

/// A command for the running Orvane.
enum class Command { open, toggle, hide, show, settings, drop, status, quit };

/// Start Orvane, or hand the files to the one that runs.
struct Run {
    QStringList arguments; ///< everything, if there is a flag that starts with "--probe-"
    QStringList files;     ///< paths or URLs as they were given
    bool operator==(const Run &) const = default;
};
struct Client {
    Command command = Command::open;
    QStringList arguments; ///< as many as the command takes
    bool operator==(const Client &) const = default;
};
/// A module's verb for the running Orvane.
struct VerbRequest {
    VerbSyntax syntax;
    VerbCall call; ///< checked against it
    bool asJson = false;
    bool operator==(const VerbRequest &) const = default;
};
/// Write a line for each change.
struct Watch {
    bool operator==(const Watch &) const = default;
};
struct Help {
    QStringList topic; ///< the command's words; none for all commands
    bool operator==(const Help &) const = default;
};
struct Version {
    bool operator==(const Version &) const = default;
};
/// What packagers install beside the program: the manual page, and how a shell completes.
struct Manual {
    bool operator==(const Manual &) const = default;
};
struct Completion {
    QString shell; ///< "bash", "zsh" or "fish"
    bool operator==(const Completion &) const = default;
};
struct Usage {
    QString message;        ///< what is wrong with the words, for the user
    QStringList topic = {}; ///< whose help says more
    bool operator==(const Usage &) const = default;
};
using Request =
    std::variant<Run, Client, VerbRequest, Watch, Help, Version, Manual, Completion, Usage>;

/// Every command, those of the modules' `verbs` behind Orvane's own.
std::vector<VerbSyntax> table(const std::vector<VerbSyntax> &verbs);

/// A first word with a slash or a dot in it is a file, any other one a command. The files of a verb
/// are made absolute from `folder`; nothing behind "--" is an option.
Request parse(const QStringList &words, const std::vector<VerbSyntax> &verbs = {},
              const QString &folder = {});

} // namespace velmo::CommandLine
