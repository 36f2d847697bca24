#pragma once

#include "VelmoCore/Foundation/Date.h"
#include "VelmoCore/Foundation/LocalizedError.h"

#include <QByteArray>
#include <QString>

#include <limits>
#include <optional>

namespace velmo {

/// A failed operation on a file, with the system's reason in the user's language.
class FileError : public LocalizedError {
public:
    /// `code` is an errno value.
    FileError(const QString &path, int code);
    /// The same failure, with sentences on what it came to, if any.
    FileError(const FileError &cause, const QString &consequence);

    int code() const { return m_code; }

private:
    int m_code;
};

/// Replacing a file without risk, and setting an unreadable one aside.
namespace AtomicFile {

/// Writes `data` as the whole of `path`: a temporary file in the same directory (mode 0600) that is
/// renamed over the target. File and folder are synced before it returns. Missing parent folders
/// are made (mode 0700). A `path` that is a link keeps being one. Throws `FileError`; the earlier
/// file then stands untouched.
void write(const QByteArray &data, const QString &path);

/// As `write`, but never replaces: false where anything stands at `path`, a link too.
bool create(const QByteArray &data, const QString &path);

/// The content, or its first `limit` bytes. Throws `FileError`.
QByteArray read(const QString &path, qint64 limit = std::numeric_limits<qint64>::max());

/// Renames the file to "{stem}.corrupt-{seconds}.{extension}" in its folder and gives the new path.
/// Never replaces a file. Logs a failure and gives nothing.
std::optional<QString> quarantine(const QString &path, Date now);

/// Removes the temporary files that a killed `write` to `path` left behind. What can't be removed
/// stays, and so does what another process is writing.
void removeStrays(const QString &path);

/// Makes a folder and its missing parents, each with mode 0700. Throws `FileError`.
void makeDirectory(const QString &path);

} // namespace AtomicFile
} // namespace velmo
