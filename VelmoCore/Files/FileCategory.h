#pragma once

#include <QString>
#include <QUrl>

#include <boost/describe.hpp>

#include <array>
#include <optional>

namespace velmo {

/// What kind of file something is, by its name alone.
enum class FileCategory { image, pdf, archive, video, audio, text, folder, other };
BOOST_DESCRIBE_ENUM(FileCategory, image, pdf, archive, video, audio, text, folder, other)

namespace FileCategories {

inline constexpr std::array archiveExtensions = {"zip", "rar", "7z",  "tar", "gz",   "tgz",
                                                 "bz2", "tbz", "xz",  "txz", "cpio", "iso",
                                                 "lha", "lzh", "cab", "xar"};

/// Asks the file system whether it is a folder only where `isDirectory` doesn't say it.
FileCategory of(const QUrl &url, std::optional<bool> isDirectory = std::nullopt);

/// "Imagem", "Pasta" …
QString title(FileCategory category);

} // namespace FileCategories
} // namespace velmo
