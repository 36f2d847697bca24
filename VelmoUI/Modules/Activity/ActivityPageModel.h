#pragma once

#include "VelmoUI/Design/PanelMetrics.h"
#include "VelmoUI/Modules/Activity/LiveRows.h"

#include <QtQml/qqmlregistration.h>

namespace velmo {

class AppServices;

/// A finished event as the page shows it.
struct HistoryRow {
    QString id;
    QString symbol;
    QString title;
    QString detail;
    QString time; ///< "14:32" today, "ontem, 14:32", else "12 mar., 14:32"
    QString style;
    bool hasFiles = false;
    QString summary; ///< time and detail in one line
    QString spoken;  ///< for screen readers

    bool operator==(const HistoryRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(HistoryRow, (),
                      (id, symbol, title, detail, time, style, hasFiles, summary, spoken))

/// The Activity page of one panel.
class ActivityPageModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by its module")
    Q_PROPERTY(QAbstractItemModel *live READ live CONSTANT)
    Q_PROPERTY(QAbstractItemModel *recent READ recent CONSTANT)
    /// Of one live card, and of all side by side, in points.
    Q_PROPERTY(qreal liveCardWidth READ liveCardWidth CONSTANT)
    Q_PROPERTY(qreal liveWidth READ liveWidth NOTIFY changed)
    Q_PROPERTY(bool hasLive READ hasLive NOTIFY changed)
    Q_PROPERTY(bool hasRecent READ hasRecent NOTIFY changed)

public:
    explicit ActivityPageModel(AppServices &services);

    QAbstractItemModel *live() { return &m_live.model(); }
    QAbstractItemModel *recent() { return &m_recent; }
    qreal liveCardWidth() const { return 250; }
    qreal liveWidth() { return PanelMetrics::row(m_live.model().rowCount(), liveCardWidth()); }
    bool hasLive() { return m_live.model().rowCount() > 0; }
    bool hasRecent() const { return m_recent.rowCount() > 0; }

    /// Whether the page can be seen; rows that count time run only then.
    Q_INVOKABLE void setWatched(bool watched);
    Q_INVOKABLE void cancel(const QString &id);
    Q_INVOKABLE void reveal(const QString &id);
    Q_INVOKABLE void clearHistory();

Q_SIGNALS:
    void changed();

private:
    void updateRecent();

    AppServices &m_services;
    LiveRows m_live;
    RecordListModel<HistoryRow> m_recent;
};

} // namespace velmo
