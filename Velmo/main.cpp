#include "Velmo/AppDelegate.h"
#include "Velmo/CompressProbe.h"
#include "Velmo/Probes.h"
#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Foundation/Overloaded.h"
#include "VelmoCore/Storage/AtomicFile.h"
#include "VelmoSystem/Control/CommandCompletion.h"
#include "VelmoSystem/Control/CommandHelp.h"
#include "VelmoSystem/Control/CommandLine.h"
#include "VelmoSystem/Linux/DBus/ControlClient.h"
#include "VelmoSystem/Linux/DBus/ControlService.h"
#include "VelmoSystem/Linux/DesktopTrust.h"
#include "VelmoSystem/Linux/ProcessSignals.h"
#include "VelmoSystem/Linux/X11/X11Session.h"
#include "VelmoUI/Composition/BuiltInModules.h"
#include "VelmoUI/Composition/QmlModules.h"
#include "VelmoUI/Composition/Renderer.h"
#ifdef ORVANE_WATCH_LOOP
#include "Velmo/WatchedApplication.h"
#endif

#include <QApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QStringDecoder>
#include <QTranslator>

#include <cstdio>
#include <memory>

using namespace velmo;

namespace {

#ifdef ORVANE_WATCH_LOOP
using Application = WatchedApplication;
#else
using Application = QApplication;
#endif

int write(std::FILE *stream, const QString &text, int exitCode)
{
    std::fputs(text.toUtf8().constData(), stream);
    return exitCode;
}

/// Runs what `start` has the client do, until it has ended or the user gives up.
int runClient(int &argc, char **argv,
              const std::function<void(ControlClient &, ControlClient::Finished)> &start)
{
    QCoreApplication application(argc, argv);
    ControlClient client(QDBusConnection::sessionBus());
    const ProcessSignals signals([&client] { client.cancel(); });
    start(client, [](int exitCode) { QCoreApplication::exit(exitCode); });
    return QCoreApplication::exec();
}

std::unique_ptr<QApplication> makeApplication(int &argc, char **argv)
{
    const X11Session session;
    Renderer::choose();
    registerQmlModules();
    auto application = std::make_unique<Application>(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setDesktopFileName(QStringLiteral("app.orvane.Orvane"));
    return application;
}

/// Qt's own texts, as those of the file dialog, speak the language of ours.
void translate(QTranslator &translator)
{
    const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    if (translator.load(QStringLiteral("qtbase_pt_BR"), folder))
        QCoreApplication::installTranslator(&translator);
    else
        qCInfo(Log::app).noquote() << "Sem os textos do Qt em português:" << folder;
}

/// Orvane itself, unless it runs already.
int runOrvane(int &argc, char **argv, const CommandLine::Run &request)
{
    const auto application = makeApplication(argc, argv);
    QTranslator translator;
    translate(translator);
    const auto files = ControlClient::files(request.files);
    ControlService control(QDBusConnection::sessionBus(), files, builtInVerbSyntaxes());
    if (control.claim() == ControlEndpoint::Registration::second)
        return 0;
    AppDelegate delegate(control, request.arguments);
    delegate.launch(request.arguments, files);
    return QApplication::exec();
}

int run(int &argc, char **argv, const CommandLine::Run &request)
{
    try {
        if (const auto probe = Probes::early(request.arguments)) {
            const QCoreApplication application(argc, argv);
            std::visit(overloaded{
                           [](const Probes::Compress &compress) {
                               AtomicFile::write(CompressProbe::run(compress.files).toUtf8(),
                                                 compress.outputPath);
                           },
                           [](const Probes::Trust &trust) {
                               AtomicFile::write(DesktopTrust::ofThisDesktop().text().toUtf8() +
                                                     '\n',
                                                 trust.outputPath);
                           },
                       },
                       *probe);
            return 0;
        }
        return runOrvane(argc, argv, request);
    } catch (const LocalizedError &error) {
        return write(stderr, error.description() + u'\n', 1);
    }
}

/// The words behind the program's name. Throws `LocalizedError` on what isn't UTF-8.
QStringList words(int argc, char **argv)
{
    QStringList words;
    for (int i = 1; i < argc; ++i) {
        QStringDecoder decoder(QStringDecoder::Utf8);
        words.append(decoder(argv[i]));
        if (decoder.hasError())
            throw LocalizedError(QStringLiteral("Não está em UTF-8, a codificação dos comandos: %1")
                                     .arg(words.last()));
    }
    return words;
}

int run(int &argc, char **argv)
{
    const auto verbs = builtInVerbSyntaxes();
    const auto table = CommandLine::table(verbs);
    const auto client = [&](const auto &request) {
        return runClient(argc, argv, [&](ControlClient &one, ControlClient::Finished finished) {
            one.run(request, std::move(finished));
        });
    };
    return std::visit(
        overloaded{
            [&](const CommandLine::Run &request) { return run(argc, argv, request); },
            [&](const CommandLine::Client &request) { return client(request); },
            [&](const CommandLine::VerbRequest &request) { return client(request); },
            [&](const CommandLine::Watch &) {
                return runClient(argc, argv, [&](ControlClient &one, auto finished) {
                    one.watch(verbs, std::move(finished));
                });
            },
            [&](const CommandLine::Help &help) {
                return write(stdout, CommandHelp::text(table, help.topic), 0);
            },
            [](const CommandLine::Version &) {
                return write(stdout, QStringLiteral("Orvane " ORVANE_VERSION "\n"), 0);
            },
            [&](const CommandLine::Manual &) {
                return write(stdout,
                             CommandHelp::manual(table, QCoreApplication::applicationVersion()), 0);
            },
            [&](const CommandLine::Completion &completion) {
                return write(stdout, CommandCompletion::script(table, completion.shell), 0);
            },
            [](const CommandLine::Usage &usage) {
                return write(stderr, usage.message + u'\n' + CommandHelp::hint(usage.topic), 2);
            },
        },
        CommandLine::parse(words(argc, argv), verbs, QDir::currentPath()));
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication::setApplicationName(QStringLiteral("orvane"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ORVANE_VERSION));
    try {
        return run(argc, argv);
    } catch (const LocalizedError &error) {
        return write(stderr, error.description() + u'\n', 2);
    }
}
