#include "VelmoUI/Notch/DroppedFiles.h"

#include "VelmoCore/Foundation/Scheduler.h"

#include <QFileInfo>
#include <QPointer>

namespace velmo {

DroppedFiles::DroppedFiles(Scheduler &scheduler) : m_scheduler(scheduler)
{
    m_reader.setMaxThreadCount(1);
}

const DroppedFiles::Details *DroppedFiles::find(const QUrl &file) const
{
    const auto known = m_details.constFind(file);
    return known == m_details.cend() ? nullptr : &*known;
}

void DroppedFiles::follow(const QSet<QUrl> &files)
{
    m_details.removeIf([&](const auto &known) { return !files.contains(known.key()); });
    m_asked.intersect(files);
    QSet<QUrl> fresh;
    for (const QUrl &file : files) {
        if (!m_asked.contains(file) && !m_details.contains(file))
            fresh.insert(file);
    }
    if (fresh.isEmpty())
        return;
    m_asked.unite(fresh);
    m_reader.start([self = QPointer(this), fresh, &scheduler = m_scheduler] {
        QHash<QUrl, Details> read;
        for (const QUrl &url : fresh) {
            const QFileInfo file(url.toLocalFile());
            read.insert(url, {.isFolder = file.isDir(), .size = file.size()});
        }
        scheduler.post([self, read] {
            if (!self)
                return;
            for (const auto &[file, details] : read.asKeyValueRange()) {
                if (self->m_asked.remove(file)) // else it is somewhere else by now
                    self->m_details.insert(file, details);
            }
            Q_EMIT self->changed();
        });
    });
}

void DroppedFiles::move(const QUrl &from, const QUrl &to)
{
    if (const auto known = m_details.find(from); known != m_details.end())
        m_details.insert(to, m_details.take(from));
}

} // namespace velmo
