#include "VelmoCore/Storage/StateFile.h"

#include "VelmoCore/Foundation/Log.h"

namespace velmo {

StateSaving::StateSaving(Scheduler &scheduler, const Names &names, TakeState takeState,
                         std::function<void()> issuesChanged)
    : m_scheduler(scheduler), m_names(names), m_takeState(std::move(takeState)),
      m_issuesChanged(std::move(issuesChanged)),
      m_saver(scheduler, [this](const std::exception_ptr &failure) { saved(failure); })
{
}

void StateSaving::dismissIssues()
{
    m_loadIssue.reset();
    m_lastSaveError.reset();
    m_issuesChanged();
}

void StateSaving::saveNow()
{
    if (!m_takeState)
        return;
    std::exception_ptr failure;
    try {
        m_takeState()();
    } catch (const LocalizedError &) {
        failure = std::current_exception();
    }
    saved(failure);
}

void StateSaving::saveAfter(Seconds delay)
{
    if (m_takeState)
        m_saveTask = m_scheduler.after(delay, [this] { save(); });
}

void StateSaving::flush()
{
    if (!m_takeState)
        return;
    save();
    m_saver.flush();
}

void StateSaving::save()
{
    m_saveTask.cancel();
    m_saver.save(m_takeState());
}

void StateSaving::saved(const std::exception_ptr &failure)
{
    std::optional<QString> issue;
    try {
        if (failure)
            std::rethrow_exception(failure);
    } catch (const LocalizedError &error) {
        qCWarning(Log::storage).noquote()
            << QStringLiteral("Falha ao salvar %1:").arg(m_names.logged) << error.description();
        issue = JSONFile::saveIssue(error, m_names.label, m_loadIssue);
    }
    if (std::exchange(m_lastSaveError, issue) != issue)
        m_issuesChanged();
}

} // namespace velmo
