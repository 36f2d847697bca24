#pragma once

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoCore/Foundation/Uuid.h"

#include <QObject>
#include <QUrl>

#include <vector>

namespace velmo {

/// What the last drop moved into the notch, for as long as that can be taken back. Main thread
/// only.
class DropUndo : public QObject {
    Q_OBJECT

public:
    static constexpr Seconds time = 8s;

    struct File {
        Uuid item;
        QUrl original; ///< where it stood
    };

    explicit DropUndo(Scheduler &scheduler) : m_scheduler(scheduler) {}

    bool isOffered() const { return !m_files.empty(); }
    const std::vector<File> &files() const { return m_files; }
    /// What the notice about it says.
    const QString &title() const { return m_title; }
    /// "12 itens"; empty for one.
    QString detail() const;

    void offer(std::vector<File> files, const QString &title);
    /// Gives the files and ends the offer.
    std::vector<File> take();

Q_SIGNALS:
    void changed();

private:
    Scheduler &m_scheduler;
    std::vector<File> m_files;
    QString m_title;
    ScheduledTask m_end;
};

/// "Movido de Documentos", or from how many folders these come. For any thread.
QString movedFromTitle(const std::vector<QUrl> &originals);

} // namespace velmo
