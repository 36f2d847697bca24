#pragma once

#include "VelmoSystem/Control/CommandLine.h"

#include <QDBusConnection>
#include <QObject>
#include <QUrl>

#include <functional>
#include <vector>

class QDBusPendingCall;
class QDBusPendingCallWatcher;

namespace velmo {

/// The command line's side of the bus: one command for the Orvane that runs.
class ControlClient {
public:
    explicit ControlClient(QDBusConnection bus);

    /// Tells the running Orvane, writes its answer to standard output or what went wrong to
    /// standard error, and calls `finished` with the exit code, 0 or 1: from the event loop, once
    /// it has acted or after 5 s at most.
    void run(const CommandLine::Client &request, std::function<void(int exitCode)> finished);

    /// The files that words of the command line name: paths, relative ones from the working folder,
    /// or URLs. Throws `LocalizedError` if one isn't on this computer or doesn't exist.
    static std::vector<QUrl> files(const QStringList &words);

private:
    QDBusPendingCall call(const CommandLine::Client &request);
    void finish(int exitCode, const std::function<void(int)> &finished);
    int report(const QDBusPendingCallWatcher &answer) const;

    QDBusConnection m_bus;
    QObject m_context; ///< calls under way end with it
};

} // namespace velmo
