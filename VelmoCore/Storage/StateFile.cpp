#include "VelmoCore/Storage/StateFile.h"

#include "VelmoCore/Foundation/Log.h"

#include <algorithm>
#include <mutex>

namespace velmo {

/// Goes from the reading thread to the main thread.
struct StateSaving::Result {
    std::mutex mutex;
    std::optional<Reading> reading;
};

StateSaving::StateSaving(const DataFiles &files, Scheduler &scheduler, const Names &names,
                         TakeState takeState, std::function<void()> issuesChanged)
    : m_files(files), m_scheduler(scheduler), m_names(names), m_takeState(std::move(takeState)),
      m_issuesChanged(std::move(issuesChanged)),
      m_saver(scheduler, [this](const std::exception_ptr &failure) { saved(failure); })
{
    if (m_takeState)
        m_files.add(*this);
}

StateSaving::~StateSaving()
{
    m_files.remove(*this);
}

QStringList StateSaving::issues() const
{
    QStringList issues;
    for (const auto &issue : {m_loadIssue, m_lastSaveError}) {
        if (issue)
            issues.append(*issue);
    }
    return issues;
}

void StateSaving::dismissIssues()
{
    m_loadIssue.reset();
    m_lastSaveError.reset();
    issuesHaveChanged();
}

void StateSaving::saveNow()
{
    if (!m_takeState)
        return;
    std::exception_ptr failure;
    try {
        if (isLoading()) {
            m_isSaveWanted = true;
            throw LocalizedError(QStringLiteral("A chave dos dados ainda não chegou."));
        }
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
    onFlush();
    if (isReading()) {
        m_reader.waitForDone();
        finishReading();
    }
    save();
    if (!isLoading())
        m_saver.flush();
}

bool StateSaving::holdsUnsaved()
{
    onFlush();
    return isLoading() && (m_isSaveWanted || m_saveTask.isPending());
}

void StateSaving::keyCame()
{
    const bool hasKey = m_files.cipher().has_value();
    if (!m_read || isReading())
        return;
    if (m_phase == Phase::waiting || (m_phase == Phase::locked && hasKey))
        startReading();
    else if (m_phase == Phase::open && hasKey)
        save(); // it was kept in plain
}

void StateSaving::load(Read read)
{
    m_read = std::move(read);
    if (m_files.isKeyAwaited())
        m_phase = Phase::waiting;
    else
        finishReading(m_read(m_files.cipher(), m_scheduler.now()));
}

void StateSaving::startReading()
{
    // What came while the file was closed is to be saved once it is open.
    m_isSaveWanted = m_isSaveWanted || m_phase == Phase::locked;
    m_phase = Phase::reading;
    m_result = std::make_shared<Result>();
    m_reader.start([this, read = m_read, result = m_result, cipher = m_files.cipher(),
                    now = m_scheduler.now(), &scheduler = m_scheduler] {
        const Reading reading = read(cipher, now);
        {
            const std::lock_guard lock(result->mutex);
            result->reading = reading;
        }
        scheduler.post([this, reader = std::weak_ptr(result)] {
            if (reader.lock())
                finishReading();
        });
    });
}

void StateSaving::finishReading()
{
    std::unique_lock lock(m_result->mutex);
    const auto reading = std::exchange(m_result->reading, std::nullopt);
    lock.unlock();
    if (!reading)
        return; // a flush was faster
    finishReading(*reading);
    issuesHaveChanged();
}

void StateSaving::finishReading(const Reading &reading)
{
    m_phase = reading.isLocked ? Phase::locked : Phase::open;
    m_loadIssue = reading.issue;
    if (reading.adopt)
        reading.adopt();
    if (std::exchange(m_isSaveWanted, false))
        save();
}

void StateSaving::save(Done done)
{
    if (!m_takeState) {
        if (done)
            done(nullptr);
        return;
    }
    m_saveTask.cancel();
    // One that waits for the loading is part of the save after it.
    const std::uint64_t number = m_saveCount + 1;
    if (done)
        m_waiting.push_back({number, std::move(done)});
    if (isLoading()) {
        m_isSaveWanted = true;
        return;
    }
    m_saveCount = number;
    m_saver.save([write = m_takeState(), number, finished = m_finished] {
        std::exception_ptr failure;
        try {
            write();
        } catch (...) {
            failure = std::current_exception();
        }
        {
            const std::lock_guard lock(finished->mutex);
            finished->number = number;
            finished->failure = failure;
        }
        if (failure)
            std::rethrow_exception(failure);
    });
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
        issuesHaveChanged();
    tellWaiting();
}

void StateSaving::tellWaiting()
{
    std::uint64_t number = 0;
    std::exception_ptr failure;
    {
        const std::lock_guard lock(m_finished->mutex);
        number = m_finished->number;
        failure = m_finished->failure;
    }
    const auto later = std::ranges::find_if(
        m_waiting, [&](const Waiting &waiting) { return waiting.number > number; });
    std::vector<Waiting> answered(std::make_move_iterator(m_waiting.begin()),
                                  std::make_move_iterator(later));
    m_waiting.erase(m_waiting.begin(), later); // before anybody saves again
    for (const Waiting &waiting : answered)
        waiting.done(failure);
}

void StateSaving::issuesHaveChanged()
{
    m_issuesChanged();
    m_files.notify();
}

} // namespace velmo
