#pragma once

#include <QtGlobal>

#include <functional>
#include <stop_token>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace velmo {

/// Copies one tree of files, folders and links, with modes, modification times and extended
/// attributes. Paths are native. A failure, thrown as `FileError`, names the original, whose name
/// the user knows, and leaves what has been copied by then.
class TreeCopier {
public:
    /// 0 to 1.
    using Progress = std::function<void(double)>;

    /// A safe copy is synced and read back before anyone relies on it. `progress` outlives this.
    TreeCopier(bool isSafe, std::stop_token stop, const Progress &progress);
    Q_DISABLE_COPY_MOVE(TreeCopier)

    /// Throws `FileError`, with EBUSY where a file is being written, and `Cancelled`.
    void copy(const std::string &from, const std::string &to);
    /// Whether nobody has touched since what was copied, and stands at `root` now.
    bool isUnchanged(const std::string &root) const;

private:
    /// What an original was like when it was copied.
    struct Entry {
        std::string place; ///< below the root of the tree
        struct stat facts;
    };

    bool hasMore(const std::string &root) const;
    void copyEntry(const std::string &from, const std::string &to);
    std::uintmax_t bytesOf(const std::string &path) const;
    void advance(ssize_t count);
    void copyFile(const std::string &from, const std::string &to);
    void copyContent(int source, int target, const std::string &from);
    bool isWhole(int source, int target, const std::string &from);
    void copyFolder(const std::string &from, const std::string &to);

    bool m_isSafe;
    std::stop_token m_stop;
    const Progress &m_progress;
    std::uintmax_t m_wanted = 1; ///< bytes, those that are read back counted again
    std::uintmax_t m_done = 0;
    std::size_t m_root = 0; ///< length of the tree's path
    std::vector<Entry> m_entries;
};

} // namespace velmo
