#pragma once

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoCore/Settings/AppSettings.h"
#include "VelmoCore/Storage/DataFiles.h"

#include <QObject>
#include <QStringList>

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace velmo {

/// The live settings record: loads it, announces each change, saves it a moment later. Main thread
/// only; the file is plain JSON, so that it can be read when the key store is out of order.
class SettingsStore : public QObject, private DataFiles::Keeper {
    Q_OBJECT

public:
    using Observer = std::function<void(const AppSettings &before, const AppSettings &after)>;
    /// Ends when the handle goes.
    using Observation = std::shared_ptr<const Observer>;

    static constexpr Seconds defaultSaveDelay = 0.3s;

    /// An import of a file that holds no settings.
    class ImportError : public LocalizedError {
    public:
        ImportError();
    };

    /// Loads at once; never fails.
    SettingsStore(const QString &path, const DataFiles &files, Scheduler &scheduler,
                  Seconds saveDelay = defaultSaveDelay);
    ~SettingsStore() override;

    const AppSettings &settings() const { return m_settings; }
    /// What went wrong at loading, for the user; shown until the next start.
    const std::optional<QString> &loadIssue() const { return m_loadIssue; }
    const QString &path() const { return m_path; }
    /// What the user hasn't read yet: of the loading, and of a save that failed.
    QStringList issues() const override;
    void dismissIssues() override;

    /// `change` alters a copy of the record, which then replaces it. An equal record changes
    /// nothing.
    void update(const std::function<void(AppSettings &)> &change);
    /// All defaults but `hasCompletedOnboarding`.
    void resetToDefaults();

    /// `observer` runs after each change, on the main thread, until the handle goes. It may change
    /// the settings and drop handles; every observer sees the changes in the order they were made.
    [[nodiscard]] Observation observe(Observer observer);

    /// Saves what has changed, at once. A failure is an issue; the record in memory stays.
    void flush() override;

    /// Throws `FileError`.
    void exportTo(const QString &path) const;
    /// Replaces the record but `hasCompletedOnboarding`, and gives the discarded keys. Throws
    /// `FileError` and `ImportError`, both of which change nothing.
    StringList importFrom(const QString &path);
    /// The same with a file's content. Throws `ImportError`.
    StringList importContent(const QByteArray &content);

Q_SIGNALS:
    void settingsChanged();

private:
    bool isLoading() const override { return false; }
    bool holdsUnsaved() override { return false; }
    void keyCame() override {}

    void setSaveError(const std::optional<QString> &error);
    void load();
    void apply(const AppSettings &settings);
    void announceChanges();
    void announce(const AppSettings &before, const AppSettings &after);

    QString m_path;
    DataFiles m_files;
    Scheduler &m_scheduler;
    Seconds m_saveDelay;
    AppSettings m_settings;
    std::optional<QString> m_loadIssue;
    bool m_isLoadIssueRead = false;
    std::optional<QString> m_lastSaveError;
    bool m_isUnsaved = false;
    /// Whether what stands at the path is what couldn't be read.
    bool m_isUnread = false;
    std::vector<std::weak_ptr<const Observer>> m_observers;
    /// Before and after of the changes that the observers don't know yet.
    std::deque<std::pair<AppSettings, AppSettings>> m_unannounced;
    bool m_isAnnouncing = false;
    ScheduledTask m_saveTask;
};

} // namespace velmo
