#include "VelmoCore/Clipboard/UriList.h"

#include <QDir>
#include <QSet>

#include <optional>

namespace velmo {

namespace {

/// Nothing but host and path, so that one file has one address. What QUrl can't write, such as
/// Unicode's noncharacters, would come back as another file.
std::optional<QUrl> file(const QByteArray &line)
{
    const QUrl url = QUrl::fromEncoded(line);
    const QString path = url.path(QUrl::FullyDecoded);
    if (!url.isLocalFile() || !path.startsWith(u'/') || path.contains(QChar::Null) ||
        path.contains(QChar::ReplacementCharacter))
        return std::nullopt;
    QUrl file;
    file.setScheme(QStringLiteral("file"));
    file.setHost(url.host());
    file.setPath(QDir::cleanPath(path), QUrl::DecodedMode);
    const bool isWhole = file.isValid() && QUrl::fromEncoded(file.toEncoded()) == file;
    return isWhole ? std::optional(file) : std::nullopt;
}

} // namespace

std::vector<QUrl> UriList::files(const QByteArray &text)
{
    // Some applications end it as C ends a string.
    const QByteArray list =
        text.first(qsizetype(qstrnlen(text.constData(), std::size_t(text.size()))));
    std::vector<QUrl> found;
    QSet<QUrl> known;
    for (qsizetype start = 0; start < list.size() && found.size() < mostURLs;) {
        qsizetype end = list.indexOf('\n', start);
        if (end < 0)
            end = list.size();
        const QByteArray line = list.sliced(start, end - start).trimmed();
        start = end + 1;
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        const auto url = file(line);
        if (!url || known.contains(*url))
            continue;
        known.insert(*url);
        found.push_back(*url);
    }
    return found;
}

QByteArray UriList::text(const std::vector<QUrl> &urls)
{
    QByteArray list;
    for (const QUrl &url : urls)
        list += url.toEncoded() + "\r\n";
    return list;
}

} // namespace velmo
