#include "VelmoSystem/FileProcessing/DropReader.h"

#include "VelmoSystem/FileProcessing/LocalFiles.h"

#include <QSet>
#include <QStringDecoder>

namespace velmo {

namespace {

/// "text/x-moz-url": addresses and titles in turn, a line each, in UTF-16 of the machine's order;
/// some programs write UTF-8.
QList<QUrl> mozillaURLs(const QByteArray &data)
{
    const auto encoding = data.contains('\0') ? QStringConverter::Utf16 : QStringConverter::Utf8;
    QStringDecoder decode(encoding);
    QString text = decode(data);
    text.remove(QChar::Null);

    QList<QUrl> urls;
    const QStringList lines = text.split(u'\n');
    for (qsizetype line = 0; line < lines.size(); line += 2)
        urls.append(QUrl(lines[line].trimmed()));
    return urls;
}

bool isWebAddress(const QUrl &url)
{
    return (url.scheme() == u"http" || url.scheme() == u"https") && !url.host().isEmpty();
}

QList<QUrl> listedURLs(const QByteArray &list)
{
    QList<QUrl> urls;
    for (const QByteArray &line : list.split('\n')) {
        const QByteArray address = line.trimmed();
        if (!address.isEmpty())
            urls.append(QUrl::fromEncoded(address));
    }
    return urls;
}

std::optional<DroppedItem> textItem(const QString &text)
{
    if (text.isEmpty())
        return std::nullopt;
    const QUrl url(text.trimmed(), QUrl::StrictMode);
    if (url.isValid() && isWebAddress(url))
        return DroppedItem{DroppedItem::Link{url}};
    return DroppedItem{DroppedItem::Text{text}};
}

} // namespace

std::vector<DroppedItem> DropReader::items(const Contents &contents)
{
    QList<QUrl> urls = listedURLs(contents.urls);
    if (urls.isEmpty())
        urls = mozillaURLs(contents.mozillaURLs);

    std::vector<DroppedItem> files;
    std::vector<DroppedItem> links;
    QSet<QUrl> known;
    const auto append = [&known](std::vector<DroppedItem> &items, const QUrl &url,
                                 DroppedItem item) {
        if (known.contains(url))
            return;
        known.insert(url);
        items.push_back(std::move(item));
    };
    for (const QUrl &url : urls) {
        if (const auto file = LocalFiles::fromURL(url))
            append(files, *file, {DroppedItem::File{*file}});
        else if (url.isValid() && !url.isRelative() && !url.isLocalFile())
            append(links, url, {DroppedItem::Link{url}});
    }
    files.insert(files.end(), links.begin(), links.end());
    if (files.empty()) {
        if (auto text = textItem(contents.text))
            files.push_back(std::move(*text));
    }
    return files;
}

} // namespace velmo
