#include "VelmoSystem/Linux/Net/HttpsDownloader.h"

#include "VelmoCore/Foundation/SystemScheduler.h"
#include "VelmoSystem/Linux/Net/NetworkThread.h"

#include "tests/support/FakeServers.h"
#include "tests/support/HttpsServer.h"
#include "tests/support/ManualScheduler.h"
#include "tests/support/Printers.h"
#include "tests/support/XServer.h"

#include <gtest/gtest.h>

namespace velmo {

/// Nothing where the machine allows no mount of our own.
extern std::optional<OwnTrust> ownTrust;

namespace {

using namespace std::chrono_literals;
using Answer = HttpsServer::Answer;
using Kind = Downloader::Result::Kind;

Answer answer(const QByteArray &status, const QByteArray &fields, const QByteArray &body = {})
{
    return {.bytes = "HTTP/1.1 " + status + "\r\n" + fields + "\r\n" + body, .rest = {}};
}

Answer whole(const QByteArray &body, const QByteArray &fields = {})
{
    return answer("200 OK", "Content-Length: " + QByteArray::number(body.size()) + "\r\n" + fields,
                  body);
}

Answer packed(qsizetype size)
{
    return whole(qCompress(QByteArray(size, 'x')).mid(4), "Content-Encoding: deflate\r\n");
}

Answer redirect(const QByteArray &to)
{
    return answer("302 Found", "Location: " + to + "\r\n");
}

Answer endless(const QByteArray &status)
{
    Answer made = answer(status, "Transfer-Encoding: chunked\r\n");
    made.rest = "10000\r\n" + QByteArray(0x10000, 'x') + "\r\n";
    return made;
}

/// What came of a request, in one line.
QString outcome(const Downloader::Result &result)
{
    switch (result.kind) {
    case Kind::body:
        return result.body.size() < 100 ? "body " + QString(result.body)
                                        : u"%1 bytes"_qs.arg(result.body.size());
    case Kind::unchanged:
        return "unchanged";
    case Kind::refused:
        return u"refused %1"_qs.arg(result.status);
    case Kind::failed:
        return result.problem;
    }
    Q_UNREACHABLE();
}

class HttpsDownloaderTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!ownTrust)
            GTEST_SKIP() << "needs a mount namespace";
        server = std::make_unique<HttpsServer>(ownTrust->issue("localhost"));
    }

    Downloader::Result get(const Downloader::Request &request)
    {
        std::optional<Downloader::Result> came;
        const auto held = downloader->get(request, [&](const auto &result) {
            EXPECT_FALSE(came) << "twice";
            came = result;
        });
        EXPECT_FALSE(came) << "not at once";
        EXPECT_TRUE(eventually([&] { return came.has_value(); }));
        return came.value_or(Downloader::Result());
    }
    QString outcomeOf(const QUrl &url) { return outcome(get({url, "text/calendar", {}})); }

    NetworkThread thread;
    SystemScheduler scheduler;
    std::unique_ptr<HttpsServer> server;
    std::unique_ptr<HttpsDownloader> downloader =
        std::make_unique<HttpsDownloader>(thread, scheduler);
};

