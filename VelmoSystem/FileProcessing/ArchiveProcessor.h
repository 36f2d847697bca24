#pragma once

#include "VelmoCore/Files/ArchiveListing.h"
#include "VelmoCore/Jobs/JobProgress.h"

#include <QUrl>

#include <optional>
#include <stop_token>
#include <vector>

/// Archives by the command-line tools `7zz`, `bsdtar` and `zip`. An archive is taken for hostile:
/// what it holds is unpacked into a private folder, checked and cleaned, and only then moved to the
/// user. For a job's thread: all wait for the tool. All throw `ArchiveError`, `FileError` and
/// `Cancelled`, and leave no process, folder or file behind then.
namespace velmo::ArchiveProcessor {

inline constexpr qint64 defaultSizeLimit = 21'474'836'480;

struct Request {
    QUrl archive;
    std::optional<QString> password;
};

/// The 7-Zip program: of `VELMO_7ZZ`, else on the path; nothing without one.
std::optional<QString> sevenZip();

std::vector<ArchiveEntry> list(const Request &request, std::stop_token stop = {});

/// Gives what was made: the archive's only entry, or a folder named after the archive.
QUrl extract(const Request &request, const std::optional<QUrl> &destination, qint64 sizeLimit,
             JobProgress &progress, std::stop_token stop = {});

/// A new ZIP archive beside the first file, or in `destination`; named `name`, else after its only
/// item, else "Arquivos".
QUrl zip(const std::vector<QUrl> &urls, const std::optional<QString> &name,
         const std::optional<QUrl> &destination, JobProgress &progress, std::stop_token stop = {});

} // namespace velmo::ArchiveProcessor
