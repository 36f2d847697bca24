#pragma once

#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoSystem/Calendar/CalendarService.h"
#include "VelmoUI/Design/RecordListModel.h"

#include <QtQml/qqmlregistration.h>

namespace velmo {

/// A feed and how it stands.
struct CalendarFeedRow {
    QString id;
    QString name;
    QString address;
    QString problem;
    QString removal; ///< "Remover Feriados"

    bool operator==(const CalendarFeedRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(CalendarFeedRow, (), (id, name, address, problem, removal))

/// The calendar's section of the settings.
class CalendarFeedsModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by its module")
    Q_PROPERTY(QAbstractItemModel *feeds READ feeds CONSTANT)
    Q_PROPERTY(bool isTesting READ isTesting NOTIFY changed)
    Q_PROPERTY(QString issue READ issue NOTIFY changed)
    /// How long before an event the user hears of it.
    Q_PROPERTY(QStringList alertTitles READ alertTitles NOTIFY changed)
    Q_PROPERTY(int alertIndex READ alertIndex WRITE setAlertIndex NOTIFY changed)

public:
    /// Both outlive it.
    CalendarFeedsModel(CalendarService &calendar, SettingsStore &settings);

    QAbstractItemModel *feeds() { return &m_rows; }
    bool isTesting() const { return m_isTesting; }
    QString issue() const { return m_issue; }
    QStringList alertTitles() const;
    int alertIndex() const;
    void setAlertIndex(int index);

    /// Tries the address, and keeps what works. `added` says that it did.
    Q_INVOKABLE void add(const QString &address, const QString &name);
    Q_INVOKABLE void rename(const QString &id, const QString &name);
    Q_INVOKABLE void remove(const QString &id);

Q_SIGNALS:
    void changed();
    void added();

private:
    void update();

    CalendarService &m_calendar;
    SettingsStore &m_settings;
    RecordListModel<CalendarFeedRow> m_rows;
    QString m_issue;
    bool m_isTesting = false;
    SettingsStore::Observation m_observation;
};

} // namespace velmo
