#pragma once

#include "VelmoCore/Permissions/PermissionKind.h"
#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoCore/Storage/DataFiles.h"
#include "VelmoUI/Design/Feedback.h"
#include "VelmoUI/Design/RecordListModel.h"

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <map>

namespace velmo {

struct SettingsServices;

/// A permission as the pane shows it.
struct PermissionRow {
    QString id;
    QString title;
    QString symbol;
    QString explanation;
    QString usedBy;
    QString status;
    Feedback::Style style = Feedback::Info; ///< of the status
    bool canRequest = false;
    QString error;  ///< why the desktop's page didn't open
    QString spoken; ///< for screen readers

    bool operator==(const PermissionRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(PermissionRow, (),
                      (id, title, symbol, explanation, usedBy, status, style, canRequest, error,
                       spoken))

/// Permissions, protection of the data and the history.
class PrivacyPaneModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made in C++")
    Q_PROPERTY(QAbstractItemModel *permissions READ permissions CONSTANT)
    Q_PROPERTY(QString protectionSymbol READ protectionSymbol NOTIFY protectionChanged)
    Q_PROPERTY(QString protectionTitle READ protectionTitle NOTIFY protectionChanged)
    /// Empty where there is nothing to say.
    Q_PROPERTY(QString protectionText READ protectionText NOTIFY protectionChanged)
    Q_PROPERTY(QString protectionNote READ protectionNote NOTIFY protectionChanged)
    Q_PROPERTY(QStringList retentionChoices READ retentionChoices NOTIFY retentionChanged)
    Q_PROPERTY(int retentionIndex READ retentionIndex NOTIFY retentionChanged)
    Q_PROPERTY(bool hasHistory READ hasHistory NOTIFY historyChanged)

public:
    explicit PrivacyPaneModel(const SettingsServices &services);

    QAbstractItemModel *permissions() { return &m_permissions; }
    QString protectionSymbol() const;
    QString protectionTitle() const;
    QString protectionText() const;
    QString protectionNote() const;
    /// "1 dia" and so on; also the number that is set, where it is none of those offered.
    QStringList retentionChoices() const;
    int retentionIndex() const;
    bool hasHistory() const;

    /// Reads all permissions again and forgets what didn't open.
    Q_INVOKABLE void refresh();
    Q_INVOKABLE void request(const QString &id);
    Q_INVOKABLE void openSettings(const QString &id);
    Q_INVOKABLE void setRetention(int index);
    Q_INVOKABLE void clearHistory();

Q_SIGNALS:
    void protectionChanged();
    void retentionChanged();
    void historyChanged();

private:
    void update();

    const SettingsServices &m_services;
    RecordListModel<PermissionRow> m_permissions;
    std::map<PermissionKind, QString> m_errors;
    SettingsStore::Observation m_observer;
    DataFiles::Observation m_files;
};

} // namespace velmo
