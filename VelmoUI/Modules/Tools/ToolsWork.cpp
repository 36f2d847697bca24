#include "VelmoUI/Modules/Tools/ToolsWork.h"

#include "VelmoSystem/FileProcessing/ArchiveProcessor.h"
#include "VelmoSystem/FileProcessing/FileOperations.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QPointer>

#include <algorithm>
#include <set>

namespace velmo {

namespace {

QString questionID()
{
    return QStringLiteral("tools.password");
}

/// It comes before what only goes on.
constexpr int questionPriority = 5;

bool asksForPassword(const ArchiveError &error)
{
    return std::holds_alternative<ArchiveError::PasswordRequired>(error.value()) ||
           std::holds_alternative<ArchiveError::WrongPassword>(error.value());
}

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

ToolsWork::ToolsWork(ToolsSelection &selection, JobCenter &jobs, ActivityCenter &activity,
                     Scheduler &scheduler)
    : m_selection(selection), m_jobs(jobs), m_activity(activity), m_scheduler(scheduler)
{
    connect(&selection, &ToolsSelection::urlsChanged, this, &ToolsWork::takeFiles);
}

void ToolsWork::tell(const QString &note, bool isError)
{
    m_note = note;
    m_isNoteError = isError;
    Q_EMIT changed();
}

void ToolsWork::takeFiles()
{
    const bool isOther = std::ranges::none_of(
        m_taken, [this](const QUrl &file) { return std::ranges::count(urls(), file) > 0; });
    m_taken = urls();
    if (!isOther || isRunning() || canUndo())
        return;
    m_outputs.clear(); // what came of the last job is nothing of theirs
    tell({}, false);
}

void ToolsWork::closeTool(const QString &tool)
{
    if (m_selection.tool() == tool)
        m_selection.setTool(std::nullopt);
}

void ToolsWork::run(Job job)
{
    if (isRunning())
        return;
    m_outputs.clear();
    m_jobTitle = job.title;
    m_jobID =
        m_jobs.run(job.title, job.symbol, QStringLiteral("tools"),
                   [self = QPointer(this), job,
                    &scheduler = m_scheduler](JobProgress &progress, const std::stop_token &stop) {
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

void ToolsWork::finish(const Job &job, const JobOutcome &outcome, const MovedFiles &moved)
{
    m_jobID.clear();
    follow(moved);
    m_outputs = outcome.outputURLs;
    offerUndo(job.isUndo ? MovedFiles() : moved);
    tell(outcome.message, false);
    job.done();
    goOn();
}

void ToolsWork::fail(const Job &job, const std::exception_ptr &failure, const MovedFiles &moved)
{
    m_jobID.clear();
    const MovedFiles undo = job.isUndo ? m_undo : moved;
    follow(moved);
    offerUndo(undo);
    try {
        std::rethrow_exception(failure);
    } catch (const ArchiveError &error) {
        if (job.step && asksForPassword(error)) {
            tell({}, true);
            askFor(*job.step, error.description());
            goOn();
            return;
        }
        tell(error.description(), true);
    } catch (const Cancelled &error) {
        m_waiting.clear();
        m_queueFailure.clear();
        tell(error.description(), false);
    } catch (const LocalizedError &error) {
        tell(error.description(), true);
    } catch (const std::exception &error) {
        tell(QString::fromUtf8(error.what()), true);
    }
    if (job.step && job.step->isListing) // there is nothing to show
        closeTool(QStringLiteral("list"));
    else if (job.step && m_isNoteError)
        m_queueFailure = m_note;
    goOn();
}

void ToolsWork::goOn()
{
    if (!m_waiting.empty()) {
        const Step step = m_waiting.front();
        m_waiting.pop_front();
        if (step.isListing)
            listNow(step);
        else
            extractNow(step);
        return;
    }
    if (const QString failure = std::exchange(m_queueFailure, {}); !failure.isEmpty())
        tell(failure, true);
    Q_EMIT finished();
}

void ToolsWork::offerUndo(const MovedFiles &moved)
{
    m_undo = moved;
    m_undoEnd = m_scheduler.after(undoTime, [this] {
        m_undo = {};
        Q_EMIT changed();
    });
}

void ToolsWork::follow(const MovedFiles &moved)
{
    std::vector<QUrl> files = urls();
    for (QUrl &file : files) {
        const auto place = std::ranges::find(moved.before, file);
        if (place != moved.before.end())
            file = moved.now[std::size_t(place - moved.before.begin())];
    }
    m_selection.replace(std::move(files));
}

void ToolsWork::cancel()
{
    m_activity.cancel(m_jobID);
}

void ToolsWork::rename(const QString &pattern, int start)
{
    const auto work = [files = urls(), pattern, start, date = m_scheduler.now()](
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
         .done = [this] { closeTool(QStringLiteral("rename")); }});
}

void ToolsWork::duplicate()
{
    const auto work = [files = urls()](JobProgress &, const std::stop_token &stop, MovedFiles &) {
        return JobOutcome{.message = counted(files.size(), u"1 cópia feita", u"%1 cópias feitas"),
                          .outputURLs = FileOperations::duplicate(files, stop)};
    };
    run({.title = counted(urls().size(), u"Duplicar 1 item", u"Duplicar %1 itens"),
         .symbol = QStringLiteral("plus.square.on.square"),
         .work = work});
}

void ToolsWork::moveTo(const QUrl &folder)
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

void ToolsWork::organize()
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

void ToolsWork::undo()
{
    if (!canUndo())
        return;
    m_undoEnd.cancel();
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

void ToolsWork::zip(const QString &name)
{
    const auto work = [files = urls(), name](JobProgress &progress, const std::stop_token &stop,
                                             MovedFiles &) {
        const QUrl archive = ArchiveProcessor::zip(files, name, std::nullopt, progress, stop);
        return JobOutcome{.message = QStringLiteral("“%1” criado").arg(archive.fileName()),
                          .outputURLs = {archive}};
    };
    run({.title = QStringLiteral("Compactar em “%1.zip”").arg(name),
         .symbol = QStringLiteral("doc.zipper"),
         .work = work,
         .done = [this] { closeTool(QStringLiteral("zip")); }});
}

void ToolsWork::extract(const std::optional<QUrl> &folder)
{
    if (isRunning())
        return;
    for (const QUrl &archive : urls()) {
        std::erase_if(m_locked, [&](const Step &step) { // it is asked for anew
            return !step.isListing && step.archive == archive && step.folder == folder;
        });
        m_waiting.push_back({.archive = archive, .folder = folder});
    }
    questionsChanged();
    goOn();
}

void ToolsWork::extractNow(const Step &step)
{
    const auto work = [step](JobProgress &progress, const std::stop_token &stop, MovedFiles &) {
        const QUrl made = ArchiveProcessor::extract(
            {.archive = step.archive, .password = step.password}, step.folder,
            ArchiveProcessor::defaultSizeLimit, progress, stop);
        return JobOutcome{.message = QStringLiteral("“%1” extraído").arg(made.fileName()),
                          .outputURLs = {made}};
    };
    run({.title = QStringLiteral("Extrair “%1”").arg(step.archive.fileName()),
         .symbol = QStringLiteral("archivebox"),
         .work = work,
         .done =
             [this] {
                 if (m_waiting.empty() && m_locked.empty())
                     closeTool(QStringLiteral("extract"));
             },
         .step = step});
}

void ToolsWork::list()
{
    if (isRunning() || urls().empty())
        return;
    std::erase_if(m_locked, [&](const Step &step) { return step.isListing; });
    m_waiting.push_front({.archive = urls().front(), .isListing = true});
    questionsChanged();
    goOn();
}

void ToolsWork::listNow(const Step &step)
{
    const auto entries = std::make_shared<std::vector<ArchiveEntry>>();
    m_listed.reset();
    m_entries.clear();
    Q_EMIT entriesChanged();
    const auto work = [step, entries](JobProgress &, const std::stop_token &stop, MovedFiles &) {
        *entries =
            ArchiveProcessor::list({.archive = step.archive, .password = step.password}, stop);
        return JobOutcome{.message = counted(entries->size(), u"1 item", u"%1 itens") +
                                     QStringLiteral(" em “%1”").arg(step.archive.fileName())};
    };
    run({.title = QStringLiteral("Ver conteúdo de “%1”").arg(step.archive.fileName()),
         .symbol = QStringLiteral("list.bullet"),
         .work = work,
         .done =
             [this, step, entries] {
                 m_listed = step.archive;
                 m_entries = std::move(*entries);
                 Q_EMIT entriesChanged();
             },
         .step = step});
}

std::optional<QUrl> ToolsWork::lockedArchive() const
{
    return m_locked.empty() ? std::nullopt : std::optional(m_locked.front().archive);
}

QString ToolsWork::passwordQuestion() const
{
    return m_locked.empty() ? QString() : m_locked.front().question;
}

void ToolsWork::askFor(Step step, const QString &question)
{
    const bool isAnew = step.password.has_value();
    step.password.reset();
    step.question = question;
    if (isAnew) // the user is at it
        m_locked.push_front(std::move(step));
    else
        m_locked.push_back(std::move(step));
    questionsChanged();
}

void ToolsWork::usePassword(const QString &password)
{
    if (m_locked.empty() || password.isEmpty())
        return;
    Step step = m_locked.front();
    m_locked.pop_front();
    step.password = password;
    m_waiting.push_front(std::move(step));
    questionsChanged();
    if (!isRunning())
        goOn();
}

void ToolsWork::declinePassword()
{
    if (m_locked.empty())
        return;
    const bool wasListing = m_locked.front().isListing;
    m_locked.pop_front();
    questionsChanged();
    if (wasListing || (!isRunning() && m_locked.empty()))
        closeTool(wasListing ? QStringLiteral("list") : QStringLiteral("extract"));
}

/// The question is to be seen without the page, too.
void ToolsWork::questionsChanged()
{
    Q_EMIT passwordChanged();
    if (m_locked.empty()) {
        m_activity.finish(questionID());
        return;
    }
    m_activity.upsert({.id = questionID(),
                       .source = QStringLiteral("tools"),
                       .symbol = QStringLiteral("lock.fill"),
                       .title = QStringLiteral("Senha de “%1”, em Ferramentas")
                                    .arg(m_locked.front().archive.fileName()),
                       .detail = m_locked.front().question,
                       .priority = questionPriority,
                       .isCancellable = true},
                      [self = QPointer(this)] {
                          if (self)
                              self->declinePassword();
                      });
}

} // namespace velmo
