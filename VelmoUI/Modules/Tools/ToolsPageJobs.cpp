#include "VelmoSystem/FileProcessing/ArchiveProcessor.h"
#include "VelmoSystem/FileProcessing/FileOperations.h"
#include "VelmoUI/Modules/Tools/ToolsPageModel.h"

#include <QDir>
#include <QLocale>
#include <QPointer>

#include <algorithm>
#include <set>

namespace velmo {

namespace {

QString counted(std::size_t count, const char16_t *one, const char16_t *many)
{
    return count == 1 ? QString::fromUtf16(one)
                      : QString::fromUtf16(many).arg(QLocale().toString(qulonglong(count)));
}

QString folderName(const QUrl &folder)
{
    return QDir(folder.toLocalFile()).dirName();
}

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

/// Moves one file after the other, so that what has moved is known also when the next one fails.
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

} // namespace

void ToolsPageModel::startTool()
{
    const QString id = tool();
    if (id.isEmpty() || !m_isWatched || isRunning())
        return;
    const auto &rows = m_tools.records();
    const auto row = std::ranges::find(rows, id, &ToolRow::id);
    if (row == rows.end() || !row->isEnabled) {
        const QString reason = row == rows.end() || !hasFiles() ? QString() : row->detail;
        closeTool();
        if (!reason.isEmpty())
            tell(QStringLiteral("%1: %2").arg(row->title, reason), true);
        return;
    }
    if (id == u"duplicate") {
        closeTool();
        duplicate();
    } else if (id == u"organize") {
        closeTool();
        organize();
    } else if (id == u"move") {
        closeTool();
        askForFolder(QStringLiteral("Mover para"), QStringLiteral("Mover"),
                     [this](const QUrl &folder) { moveTo(folder); });
    } else if (id == u"list" && m_listed != urls().front()) {
        list(std::nullopt);
    }
}

void ToolsPageModel::askForFolder(const QString &title, const QString &acceptText,
                                  const std::function<void(const QUrl &)> &use)
{
    m_dialog.open(PanelFileDialog::Kind::folder, title, acceptText,
                  urls().front().adjusted(QUrl::RemoveFilename).toLocalFile(),
                  [use](const std::vector<QUrl> &chosen) {
                      if (!chosen.empty())
                          use(chosen.front());
                  });
}

void ToolsPageModel::run(Job job)
{
    if (isRunning())
        return;
    m_outputs.clear();
    m_jobTitle = job.title;
    m_progress = -1;
    askForPassword({});
    m_jobID = m_context.services.jobs.run(
        job.title, job.symbol, QStringLiteral("tools"),
        [self = QPointer(this), job, &scheduler = m_context.services.platform.scheduler](
            JobProgress &progress, const std::stop_token &stop) {
            MovedFiles moved;
            try {
                const JobOutcome outcome = job.work(progress, stop, moved);
                scheduler.post([self, job, outcome, moved] {
                    if (self)
                        self->finish(job, outcome, moved);
                });
                return outcome;
            } catch (...) {
                scheduler.post([self, job, failure = std::current_exception(), moved] {
                    if (self)
                        self->fail(job, failure, moved);
                });
                throw;
            }
        });
    tell({}, false);
}

void ToolsPageModel::finish(const Job &job, const JobOutcome &outcome, const MovedFiles &moved)
{
    m_jobID.clear();
    follow(moved);
    m_outputs = outcome.outputURLs;
    m_undo = job.isUndo ? MovedFiles() : moved;
    tell(outcome.message, false);
    job.done();
    startTool();
}

void ToolsPageModel::fail(const Job &job, const std::exception_ptr &failure,
                          const MovedFiles &moved)
{
    m_jobID.clear();
    const MovedFiles undo = job.isUndo ? m_undo : moved;
    follow(moved);
    m_undo = undo;
    try {
        std::rethrow_exception(failure);
    } catch (const ArchiveError &error) {
        const bool isLocked =
            (std::holds_alternative<ArchiveError::PasswordRequired>(error.value()) ||
             std::holds_alternative<ArchiveError::WrongPassword>(error.value())) &&
            (tool() == u"extract" || tool() == u"list");
        tell(isLocked ? QString() : error.description(), true);
        if (isLocked) {
            askForPassword(error.description());
            return;
        }
    } catch (const Cancelled &error) {
        tell(error.description(), false);
    } catch (const LocalizedError &error) {
        tell(error.description(), true);
    } catch (const std::exception &error) {
        tell(QString::fromUtf8(error.what()), true);
    }
    m_toExtract.clear();
    // What shows what the job was to find out has nothing to show.
    if (tool() == u"list" && (!hasFiles() || m_listed != urls().front()))
        closeTool();
    startTool();
}

void ToolsPageModel::follow(const MovedFiles &moved)
{
    std::vector<QUrl> files = urls();
    for (QUrl &file : files) {
        const auto place = std::ranges::find(moved.before, file);
        if (place != moved.before.end())
            file = moved.now[std::size_t(place - moved.before.begin())];
    }
    m_context.services.tools.replace(std::move(files));
}

void ToolsPageModel::updateProgress()
{
    const auto &live = m_context.services.activity.live();
    const auto row = std::ranges::find(live, m_jobID, &LiveActivity::id);
    const qreal progress = row == live.end() ? -1 : row->progress.value_or(-1);
    if (isRunning() && std::exchange(m_progress, progress) != progress)
        Q_EMIT jobChanged();
}

void ToolsPageModel::tell(const QString &note, bool isError)
{
    m_note = note;
    m_isNoteError = isError;
    Q_EMIT jobChanged();
}

void ToolsPageModel::askForPassword(const QString &question)
{
    if (question.isEmpty() && !isRunning())
        m_withPassword = {};
    if (std::exchange(m_passwordQuestion, question) != question)
        Q_EMIT passwordChanged();
}

void ToolsPageModel::rename()
{
    if (!m_renameForm.isPossible())
        return;
    const auto work = [files = urls(), pattern = m_renameForm.pattern(),
                       start = m_renameForm.start(),
                       date = m_context.services.platform.scheduler.now()](
                          JobProgress &progress, const std::stop_token &stop, MovedFiles &moved) {
        moved.now = FileOperations::batchRename(
            files, pattern, start, date, [&](double share) { progress.update(share); }, stop);
        moved.before = files;
        return JobOutcome{.message =
                              counted(files.size(), u"1 item renomeado", u"%1 itens renomeados"),
                          .outputURLs = moved.now};
    };
    run({.title = counted(urls().size(), u"Renomear 1 item", u"Renomear %1 itens"),
         .symbol = QStringLiteral("pencil"),
         .work = work,
         .done = [this] { closeTool(); }});
}

void ToolsPageModel::duplicate()
{
    const auto work = [files = urls()](JobProgress &, const std::stop_token &stop, MovedFiles &) {
        return JobOutcome{.message = counted(files.size(), u"1 cópia feita", u"%1 cópias feitas"),
                          .outputURLs = FileOperations::duplicate(files, stop)};
    };
    run({.title = counted(urls().size(), u"Duplicar 1 item", u"Duplicar %1 itens"),
         .symbol = QStringLiteral("plus.square.on.square"),
         .work = work});
}

void ToolsPageModel::moveTo(const QUrl &folder)
{
    std::vector<QUrl> files = urls();
    std::erase_if(files, [place = folder.adjusted(QUrl::StripTrailingSlash)](const QUrl &file) {
        return file.adjusted(QUrl::RemoveFilename | QUrl::StripTrailingSlash) == place;
    });
    if (files.empty()) {
        const QString told = urls().size() == 1 ? QStringLiteral("O item já está em “%1”")
                                                : QStringLiteral("Os itens já estão em “%1”");
        tell(told.arg(folderName(folder)), false);
        return;
    }
    const auto work = [files, folder](JobProgress &progress, const std::stop_token &stop,
                                      MovedFiles &moved) {
        moveEach(files, progress, moved,
                 [&](const QUrl &url) { return FileOperations::move({url}, folder, stop).at(0); });
        return JobOutcome{.message = counted(files.size(), u"1 item movido", u"%1 itens movidos") +
                                     QStringLiteral(" para “%1”").arg(folderName(folder)),
                          .outputURLs = moved.now};
    };
    run({.title = counted(files.size(), u"Mover 1 item", u"Mover %1 itens"),
         .symbol = QStringLiteral("folder.badge.plus"),
         .work = work});
}

void ToolsPageModel::organize()
{
    const auto work = [chosen = urls()](JobProgress &progress, const std::stop_token &stop,
                                        MovedFiles &moved) {
        std::vector<QUrl> files = chosen;
        std::erase_if(files, [](const QUrl &url) { return QFileInfo(url.toLocalFile()).isDir(); });
        const std::set<QUrl> foldersBefore = foldersBeside(files);
        moveEach(files, progress, moved, [&](const QUrl &url) {
            const QUrl now = FileOperations::organizeByExtension(
                                 {url}, [](double) {}, stop)
                                 .front();
            const QUrl folder = now.adjusted(QUrl::RemoveFilename | QUrl::StripTrailingSlash);
            if (!foldersBefore.contains(folder) &&
                std::ranges::find(moved.madeFolders, folder) == moved.madeFolders.end())
                moved.madeFolders.push_back(folder);
            return now;
        });
        return JobOutcome{
            .message = counted(files.size(), u"1 arquivo organizado", u"%1 arquivos organizados"),
            .outputURLs = moved.now};
    };
    run({.title = counted(urls().size(), u"Organizar 1 item", u"Organizar %1 itens"),
         .symbol = QStringLiteral("folder.badge.gearshape"),
         .work = work});
}

void ToolsPageModel::undo()
{
    if (!canUndo())
        return;
    const auto work = [files = m_undo](JobProgress &, const std::stop_token &stop,
                                       MovedFiles &moved) {
        files.takeBack(stop);
        moved = {.before = files.now, .now = files.before, .madeFolders = {}};
        return JobOutcome{.message = QStringLiteral("Tudo como antes"), .outputURLs = files.before};
    };
    run({.title = QStringLiteral("Desfazer"),
         .symbol = QStringLiteral("arrow.uturn.backward"),
         .work = work,
         .isUndo = true});
}

void ToolsPageModel::zip()
{
    if (!canZip())
        return;
    QString name = m_zipName.trimmed();
    if (name.endsWith(u".zip", Qt::CaseInsensitive) && name.size() > 4)
        name.chop(4);
    const auto work = [files = urls(), name](JobProgress &progress, const std::stop_token &stop,
                                             MovedFiles &) {
        const QUrl archive = ArchiveProcessor::zip(files, name, std::nullopt, progress, stop);
        return JobOutcome{.message = QStringLiteral("“%1” criado").arg(archive.fileName()),
                          .outputURLs = {archive}};
    };
    run({.title = QStringLiteral("Compactar em “%1.zip”").arg(name),
         .symbol = QStringLiteral("doc.zipper"),
         .work = work,
         .done = [this] { closeTool(); }});
}

void ToolsPageModel::extract()
{
    extractTo(std::nullopt);
}

void ToolsPageModel::chooseExtractFolder()
{
    askForFolder(QStringLiteral("Extrair para"), QStringLiteral("Extrair"),
                 [this](const QUrl &folder) { extractTo(folder); });
}

void ToolsPageModel::extractTo(const std::optional<QUrl> &folder)
{
    if (isRunning() || !hasFiles())
        return;
    m_toExtract = urls();
    m_extractFolder = folder;
    extractNext(std::nullopt);
}

void ToolsPageModel::extractNext(const std::optional<QString> &password)
{
    const ArchiveProcessor::Request request{.archive = m_toExtract.front(), .password = password};
    const auto work = [request, folder = m_extractFolder](
                          JobProgress &progress, const std::stop_token &stop, MovedFiles &) {
        const QUrl made = ArchiveProcessor::extract(
            request, folder, ArchiveProcessor::defaultSizeLimit, progress, stop);
        return JobOutcome{.message = QStringLiteral("“%1” extraído").arg(made.fileName()),
                          .outputURLs = {made}};
    };
    run({.title = QStringLiteral("Extrair “%1”").arg(request.archive.fileName()),
         .symbol = QStringLiteral("archivebox"),
         .work = work,
         .done = [this] {
             m_toExtract.erase(m_toExtract.begin());
             if (m_toExtract.empty())
                 closeTool();
             else
                 extractNext(std::nullopt);
         }});
    m_withPassword = [this](const QString &given) { extractNext(given); };
}

void ToolsPageModel::list(const std::optional<QString> &password)
{
    const ArchiveProcessor::Request request{.archive = urls().front(), .password = password};
    const auto entries = std::make_shared<std::vector<ArchiveEntry>>();
    m_listed.reset();
    m_entries.setEntries({});
    Q_EMIT entriesChanged();
    const auto work = [request, entries](JobProgress &, const std::stop_token &stop, MovedFiles &) {
        *entries = ArchiveProcessor::list(request, stop);
        return JobOutcome{.message = counted(entries->size(), u"1 item", u"%1 itens") +
                                     QStringLiteral(" em “%1”").arg(request.archive.fileName())};
    };
    run({.title = QStringLiteral("Ver conteúdo de “%1”").arg(request.archive.fileName()),
         .symbol = QStringLiteral("list.bullet"),
         .work = work,
         .done = [this, request, entries] {
             m_listed = request.archive;
             m_entries.setEntries(std::move(*entries));
             Q_EMIT entriesChanged();
         }});
    m_withPassword = [this](const QString &given) { list(given); };
}

} // namespace velmo
