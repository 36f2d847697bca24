#pragma once

#include <QHash>
#include <QObject>
#include <QSet>
#include <QThreadPool>
#include <QUrl>

#include <vector>

namespace velmo {

class Scheduler;

/// What files on the result surface are. Each is looked at once, on another thread: their disk may
/// be slow. Main thread only.
class DroppedFiles : public QObject {
    Q_OBJECT

public:
    struct Details {
        bool isFolder = false;
        qint64 size = 0; ///< bytes
    };

    /// The scheduler outlives it.
    explicit DroppedFiles(Scheduler &scheduler);

    /// Null until the file has been looked at.
    const Details *find(const QUrl &file) const;
    /// Looks at those that aren't known yet and forgets all others.
    void follow(const QSet<QUrl> &files);
    /// The same file stands elsewhere now.
    void move(const QUrl &from, const QUrl &to);

Q_SIGNALS:
    /// More is known.
    void changed();

private:
    Scheduler &m_scheduler;
    QHash<QUrl, Details> m_details;
    QSet<QUrl> m_asked;
    QThreadPool m_reader; ///< one thread; it waits for it as it goes
};

} // namespace velmo
