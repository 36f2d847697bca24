#pragma once

#include <QString>

/// Sizes on disk, and clearing a folder.
namespace velmo::StorageInspector {

/// Allocated bytes of all regular files under `path`, hidden ones included; links are not followed.
/// 0 for what can't be listed.
qint64 size(const QString &path);

/// A byte count as a file manager writes it, in the user's locale.
QString format(qint64 bytes);

/// Removes what the folder holds, not the folder. Throws `FileError` for the first failure.
void clearContents(const QString &path);

} // namespace velmo::StorageInspector
