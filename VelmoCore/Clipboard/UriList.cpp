#include "VelmoCore/Clipboard/UriList.h"

#include <QSet>

namespace velmo {

namespace {

bool isFile(const QUrl &url)
{
    if (!url.isValid() || !url.isLocalFile())
        return false;
    const QString path = url.path(QUrl::FullyDecoded);
    return path.startsWith(u'/') && !path.contains(QChar::Null) &&
           !path.contains(QChar::ReplacementCharacter);
}

} // namespace

std::vector<QUrl> UriList::files(const QByteArray &list)
{
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
        const QUrl url = QUrl::fromEncoded(line);
        if (!isFile(url) || known.contains(url))
            continue;
        known.insert(url);
        found.push_back(url);
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
