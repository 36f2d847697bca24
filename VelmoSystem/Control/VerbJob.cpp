#include "VelmoSystem/Control/VerbJob.h"

#include <QPointer>

#include <algorithm>

namespace velmo {

namespace {

void report(const QString &id, const ActivityCenter &activity, const VerbReply &reply)
{
    constexpr double unknown = -1;
    const auto row = std::ranges::find(activity.live(), id, &LiveActivity::id);
    if (row != activity.live().end())
        reply.reportProgress(row->progress.value_or(unknown), row->detail.value_or(row->title));
}

void conclude(const JobOutcome &outcome, const std::exception_ptr &failure, const VerbReply &reply,
              const std::function<void(const JobOutcome &)> &answer)
{
    try {
        if (failure)
            std::rethrow_exception(failure);
        if (outcome.style != FeedbackStyle::error)
            answer(outcome);
        else if (outcome.detail)
            reply.fail(QStringLiteral("%1: %2").arg(outcome.message, *outcome.detail));
        else
            reply.fail(outcome.message);
    } catch (const LocalizedError &error) {
        reply.fail(error.description());
    } catch (const std::exception &error) {
        reply.fail(QString::fromUtf8(error.what()));
    }
}

} // namespace

void VerbJob::follow(const QString &id, JobCenter &jobs, ActivityCenter &activity,
                     const VerbReply &reply, std::function<void(const JobOutcome &)> answer)
{
    auto *watch = new QObject(&jobs);
    QObject::connect(&activity, &ActivityCenter::liveChanged, watch,
                     [id, &activity, reply] { report(id, activity, reply); });
    QObject::connect(&jobs, &JobCenter::ended, watch,
                     [id, watch, reply,
                      answer = std::move(answer)](const QString &ended, const JobOutcome &outcome,
                                                  const std::exception_ptr &failure) {
                         if (ended != id)
                             return;
                         watch->deleteLater();
                         conclude(outcome, failure, reply, answer);
                     });
    reply.onCancelled([id, activity = QPointer(&activity)] {
        if (activity)
            activity->cancel(id);
    });
}

} // namespace velmo
