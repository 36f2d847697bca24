#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <variant>
#include <vector>

namespace velmo {

/// One value of a server's response (RFC 3501, section 4).
struct IMAPValue {
    /// A bare word as it was received; bad UTF-8 is repaired.
    struct Atom {
        QString word;
        bool operator==(const Atom &) const = default;
    };
    /// A quoted string or a literal, without its quotes and escapes.
    struct String {
        QByteArray bytes;
        bool operator==(const String &) const = default;
    };
    struct List {
        std::vector<IMAPValue> values;
        bool operator==(const List &) const = default;
    };
    /// NIL, in any letter case.
    struct None {
        bool operator==(const None &) const = default;
    };

    std::variant<None, Atom, String, List> content;

    /// The word of an atom or the text of a string, repaired where it is not UTF-8; absent for the
    /// others.
    std::optional<QString> text() const;
    /// The values of a list, null for the others.
    const std::vector<IMAPValue> *list() const;

    bool operator==(const IMAPValue &) const = default;
};

} // namespace velmo
