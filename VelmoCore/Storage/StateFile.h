#pragma once

#include "VelmoCore/Storage/BackgroundSaver.h"
#include "VelmoCore/Storage/DataFiles.h"
#include "VelmoCore/Storage/JSONFileStore.h"

#include <QThreadPool>

#include <cstdint>
#include <mutex>
#include <vector>

namespace velmo {

/// The part of a `StateFile` that doesn't depend on its record: when it is read and saved, and what
/// the user has to know of that.
class StateSaving : public DataFiles::Keeper {
public:
    struct Names {
        QString label;  ///< begins the sentences for the user
        QString logged; ///< what couldn't be saved, in the log
    };

    const std::optional<QString> &loadIssue() const { return m_loadIssue; }
    /// Of the last save; nothing where it succeeded, or failed for what `loadIssue` says.
    const std::optional<QString> &lastSaveError() const { return m_lastSaveError; }
    QStringList issues() const override;
    void dismissIssues() override;
    /// While the key is awaited, and while a file is read whose key came late.
    bool isLoading() const override { return m_phase == Phase::waiting || isReading(); }
    /// False while it loads, and for a file that stays closed.
    bool isOpen() const { return m_phase == Phase::open; }

    /// Hears on the main thread what a save came to: nothing, or what it threw.
    using Done = std::function<void(const std::exception_ptr &failure)>;

    /// On this thread, before it returns. While it loads nothing is saved, and that is an issue
    /// until it has been.
    void saveNow();
    /// On another thread, at once, or after the loading. `done` hears of this save or of a later
    /// one that had all of it.
    void save(Done done = {});
    /// Waits for what is being written, and reports the result.
    void finishSaving() { m_saver.flush(); }
    /// On another thread, `delay` after the last of a burst of changes, and after the loading.
    void saveAfter(Seconds delay);
    /// Saves at once, and returns when all of it is on disk, or will not be as the key is missing.
    void flush() override;
    /// Set once: hands over what its owner holds back, before all is saved.
    std::function<void()> onFlush = [] {};

    bool holdsUnsaved() override;
    void keyCame() override;

protected:
    /// Takes the state, and gives what writes it on any thread.
    using TakeState = std::function<BackgroundSaver::Save()>;
    /// What became of a reading.
    struct Reading {
        bool isLocked = false;
        std::optional<QString> issue;
        std::function<void()> adopt; ///< hands over what was kept, if there was anything
    };
    /// Runs on any thread.
    using Read = std::function<Reading(const std::optional<DataCipher> &, Date now)>;

    /// Without `takeState` nothing is kept.
    StateSaving(const DataFiles &files, Scheduler &scheduler, const Names &names,
                TakeState takeState, std::function<void()> issuesChanged);
    ~StateSaving() override;

    /// At once, or when the key comes.
    void load(Read read);

    DataFiles m_files;
    Scheduler &m_scheduler;
    const Names m_names;

private:
    enum class Phase { open, waiting, reading, locked };
    struct Result;
    /// The last save that has come to its end on the other thread.
    struct Finished {
        std::mutex mutex; ///< guards the others
        std::uint64_t number = 0;
        std::exception_ptr failure;
    };
    struct Waiting {
        std::uint64_t number;
        Done done;
    };

    bool isReading() const { return m_phase == Phase::reading; }
    void startReading();
    void finishReading();
    void finishReading(const Reading &reading);
    void saved(const std::exception_ptr &failure);
    void tellWaiting();
    void issuesHaveChanged();

    const TakeState m_takeState;
    const std::function<void()> m_issuesChanged;
    Phase m_phase = Phase::open;
    bool m_isSaveWanted = false; ///< when it has loaded
    std::optional<QString> m_loadIssue;
    std::optional<QString> m_lastSaveError;
    Read m_read;
    std::shared_ptr<Result> m_result;
    QThreadPool m_reader; ///< it waits for its thread as it goes
    ScheduledTask m_saveTask;
    std::uint64_t m_saveCount = 0;
    std::vector<Waiting> m_waiting; ///< in the order of their numbers
    const std::shared_ptr<Finished> m_finished = std::make_shared<Finished>();
    BackgroundSaver m_saver;
};

/// Keeps a store's state in one file. Main thread only. Destroying it waits for what is being
/// written, but not for what waits for its moment: that is for `flush`.
template <class Root>
class StateFile : public StateSaving {
public:
    /// Without a `path` nothing is kept. `state` gives what is to be saved; `issuesChanged` runs
    /// when `lastSaveError` changes, when the issues are dismissed, and after a late loading.
    StateFile(
        const std::optional<QString> &path, const DataFiles &files, Scheduler &scheduler,
        const Names &names, std::function<Root()> state,
        std::function<void()> issuesChanged = [] {})
        : StateSaving(files, scheduler, names,
                      path ? taking(*path, files, std::move(state)) : TakeState(),
                      std::move(issuesChanged)),
          m_path(path)
    {
    }

    /// Hands what was kept to `adopt`, if there is anything that can be read. Where the key comes
    /// late it does so then: `adopt` adds it to what has come meanwhile. Never fails.
    void load(std::function<void(Root)> adopt)
    {
        if (!m_path)
            return;
        StateSaving::load([path = *m_path, label = m_names.label, adopt = std::move(adopt)](
                              const std::optional<DataCipher> &cipher, Date now) -> Reading {
            using Load = LoadResult<Root>;
            const auto result = std::make_shared<Load>(JSONFileStore<Root>(path, cipher).load(now));
            Reading reading;
            reading.isLocked = std::holds_alternative<typename Load::Locked>(result->outcome);
            reading.issue = result->issue(label);
            if (auto *loaded = std::get_if<typename Load::Loaded>(&result->outcome))
                reading.adopt = [result, loaded, adopt] { adopt(std::move(loaded->value)); };
            return reading;
        });
    }

private:
    static TakeState taking(const QString &path, const DataFiles &files,
                            std::function<Root()> state)
    {
        return [path, files, state = std::move(state)]() -> BackgroundSaver::Save {
            return [store = JSONFileStore<Root>(path, files.cipher()), root = state()] {
                store.save(root);
            };
        };
    }

    const std::optional<QString> m_path;
};

} // namespace velmo
