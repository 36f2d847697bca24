#pragma once

#include "VelmoCore/Foundation/Date.h"

#include <QUrl>

#include <functional>
#include <optional>
#include <vector>

/// How every output gets its name. URLs are local files.
namespace velmo::FileNaming {

using Exists = std::function<bool(const QUrl &)>;

/// Also of a folder's address that ends with a slash.
QString nameOf(const QUrl &url);

/// Whether anything stands there, a dangling link too.
bool exists(const QUrl &url);

/// `url` if it is free, else the first free of "{stem} 2.{extension}", "{stem} 3.{extension}" …; a
/// number that the stem ends with already is counted on.
QUrl uniqueURL(const QUrl &url, const Exists &exists = FileNaming::exists);

/// "{stem} {suffix}.{extension}" in `folder`; what isn't given is that of `url`. Not made unique.
QUrl output(const QUrl &url, const std::optional<QUrl> &folder = std::nullopt,
            const std::optional<QString> &suffix = std::nullopt,
            const std::optional<QString> &extension = std::nullopt);

/// Neither empty nor hidden, without "/" and ":", at most 255 characters.
bool isValid(const QString &name);

/// A new name for each of `urls` by a pattern with {nome}, {data}, {ext}, {n} and {n:WIDTH};
/// numbers count from `start`. A pattern without an extension keeps the file's.
std::vector<QString> batchNames(const std::vector<QUrl> &urls, const QString &pattern, int start,
                                Date date);

} // namespace velmo::FileNaming
