#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <boost/describe.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmo {

enum class PendingKind {
    renamed,  ///< a user's file between two names: gets the first one back
    original, ///< a user's file that a whole copy replaces: gets its name back, or goes
    remains,  ///< of such an original, no more needed: goes
    copy,     ///< not whole yet: goes
};
BOOST_DESCRIBE_ENUM(PendingKind, renamed, original, remains, copy)

/// A file or folder that stands under a hidden name for a moment. Paths are native and absolute.
struct PendingFile {
    PendingKind kind = PendingKind::copy;
    QByteArray hidden;
    QByteArray first;        ///< where the user had it; of a copy, where the original is
    QByteArray target;       ///< where it is to stand in the end
    std::uint64_t inode = 0; ///< of a renamed one, which its target is known by

    bool operator==(const PendingFile &) const = default;
};
BOOST_DESCRIBE_STRUCT(PendingFile, (), (kind, hidden, first, target, inode))

/// What stands under hidden names while an operation runs. It is recorded in a file first, so that
/// no run that is killed leaves a user's file hidden or its own leftovers lying about.
namespace PendingFiles {

/// Where this run keeps its records; one object for the run. Without one nothing is recorded.
class Folder {
public:
    /// Made when it is first needed; the folder around it has to exist.
    explicit Folder(const QString &path);
    ~Folder();
    Q_DISABLE_COPY_MOVE(Folder)
};

/// An operation's record, from before the first hidden name to its end. It is locked: as long as
/// its operation runs nobody takes it for one of a killed run. What still stands under a hidden
/// name then keeps its record.
class Record {
public:
    /// Written, and `synced` to the disk where a user's only file depends on it. Throws
    /// `FileError`.
    Record(std::vector<PendingFile> files, bool isSynced);
    ~Record();
    Q_DISABLE_COPY_MOVE(Record)

private:
    void write(const std::string &folder, bool isSynced);

    std::vector<PendingFile> m_files;
    std::string m_path;
    int m_file = -1;
};

/// What came of records that were left.
struct Restored {
    std::vector<QUrl> named; ///< have a name again
    int removed = 0;         ///< leftovers

    bool operator==(const Restored &) const = default;
};

/// Whether there may be anything to restore.
bool hasRecords();

/// Gives hidden files of runs that have ended their names back, replacing nothing, and removes what
/// they left; where a copy's original isn't to be seen, the copy stays. What is on a disk that
/// isn't there waits for it. With `folder` only what stands there, also if the folder has another
/// name now. For a job's thread; failures are logged.
Restored restore(const std::optional<QString> &folder = std::nullopt);

/// `restore` for the folders that the files stand in.
void restoreBeside(const std::vector<QUrl> &files);

/// Hidden names for files on their way to other ones, recorded and synced.
class Renaming {
public:
    /// Throws `FileError` about the first file.
    Renaming(const std::vector<QUrl> &files, const std::vector<QUrl> &targets);

    /// Beside each of the files.
    const std::vector<QUrl> &hidden() const { return m_hidden; }

private:
    std::vector<QUrl> m_hidden;
    std::unique_ptr<Record> m_record;
};

} // namespace PendingFiles
} // namespace velmo
