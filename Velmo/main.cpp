#include "Velmo/AppDelegate.h"
#include "Velmo/CompressProbe.h"
#include "Velmo/Probes.h"
#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Foundation/Overloaded.h"
#include "VelmoCore/Storage/AtomicFile.h"
#include "VelmoSystem/Control/CommandLine.h"
#include "VelmoSystem/Linux/DBus/ControlClient.h"
#include "VelmoSystem/Linux/DBus/ControlService.h"
#include "VelmoSystem/Linux/DesktopTrust.h"
#include "VelmoSystem/Linux/X11/X11Session.h"
#include "VelmoUI/App/Renderer.h"
#ifdef ORVANE_WATCH_LOOP
#include "Velmo/WatchedApplication.h"
#endif

#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
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

int say(std::FILE *stream, const QString &text, int exitCode)
{
    std::fputs(qPrintable(text + QLatin1Char('\n')), stream);
    return exitCode;
}

int runClient(int &argc, char **argv, const CommandLine::Client &request)
{
    QCoreApplication application(argc, argv);
    ControlClient client(QDBusConnection::sessionBus());
    client.run(request, [](int exitCode) { QCoreApplication::exit(exitCode); });
    return QCoreApplication::exec();
}

std::unique_ptr<QApplication> makeApplication(int &argc, char **argv)
{
    const X11Session session;
    Renderer::choose();
    auto application = std::make_unique<Application>(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setDesktopFileName(QStringLiteral("app.orvane.Orvane"));
    QApplication::setWindowIcon(
        QIcon(QStringLiteral(":/qt/qml/Velmo/Design/app.orvane.Orvane.svg")));
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
    ControlService control(QDBusConnection::sessionBus(), files);
    if (control.claim() == ControlEndpoint::Registration::second)
        return 0;
    AppDelegate delegate(control);
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
        return say(stderr, error.description(), 1);
    }
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication::setApplicationName(QStringLiteral("orvane"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ORVANE_VERSION));
    QStringList words;
    for (int i = 1; i < argc; ++i)
        words.append(QString::fromLocal8Bit(argv[i]));
    return std::visit(
        overloaded{
            [&](const CommandLine::Run &request) { return run(argc, argv, request); },
            [&](const CommandLine::Client &request) { return runClient(argc, argv, request); },
            [](const CommandLine::Help &) { return say(stdout, CommandLine::usage(), 0); },
            [](const CommandLine::Version &) {
                return say(stdout, QStringLiteral("Orvane " ORVANE_VERSION), 0);
            },
            [](const CommandLine::Usage &usage) {
                return say(stderr, usage.message + QLatin1Char('\n') + CommandLine::usage(), 2);
            },
        },
        CommandLine::parse(words));
}
