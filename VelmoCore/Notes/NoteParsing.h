#pragma once

#include <QString>
#include <QUrl>

#include <vector>

/// What a note's text says beyond its words.
namespace velmo::NoteParsing {

/// The words behind a "#" at the start of a line or after white space, in lower case, each once.
std::vector<QString> tags(const QString &text);

struct Link {
    qsizetype start = 0; ///< in UTF-16 units
    qsizetype length = 0;
    QUrl url;

    bool operator==(const Link &) const = default;
};

/// Addresses of pages ("https://…", "www.…") and of mail, in order.
std::vector<Link> linksWithPlaces(const QString &text);
std::vector<QUrl> links(const QString &text);

/// The first line with something in it, without spaces around it; empty without one.
QString title(const QString &text);

} // namespace velmo::NoteParsing
