#include "VelmoCore/Foundation/Overloaded.h"
#include "VelmoSystem/Linux/DBus/ControlClient.h"
#include "VelmoSystem/Linux/DBus/ControlService.h"
#include "VelmoSystem/Linux/ProcessSignals.h"

#include <QCoreApplication>

#include <array>
#include <cstdio>

using namespace velmo;

namespace {

void say(const QString &line)
{
    std::puts(line.toUtf8().constData());
    std::fflush(stdout);
}

ControlEndpoint::Commands sayingCommands()
{
    return {
        .activate = [] { say(QStringLiteral("activate")); },
        .openFiles =
            [](const std::vector<QUrl> &files) {
                for (const QUrl &file : files)
                    say(QStringLiteral("drop ") + file.toString());
            },
        .open = [](const QString &module) { say(QStringLiteral("open ") + module); },
        .hasModule = [](const QString &module) { return module == u"notes"; },
        .toggle = [] { say(QStringLiteral("toggle")); },
        .hide = [] { say(QStringLiteral("hide")); },
        .show = [] { say(QStringLiteral("show")); },
        .quit = [] { QCoreApplication::quit(); },
        .status = [] { return QStringLiteral("{\"isOpen\":true}"); },
    };
}

int runService(const CommandLine::Run &run)
{
    const ProcessSignals signalsOfTheSystem([] {
        say(QStringLiteral("terminate"));
        QCoreApplication::quit();
    });
    ControlService service(QDBusConnection::sessionBus(), ControlClient::files(run.files));
    const auto registration = service.claim();
    constexpr std::array names{"first", "second", "noBus"};
    say(QString::fromLatin1(names.at(static_cast<std::size_t>(registration))));
    if (registration != ControlEndpoint::Registration::first)
        return 0;
    service.serve(sayingCommands());
    return QCoreApplication::exec();
}

int runClient(const CommandLine::Client &client)
{
    ControlClient control(QDBusConnection::sessionBus());
    control.run(client, [](int exitCode) { QCoreApplication::exit(exitCode); });
    return QCoreApplication::exec();
}

} // namespace

/// A process that answers as Orvane does, or calls the one that answers.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    return std::visit(
        overloaded{[](const CommandLine::Run &run) { return runService(run); },
                   [](const CommandLine::Client &client) { return runClient(client); },
                   [](const auto &) { return 2; }},
        CommandLine::parse(QCoreApplication::arguments().mid(1)));
}
