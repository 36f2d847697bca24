#include "VelmoCore/Jobs/JobCenter.h"

#include "VelmoCore/Foundation/Cancelled.h"
#include "VelmoCore/Storage/AtomicFile.h"

#include <QPointer>

#include <cerrno>
#include <limits>

namespace velmo {

namespace {

constexpr int rowPriority = 4;

} // namespace

JobCenter::JobCenter(ActivityCenter &activity, Scheduler &scheduler)
    : m_activity(activity), m_scheduler(scheduler)
{
    m_pool.setMaxThreadCount(std::numeric_limits<int>::max());
}

JobCenter::~JobCenter()
{
    for (auto &[id, stop] : m_tasks)
        stop.request_stop();
    m_pool.waitForDone();
}

QString JobCenter::run(const QString &title, const QString &symbol, const QString &source,
                       Work work)
{
    const Job job{QStringLiteral("job.") + uuidText(makeUuid()), title, symbol, source};
    const std::stop_token stop = m_tasks[job.id].get_token();
    const QPointer<JobCenter> self(this);
    m_activity.upsert({.id = job.id,
                       .source = source,
                       .symbol = symbol,
                       .title = title,
                       .priority = rowPriority,
                       .isCancellable = true},
                      [self, id = job.id] {
                          if (self)
                              self->cancel(id);
                      });
    Q_EMIT runningCountChanged();
    m_pool.start([self, job, stop, &scheduler = m_scheduler, work = std::move(work)] {
        JobProgress progress(scheduler, [&](auto share, const auto &detail) {
            scheduler.post([self, job, share, detail] {
                if (self)
                    self->showProgress(job, share, detail);
            });
        });
        Result result;
        try {
            result.outcome = work(progress, stop);
        } catch (...) {
            result.failure = std::current_exception();
        }
        scheduler.post([self, job, result] {
            if (self)
                self->complete(job, result);
        });
    });
    return job.id;
}

void JobCenter::showProgress(const Job &job, std::optional<double> progress,
                             const std::optional<QString> &detail)
{
    const auto task = m_tasks.find(job.id);
    if (task == m_tasks.end() || task->second.stop_requested())
        return; // its row is gone
    m_activity.upsert({.id = job.id,
                       .source = job.source,
                       .symbol = job.symbol,
                       .title = job.title,
                       .detail = detail,
                       .progress = progress,
                       .priority = rowPriority,
                       .isCancellable = true});
}

void JobCenter::cancel(const QString &id)
{
    if (const auto task = m_tasks.find(id); task != m_tasks.end())
        task->second.request_stop();
}

void JobCenter::complete(const Job &job, const Result &result)
{
    m_tasks.erase(job.id);
    Q_EMIT runningCountChanged();
    if (!result.failure)
        onOutputs(result.outcome.outputURLs);
    m_activity.finish(job.id, eventOf(job, result));
    Q_EMIT ended(job.id, result.outcome, result.failure);
}

ActivityEvent JobCenter::eventOf(const Job &job, const Result &result) const
{
    const auto make = [&](const char16_t *symbol, const QString &title, FeedbackStyle style,
                          const std::optional<QString> &detail = std::nullopt) {
        return ActivityEvent::make(m_scheduler.now(), QString::fromUtf16(symbol), title, style,
                                   job.source, detail, result.outcome.outputURLs);
    };
    const auto failed = [&](const QString &reason) {
        return make(u"exclamationmark.triangle.fill", QStringLiteral("%1: falhou").arg(job.title),
                    FeedbackStyle::error, reason);
    };
    const auto cancelled = [&] {
        return make(u"xmark.circle", QStringLiteral("%1: cancelado").arg(job.title),
                    FeedbackStyle::info);
    };
    try {
        if (result.failure)
            std::rethrow_exception(result.failure);
        const JobOutcome &outcome = result.outcome;
        return make(outcome.style == FeedbackStyle::error ? u"exclamationmark.triangle.fill"
                                                          : u"checkmark.circle.fill",
                    outcome.message, outcome.style, outcome.detail);
    } catch (const Cancelled &) {
        return cancelled();
    } catch (const FileError &error) {
        return error.code() == ECANCELED ? cancelled() : failed(error.description());
    } catch (const LocalizedError &error) {
        return failed(error.description());
    } catch (const std::exception &error) {
        return failed(QString::fromUtf8(error.what()));
    }
}

} // namespace velmo
