#include "VelmoSystem/Linux/DBus/ControlService.h"

#include "tests/VelmoSystem/PrivateBus.h"
#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QProcess>

#include <gtest/gtest.h>

namespace velmo {

namespace {

/// What a process wrote and how it ended.
struct Outcome {
    int exitCode;
    QString output;
    QString errors;
    bool operator==(const Outcome &) const = default;
};

class Peer : public QProcess {
public:
    Peer(const QString &busAddress, const QStringList &words, const QString &folder = {})
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), busAddress);
        environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
        setProcessEnvironment(environment);
        setWorkingDirectory(folder);
        start(QStringLiteral(CONTROL_PEER), words);
    }
    ~Peer() override
    {
        kill();
        waitForFinished();
    }

    QString line()
    {
        while (!canReadLine()) {
            if (!waitForReadyRead())
                return QStringLiteral("(nothing)");
        }
        return QString::fromUtf8(readLine()).trimmed();
    }

    Outcome outcome()
    {
        waitForFinished();
        return {exitStatus() == NormalExit ? exitCode() : -1,
                QString::fromUtf8(readAllStandardOutput()).trimmed(),
                QString::fromUtf8(readAllStandardError()).trimmed()};
    }
};

void PrintTo(const Outcome &outcome, std::ostream *out)
{
    *out << outcome.exitCode << " \"" << outcome.output.toStdString() << "\" \""
         << outcome.errors.toStdString() << '"';
}

class ControlServiceTest : public testing::Test {
protected:
    QDBusPendingCall call(QLatin1StringView interface, const QString &method,
                          const QVariantList &arguments = {})
    {
        auto message = QDBusMessage::createMethodCall(ControlBus::service, ControlBus::path,
                                                      interface, method);
        message.setArguments(arguments);
        return m_caller.asyncCall(message, ControlBus::timeout);
    }

    PrivateBus m_bus;
    TemporaryFolder m_folder;

private:
    QDBusConnection m_caller = m_bus.connect();
};

} // namespace

TEST_F(ControlServiceTest, CommandsReachTheRunningProcess)
{
    m_folder.write(QStringLiteral("uma foto.png"), "x");
    Peer service(m_bus.address(), {});
    ASSERT_EQ(service.line(), u"first");
    const QString dropped =
        QStringLiteral("drop file://") + m_folder.path(QStringLiteral("uma foto.png"));

    struct Case {
        QStringList words;
        Outcome outcome;
        QString heard;
    };
    for (const Case &each : std::initializer_list<Case>{
             {{"open"}, {0, "", ""}, "open"},
             {{"open", "notes"}, {0, "", ""}, "open notes"},
             {{"open", "nada"}, {1, "", "Não há um módulo “nada”"}, {}},
             {{"toggle"}, {0, "", ""}, "toggle"},
             {{"hide"}, {0, "", ""}, "hide"},
             {{"show"}, {0, "", ""}, "show"},
             {{"status"}, {0, "{\"isOpen\":true}", ""}, {}},
             {{"drop", "uma foto.png"}, {0, "", ""}, dropped},
             {{"drop", "uma foto.png", "nada.png"},
              {1, "", "O arquivo não existe: " + m_folder.path("nada.png")},
              {}},
             {{"drop", "https://orvane.app/a.png"},
              {1, "", "Não é um arquivo deste computador: https://orvane.app/a.png"},
              {}},
             {{}, {0, "second", ""}, "activate"},
             {{"./uma foto.png"}, {0, "second", ""}, dropped},
         }) {
        SCOPED_TRACE(each.words.join(u' ').toStdString());
        EXPECT_EQ(Peer(m_bus.address(), each.words, m_folder.path()).outcome(), each.outcome);
        if (!each.heard.isNull()) {
            EXPECT_EQ(service.line(), each.heard);
        }
    }

    EXPECT_EQ(Peer(m_bus.address(), {"quit"}).outcome(), (Outcome{0, "", ""}));
    Peer next(m_bus.address(), {});
    EXPECT_EQ(next.line(), u"first") << "quit is answered before the name is free";
    EXPECT_EQ(service.outcome(), (Outcome{0, "", ""})) << "more was done than asked for";
}

