#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// Names of files in archives that say nothing of how they are written.
namespace velmo::NameEncoding {

/// The code page that the lines of `text` which aren't UTF-8 were most likely written in, by a name
/// that both iconv and ICU know. Nothing where all is UTF-8.
std::optional<QByteArray> guess(const QByteArray &text);

/// Line by line: as UTF-8 where it is that, else in that code page.
QString decoded(const QByteArray &text, const QByteArray &codePage);

} // namespace velmo::NameEncoding
