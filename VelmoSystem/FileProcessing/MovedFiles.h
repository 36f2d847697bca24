#pragma once

#include <QUrl>

#include <stop_token>
#include <vector>

namespace velmo {

/// What an operation moved, so that it can be taken back.
struct MovedFiles {
    std::vector<QUrl> before;
    std::vector<QUrl> now;         ///< in the order of `before`
    std::vector<QUrl> madeFolders; ///< made for them; they go again if nothing else is in them

    bool operator==(const MovedFiles &) const = default;

    /// Gives every file its first place and name again, or none: after a failure all stand where
    /// they stood. Replaces nothing. For a job's thread. Throws `FileError` and `Cancelled`.
    void takeBack(std::stop_token stop) const;
};

} // namespace velmo
