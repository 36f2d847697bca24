#pragma once

#include <QString>

namespace velmo {

/// The application's directories, as absolute paths. Folders are made with mode 0700.
struct AppPaths {
    QString support;
    QString caches;
    QString temporary;

    /// `$XDG_DATA_HOME`, `$XDG_CACHE_HOME` and `$XDG_RUNTIME_DIR`, each with `appName` appended
    /// (freedesktop base directories). Without a runtime directory, the temporary one is
    /// /tmp/{appName}-{uid}. Data and caches of `legacyName` are moved over first, if there are
    /// any. A runtime directory that isn't this user's counts as none.
    static AppPaths standard(const QString &appName, const QString &legacyName = {});

    QString settingsFile() const;
    QString activityHistoryFile() const;
    /// A file or folder of a store in `support`.
    QString supportFile(const QString &name) const;

    /// Makes the three directories in this order. Throws `FileError` for the first that fails, also
    /// where `temporary` exists and belongs to somebody else.
    void ensureExists() const;

    /// Removes what lies in `temporary`, if it is ours; what can't be removed stays.
    void purgeTemporary() const;

    /// Moves the directory `from` to `to` once and leaves a link behind. Reports nothing.
    static void migrate(const QString &from, const QString &to);

    /// The base directory of an environment variable, else the one at `underHome` in the user's
    /// home. A relative path in the variable is passed over.
    static QString baseDirectory(const char *variable, const QString &underHome);

    bool operator==(const AppPaths &) const = default;
};

} // namespace velmo
