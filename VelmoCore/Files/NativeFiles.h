#pragma once

#include "VelmoCore/Foundation/Cancelled.h"
#include "VelmoCore/Storage/Descriptor.h"

#include <QFile>

#include <stop_token>
#include <string>
#include <sys/stat.h>

/// The kernel's calls on files by their native paths, with failures thrown as `FileError`.
namespace velmo::NativeFiles {

/// A path for the user; names that aren't text lose something.
inline QString shown(const std::string &path)
{
    return QFile::decodeName(path.c_str());
}

[[noreturn]] inline void fail(const std::string &path, int code = errno)
{
    throw FileError(shown(path), code);
}

inline void orFail(int result, const std::string &path)
{
    if (result < 0)
        fail(path);
}

/// Throws `Cancelled`.
inline void heed(const std::stop_token &stop)
{
    if (stop.stop_requested())
        throw Cancelled();
}

/// Whether anything stands there, a dangling link too; errno says why not.
bool stands(const std::string &path);

/// 0, or -1 with errno; EEXIST where something stands at `to`.
int renameWithoutReplacing(const std::string &from, const std::string &to);

/// Removes what isn't to stay; a failure leaves a hidden file and a line in the log.
void discard(const std::string &path);

/// Follows no link.
inline struct stat stated(const std::string &path)
{
    struct stat entry = {};
    orFail(::lstat(path.c_str(), &entry), path);
    return entry;
}

/// Some file systems don't sync a folder and say so with EINVAL.
inline void sync(int descriptor, const std::string &path)
{
    if (retried([&] { return ::fsync(descriptor); }) < 0 && errno != EINVAL)
        fail(path);
}

} // namespace velmo::NativeFiles
