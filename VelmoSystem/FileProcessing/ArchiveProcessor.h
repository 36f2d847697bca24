#pragma once

#include "VelmoCore/Jobs/JobProgress.h"
#include "VelmoSystem/FileProcessing/ArchiveEngine.h"

#include <QUrl>

#include <optional>
#include <stop_token>
#include <vector>

/// Archives by the command-line tools `7zz` and `bsdtar`. An archive is taken for hostile: what it
/// holds is unpacked into a private folder, checked and cleaned, and only then moved to the user.
/// For a job's thread: all wait for the tool. All throw `ArchiveError`, `FileError` and
/// `Cancelled`, and leave no process, folder or file behind then.
namespace velmo::ArchiveProcessor {

inline constexpr qint64 defaultSizeLimit = 21'474'836'480;

/// The engines to try in turn, until one knows the archive. Of all by default.
using Engines = std::optional<std::vector<ArchiveEngine>>;

struct Request {
    QUrl archive;
    std::optional<QString> password;
    Engines engines = std::nullopt;
};

std::vector<ArchiveEntry> list(const Request &request, std::stop_token stop = {});

/// Gives what was made: the archive's only entry, or a folder named after the archive. Beside the
/// archive without a `destination`. `sizeLimit` is in bytes.
QUrl extract(const Request &request, const std::optional<QUrl> &destination, qint64 sizeLimit,
             JobProgress &progress, std::stop_token stop = {});

/// A new ZIP archive beside the first file, or in `destination`; named `name`, else after its only
/// item, else "Arquivos".
QUrl zip(const std::vector<QUrl> &urls, const std::optional<QString> &name,
         const std::optional<QUrl> &destination, JobProgress &progress, std::stop_token stop = {},
         const Engines &engines = std::nullopt);
/// The same in any format.
QUrl compress(ArchiveFormat format, const std::vector<QUrl> &urls,
              const std::optional<QString> &name, const std::optional<QUrl> &destination,
              JobProgress &progress, const std::stop_token &stop = {},
              const Engines &engines = std::nullopt);

} // namespace velmo::ArchiveProcessor
