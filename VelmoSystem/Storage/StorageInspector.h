#pragma once

#include <QString>

#include <stop_token>

/// Sizes on disk, and clearing a folder.
namespace velmo::StorageInspector {

/// Allocated bytes of all regular files under `path`, hidden ones included; links are not followed.
/// 0 for what can't be listed. After a request to stop, what was counted so far.
qint64 size(const QString &path, const std::stop_token &stop = {});

/// A byte count as a file manager writes it, in the user's locale.
QString format(qint64 bytes);

/// Removes what the folder holds, not the folder. Throws `FileError` for the first failure.
void clearContents(const QString &path);

} // namespace velmo::StorageInspector
