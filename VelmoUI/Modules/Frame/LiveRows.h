#pragma once

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoUI/Design/RecordListModel.h"

#include <QtQml/qqmlregistration.h>

namespace velmo {

/// A live activity as a view shows it.
struct LiveRow {
    Q_GADGET
    QML_VALUE_TYPE(liveRow)
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(double progress MEMBER progress)
    Q_PROPERTY(QString meaning MEMBER meaning)
    Q_PROPERTY(QString shortTime MEMBER shortTime)
    Q_PROPERTY(QString spoken MEMBER spoken)

public:
    QString id;
    QString symbol;
    QString title;
    QString detail;
    QString value;        ///< time left or gone, or per cent; empty if it has neither
    double progress = -1; ///< 0 to 1, negative if it isn't known
    bool isCancellable = false;
    QString meaning;   ///< what the value is: "Timer · faltam 2:20", "há 0:40", "45%"
    QString shortTime; ///< the time in at most five characters; empty if the row counts none
    QString spoken;    ///< for screen readers

    bool operator==(const LiveRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(LiveRow, (),
                      (id, symbol, title, detail, value, progress, isCancellable, meaning,
                       shortTime, spoken))

/// The live activities as rows. While somebody looks and a row counts time, the rows are made
/// again at each full second of the first one that does; otherwise nothing runs.
class LiveRows : public QObject {
    Q_OBJECT

public:
    LiveRows(ActivityCenter &activity, Scheduler &scheduler);

    RecordListModel<LiveRow> &model() { return m_model; }
    const RecordListModel<LiveRow> &model() const { return m_model; }
    void setWatched(bool watched);

Q_SIGNALS:
    void changed();

private:
    void update();

    ActivityCenter &m_activity;
    Scheduler &m_scheduler;
    RecordListModel<LiveRow> m_model;
    bool m_isWatched = false;
    ScheduledTask m_nextSecond;
};

} // namespace velmo
