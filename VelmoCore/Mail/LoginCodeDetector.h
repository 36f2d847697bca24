#pragma once

#include "VelmoCore/Mail/MailLink.h"

#include <optional>
#include <vector>

/// Finds the one-time code and the sign-in link of a message in Portuguese or English. Pure: any
/// text gives an answer, in time and memory that grow with its length alone.
namespace velmo::LoginCodeDetector {

/// What a message has for signing in; often neither, at times both.
struct Detection {
    std::optional<QString> code; ///< ready to be typed: "123 456" becomes "123456"
    std::optional<QUrl> url;     ///< the sign-in link

    bool operator==(const Detection &) const = default;
};

/// Takes the decoded subject, the readable text, of which the first 3000 characters count, and the
/// links in their order.
Detection detect(const QString &subject, const QString &text, const std::vector<MailLink> &links);

} // namespace velmo::LoginCodeDetector
