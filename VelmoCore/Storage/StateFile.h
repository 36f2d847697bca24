#pragma once

#include "VelmoCore/Storage/BackgroundSaver.h"
#include "VelmoCore/Storage/JSONFileStore.h"

namespace velmo {

/// The part of a `StateFile` that doesn't depend on its record: when it is saved, and what the user
/// has to know of it.
class StateSaving {
public:
    struct Names {
        QString label;  ///< begins the sentences for the user
        QString logged; ///< what couldn't be saved, in the log
    };

    const std::optional<QString> &loadIssue() const { return m_loadIssue; }
    /// Of the last save; nothing where it succeeded, or failed for what `loadIssue` tells.
    const std::optional<QString> &lastSaveError() const { return m_lastSaveError; }
    void dismissIssues();

    /// On this thread, before it returns.
    void saveNow();
    /// On another thread, `delay` after the last of a burst of changes.
    void saveAfter(Seconds delay);
    /// Saves at once, and returns when all of it is on disk.
    void flush();

protected:
    /// Takes the state, and gives what writes it on any thread.
    using TakeState = std::function<BackgroundSaver::Save()>;

    /// Without `takeState` nothing is kept.
    StateSaving(Scheduler &scheduler, const Names &names, TakeState takeState,
                std::function<void()> issuesChanged);
    ~StateSaving() = default;

    Scheduler &m_scheduler;
    const Names m_names;
    std::optional<QString> m_loadIssue;

private:
    void save();
    void saved(const std::exception_ptr &failure);

    const TakeState m_takeState;
    const std::function<void()> m_issuesChanged;
    std::optional<QString> m_lastSaveError;
    ScheduledTask m_saveTask;
    BackgroundSaver m_saver;
};

/// Keeps a store's state in one file. Main thread only. Destroying it waits for what is being
/// written, but not for what waits for its moment: that is for `flush`.
template <class Root>
class StateFile : public StateSaving {
public:
    /// Without a `path` nothing is kept. `state` gives what is to be saved; `issuesChanged` runs
    /// when `lastSaveError` changes, and when the issues are dismissed.
    StateFile(
        const std::optional<QString> &path, const std::optional<DataCipher> &cipher,
        Scheduler &scheduler, const Names &names, std::function<Root()> state,
        std::function<void()> issuesChanged = [] {})
        : StateFile(path ? std::optional(Store(*path, cipher)) : std::nullopt, scheduler, names,
                    std::move(state), std::move(issuesChanged))
    {
    }

    /// What was kept, if there is anything that can be read. Never fails.
    std::optional<Root> load()
    {
        if (!m_store)
            return std::nullopt;
        const LoadResult<Root> result = m_store->load(m_scheduler.now());
        m_loadIssue = result.issue(m_names.label);
        return result.value();
    }

private:
    using Store = JSONFileStore<Root>;

    StateFile(const std::optional<Store> &store, Scheduler &scheduler, const Names &names,
              std::function<Root()> state, std::function<void()> issuesChanged)
        : StateSaving(scheduler, names, store ? taking(*store, std::move(state)) : TakeState(),
                      std::move(issuesChanged)),
          m_store(store)
    {
    }

    static TakeState taking(const Store &store, std::function<Root()> state)
    {
        return [store, state = std::move(state)]() -> BackgroundSaver::Save {
            return [store, root = state()] { store.save(root); };
        };
    }

    const std::optional<Store> m_store;
};

} // namespace velmo
