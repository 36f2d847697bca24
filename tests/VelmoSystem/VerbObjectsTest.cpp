#include "VelmoSystem/Linux/DBus/VerbObjects.h"

#include "VelmoCore/Foundation/LocalizedError.h"
#include "VelmoSystem/Linux/DBus/ControlClient.h"
#include "VelmoSystem/Linux/DBus/ControlService.h"

#include "tests/support/Printers.h"
#include "tests/support/PrivateBus.h"

#include <QDBusError>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace velmo {

namespace {

using Kind = VerbArgument::Kind;

const VerbSyntax list{
    .noun = "box", .name = "list", .columns = {{"number", "Nº"}, {"tags", "Marcas"}}};
const VerbSyntax show{.noun = "box", .name = "show", .arguments = {{"N", Kind::number}}};
const VerbSyntax add{
    .noun = "box",
    .name = "add",
    .arguments = {{"NOME"}, {.name = "TEXTO", .isOptional = true, .isRepeated = true}},
    .options = {{.name = "pin"}, {.name = "as", .value = "TIPO"}}};
const VerbSyntax pack{.noun = "files",
                      .name = "pack-all",
                      .arguments = {{.name = "ARQUIVO", .kind = Kind::file, .isRepeated = true}}};
const std::vector<VerbSyntax> table{list, show, add, pack};

/// Verbs on a bus of their own. A pack runs until the test answers.
class VerbObjectsTest : public testing::Test {
protected:
    VerbObjectsTest()
    {
        service->claim();
        service->serve({},
                       {{list, [](const auto &, const VerbReply &reply) { reply.list(records()); }},
                        {show, &showBox},
                        {add, [this](const VerbCall &call, const VerbReply &) { added = call; }},
                        {pack, [this](const VerbCall &call, const VerbReply &reply) {
                             reply.onCancelled([this] { ++cancelled; });
                             packing.emplace_back(call, reply);
                         }}});
    }

    static QJsonArray records()
    {
        return {QJsonObject{{"number", 1}, {"size", 0.5}, {"tags", QJsonArray{"a", "b"}}},
                QJsonObject{{"none", {}}, {"more", QJsonObject{{"deep", QJsonArray{1, true}}}}}};
    }
    static void showBox(const VerbCall &call, const VerbReply &reply)
    {
        if (call.number(0) > 2)
            throw LocalizedError("Não há caixa " + call.words[0]);
        reply.succeed(QString("caixa") + QChar::Null + call.words[0]);
    }

    QDBusPendingCall call(const QString &noun, const QString &member,
                          const QVariantList &arguments = {}, const QString &interface = {})
    {
        auto message = QDBusMessage::createMethodCall(ControlBus::service, VerbBus::path(noun),
                                                      interface, member);
        message.setArguments(arguments);
        return peer.asyncCall(message, ControlBus::timeout);
    }
    QDBusMessage answer(const QString &noun, const QString &member,
                        const QVariantList &arguments = {}, const QString &interface = {})
    {
        return PrivateBus::answer(call(noun, member, arguments, interface));
    }

