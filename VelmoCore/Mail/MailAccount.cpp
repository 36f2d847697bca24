#include "VelmoCore/Mail/MailAccount.h"

#include <array>
#include <string_view>

namespace velmo {

namespace {

struct Provider {
    std::u16string_view title;
    std::u16string_view appPasswordHint;
    std::u16string_view host;
    std::string_view appPasswordURL;
    std::string_view webmail;
};

/// In the order of the enumeration.
constexpr std::array<Provider, 6> providers{{
    {u"Gmail",
     u"Ative a verificação em duas etapas e crie uma senha de app em myaccount.google.com.",
     u"imap.gmail.com", "https://myaccount.google.com/apppasswords", "https://mail.google.com/"},
    {u"iCloud", u"Em account.apple.com › Iniciar sessão e segurança › Senhas específicas de app.",
     u"imap.mail.me.com", "https://account.apple.com/", "https://www.icloud.com/mail/"},
    {u"Yahoo", u"Em Segurança da conta › Gerar senha de app.", u"imap.mail.yahoo.com",
     "https://login.yahoo.com/account/security", "https://mail.yahoo.com/"},
    {u"Fastmail", u"Em Ajustes › Privacidade e segurança › Senhas de app (acesso IMAP).",
     u"imap.fastmail.com", "https://app.fastmail.com/settings/security/apps",
     "https://app.fastmail.com/mail/"},
    {u"Zoho", u"Em Segurança › Senhas específicas de app.", u"imap.zoho.com",
     "https://accounts.zoho.com/home#security/app_password", "https://mail.zoho.com/"},
    {u"Outro (IMAP)",
     u"Use a senha de app (ou a senha da conta, se o servidor aceitar IMAP com senha).",
     {},
     {},
     {}},
}};

const Provider &entry(MailProvider provider)
{
    return providers.at(std::size_t(provider));
}

QString text(std::u16string_view view)
{
    return QString::fromUtf16(view.data(), qsizetype(view.size()));
}

std::optional<QUrl> url(std::string_view view)
{
    if (view.empty())
        return std::nullopt;
    return QUrl(QString::fromLatin1(view.data(), qsizetype(view.size())));
}

QString domain(const QString &email)
{
    return email.sliced(email.lastIndexOf(u'@') + 1).toLower();
}

bool startsWithAny(const QString &text, std::initializer_list<QStringView> starts)
{
    return std::ranges::any_of(starts, [&](QStringView start) { return text.startsWith(start); });
}

} // namespace

MailProvider MailProviders::detect(const QString &email)
{
    const QString name = domain(email);
    if (name == u"gmail.com" || name == u"googlemail.com")
        return MailProvider::gmail;
    if (name == u"icloud.com" || name == u"me.com" || name == u"mac.com")
        return MailProvider::icloud;
    if (startsWithAny(name, {u"yahoo.", u"ymail.", u"rocketmail."}))
        return MailProvider::yahoo;
    if (startsWithAny(name, {u"fastmail."}))
        return MailProvider::fastmail;
    if (startsWithAny(name, {u"zoho", u"zohomail."}))
        return MailProvider::zoho;
    return MailProvider::other;
}

QString MailProviders::title(MailProvider provider)
{
    return text(entry(provider).title);
}

QString MailProviders::appPasswordHint(MailProvider provider)
{
    return text(entry(provider).appPasswordHint);
}

std::optional<QString> MailProviders::host(MailProvider provider)
{
    const auto host = entry(provider).host;
    return host.empty() ? std::nullopt : std::optional(text(host));
}

std::optional<QUrl> MailProviders::appPasswordURL(MailProvider provider)
{
    return url(entry(provider).appPasswordURL);
}

std::optional<QUrl> MailProviders::webmail(MailProvider provider)
{
    return url(entry(provider).webmail);
}

QString MailProviders::guessHost(const QString &email)
{
    const QString name = email.contains(u'@') ? domain(email) : QString();
    return name.isEmpty() ? QString() : QStringLiteral("imap.") + name;
}

MailAccount MailAccount::make(const QString &email, const Server &server)
{
    const QString address = email.trimmed();
    const MailProvider provider = MailProviders::detect(address);
    return {
        .id = makeUuid(),
        .email = address,
        .provider = provider,
        .host = server.host.value_or(
            MailProviders::host(provider).value_or(MailProviders::guessHost(address))),
        .port = server.port.value_or(standardPort),
        .username = server.username.value_or(address),
    };
}

} // namespace velmo
