#include "VelmoUI/Notch/ShelfDrop.h"

#include "VelmoCore/Foundation/Overloaded.h"
#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoUI/App/AppServices.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace velmo {

namespace {

QString source()
{
    return QStringLiteral("shelf");
}

/// Lists links and texts, and gives the files.
std::vector<QUrl> keepTheRest(AppServices &services, const std::vector<DroppedItem> &items)
{
    std::vector<QUrl> files;
    for (const DroppedItem &item : items) {
        std::visit(overloaded{
                       [&](const DroppedItem::File &file) { files.push_back(file.value); },
                       [&](const DroppedItem::Link &link) { services.shelf.addLink(link.value); },
                       [&](const DroppedItem::Text &text) { services.shelf.addText(text.value); },
                   },
                   item.content);
    }
    return files;
}

/// As `ShelfStore::isInNotch`, for thousands of files at once.
class NotchFolders {
public:
    explicit NotchFolders(const ShelfStore &shelf)
    {
        for (const auto &folder : {shelf.mesaDirectory(), shelf.copiesDirectory()}) {
            if (folder)
                m_folders.append(QDir::cleanPath(*folder) + u'/');
        }
    }

    bool contain(const QString &path) const
    {
        return std::ranges::any_of(m_folders,
                                   [&](const QString &folder) { return path.startsWith(folder); });
    }

private:
    QStringList m_folders;
};

/// Gives the job that brings them.
std::optional<QString> bringIn(AppServices &services, const std::vector<QUrl> &files,
                               const ShelfDrop::Moved &moved, const ShelfDrop::Finished &finished)
{
    ShelfTransfer transfer{
        .kind = ShelfTransfer::Kind::moveIn, .moved = moved, .finished = finished};
    const NotchFolders notch(services.shelf);
    std::vector<QUrl> present;
    for (const QUrl &file : files) {
        const QString path = QDir::cleanPath(file.toLocalFile());
        const bool isBundle = QFileInfo(path).suffix().compare(u"app", Qt::CaseInsensitive) == 0;
        if (notch.contain(path))
            present.push_back(file);
        else if (!isBundle)
            transfer.arriving.push_back(file);
    }
    services.shelf.adoptOutputs(present);
    return transfer.arriving.empty() ? std::nullopt : std::optional(transfer.start(services));
}

} // namespace

std::optional<QString> ShelfDrop::moveIn(AppServices &services,
                                         const std::vector<DroppedItem> &items, const Moved &moved,
                                         const Finished &finished)
{
    return bringIn(services, keepTheRest(services, items), moved, finished);
}

std::optional<QString> ShelfDrop::keep(AppServices &services, const std::vector<DroppedItem> &items,
                                       const Moved &moved, const Finished &finished)
{
    auto job = bringIn(services, keepTheRest(services, items), moved, finished);
    if (!job) // else its end is told
        services.activity.post(ActivityEvent::make(
            services.platform.scheduler.now(), QStringLiteral("tray.and.arrow.down"),
            keptTitle(items.size()), FeedbackStyle::success, source()));
    return job;
}

} // namespace velmo