TEST_F(HttpsDownloaderTest, AnswersWithWhatTheServerGives)
{
    constexpr qsizetype most = Downloader::mostBytes;
    const QByteArray base = server->url("").toEncoded();
    const struct {
        QByteArray path;
        Answer answer;
        QString outcome;
    } cases[] = {
        {"/whole", whole("abc"), "body abc"},
        {"/none", answer("204 No Content", ""), "body "},
        {"/chunks", answer("200 OK", "Transfer-Encoding: chunked\r\n", "2\r\nab\r\n0\r\n\r\n"),
         "body ab"},
        {"/packed", packed(most), "33554432 bytes"},
        {"/most", whole(QByteArray(most, 'x')), "33554432 bytes"},

        {"/announced", answer("200 OK", "Content-Length: 209715200\r\n"), "mais de 32 MB"},
        {"/unending", endless("200 OK"), "mais de 32 MB"},
        {"/bomb", packed(most + 1), "grande demais"},
        {"/cut", answer("200 OK", "Content-Length: 10\r\n", "abc"), "fechou a conexão"},
        {"/cut-chunk", answer("200 OK", "Transfer-Encoding: chunked\r\n", "2\r\nab\r\n"),
         "fechou a conexão"},
        {"/garbled", whole(QByteArray(100, char(0xff)), "Content-Encoding: gzip\r\n"),
         "está danificada"},
        {"/else", Answer{"SSH-2.0-OpenSSH\r\n\r\n", {}}, "fechou a conexão"},

        {"/401", answer("401 Unauthorized", "WWW-Authenticate: Basic realm=\"x\"\r\n"),
         "refused 401"},
        {"/429", answer("429 Too Many Requests", "Content-Length: 0\r\n"), "refused 429"},
        {"/500", endless("500 Internal Server Error"), "refused 500"},
        {"/304", answer("304 Not Modified", ""), "nada mudou"},

        {"/1", redirect("whole"), "body abc"},
        {"/2", redirect("/1"), "body abc"},
        {"/3", redirect(base + "/2"), "body abc"},
        {"/4", redirect("/3"), "body abc"},
        {"/5", redirect("/4"), "body abc"},
        {"/6", redirect("/5"), "mais de 5 vezes"},
        {"/circle", redirect("circle"), "mais de 5 vezes"},
        {"/http", redirect(server->url("/whole", "http").toEncoded()), "não começa com https://"},
        {"/file", redirect("file:///etc/passwd"), "não começa com https://"},
        {"/nowhere", answer("302 Found", ""), "refused 302"},
    };
    for (const auto &one : cases)
        server->answers[one.path] = one.answer;
    for (const auto &one : cases) {
        const QString came = outcomeOf(server->url(one.path));
        EXPECT_TRUE(came.contains(one.outcome)) << one.path.data() << ": " << came.toStdString();
    }
    EXPECT_TRUE(eventually([&] { return server->clients.empty(); }, 3s));
}

TEST_F(HttpsDownloaderTest, AsksOnlyForWhatIsNew)
{
    server->answers["/feed"] =
        whole("abc", "ETag: \"1\"\r\nLast-Modified: Sat, 14 Mar 2026 09:26:53 GMT\r\n"
                     "Set-Cookie: a=b\r\nCache-Control: max-age=9999\r\n");
    QUrl url = server->url("/feed", "http");
    url.setUserInfo("ana:segredo");
    const auto first = get({url, "text/calendar", {}});
    EXPECT_EQ(outcome(first), "body abc");
    EXPECT_EQ(outcomeOf(url), "body abc");
    EXPECT_EQ(server->requests.size(), 2) << "nothing is kept";

    server->answers["/feed"] = redirect("/moved");
    server->answers["/moved"] = answer("304 Not Modified", "");
    EXPECT_EQ(outcome(get({url, "text/calendar", first.validators})), "unchanged");
    const QByteArray last = server->requests.back();
    for (const char *field : {"GET /moved HTTP/1.1\r\n", "\r\nIf-None-Match: \"1\"\r\n",
                              "\r\nIf-Modified-Since: Sat, 14 Mar 2026 09:26:53 GMT\r\n",
                              "\r\nAccept: text/calendar\r\n", "\r\nUser-Agent: Orvane\r\n"})
        EXPECT_TRUE(last.contains(field)) << field << " isn't in " << last.data();
    for (const QByteArray &request : server->requests) {
        EXPECT_FALSE(request.contains("\r\nCookie:")) << request.data();
        EXPECT_FALSE(request.contains("\r\nAuthorization:")) << request.data();
    }
}

