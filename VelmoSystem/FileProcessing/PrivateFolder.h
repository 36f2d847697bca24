#pragma once

#include <QString>

namespace velmo {

/// A folder in the system's temporary directory, for nobody else. It goes with its owner, whatever
/// happens, or at the next start after the owner was killed. Nothing in it may be a user's only
/// copy.
class PrivateFolder {
public:
    enum class Purpose { extraction, compression };

    /// Throws `FileError`.
    explicit PrivateFolder(Purpose purpose);
    PrivateFolder(const PrivateFolder &) = delete;
    PrivateFolder &operator=(const PrivateFolder &) = delete;
    ~PrivateFolder();

    const QString &path() const { return m_path; }
    QString path(const QString &name) const { return m_path + u'/' + name; }
    /// Throws `FileError`.
    QString makeFolder(const QString &name) const;

    /// Removes this user's folders whose owner was killed. Takes its time with large ones.
    static void removeLeftovers();

private:
    QString m_path;
    int m_lock = -1; ///< on the folder; held by whoever lives
};

} // namespace velmo