TEST_F(ControlServiceTest, CallsThatComeBeforeItServesAreAnsweredThen)
{
    ControlService service(m_bus.connect());
    ASSERT_EQ(service.claim(), ControlEndpoint::Registration::first);
    const auto open = call(ControlBus::interface, "Open", {"notes"});
    const auto status = call(ControlBus::interface, "Status");
    // Calls of one peer come in their order: behind the answer to this one, both have arrived.
    PrivateBus::answer(call(ControlBus::interface, "NoSuchMethod"));
    EXPECT_FALSE(open.isFinished() || status.isFinished());

    QString opened;
    service.serve({.open = [&](const QString &module) { opened = module; },
                   .hasModule = [](const QString &) { return true; },
                   .status = [&] { return "{\"opened\":\"" + opened + "\"}"; }});
    EXPECT_EQ(PrivateBus::answer(open).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(PrivateBus::answer(status).arguments(), QVariantList{"{\"opened\":\"notes\"}"});
}

TEST_F(ControlServiceTest, DesktopsCallItAsAnApplication)
{
    QStringList heard;
    const auto note = [&](const char *name) { return [&heard, name] { heard.append(name); }; };
    ControlService service(m_bus.connect());
    ASSERT_EQ(service.claim(), ControlEndpoint::Registration::first);
    service.serve({.activate = note("activate"),
                   .openFiles = [&](const auto &files) { heard.append(files.at(0).path()); },
                   .open = [&](const QString &module) { heard.append("open " + module); },
                   .hasModule = [](const QString &module) { return module == u"notes"; },
                   .toggle = note("toggle"),
                   .hide = note("hide"),
                   .show = note("show")});
    const auto act = [&](const QString &method, const QVariantList &arguments) {
        const auto reply = PrivateBus::answer(call(ControlBus::applicationInterface, method,
                                                   arguments + QVariantList{QVariantMap()}));
        return reply.errorName();
    };
    const QString refused = QDBusError::errorString(QDBusError::InvalidArgs);
    const QVariantList none;

    EXPECT_EQ(act("Activate", {}), "");
    EXPECT_EQ(act("Open", {QStringList{"file:///usr/"}}), "");
    EXPECT_EQ(act("Open", {QStringList{"file:///usr", "file:///usr/%zz%00"}}), refused);
    for (const char *name : {"open", "toggle", "hide", "show"})
        EXPECT_EQ(act("ActivateAction", {name, QVariant(none)}), "");
    EXPECT_EQ(act("ActivateAction", {"open", QVariant(QVariantList{"notes"})}), "");
    EXPECT_EQ(act("ActivateAction", {"open", QVariant(QVariantList{"nada"})}), refused);
    EXPECT_EQ(act("ActivateAction", {"nada", QVariant(none)}), refused);
    EXPECT_EQ(heard,
              QStringList({"activate", "/usr", "open ", "toggle", "hide", "show", "open notes"}));
}

TEST_F(ControlServiceTest, EndsInOrderWhenTheSystemSaysSo)
{
    Peer service(m_bus.address(), {});
    ASSERT_EQ(service.line(), u"first");
    service.terminate();
    EXPECT_EQ(service.outcome(), (Outcome{0, "terminate", ""}));
}

TEST_F(ControlServiceTest, SaysWhyItCannotReachARunningProcess)
{
    EXPECT_EQ(Peer(m_bus.address(), {"toggle"}).outcome(),
              (Outcome{1, "", "O Orvane não está em execução"}));
    const QString nowhere = QStringLiteral("unix:path=/nonexistent");
    EXPECT_EQ(Peer(nowhere, {"status"}).outcome(),
              (Outcome{1, "", "Não há barramento de sessão por onde falar com o Orvane"}));
    EXPECT_EQ(Peer(nowhere, {}).outcome().output, u"noBus");
}

} // namespace velmo
