#pragma once

#include <QString>

#include <variant>

namespace velmo {

/// What is known of a permission.
struct PermissionStatus {
    /// It works in part; the text says which.
    struct Partial {
        QString value;
        bool operator==(const Partial &) const = default;
    };
    struct NotDetermined {
        bool operator==(const NotDetermined &) const = default;
    };
    struct Granted {
        bool operator==(const Granted &) const = default;
    };
    struct Denied {
        bool operator==(const Denied &) const = default;
    };
    struct Restricted {
        bool operator==(const Restricted &) const = default;
    };
    /// The desktop only says that it isn't there, which doesn't mean that the user refused.
    struct NotGranted {
        bool operator==(const NotGranted &) const = default;
    };
    /// Each application is asked on its own.
    struct PerApp {
        bool operator==(const PerApp &) const = default;
    };

    std::variant<Partial, NotDetermined, Granted, Denied, Restricted, NotGranted, PerApp> value =
        NotDetermined{};

    /// "Permitida", "Negada" …; the text itself of a partial one.
    QString label() const;

    bool operator==(const PermissionStatus &) const = default;
};

} // namespace velmo
