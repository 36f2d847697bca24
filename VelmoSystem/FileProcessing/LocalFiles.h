#pragma once

#include <QUrl>

#include <optional>
#include <vector>

/// Files as other programs name them: "file:" URLs (RFC 8089).
namespace velmo::LocalFiles {

/// The URL of an absolute path without host, dots and trailing slash; nothing for what isn't on
/// this computer or can't be a path.
std::optional<QUrl> fromURL(const QUrl &url);

/// Throws `LocalizedError` if one of them isn't on this computer or doesn't exist.
std::vector<QUrl> existing(const std::vector<QUrl> &urls);

} // namespace velmo::LocalFiles