    /// Starts a command line's client, which writes to captured streams.
    void start(const QStringList &words, const Console &console = {})
    {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        exitCode.reset();
        client.emplace(peer, console);
        const auto finished = [this](int code) { exitCode = code; };
        const auto request = CommandLine::parse(words, table, "/tmp");
        if (const auto *verb = std::get_if<CommandLine::VerbRequest>(&request))
            client->run(*verb, finished);
        else
            client->watch(table, finished);
    }
    using Outcome = std::tuple<int, std::string, std::string>;
    Outcome outcome()
    {
        until([&] { return exitCode.has_value(); });
        return {*exitCode, testing::internal::GetCapturedStdout(),
                testing::internal::GetCapturedStderr()};
    }
    static void until(const std::function<bool()> &isDone)
    {
        while (!isDone())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    PrivateBus bus;
    QDBusConnection peer = bus.connect();
    std::unique_ptr<ControlService> service =
        std::make_unique<ControlService>(bus.connect(), std::vector<QUrl>(), table);
    std::optional<ControlClient> client;
    std::optional<int> exitCode;
    VerbCall added;
    std::vector<std::pair<VerbCall, VerbReply>> packing;
    int cancelled = 0;
};

} // namespace

TEST_F(VerbObjectsTest, CarriesAnswersToTheCommandLine)
{
    const auto run = [&](const QStringList &words, const Console &console = {}) {
        start(words, console);
        return outcome();
    };
    EXPECT_EQ(run({"box", "list"}), (Outcome{0, "1\ta, b\n\t\n", ""}));
    Console terminal;
    terminal.isTerminal = true;
    EXPECT_EQ(run({"box", "list"}, terminal), (Outcome{0, "Nº  Marcas\n1   a, b\n\n", ""}));
    EXPECT_EQ(run({"box", "show", "2"}), (Outcome{0, "caixa\uFFFD2\n", ""}));
    EXPECT_EQ(run({"box", "show", "3"}), (Outcome{1, "", "Não há caixa 3\n"}));
    EXPECT_EQ(run({"box", "add", "a", "b", "c", "--as", "x", "--pin"}),
              (Outcome{1, "", "O comando terminou sem resposta\n"}));
    EXPECT_EQ(added, (VerbCall{{"a", "b c"}, {{"as", "x"}, {"pin", ""}}}));

    const auto [code, json, errors] = run({"box", "list", "--json"});
    QJsonArray expected = records();
    expected[1] = QJsonObject{{"more", expected[1].toObject()["more"]}};
    EXPECT_EQ(QJsonDocument::fromJson(QByteArray::fromStdString(json)).array(), expected);
    service.reset();
    EXPECT_EQ(run({"box", "list"}), (Outcome{1, "", "O Orvane não está em execução\n"}));
}

TEST_F(VerbObjectsTest, DescribesItselfAndHoldsCallsAgainstIt)
{
    const QString xml = answer("files", "Introspect", {}, "org.freedesktop.DBus.Introspectable")
                            .arguments()[0]
                            .toString();
    for (const char *part :
         {R"(<interface name="app.orvane.Orvane.Files">)", R"(<method name="PackAll">)",
          R"(name="arquivo" type="as")", R"(type="a{sv}" direction="in")",
          R"(<signal name="Progress">)", R"(<method name="Cancel">)", R"(<signal name="Changed">)"})
        EXPECT_TRUE(xml.contains(part)) << part << qPrintable(xml);

    const QString invalid = QDBusError::errorString(QDBusError::InvalidArgs);
    const QVariantMap none;
    const struct {
        const char *noun;
        const char *member;
        QVariantList arguments;
        QString error;
    } cases[] = {
        {"box", "Show", {1U}, ""},
        {"box", "Show", {"1"}, invalid},
        {"box", "Show", {0U}, invalid},
        {"box", "Show", {7U}, VerbBus::refused},
        {"box", "Add", {"a", "", QVariantMap{{"ink", true}}}, invalid},
        {"box", "Add", {"a", "", QVariantMap{{"pin", "sim"}}}, invalid},
        {"box", "Cancel", {"x"}, QDBusError::errorString(QDBusError::UnknownMethod)},
        {"files", "PackAll", {QStringList("a"), none}, invalid},
        {"files", "PackAll", {QStringList(), none}, invalid},
        {"files", "Cancel", {"x"}, VerbBus::refused},
    };
    for (const auto &[noun, member, arguments, error] : cases)
        EXPECT_EQ(answer(noun, member, arguments).errorName(), error) << noun << member;
    answer("box", "Add", {"a", "", QVariantMap{{"pin", false}}});
    EXPECT_EQ(added, (VerbCall{{"a"}, {}}));
}

TEST_F(VerbObjectsTest, ServesNobodyElsesCalls)
{
    auto other = bus.connect();
    VerbObjects strict(other, table, ::getuid() + 1);
    strict.registerObjects();
    strict.serve({{show, &showBox}});
    auto message = QDBusMessage::createMethodCall(other.baseService(), VerbBus::path("box"),
                                                  VerbBus::interface("box"), "Show");
    message << 1U;
    EXPECT_EQ(PrivateBus::answer(peer.asyncCall(message)).errorName(),
              QDBusError::errorString(QDBusError::AccessDenied));
}

TEST_F(VerbObjectsTest, ShowsProgressAndCancelsWhatTakesLong)
{
    Console terminal;
    terminal.showsProgress = true;
    terminal.width = 20;
    start({"files", "pack-all", "a b", "/c"}, terminal);
    until([&] { return packing.size() == 1; });
    EXPECT_EQ(packing[0].first.words, (QStringList{"/tmp/a b", "/c"}));
    packing[0].second.reportProgress(0.425, "Compactando uma foto");
    EXPECT_EQ(answer("box", "Show", {1U}).errorName(), "") << "others are served meanwhile";
    packing[0].second.succeed("feito");
    EXPECT_EQ(outcome(), (Outcome{0, "feito\n", "\r\033[K 42%  Compactando u\r\033[K"}));

    start({"files", "pack-all", "a"});
    until([&] { return packing.size() == 2; });
    client->cancel();
    until([&] { return cancelled == 1; });
    packing[1].second.fail("Cancelado");
    EXPECT_EQ(outcome(), (Outcome{130, "", ""}));
}

TEST_F(VerbObjectsTest, ReportsChangesToWhoWatches)
{
    start({"watch"});
    answer("box", "Show", {1U}); // by then the bus knows what the client wants to hear
    service->changed("box", "items");
    service->changed("box", "items");
    service->changed("nobody", "items");
    answer("box", "Show", {1U});
    service.reset();
    EXPECT_EQ(outcome(), (Outcome{1, "box items\n", "O Orvane foi encerrado\n"}));

    start({"watch"});
    EXPECT_EQ(outcome(), (Outcome{1, "", "O Orvane não está em execução\n"}));
    start({"watch"});
    client->cancel();
    EXPECT_EQ(outcome(), (Outcome{130, "", ""}));
}

} // namespace velmo
