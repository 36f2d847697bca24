#pragma once

#include <QString>

#include <variant>

namespace velmo {

/// How an account is connected.
struct MailStatus {
    struct Offline {
        QString reason; ///< for the user
        bool operator==(const Offline &) const = default;
    };
    struct Connecting {
        bool operator==(const Connecting &) const = default;
    };
    struct Online {
        bool operator==(const Online &) const = default;
    };

    std::variant<Connecting, Online, Offline> state;

    bool operator==(const MailStatus &) const = default;
};

} // namespace velmo
