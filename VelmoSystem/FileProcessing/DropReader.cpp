#include "VelmoSystem/FileProcessing/DropReader.h"

#include "VelmoSystem/FileProcessing/LocalFiles.h"

#include <QMimeData>
#include <QStringDecoder>

#include <algorithm>

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

std::optional<DroppedItem> textItem(const QMimeData &data)
{
    // Without a text of its own, `text()` would make one of the URLs that were turned down.
    const bool hasOwnText = std::ranges::any_of(
        data.formats(), [](const QString &format) { return format.startsWith(u"text/plain"); });
    const QString text = hasOwnText ? data.text() : QString();
    if (text.isEmpty())
        return std::nullopt;
    const QUrl url(text.trimmed(), QUrl::StrictMode);
    if (url.isValid() && isWebAddress(url))
        return DroppedItem{DroppedItem::Link{url}};
    return DroppedItem{DroppedItem::Text{text}};
}

} // namespace

std::vector<DroppedItem> DropReader::items(const QMimeData &data)
{
    QList<QUrl> urls = data.urls();
    if (urls.isEmpty())
        urls = mozillaURLs(data.data(QStringLiteral("text/x-moz-url")));

    std::vector<DroppedItem> files;
    std::vector<DroppedItem> links;
    const auto append = [](std::vector<DroppedItem> &items, DroppedItem item) {
        if (std::ranges::find(items, item) == items.end())
            items.push_back(std::move(item));
    };
    for (const QUrl &url : urls) {
        if (const auto file = LocalFiles::fromURL(url))
            append(files, {DroppedItem::File{*file}});
        else if (url.isValid() && !url.isRelative() && !url.isLocalFile())
            append(links, {DroppedItem::Link{url}});
    }
    files.insert(files.end(), links.begin(), links.end());
    if (files.empty()) {
        if (auto text = textItem(data))
            files.push_back(std::move(*text));
    }
    return files;
}

} // namespace velmo
