#pragma once

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoSystem/FileProcessing/FileJobs.h"
#include "VelmoSystem/FileProcessing/ToolsSelection.h"

#include <deque>

namespace velmo {

/// The work of the Tools pages of all panels: one job at a time, the archives that wait, the
/// question for a password, and the undo. It goes on whether or not a page shows it. Main thread
/// only.
class ToolsWork : public QObject {
    Q_OBJECT

public:
    static constexpr Seconds undoTime = 8s;

    ToolsWork(ToolsSelection &selection, JobCenter &jobs, ActivityCenter &activity,
              Scheduler &scheduler);

    bool isRunning() const { return !m_jobID.isEmpty(); }
    const QString &jobID() const { return m_jobID; }
    const QString &jobTitle() const { return m_jobTitle; }
    /// The result of the last job, or why it failed.
    const QString &note() const { return m_note; }
    bool isNoteError() const { return m_isNoteError; }
    void report(const QString &note, bool isError);
    /// What the last job made.
    const std::vector<QUrl> &outputs() const { return m_outputs; }
    bool canUndo() const { return !isRunning() && !m_undo.now.empty(); }

    /// Those that work on the files chosen do nothing while a job runs.
    void rename(const QString &pattern, int start);
    void duplicate();
    void organize();
    void moveTo(const QUrl &folder);
    void zip(const QString &name);
    void undo();
    /// Ends the job, and forgets the archives that wait.
    void cancel();

    /// Unpacks the archives chosen one after the other, each beside itself without a `folder`.
    void extract(const std::optional<QUrl> &folder);
    /// Lists the archive chosen.
    void list();
    /// The archive that was listed, and its entries.
    const std::optional<QUrl> &listed() const { return m_listed; }
    const std::vector<ArchiveEntry> &entries() const { return m_entries; }

    /// The archive whose password is asked for, and what the archive tools say of it.
    std::optional<QUrl> lockedArchive() const;
    QString passwordQuestion() const;
    /// While another job runs, the archive is tried next.
    void usePassword(const QString &password);
    /// Leaves that archive as it is.
    void declinePassword();

Q_SIGNALS:
    void changed();
    void passwordChanged();
    void entriesChanged();
    /// Nothing runs any more.
    void finished();

private:
    /// What is to be done with an archive.
    struct Step {
        QUrl archive;
        bool isListing = false;
        std::optional<QUrl> folder = std::nullopt;
        std::optional<QString> password = std::nullopt;
        QString question = {}; ///< while its password is asked for
    };
    struct Job {
        FileJob tool;
        std::function<void()> done = [] {}; ///< on the main thread, after a success
        bool isUndo = false;
        std::optional<Step> step = std::nullopt;
    };

    const std::vector<QUrl> &urls() const { return m_selection.urls(); }
    void run(Job job);
    void finish(const Job &job, const JobOutcome &outcome, const MovedFiles &moved);
    void fail(const Job &job, const std::exception_ptr &failure, const MovedFiles &moved);
    /// Starts what waits, or reports that nothing does.
    void goOn();
    void extractNow(const Step &step);
    void listNow(const Step &step);
    void offerUndo(const MovedFiles &moved);
    /// Selects the moved files at their new places.
    void follow(const MovedFiles &moved);
    void takeFiles();
    void closeTool(const QString &tool);
    void askFor(Step step, const QString &question);
    void questionsChanged();

    ToolsSelection &m_selection;
    JobCenter &m_jobs;
    ActivityCenter &m_activity;
    Scheduler &m_scheduler;
    std::vector<QUrl> m_taken; ///< the files when they last changed

    QString m_jobID;
    QString m_jobTitle;
    QString m_note;
    bool m_isNoteError = false;
    std::vector<QUrl> m_outputs;
    MovedFiles m_undo;
    ScheduledTask m_undoEnd;

    std::deque<Step> m_waiting;
    std::deque<Step> m_locked; ///< each needs a password; the first one is asked for
    QString m_queueFailure;    ///< the last one of a row of archives
    std::optional<QUrl> m_listed;
    std::vector<ArchiveEntry> m_entries;
};

} // namespace velmo
