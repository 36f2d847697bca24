#pragma once

#include <QHash>
#include <QUrl>

namespace velmo {

/// A link of a message. `text` is what the reader sees in its place or, for an address that stands
/// in plain text, what stands ahead of it.
struct MailLink {
    QString text;
    QUrl url;

    bool operator==(const MailLink &) const = default;
    friend size_t qHash(const MailLink &link, size_t seed = 0)
    {
        return qHashMulti(seed, link.text, link.url);
    }
};

} // namespace velmo
