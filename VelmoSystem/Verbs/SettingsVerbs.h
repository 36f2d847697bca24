#pragma once

#include "VelmoCore/Settings/AppSettings.h"
#include "VelmoSystem/Control/Verb.h"

#include <QThreadPool>

namespace velmo {

class Scheduler;
class SettingsStore;

/// What scripts do with the settings.
class SettingsVerbs {
public:
    static std::vector<VerbSyntax> syntaxes();

    SettingsVerbs(SettingsStore &settings, Scheduler &scheduler);

    /// They work for as long as this object exists.
    std::vector<Verb> verbs();

    /// The keys whose values differ, sorted.
    static QStringList changedKeys(const AppSettings &before, const AppSettings &after);

private:
    /// What is left to do on the main thread; gives what the caller reads.
    using MainPart = std::function<QString()>;

    void list(const VerbReply &reply) const;
    void show(const QString &key, const VerbReply &reply) const;
    void set(const QString &key, const QString &text, const VerbReply &reply);
    void exportTo(const QString &path, bool replaces, const VerbReply &reply);
    void importFrom(const QString &path, const VerbReply &reply);
    /// Either part may throw `LocalizedError`.
    void runOnThread(const std::function<MainPart()> &work, const VerbReply &reply);

    SettingsStore &m_settings;
    Scheduler &m_scheduler;
    QThreadPool m_files; ///< it waits for its threads as it goes
};

} // namespace velmo
