#pragma once

#include "VelmoCore/Foundation/Date.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <variant>
#include <vector>

/// The self-test flags of the command line. A flag without the arguments that it needs is passed
/// over.
namespace velmo::Probes {

/// Writes what the desktop lets Orvane do.
struct Trust {
    QString outputPath;
    bool operator==(const Trust &) const = default;
};
/// Compresses copies of files at each level.
struct Compress {
    QString outputPath;
    QStringList files;
    bool operator==(const Compress &) const = default;
};
/// Opens the real panel for a while.
struct Open {
    Seconds duration{};
    bool operator==(const Open &) const = default;
};
/// Plays the drop of a file on the real panel.
struct Drop {
    QString file;
    bool operator==(const Drop &) const = default;
};

/// True if any argument begins with "--probe-": such a run leaves the key store alone.
bool isSelfTest(const QStringList &arguments);

/// The first self-test that needs nothing of a running Orvane.
std::optional<std::variant<Compress, Trust>> early(const QStringList &arguments);
/// The self-tests of the real panel; all of them run.
std::vector<std::variant<Open, Drop>> ofPanel(const QStringList &arguments);

} // namespace velmo::Probes
