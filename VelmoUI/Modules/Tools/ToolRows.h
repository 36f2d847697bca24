#pragma once

#include <QString>
#include <QUrl>

#include <boost/describe.hpp>

#include <vector>

namespace velmo {

/// A tool of the Tools page, as it stands to the files chosen.
struct ToolRow {
    /// "rename", "duplicate", "move", "organize", "zip", "extract", "list", "summary"
    QString id;
    QString symbol;
    QString title;
    QString detail; ///< what it does, or why it can't
    bool isEnabled = false;
    QString spoken; ///< for screen readers

    bool operator==(const ToolRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(ToolRow, (), (id, symbol, title, detail, isEnabled, spoken))

/// All tools, in the order in which they show; none works on no files.
std::vector<ToolRow> toolRows(const std::vector<QUrl> &urls);

} // namespace velmo
