#include "VelmoSystem/Linux/Net/HttpsExchange.h"

#include "VelmoSystem/Linux/Net/TlsConfiguration.h"

#include <QNetworkAccessManager>

#include <algorithm>
#include <array>
#include <utility>

namespace velmo {

namespace {

using Result = Downloader::Result;

constexpr std::array redirects{301, 302, 303, 307, 308};
constexpr int notModified = 304;
constexpr qsizetype chunk = qsizetype{64} * 1024; ///< bytes that are unpacked at a time

/// Without what isn't a server's business.
QUrl cleaned(QUrl url)
{
    url.setUserInfo({});
    url.setFragment({});
    return url;
}

QUrl overTls(QUrl url)
{
    if (url.scheme() == u"http") {
        url.setScheme(QStringLiteral("https"));
        if (url.port() == 80)
            url.setPort(-1);
    }
    return url;
}

QString noConnection(const QString &why)
{
    return QStringLiteral("Sem conexão com o servidor (%1). Confira a rede e o endereço.").arg(why);
}

QString tooLarge()
{
    return QStringLiteral("O endereço devolve mais de %1 MB, o máximo para um arquivo. Confira o "
                          "endereço.")
        .arg(Downloader::mostBytes / 1024 / 1024);
}

QString failure(const QNetworkReply &reply, bool isUntrusted)
{
    switch (reply.error()) {
    case QNetworkReply::HostNotFoundError:
        return noConnection(QStringLiteral("o endereço não foi encontrado"));
    case QNetworkReply::ConnectionRefusedError:
        return noConnection(QStringLiteral("a conexão foi recusada"));
    case QNetworkReply::RemoteHostClosedError:
        return QStringLiteral("O servidor fechou a conexão. Tente de novo mais tarde.");
    case QNetworkReply::SslHandshakeFailedError:
        return isUntrusted
                   ? QStringLiteral("O certificado do servidor não é confiável. Confira o endereço "
                                    "ou fale com quem mantém o servidor.")
                   : QStringLiteral("Não é um servidor HTTPS com TLS 1.2 ou mais novo. Confira o "
                                    "endereço.");
    case QNetworkReply::ProtocolFailure:
        return QStringLiteral("A resposta do servidor está danificada. Tente de novo mais tarde.");
    case QNetworkReply::UnknownContentError: // from unpacking
        return QStringLiteral("A resposta do servidor está danificada ou é grande demais. Confira "
                              "o endereço.");
    default:
        return noConnection(reply.errorString());
    }
}

} // namespace

HttpsExchange::HttpsExchange(const Downloader::Request &request, QNetworkAccessManager &manager,
                             Scheduler &scheduler, Downloader::Finished finished)
    : m_request(request), m_manager(manager), m_scheduler(scheduler),
      m_finished(std::move(finished))
{
}

HttpsExchange::~HttpsExchange()
{
    drop();
}

void HttpsExchange::start()
{
    m_limit = m_scheduler.after(Downloader::timeout, [this] {
        fail(noConnection(QStringLiteral("o servidor não respondeu a tempo")));
    });
    const QUrl url = overTls(m_request.url);
    if (url.scheme() != u"https" || url.host().isEmpty())
        fail(QStringLiteral("O endereço precisa ser completo e começar com https://."));
    else
        ask(url);
}

void HttpsExchange::ask(const QUrl &url)
{
    QNetworkRequest request(cleaned(url));
    request.setSslConfiguration(tlsConfiguration());
    request.setRawHeader("User-Agent", "Orvane");
    if (!m_request.accept.isEmpty())
        request.setRawHeader("Accept", m_request.accept);
    if (!m_request.known.etag.isEmpty())
        request.setRawHeader("If-None-Match", m_request.known.etag);
    if (!m_request.known.lastModified.isEmpty())
        request.setRawHeader("If-Modified-Since", m_request.known.lastModified);
    using Attribute = QNetworkRequest::Attribute;
    request.setAttribute(Attribute::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(Attribute::CacheSaveControlAttribute, false);
    for (const Attribute attribute :
         {Attribute::CookieLoadControlAttribute, Attribute::CookieSaveControlAttribute,
          Attribute::AuthenticationReuseAttribute})
        request.setAttribute(attribute, QNetworkRequest::Manual);
    request.setAttribute(Attribute::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    // One file at a time gains nothing by it.
    request.setAttribute(Attribute::Http2AllowedAttribute, false);
    // Else it unpacks all of it, to count, before `read` can.
    request.setDecompressedSafetyCheckThreshold(Downloader::mostBytes);

    drop();
    m_isUntrusted = false;
    m_reply.reset(m_manager.get(request));
    const QNetworkReply *reply = m_reply.get();
    QObject::connect(reply, &QNetworkReply::sslErrors, &m_ear, [this] { m_isUntrusted = true; });
    QObject::connect(reply, &QNetworkReply::metaDataChanged, &m_ear, [this] { judgeHead(); });
    QObject::connect(reply, &QNetworkReply::readyRead, &m_ear, [this] { read(); });
    QObject::connect(reply, &QNetworkReply::finished, &m_ear, [this] { end(); });
}

void HttpsExchange::drop()
{
    if (!m_reply)
        return;
    m_reply->disconnect(&m_ear);
    m_reply.reset(); // which aborts it
}

/// Of the answer; 0 without one.
int HttpsExchange::status() const
{
    return m_reply ? m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() : 0;
}

/// Only a body that is wanted is waited for.
void HttpsExchange::judgeHead()
{
    const int status = this->status();
    if (status >= 200 && status <= 299) {
        if (m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong() >
            Downloader::mostBytes)
            fail(tooLarge());
    } else if (status == notModified) {
        if (m_request.known == Downloader::Validators())
            fail(QStringLiteral("O servidor respondeu que nada mudou, mas ainda não enviou nada. "
                                "Tente de novo mais tarde."));
        else
            finish({.kind = Result::Kind::unchanged, .validators = m_request.known});
    } else if (std::ranges::find(redirects, status) != redirects.end() &&
               m_reply->hasRawHeader("Location")) {
        redirect();
    } else {
        finish({.kind = Result::Kind::refused});
    }
}

void HttpsExchange::redirect()
{
    const QUrl next = m_reply->url().resolved(QUrl::fromEncoded(m_reply->rawHeader("Location")));
    if (++m_redirectCount > Downloader::mostRedirects)
        fail(QStringLiteral("O endereço leva a outro mais de %1 vezes. Confira o endereço.")
                 .arg(Downloader::mostRedirects));
    else if (next.scheme() != u"https" || next.host().isEmpty())
        fail(QStringLiteral("O endereço leva a outro que não começa com https://. Confira o "
                            "endereço."));
    else
        ask(next);
}

void HttpsExchange::read()
{
    while (true) {
        const QByteArray bytes = m_reply->read(chunk);
        if (bytes.isEmpty())
            return;
        m_body += bytes;
        if (m_body.size() > Downloader::mostBytes) {
            fail(tooLarge());
            return;
        }
    }
}

void HttpsExchange::end()
{
    if (m_reply->error() != QNetworkReply::NoError) {
        if (status() >= 300)
            judgeHead();
        else
            fail(failure(*m_reply, m_isUntrusted));
        return;
    }
    finish({.kind = Result::Kind::body,
            .body = m_body,
            .validators = {.etag = m_reply->rawHeader("ETag"),
                           .lastModified = m_reply->rawHeader("Last-Modified")}});
}

void HttpsExchange::finish(Result result)
{
    result.status = status();
    drop();
    m_limit.cancel();
    const auto finished = std::exchange(m_finished, nullptr);
    finished(result);
}

void HttpsExchange::fail(const QString &problem)
{
    finish({.kind = Result::Kind::failed, .problem = problem});
}

} // namespace velmo
