#pragma once

#include "VelmoCore/Foundation/Date.h"
#include "VelmoCore/Foundation/Uuid.h"

#include <QString>
#include <QUrl>

#include <boost/describe.hpp>

#include <optional>
#include <vector>

namespace velmo {

enum class FeedbackStyle { success, error, info };
BOOST_DESCRIBE_ENUM(FeedbackStyle, success, error, info)

/// Something that has just happened, as the user sees it.
struct ActivityEvent {
    Uuid id;
    Date date;
    QString symbol;
    QString title;
    std::optional<QString> detail;
    FeedbackStyle style = FeedbackStyle::success;
    QString source; ///< short key of who posted it, as "timers"
    /// Files that came of it; never an empty list.
    std::optional<std::vector<QUrl>> fileURLs;

    /// An event with a new id. An empty `fileURLs` becomes absent.
    static ActivityEvent make(Date date, const QString &symbol, const QString &title,
                              FeedbackStyle style, const QString &source,
                              const std::optional<QString> &detail = std::nullopt,
                              const std::vector<QUrl> &fileURLs = {});

    bool operator==(const ActivityEvent &) const = default;
};
BOOST_DESCRIBE_STRUCT(ActivityEvent, (), (id, date, symbol, title, detail, style, source, fileURLs))

} // namespace velmo
