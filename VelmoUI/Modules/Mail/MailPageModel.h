#pragma once

#include "VelmoSystem/Mail/SignIns.h"
#include "VelmoUI/Modules/Frame/ModulePage.h"
#include "VelmoUI/Modules/Frame/PanelPort.h"
#include "VelmoUI/Modules/Mail/MailAccountsModel.h"
#include "VelmoUI/Modules/Mail/MailServices.h"

#include <QtQml/qqmlregistration.h>

namespace velmo {

/// A message in the list.
struct MailRow {
    QString id;
    QString sender;
    QString subject;
    QString time;
    QString snippet;
    bool isRead = false;
    bool isSelected = false;
    QString spoken; ///< for screen readers

    bool operator==(const MailRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(MailRow, (), (id, sender, subject, time, snippet, isRead, isSelected, spoken))

/// A link of the selected message.
struct MailLinkRow {
    QString id;           ///< the address
    QString title;        ///< the host that it leads to
    QString text;         ///< what the message calls it
    bool isFalse = false; ///< the message names another host

    bool operator==(const MailLinkRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(MailLinkRow, (), (id, title, text, isFalse))

/// The Mail page of one panel.
class MailPageModel : public velmo::ModulePage {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by its module")
    Q_PROPERTY(QAbstractItemModel *messages READ messages CONSTANT)
    Q_PROPERTY(QAbstractItemModel *links READ links CONSTANT)
    Q_PROPERTY(velmo::MailAccountsModel *accounts READ accounts CONSTANT)
    Q_PROPERTY(bool hasMessages READ hasMessages NOTIFY changed)
    /// Of accounts that aren't online, in a line; empty if all are.
    Q_PROPERTY(QString state READ state NOTIFY changed)
    Q_PROPERTY(bool hasSelection READ hasSelection NOTIFY changed)
    Q_PROPERTY(QString sender READ sender NOTIFY changed)
    Q_PROPERTY(QString subject READ subject NOTIFY changed)
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY changed)
    Q_PROPERTY(bool isUnread READ isUnread NOTIFY changed)
    Q_PROPERTY(QString code READ code NOTIFY changed)
    /// Where the link to sign in leads to; empty without one, and where the message names another.
    Q_PROPERTY(QString signInHost READ signInHost NOTIFY changed)
    Q_PROPERTY(bool canArchive READ canArchive NOTIFY changed)
    Q_PROPERTY(bool canOpen READ canOpen NOTIFY changed)
    Q_PROPERTY(QString undoTitle READ undoTitle NOTIFY changed) ///< empty if nothing can come back

public:
    /// `panel` outlives the page.
    MailPageModel(const MailServices &services, PanelPort &panel);

    /// Selects the message that is the route's item.
    void go(const Route &route) override;

    QAbstractItemModel *messages() { return &m_rows; }
    QAbstractItemModel *links() { return &m_links; }
    MailAccountsModel *accounts() { return &m_accounts; }
    bool hasMessages() const { return m_rows.rowCount() > 0; }
    QString state() const;
    bool hasSelection() const { return selected() != nullptr; }
    QString sender() const;
    QString subject() const;
    QString text() const;
    bool isLoading() const { return hasSelection() && !m_whole && m_problem.isEmpty(); }
    bool isUnread() const;
    QString code() const;
    QString signInHost() const;
    bool canArchive() const;
    bool canOpen() const;
    QString undoTitle() const;

    Q_INVOKABLE void select(const QString &id);
    Q_INVOKABLE void refresh();
    Q_INVOKABLE void markRead();
    Q_INVOKABLE void archive();
    Q_INVOKABLE void trash();
    Q_INVOKABLE void undo();
    Q_INVOKABLE void reply();
    Q_INVOKABLE void openOutside();
    Q_INVOKABLE void copyCode();
    Q_INVOKABLE void signIn();
    Q_INVOKABLE void openLink(const QString &address);

Q_SIGNALS:
    void changed();

private:
    void watch(bool isWatched) override;
    void update();
    void load();
    void updateLinks();
    void move(MailService::Action action);
    const MailMessage *selected() const { return m_mail.find(m_selected); }

    MailService &m_mail;
    FileViewer &m_fileViewer;
    Scheduler &m_scheduler;
    SignIns &m_signIns;
    MailAccountsModel m_accounts;
    RecordListModel<MailRow> m_rows;
    RecordListModel<MailLinkRow> m_links;
    QString m_selected;
    bool m_isFetching = false;
    std::optional<ParsedMail> m_whole; ///< of the selected message
    QString m_problem;                 ///< why there is none
};

} // namespace velmo
