#include "VelmoUI/Modules/Mail/MailAccountsModel.h"

#include "VelmoCore/Foundation/Overloaded.h"
#include "VelmoSystem/Ports/FileViewer.h"

#include <QPointer>

namespace velmo {

namespace {

QString stateText(const MailStatus &status)
{
    return std::visit(
        overloaded{
            [](const MailStatus::Offline &offline) { return offline.reason; },
            [](const MailStatus::Connecting &) { return QStringLiteral("Conectando…"); },
            [](const MailStatus::Online &) { return QStringLiteral("Conectada"); },
        },
        status.state);
}

} // namespace

MailAccountsModel::MailAccountsModel(MailService &mail, FileViewer &fileViewer)
    : m_mail(mail), m_fileViewer(fileViewer)
{
    connect(&mail, &MailService::accountsChanged, this, &MailAccountsModel::update);
    connect(&mail, &MailService::statusChanged, this, &MailAccountsModel::update);
    update();
}

void MailAccountsModel::update()
{
    std::vector<MailAccountRow> rows;
    for (const MailAccount &account : m_mail.accounts()) {
        const MailStatus status = m_mail.status(account.id);
        rows.push_back({.id = uuidText(account.id),
                        .email = account.email,
                        .state = stateText(status),
                        .hasProblem = std::holds_alternative<MailStatus::Offline>(status.state),
                        .removal = QStringLiteral("Remover %1").arg(account.email)});
    }
    m_rows.setRecords(rows);
    Q_EMIT changed();
}

void MailAccountsModel::setAddress(const QString &address)
{
    if (m_address == address)
        return;
    m_address = address;
    setIssue({});
}

QString MailAccountsModel::provider() const
{
    return MailProviders::title(MailProviders::detect(m_address.trimmed()));
}

QString MailAccountsModel::hint() const
{
    return MailProviders::appPasswordHint(MailProviders::detect(m_address.trimmed()));
}

bool MailAccountsModel::hasPasswordPage() const
{
    return MailProviders::appPasswordURL(MailProviders::detect(m_address.trimmed())).has_value();
}

bool MailAccountsModel::needsServer() const
{
    return !guessedHost().isEmpty() &&
           MailProviders::detect(m_address.trimmed()) == MailProvider::other;
}

QString MailAccountsModel::guessedHost() const
{
    return MailProviders::guessHost(m_address.trimmed());
}

void MailAccountsModel::openPasswordPage()
{
    if (const auto url = MailProviders::appPasswordURL(MailProviders::detect(m_address.trimmed())))
        m_fileViewer.open(*url);
}

void MailAccountsModel::connectAccount(const QString &password, const QString &host,
                                       const QString &port, const QString &username)
{
    if (m_isTesting)
        return;
    if (guessedHost().isEmpty() || m_address.trimmed().startsWith(u'@')) {
        setIssue(QStringLiteral("Digite o endereço de e-mail inteiro, como ana@exemplo.com."));
        return;
    }
    if (password.isEmpty()) {
        setIssue(QStringLiteral("Digite a senha."));
        return;
    }
    bool isNumber = true;
    const int number = port.isEmpty() ? MailAccount::standardPort : port.toInt(&isNumber);
    if (!isNumber || number < 1 || number > 65'535) {
        setIssue(QStringLiteral("A porta vai de 1 a 65535."));
        return;
    }
    const auto given = [](const QString &text) {
        return text.trimmed().isEmpty() ? std::nullopt : std::optional(text.trimmed());
    };
    m_isTesting = true;
    setIssue({});
    m_mail.add(MailAccount::make(m_address, {given(host), number, given(username)}), password,
               [page = QPointer(this)](const MailService::Problem &problem) {
                   if (!page)
                       return;
                   page->m_isTesting = false;
                   page->setIssue(problem.value_or(QString()));
                   if (!problem)
                       Q_EMIT page->connected();
               });
}

void MailAccountsModel::remove(const QString &id)
{
    if (const auto account = uuidFromText(id))
        m_mail.remove(*account);
}

void MailAccountsModel::setIssue(const QString &issue)
{
    m_issue = issue;
    Q_EMIT changed();
}

} // namespace velmo
