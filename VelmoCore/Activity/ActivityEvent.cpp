#include "VelmoCore/Activity/ActivityEvent.h"

namespace velmo {

ActivityEvent ActivityEvent::make(Date date, const QString &symbol, const QString &title,
                                  FeedbackStyle style, const QString &source,
                                  const std::optional<QString> &detail,
                                  const std::vector<QUrl> &fileURLs)
{
    return {
        .id = makeUuid(),
        .date = date,
        .symbol = symbol,
        .title = title,
        .detail = detail,
        .style = style,
        .source = source,
        .fileURLs = fileURLs.empty() ? std::nullopt : std::optional(fileURLs),
    };
}

} // namespace velmo
