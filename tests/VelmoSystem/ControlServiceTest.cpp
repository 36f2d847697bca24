#include "VelmoSystem/Linux/DBus/ControlService.h"

#include "VelmoSystem/Linux/DBus/ControlClient.h"

#include "tests/support/Printers.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/TemporaryFolder.h"

#include <QDBusError>
#include <QDBusMessage>

#include <gtest/gtest.h>

namespace velmo {

namespace {

/// What a command left behind: its exit code and what it wrote.
using Outcome = std::tuple<int, std::string, std::string>;

Outcome run(const QStringList &words, const QDBusConnection &bus)
{
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    std::optional<int> exitCode;
    ControlClient client(bus);
    client.run(std::get<CommandLine::Client>(CommandLine::parse(words)),
               [&](int code) { exitCode = code; });
    while (!exitCode)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return {*exitCode, testing::internal::GetCapturedStdout(),
            testing::internal::GetCapturedStderr()};
}

class ControlServiceTest : public testing::Test {
protected:
    ControlServiceTest() { EXPECT_EQ(service->claim(), ControlEndpoint::Registration::first); }

    void serve()
    {
        const auto note = [this](const char *name) { return [this, name] { heard.append(name); }; };
        service->serve({.activate = note("activate"),
                        .openFiles = [this](const auto &files) { heard.append(files[0].path()); },
                        .open = [this](const QString &module) { heard.append("open " + module); },
                        .hasModule = [](const QString &module) { return module == u"notes"; },
                        .toggle = note("toggle"),
                        .hide = note("hide"),
                        .show = note("show"),
                        .quit = note("quit"),
                        .status = [this] { return heard.join(u';'); }},
                       {});
    }

    QDBusPendingCall call(QLatin1StringView interface, const QString &method,
                          const QVariantList &arguments = {})
    {
        auto message = QDBusMessage::createMethodCall(ControlBus::service, ControlBus::path,
                                                      interface, method);
        message.setArguments(arguments);
        return peer.asyncCall(message, ControlBus::timeout);
    }

    PrivateBus bus;
    QDBusConnection peer = bus.connect();
    std::unique_ptr<ControlService> service = std::make_unique<ControlService>(bus.connect());
    QStringList heard;
};

} // namespace

TEST_F(ControlServiceTest, CarriesOutTheCommandsOfAClient)
{
    const TemporaryFolder folder;
    folder.write("uma foto.png", "x");
    const QString before = QDir::currentPath();
    QDir::setCurrent(folder.path());
    serve();
    const struct {
        QStringList words;
        Outcome outcome;
        QStringList heard;
    } cases[] = {
        {{"open"}, {0, "", ""}, {"open "}},
        {{"open", "notes"}, {0, "", ""}, {"open notes"}},
        {{"open", "nada"}, {1, "", "Não há um módulo “nada”\n"}, {}},
        {{"toggle"}, {0, "", ""}, {"toggle"}},
        {{"hide"}, {0, "", ""}, {"hide"}},
        {{"show"}, {0, "", ""}, {"show"}},
        {{"status"}, {0, "\n", ""}, {}},
        {{"drop", "uma foto.png"}, {0, "", ""}, {folder.path("uma foto.png")}},
        {{"drop", "uma foto.png", "nada.png"},
         {1, "", "O arquivo não existe: " + folder.path("nada.png").toStdString() + '\n'},
         {}},
        {{"drop", "https://orvane.app/a.png"},
         {1, "", "Não é um arquivo deste computador: https://orvane.app/a.png\n"},
         {}},
    };
    for (const auto &[words, outcome, expected] : cases) {
        heard.clear();
        EXPECT_EQ(run(words, peer), outcome) << qPrintable(words.join(u' '));
        EXPECT_EQ(heard, expected) << qPrintable(words.join(u' '));
    }
    QDir::setCurrent(before);
}

TEST_F(ControlServiceTest, AnswersCallsThatCameBeforeItServed)
{
    const auto open = call(ControlBus::interface, "Open", {"notes"});
    const auto status = call(ControlBus::interface, "Status");
    // Calls of one peer come in their order: behind the answer to this one, both have arrived.
    PrivateBus::answer(call(ControlBus::interface, "NoSuchMethod"));
    EXPECT_FALSE(open.isFinished() || status.isFinished());
    serve();
    EXPECT_EQ(PrivateBus::answer(open).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(PrivateBus::answer(status).arguments(), QVariantList{"open notes"});
}

TEST_F(ControlServiceTest, AnswersThatItQuitsWhenItsNameIsFree)
{
    serve();
    const auto quit = call(ControlBus::interface, "Quit");
    PrivateBus::answer(call(ControlBus::interface, "NoSuchMethod"));
    EXPECT_EQ(heard, QStringList("quit"));
    EXPECT_FALSE(quit.isFinished());
    service.reset();
    EXPECT_EQ(PrivateBus::answer(quit).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(ControlService(bus.connect()).claim(), ControlEndpoint::Registration::first);
}

TEST_F(ControlServiceTest, AnswersDesktopsAsAnApplication)
{
    serve();
    const auto act = [&](const QString &method, const QVariantList &arguments) {
        return PrivateBus::answer(call(ControlBus::applicationInterface, method,
                                       arguments + QVariantList{QVariantMap()}))
            .errorName();
    };
    const QString refused = QDBusError::errorString(QDBusError::InvalidArgs);
    const QVariant none = QVariantList();

    EXPECT_EQ(act("Activate", {}), "");
    EXPECT_EQ(act("Open", {QStringList{"file:///usr/"}}), "");
    EXPECT_EQ(act("Open", {QStringList{"file:///usr", "file:///usr/%zz%00"}}), refused);
    for (const char *name : {"open", "toggle", "hide", "show"})
        EXPECT_EQ(act("ActivateAction", {name, none}), "");
    EXPECT_EQ(act("ActivateAction", {"open", QVariant(QVariantList{"notes"})}), "");
    EXPECT_EQ(act("ActivateAction", {"open", QVariant(QVariantList{"nada"})}), refused);
    EXPECT_EQ(act("ActivateAction", {"nada", none}), refused);
    EXPECT_EQ(heard,
              QStringList({"activate", "/usr", "open ", "toggle", "hide", "show", "open notes"}));
}

TEST(ControlClient, SaysThatThereIsNoBus)
{
    EXPECT_EQ(run({"status"}, QDBusConnection("nowhere")),
              (Outcome{1, "", "Não há barramento de sessão por onde falar com o Orvane\n"}));
}

} // namespace velmo
