#pragma once

#include "VelmoCore/Foundation/Cancelled.h"
#include "VelmoCore/Storage/AtomicFile.h"

#include <QUrl>

#include <functional>
#include <optional>
#include <stop_token>

namespace velmo {

/// Moving and copying a user's files and folders. What stands at a target is never replaced, and a
/// file is always whole in exactly one known place: after a failure where it was.
namespace FileTransfer {

/// How far a copy has come, 0 to 1; reported by the thread that copies, and often.
using Progress = std::function<void(double)>;

/// Renames; across file systems copies, verifies, then removes the original. Throws `FileError`
/// (EEXIST where something stands at `to`, EBUSY where the original is being written) and
/// `Cancelled`; then the original stands untouched, as the text says, and nothing is left at `to`.
void move(const QString &from, const QString &to, const std::stop_token &stop = {});

/// Modification times, modes, links and extended attributes survive. Throws as `move` does.
void copy(const QString &from, const QString &to, const std::stop_token &stop = {});

/// To `to` or, where that is taken, to the name that `FileNaming::uniqueURL` gives; also when it is
/// taken in the last moment. Give where it went.
QUrl moveUnique(const QUrl &from, const QUrl &to, const std::stop_token &stop = {},
                const Progress &progress = {});
QUrl copyUnique(const QUrl &from, const QUrl &to, const std::stop_token &stop = {},
                const Progress &progress = {});
/// What `moveUnique` does where that takes no copy, and so no time; nothing, and nothing has
/// happened, where `to` is on another file system.
std::optional<QUrl> renameUnique(const QUrl &from, const QUrl &to);

} // namespace FileTransfer
} // namespace velmo
