#pragma once

#include <QString>
#include <QUrl>

#include <optional>
#include <variant>

namespace velmo {

/// One dropped or selected thing.
struct DroppedItem {
    struct File {
        QUrl value; ///< a local file
        bool operator==(const File &) const = default;
    };
    struct Link {
        QUrl value;
        bool operator==(const Link &) const = default;
    };
    struct Text {
        QString value;
        bool operator==(const Text &) const = default;
    };

    std::variant<File, Link, Text> content;

    /// "file:{path}", "link:{absolute URL}" or "text:{hash of the text}".
    QString id() const;
    /// The URL of a file, nothing for the others.
    std::optional<QUrl> fileURL() const;

    bool operator==(const DroppedItem &) const = default;
};

} // namespace velmo
