#pragma once

#include "VelmoSystem/Mail/MailService.h"
#include "VelmoUI/Design/RecordListModel.h"

#include <QtQml/qqmlregistration.h>

namespace velmo {

class FileViewer;

/// An account and how it is connected.
struct MailAccountRow {
    QString id;
    QString email;
    QString state;
    bool hasProblem = false;
    QString removal; ///< "Remover ana@example.org"

    bool operator==(const MailAccountRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(MailAccountRow, (), (id, email, state, hasProblem, removal))

/// The accounts, and the form that connects one.
class MailAccountsModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by its module")
    Q_PROPERTY(QAbstractItemModel *accounts READ accounts CONSTANT)
    Q_PROPERTY(bool hasAccounts READ hasAccounts NOTIFY changed)
    Q_PROPERTY(QString address READ address WRITE setAddress NOTIFY changed)
    /// Of the address: who runs its server, and where its app password comes from.
    Q_PROPERTY(QString provider READ provider NOTIFY changed)
    Q_PROPERTY(QString hint READ hint NOTIFY changed)
    Q_PROPERTY(bool hasPasswordPage READ hasPasswordPage NOTIFY changed)
    Q_PROPERTY(bool needsServer READ needsServer NOTIFY changed)
    /// What is taken where the user gives no other.
    Q_PROPERTY(QString guessedHost READ guessedHost NOTIFY changed)
    Q_PROPERTY(bool isTesting READ isTesting NOTIFY changed)
    Q_PROPERTY(QString issue READ issue NOTIFY changed)

public:
    /// Both outlive it.
    MailAccountsModel(MailService &mail, FileViewer &fileViewer);

    QAbstractItemModel *accounts() { return &m_rows; }
    bool hasAccounts() const { return m_rows.rowCount() > 0; }
    QString address() const { return m_address; }
    void setAddress(const QString &address);
    QString provider() const;
    QString hint() const;
    bool hasPasswordPage() const;
    bool needsServer() const;
    QString guessedHost() const;
    bool isTesting() const { return m_isTesting; }
    QString issue() const { return m_issue; }

    Q_INVOKABLE void openPasswordPage();
    /// Tries, and keeps what works. `connected` says that it did.
    Q_INVOKABLE void connectAccount(const QString &password, const QString &host = {},
                                    const QString &port = {}, const QString &username = {});
    Q_INVOKABLE void remove(const QString &id);

Q_SIGNALS:
    void changed();
    void connected();

private:
    void update();
    void setIssue(const QString &issue);

    MailService &m_mail;
    FileViewer &m_fileViewer;
    RecordListModel<MailAccountRow> m_rows;
    QString m_address;
    QString m_issue;
    bool m_isTesting = false;
};

} // namespace velmo
