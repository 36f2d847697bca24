#pragma once

#include "VelmoCore/Jobs/JobCenter.h"
#include "VelmoSystem/FileProcessing/ArchiveEngine.h"
#include "VelmoSystem/FileProcessing/MovedFiles.h"

#include <memory>
#include <optional>
#include <vector>

namespace velmo {

/// One of the file tools' jobs: what it is called, and its work.
struct FileJob {
    /// Notes in `moved` what it has moved so far, also when it fails.
    using Work =
        std::function<JobOutcome(JobProgress &, const std::stop_token &, MovedFiles &moved)>;

    QString title;
    QString symbol;
    Work work;
};

/// The jobs of the file tools, whoever starts them. Their outcomes name the files they made.
namespace FileJobs {

using Files = std::vector<QUrl>;

/// `date` is today's.
FileJob rename(const Files &files, const QString &pattern, int start, Date date);
FileJob duplicate(const Files &files);
FileJob organize(const Files &files);
FileJob move(const Files &files, const QUrl &folder);
/// Beside the first file without a `folder`; named as `ArchiveProcessor::zip` does without a name.
FileJob compress(const Files &files, const std::optional<QString> &name,
                 const std::optional<QUrl> &folder = std::nullopt,
                 ArchiveFormat format = ArchiveFormat::zip);
/// Beside the archive without a `folder`.
FileJob extract(const QUrl &archive, const std::optional<QUrl> &folder,
                const std::optional<QString> &password = std::nullopt);
/// Puts what it reads into `entries`.
FileJob list(const QUrl &archive, const std::optional<QString> &password,
             const std::shared_ptr<std::vector<ArchiveEntry>> &entries);
FileJob takeBack(const MovedFiles &files);

} // namespace FileJobs
} // namespace velmo
