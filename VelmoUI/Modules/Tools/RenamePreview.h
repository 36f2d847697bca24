#pragma once

#include "VelmoCore/Files/FileNaming.h"

#include <boost/describe.hpp>

namespace velmo {

/// What a batch rename would make of one file.
struct RenameRow {
    QString id; ///< its path
    QString before;
    QString after;
    QString problem;      ///< empty if there is none
    bool isError = false; ///< the problem keeps all from being renamed
    QString detail;       ///< the name before, and the problem
    QString spoken;       ///< for screen readers

    bool operator==(const RenameRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(RenameRow, (), (id, before, after, problem, isError, detail, spoken))

struct RenamePreview {
    std::vector<RenameRow> rows;
    int changedCount = 0;
    int problemCount = 0; ///< of any kind
    int invalidCount = 0;

    /// The names that `FileOperations::batchRename` would give.
    static RenamePreview make(const std::vector<QUrl> &urls, const QString &pattern, int start,
                              Date date, const FileNaming::Exists &exists = FileNaming::exists);

    /// Every name is valid, and one changes at least.
    bool isPossible() const { return invalidCount == 0 && changedCount > 0; }
    /// "3 nomes mudam · 1 com aviso"
    QString summary() const;
};

} // namespace velmo
