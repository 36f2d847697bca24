#include "VelmoSystem/FileProcessing/FileJobs.h"

#include "VelmoCore/Foundation/Words.h"
#include "VelmoSystem/FileProcessing/ArchiveProcessor.h"
#include "VelmoSystem/FileProcessing/FileOperations.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <set>

namespace velmo {

namespace {

std::set<QUrl> foldersBeside(const std::vector<QUrl> &urls)
{
    std::set<QUrl> folders;
    std::set<QString> places;
    for (const QUrl &url : urls)
        places.insert(url.adjusted(QUrl::RemoveFilename).toLocalFile());
    for (const QString &place : places) {
        for (const QString &name :
             QDir(place).entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot))
            folders.insert(QUrl::fromLocalFile(place + name));
    }
    return folders;
}

/// Moves the files one by one, so that those moved are known even if a later one fails.
void moveEach(const std::vector<QUrl> &urls, JobProgress &progress, MovedFiles &moved,
              const std::function<QUrl(const QUrl &)> &move)
{
    for (const QUrl &url : urls) {
        const QUrl now = move(url);
        moved.before.push_back(url);
        moved.now.push_back(now);
        progress.update(double(moved.now.size()) / double(urls.size()), now.fileName());
    }
}

JobOutcome organizeFiles(std::vector<QUrl> files, JobProgress &progress,
                         const std::stop_token &stop, MovedFiles &moved)
{
    std::erase_if(files, [](const QUrl &url) { return QFileInfo(url.toLocalFile()).isDir(); });
    if (files.empty())
        throw LocalizedError(QStringLiteral("Só arquivos são organizados, e não pastas."));
    const std::set<QUrl> foldersBefore = foldersBeside(files);
    moveEach(files, progress, moved, [&](const QUrl &url) {
        QUrl now = FileOperations::organizeByExtension(
                       {url}, [](double) {}, stop)
                       .front();
        const QUrl folder = now.adjusted(QUrl::RemoveFilename | QUrl::StripTrailingSlash);
        if (!foldersBefore.contains(folder) &&
            std::ranges::find(moved.madeFolders, folder) == moved.madeFolders.end())
            moved.madeFolders.push_back(folder);
        return now;
    });
    return {.message =
                Words::count(files.size(), u"1 arquivo organizado", u"%1 arquivos organizados"),
            .outputURLs = moved.now};
}

} // namespace

FileJob FileJobs::rename(const Files &files, const QString &pattern, int start, Date date)
{
    const auto work = [=](JobProgress &progress, const std::stop_token &stop, MovedFiles &moved) {
        moved.now = FileOperations::batchRename(
            files, pattern, start, date, [&](double share) { progress.update(share); }, stop);
        moved.before = files;
        return JobOutcome{
            .message = Words::count(files.size(), u"1 item renomeado", u"%1 itens renomeados"),
            .outputURLs = moved.now};
    };
    return {Words::count(files.size(), u"Renomear 1 item", u"Renomear %1 itens"),
            QStringLiteral("pencil"), work};
}

FileJob FileJobs::duplicate(const Files &files)
{
    const auto work = [=](JobProgress &, const std::stop_token &stop, MovedFiles &) {
        return JobOutcome{.message =
                              Words::count(files.size(), u"1 cópia feita", u"%1 cópias feitas"),
                          .outputURLs = FileOperations::duplicate(files, stop)};
    };
    return {Words::count(files.size(), u"Duplicar 1 item", u"Duplicar %1 itens"),
            QStringLiteral("plus.square.on.square"), work};
}

FileJob FileJobs::organize(const Files &files)
{
    const auto work = [=](JobProgress &progress, const std::stop_token &stop, MovedFiles &moved) {
        return organizeFiles(files, progress, stop, moved);
    };
    return {Words::count(files.size(), u"Organizar 1 item", u"Organizar %1 itens"),
            QStringLiteral("folder.badge.gearshape"), work};
}

FileJob FileJobs::move(const Files &files, const QUrl &folder)
{
    const auto work = [=](JobProgress &progress, const std::stop_token &stop, MovedFiles &moved) {
        moveEach(files, progress, moved,
                 [&](const QUrl &url) { return FileOperations::move({url}, folder, stop).at(0); });
        return JobOutcome{
            .message = Words::count(files.size(), u"1 item movido", u"%1 itens movidos") +
                       QStringLiteral(" para “%1”").arg(QDir(folder.toLocalFile()).dirName()),
            .outputURLs = moved.now};
    };
    return {Words::count(files.size(), u"Mover 1 item", u"Mover %1 itens"),
            QStringLiteral("folder.badge.plus"), work};
}

FileJob FileJobs::compress(const Files &files, const std::optional<QString> &name,
                           const std::optional<QUrl> &folder, ArchiveFormat format)
{
    const auto work = [=](JobProgress &progress, const std::stop_token &stop, MovedFiles &) {
        const QUrl archive =
            ArchiveProcessor::compress(format, files, name, folder, progress, stop);
        return JobOutcome{.message = QStringLiteral("“%1” criado").arg(archive.fileName()),
                          .outputURLs = {archive}};
    };
    return {name ? QStringLiteral("Compactar em “%1”").arg(*name + ArchiveEngine::suffix(format))
                 : Words::count(files.size(), u"Compactar 1 item", u"Compactar %1 itens"),
            QStringLiteral("doc.zipper"), work};
}

FileJob FileJobs::extract(const QUrl &archive, const std::optional<QUrl> &folder,
                          const std::optional<QString> &password)
{
    const auto work = [=](JobProgress &progress, const std::stop_token &stop, MovedFiles &) {
        const QUrl made =
            ArchiveProcessor::extract({.archive = archive, .password = password}, folder,
                                      ArchiveProcessor::defaultSizeLimit, progress, stop);
        return JobOutcome{.message = QStringLiteral("“%1” extraído").arg(made.fileName()),
                          .outputURLs = {made}};
    };
    return {QStringLiteral("Extrair “%1”").arg(archive.fileName()), QStringLiteral("archivebox"),
            work};
}

FileJob FileJobs::list(const QUrl &archive, const std::optional<QString> &password,
                       const std::shared_ptr<std::vector<ArchiveEntry>> &entries)
{
    const auto work = [=](JobProgress &, const std::stop_token &stop, MovedFiles &) {
        *entries = ArchiveProcessor::list({.archive = archive, .password = password}, stop);
        return JobOutcome{.message = Words::items(entries->size()) +
                                     QStringLiteral(" em “%1”").arg(archive.fileName())};
    };
    return {QStringLiteral("Ver conteúdo de “%1”").arg(archive.fileName()),
            QStringLiteral("list.bullet"), work};
}

FileJob FileJobs::takeBack(const MovedFiles &files)
{
    const auto work = [=](JobProgress &, const std::stop_token &stop, MovedFiles &moved) {
        files.takeBack(stop);
        moved = {.before = files.now, .now = files.before, .madeFolders = {}};
        return JobOutcome{.message = QStringLiteral("Tudo como antes"), .outputURLs = files.before};
    };
    return {QStringLiteral("Desfazer"), QStringLiteral("arrow.uturn.backward"), work};
}

} // namespace velmo
