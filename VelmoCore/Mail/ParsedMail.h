#pragma once

#include "VelmoCore/Foundation/Date.h"
#include "VelmoCore/Mail/MailAddress.h"
#include "VelmoCore/Mail/MailLink.h"

#include <optional>
#include <vector>

namespace velmo {

/// What the panel shows of one message.
struct ParsedMail {
    MailAddress from;
    QString subject;
    std::optional<Date> date;
    std::optional<QString> messageID; ///< without its angle brackets
    QString text;                     ///< the best plain text there is
    /// Of the HTML part; where there is none, of the plain text.
    std::vector<MailLink> links;

    bool operator==(const ParsedMail &) const = default;
};

} // namespace velmo
