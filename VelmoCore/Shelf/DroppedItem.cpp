#include "VelmoCore/Shelf/DroppedItem.h"

#include "VelmoCore/Foundation/Overloaded.h"

#include <QCryptographicHash>

namespace velmo {
namespace {

QString textHash(const QString &text)
{
    constexpr qsizetype digits = 16;
    const QByteArray hash = QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha256);
    return QString::fromLatin1(hash.toHex().first(digits));
}

} // namespace

QString DroppedItem::id() const
{
    return std::visit(overloaded{
                          [](const File &file) -> QString {
                              return QStringLiteral("file:") + file.value.toLocalFile();
                          },
                          [](const Link &link) -> QString {
                              return QStringLiteral("link:") +
                                     link.value.toString(QUrl::FullyEncoded);
                          },
                          [](const Text &text) -> QString {
                              return QStringLiteral("text:") + textHash(text.value);
                          },
                      },
                      content);
}

std::optional<QUrl> DroppedItem::fileURL() const
{
    if (const auto *file = std::get_if<File>(&content))
        return file->value;
    return {};
}

} // namespace velmo
