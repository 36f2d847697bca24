#pragma once

#include "VelmoSystem/Control/CommandLine.h"
#include "VelmoSystem/Linux/Console.h"
#include "VelmoSystem/Linux/DBus/BusListener.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QDBusError;
class QDBusMessage;
class QDBusPendingCall;
class QDBusPendingCallWatcher;

namespace velmo {

/// The command line's side of the bus: one command for the Orvane that runs. What it answers goes
/// to standard output, what went wrong to standard error. `finished` gets the exit code, from the
/// event loop.
class ControlClient {
public:
    using Finished = std::function<void(int exitCode)>;

    explicit ControlClient(QDBusConnection bus, Console console = Console::ofThisProcess());

    /// Ends once Orvane has acted, or after 5 s at most.
    void run(const CommandLine::Client &request, Finished finished);
    /// A long verb shows its progress and takes any time.
    void run(const CommandLine::VerbRequest &request, Finished finished);
    /// Writes a line a change of these verbs' nouns, until Orvane quits.
    void watch(const std::vector<VerbSyntax> &verbs, Finished finished);
    /// The user gives up: ends with 130, once Orvane knows that a long verb is to stop.
    void cancel();

    /// The files that words of the command line name: paths, relative ones from the working folder,
    /// or URLs. Throws `LocalizedError` if one isn't on this computer or doesn't exist.
    static std::vector<QUrl> files(const QStringList &words);

private:
    using Answered = std::function<void(const QDBusPendingCallWatcher &)>;

    void call(const QDBusMessage &message, int timeout, const Answered &answered);
    void finish(int exitCode);
    /// Gives the exit code.
    int report(const QDBusPendingCallWatcher &answer);
    int report(const CommandLine::VerbRequest &request, const QDBusPendingCallWatcher &answer);
    int reportError(const QDBusError &error);

    QDBusConnection m_bus;
    Console m_console;
    Finished m_finished;
    std::optional<QDBusMessage> m_cancel; ///< what cancels the long verb under way
    bool m_isCancelled = false;
    std::vector<std::unique_ptr<BusListener>> m_listeners;
    std::unique_ptr<QDBusServiceWatcher> m_service;
    QObject m_context; ///< calls under way end with it
};

} // namespace velmo
