#include "VelmoCore/Shelf/DropUndo.h"

#include "VelmoCore/Foundation/Words.h"

#include <QDir>
#include <QSet>

#include <utility>

namespace velmo {

QString movedFromTitle(const std::vector<QUrl> &originals)
{
    QSet<QString> folders;
    for (const QUrl &original : originals)
        folders.insert(original.adjusted(QUrl::StripTrailingSlash)
                           .adjusted(QUrl::RemoveFilename | QUrl::StripTrailingSlash)
                           .toLocalFile());
    if (folders.size() != 1)
        return QStringLiteral("Movido de %1 pastas").arg(Words::number(folders.size()));
    const QString folder = *folders.begin();
    const QString name = QDir(folder).dirName();
    return QStringLiteral("Movido de ") + (name.isEmpty() ? folder : name);
}

QString DropUndo::detail() const
{
    return m_files.size() == 1 ? QString() : Words::items(m_files.size());
}

void DropUndo::offer(std::vector<File> files, const QString &title)
{
    m_files = std::move(files);
    m_title = title;
    m_end = m_scheduler.after(time, [this] { take(); });
    Q_EMIT changed();
}

std::vector<DropUndo::File> DropUndo::take()
{
    m_end.cancel();
    std::vector<File> files = std::exchange(m_files, {});
    if (!files.empty())
        Q_EMIT changed();
    return files;
}

} // namespace velmo
