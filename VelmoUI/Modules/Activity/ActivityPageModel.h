#pragma once

#include "VelmoUI/Design/Feedback.h"
#include "VelmoUI/Design/PanelMetrics.h"
#include "VelmoUI/Modules/Frame/LiveRows.h"
#include "VelmoUI/Modules/Frame/ModulePage.h"

#include <QtQml/qqmlregistration.h>

namespace velmo {

class FileViewer;

/// A finished event as the page shows it.
struct HistoryRow {
    QString id;
    QString symbol;
    QString title;
    QString detail;
    QString time; ///< "14:32" today, "ontem, 14:32", else "12 mar., 14:32"
    Feedback::Style style = Feedback::Info;
    bool hasFiles = false;
    QString summary; ///< time and detail in one line
    QString spoken;  ///< for screen readers

    bool operator==(const HistoryRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(HistoryRow, (),
                      (id, symbol, title, detail, time, style, hasFiles, summary, spoken))

/// The Activity page of one panel.
class ActivityPageModel : public velmo::ModulePage {
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
    ActivityPageModel(ActivityCenter &activity, FileViewer &fileViewer, Scheduler &scheduler);

    QAbstractItemModel *live() { return &m_live.model(); }
    QAbstractItemModel *recent() { return &m_recent; }
    qreal liveCardWidth() const { return 250; }
    qreal liveWidth() { return PanelMetrics::row(m_live.model().rowCount(), liveCardWidth()); }
    bool hasLive() { return m_live.model().rowCount() > 0; }
    bool hasRecent() const { return m_recent.rowCount() > 0; }

    Q_INVOKABLE void cancel(const QString &id);
    Q_INVOKABLE void reveal(const QString &id);
    Q_INVOKABLE void clearHistory();

Q_SIGNALS:
    void changed();

private:
    void watch(bool isWatched) override;
    void updateRecent();

    ActivityCenter &m_activity;
    FileViewer &m_fileViewer;
    Scheduler &m_scheduler;
    LiveRows m_live;
    RecordListModel<HistoryRow> m_recent;
};

} // namespace velmo
