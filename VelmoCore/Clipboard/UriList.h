#pragma once

#include <QByteArray>
#include <QUrl>

#include <vector>

namespace velmo::UriList {

/// No list is read further.
constexpr std::size_t mostURLs = 10'000;

/// The `file` URLs of a "text/uri-list" (RFC 2483) or of the file managers' own list, whose first
/// line is a word: in their order, each once. Left out are addresses that nobody could open
/// again, such as those whose bytes aren't UTF-8.
std::vector<QUrl> files(const QByteArray &text);

/// The list with its line ends, as "text/uri-list" wants it.
QByteArray text(const std::vector<QUrl> &urls);

} // namespace velmo::UriList
