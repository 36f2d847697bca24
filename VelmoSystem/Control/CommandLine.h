#pragma once

#include <QString>
#include <QStringList>

#include <variant>

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
struct Help {
    bool operator==(const Help &) const = default;
};
struct Version {
    bool operator==(const Version &) const = default;
};
struct Usage {
    QString message; ///< what is wrong with the words, for the user
    bool operator==(const Usage &) const = default;
};
using Request = std::variant<Run, Client, Help, Version, Usage>;

/// A first word with a slash or a dot in it is a file, any other one a command.
Request parse(const QStringList &words);

/// The text of `--help`, lines ended.
QString usage();

} // namespace velmo::CommandLine
