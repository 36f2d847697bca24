#pragma once

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Jobs/JobProgress.h"

#include <QObject>
#include <QThreadPool>

#include <exception>
#include <functional>
#include <map>
#include <stop_token>

namespace velmo {

/// What a job's work came to.
struct JobOutcome {
    QString message;
    std::optional<QString> detail;
    std::vector<QUrl> outputURLs;
    FeedbackStyle style = FeedbackStyle::success;
};

/// Long work in the background, each with a live row that shows its progress and cancels it, and an
/// event at its end. Main thread only; the work runs on a thread of the pool.
class JobCenter : public QObject {
    Q_OBJECT
    Q_PROPERTY(int runningCount READ runningCount NOTIFY runningCountChanged)

public:
    /// Throws what went wrong: `Cancelled` where it heeded the token, any `LocalizedError` else.
    using Work = std::function<JobOutcome(JobProgress &, std::stop_token)>;

    JobCenter(ActivityCenter &activity, Scheduler &scheduler);
    /// Asks every job to stop and waits for it.
    ~JobCenter() override;

    /// Gives the job's id.
    QString run(const QString &title, const QString &symbol, const QString &source, Work work);

    int runningCount() const { return int(m_tasks.size()); }

    /// What the jobs made; set once at start.
    std::function<void(const std::vector<QUrl> &)> onOutputs = [](const auto &) {};

Q_SIGNALS:
    void runningCountChanged();
    /// A job is over and its event posted. `failure` is what it threw, null where it has an
    /// outcome.
    void ended(const QString &id, const velmo::JobOutcome &outcome,
               const std::exception_ptr &failure);

private:
    struct Job {
        QString id;
        QString title;
        QString symbol;
        QString source;
    };
    struct Result {
        JobOutcome outcome;
        std::exception_ptr failure; ///< null where there is an outcome
    };

    void showProgress(const Job &job, std::optional<double> progress,
                      const std::optional<QString> &detail);
    void cancel(const QString &id);
    void complete(const Job &job, const Result &result);
    ActivityEvent eventOf(const Job &job, const Result &result) const;

    ActivityCenter &m_activity;
    Scheduler &m_scheduler;
    std::map<QString, std::stop_source> m_tasks;
    QThreadPool m_pool;
};

} // namespace velmo