TEST_F(HttpsDownloaderTest, TrustsNobodyElse)
{
    using Fault = OwnTrust::Fault;
    const auto with = [&](const OwnTrust::Certificate &certificate) {
        HttpsServer other(certificate);
        other.answers["/"] = whole("abc");
        QString came = outcomeOf(other.url("/"));
        EXPECT_TRUE(other.requests.isEmpty()) << came.toStdString();
        return came;
    };
    for (const Fault fault : {Fault::selfSigned, Fault::expired}) {
        const QString came = with(ownTrust->issue("localhost", fault));
        EXPECT_TRUE(came.contains("não é confiável")) << int(fault) << came.toStdString();
    }
    EXPECT_TRUE(with(ownTrust->issue("example.org")).contains("não é confiável"));

    QTcpServer plain;
    plain.listen(QHostAddress::LocalHost);
    QObject::connect(&plain, &QTcpServer::newConnection,
                     [&] { plain.nextPendingConnection()->write("HTTP/1.1 200 OK\r\n\r\nabc"); });
    const QString address = u"localhost:%1"_qs.arg(plain.serverPort());
    EXPECT_TRUE(outcomeOf(QUrl("https://" + address)).startsWith("Não é um servidor HTTPS"));
    plain.close();
    EXPECT_TRUE(outcomeOf(QUrl("https://" + address)).contains("a conexão foi recusada"));
    EXPECT_TRUE(outcomeOf(QUrl("https://nowhere.invalid")).contains("não foi encontrado"));
    for (const char *bad : {"file:///etc/passwd", "ftp://localhost/", "https:///x", "x", ""})
        EXPECT_TRUE(outcomeOf(QUrl(bad)).startsWith("O endereço precisa")) << bad;
}

TEST_F(HttpsDownloaderTest, EndsWhenItIsNoLongerWanted)
{
    int calls = 0;
    const auto called = [&](const auto &) { ++calls; };
    auto held = downloader->get({server->url("/silent"), {}, {}}, called);
    EXPECT_TRUE(eventually([&] { return server->requests.size() == 1; }));
    held.reset();
    EXPECT_TRUE(eventually([&] { return server->clients.empty(); }, 3s));

    server->answers["/whole"] = whole("abc");
    held = downloader->get({server->url("/whole"), {}, {}}, [&](const auto &) {
        ++calls;
        held = downloader->get({server->url("/unending"), {}, {}}, called);
    });
    server->answers["/unending"] = endless("200 OK");
    EXPECT_TRUE(eventually([&] { return server->requests.size() == 3; }));
    EXPECT_EQ(calls, 1);
    std::vector<std::shared_ptr<void>> more(20);
    for (auto &one : more)
        one = downloader->get({server->url("/whole"), {}, {}}, called);
    downloader.reset(); // some of them have not begun, and some answers are on their way
    EXPECT_TRUE(eventually([&] { return server->clients.empty(); }, 3s));
    EXPECT_EQ(calls, 1);
}

TEST_F(HttpsDownloaderTest, GivesUpAfterAWhile)
{
    ManualScheduler time;
    FakeServers here(time); // its thread is this one
    HttpsDownloader patient(here.thread(), time);
    QTcpServer mute;
    mute.listen(QHostAddress::LocalHost);
    server->answers["/slow"] = Answer{"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nabc", {}, false};
    QStringList came;
    std::vector<std::shared_ptr<void>> held;
    for (const QUrl &url :
         {server->url("/slow"), QUrl(u"https://localhost:%1"_qs.arg(mute.serverPort()))})
        held.push_back(patient.get({url, {}, {}}, [&](const auto &r) { came << outcome(r); }));
    time.runPosted();
    EXPECT_TRUE(
        eventually([&] { return server->requests.size() == 1 && mute.hasPendingConnections(); }));
    time.advance(19.9s);
    server->clients.front()->write("d");
    EXPECT_TRUE(eventually([&] { return server->clients.front()->encryptedBytesToWrite() == 0; }));
    EXPECT_TRUE(came.isEmpty());
    time.advance(0.1s);
    EXPECT_EQ(came.size(), 2);
    EXPECT_EQ(came.filter("o servidor não respondeu a tempo").size(), 2) << came.join("").data();
    time.advance(5s);
    EXPECT_EQ(time.pendingCount(), 0u);
}

} // namespace
} // namespace velmo
