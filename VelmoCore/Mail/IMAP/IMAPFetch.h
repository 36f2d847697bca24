#pragma once

#include "VelmoCore/Foundation/Date.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace velmo {

/// What one FETCH response says about a message.
struct IMAPFetch {
    std::int64_t sequence; ///< the message's number in the mailbox
    std::optional<std::uint32_t> uid;
    std::vector<QString> flags; ///< as received, in the server's order
    std::optional<Date> internalDate;
    std::optional<QByteArray> body;
    std::optional<std::uint64_t> gmailThreadID;

    bool isSeen() const;

    bool operator==(const IMAPFetch &) const = default;
};

} // namespace velmo
