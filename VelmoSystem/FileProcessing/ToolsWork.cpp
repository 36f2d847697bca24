#include "VelmoSystem/FileProcessing/ToolsWork.h"

#include "VelmoCore/Foundation/Cancelled.h"

#include <QDir>
#include <QPointer>

#include <algorithm>

namespace velmo {

namespace {

QString questionID()
{
    return QStringLiteral("tools.password");
}

/// Above activities that need no answer.
constexpr int questionPriority = 5;

bool asksForPassword(const ArchiveError &error)
{
    return std::holds_alternative<ArchiveError::PasswordRequired>(error.value()) ||
           std::holds_alternative<ArchiveError::WrongPassword>(error.value());
}

QString folderName(const QUrl &folder)
{
    return QDir(folder.toLocalFile()).dirName();
}

} // namespace

ToolsWork::ToolsWork(ToolsSelection &selection, JobCenter &jobs, ActivityCenter &activity,
                     Scheduler &scheduler)
    : m_selection(selection), m_jobs(jobs), m_activity(activity), m_scheduler(scheduler)
{
    connect(&selection, &ToolsSelection::urlsChanged, this, &ToolsWork::takeFiles);
}

void ToolsWork::report(const QString &note, bool isError)
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
    m_outputs.clear(); // those belong to other files
    report({}, false);
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
    m_jobTitle = job.tool.title;
    m_jobID =
        m_jobs.run(job.tool.title, job.tool.symbol, QStringLiteral("tools"),
                   [self = QPointer(this), job,
                    &scheduler = m_scheduler](JobProgress &progress, const std::stop_token &stop) {
                       MovedFiles moved;
                       try {
                           const JobOutcome outcome = job.tool.work(progress, stop, moved);
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
    report({}, false);
}

void ToolsWork::finish(const Job &job, const JobOutcome &outcome, const MovedFiles &moved)
{
    m_jobID.clear();
    follow(moved);
    m_outputs = outcome.outputURLs;
    offerUndo(job.isUndo ? MovedFiles() : moved);
    report(outcome.message, false);
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
            report({}, true);
            askFor(*job.step, error.description());
            goOn();
            return;
        }
        report(error.description(), true);
    } catch (const Cancelled &error) {
        m_waiting.clear();
        m_queueFailure.clear();
        report(error.description(), false);
    } catch (const LocalizedError &error) {
        report(error.description(), true);
    } catch (const std::exception &error) {
        report(QString::fromUtf8(error.what()), true);
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
        report(failure, true);
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
    run({.tool = FileJobs::rename(urls(), pattern, start, m_scheduler.now()),
         .done = [this] { closeTool(QStringLiteral("rename")); }});
}

void ToolsWork::duplicate()
{
    run({.tool = FileJobs::duplicate(urls())});
}

void ToolsWork::moveTo(const QUrl &folder)
{
    std::vector<QUrl> files = urls();
    std::erase_if(files, [place = folder.adjusted(QUrl::StripTrailingSlash)](const QUrl &file) {
        return file.adjusted(QUrl::RemoveFilename | QUrl::StripTrailingSlash) == place;
    });
    if (files.empty()) {
        const QString notice = urls().size() == 1 ? QStringLiteral("O item já está em “%1”")
                                                  : QStringLiteral("Os itens já estão em “%1”");
        report(notice.arg(folderName(folder)), false);
        return;
    }
    run({.tool = FileJobs::move(files, folder)});
}

void ToolsWork::organize()
{
    run({.tool = FileJobs::organize(urls())});
}

void ToolsWork::undo()
{
    if (!canUndo())
        return;
    m_undoEnd.cancel();
    run({.tool = FileJobs::takeBack(m_undo), .isUndo = true});
}

void ToolsWork::zip(const QString &name)
{
    run({.tool = FileJobs::compress(urls(), name),
         .done = [this] { closeTool(QStringLiteral("zip")); }});
}

void ToolsWork::extract(const std::optional<QUrl> &folder)
{
    if (isRunning())
        return;
    for (const QUrl &archive : urls()) {
        std::erase_if(m_locked, [&](const Step &step) { // its password is asked for again
            return !step.isListing && step.archive == archive && step.folder == folder;
        });
        m_waiting.push_back({.archive = archive, .folder = folder});
    }
    questionsChanged();
    goOn();
}

void ToolsWork::extractNow(const Step &step)
{
    run({.tool = FileJobs::extract(step.archive, step.folder, step.password),
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
    run({.tool = FileJobs::list(step.archive, step.password, entries),
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
    const bool isRetry = step.password.has_value();
    step.password.reset();
    step.question = question;
    if (isRetry) // the user is typing it just now
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

/// Shows the question as an activity too, for when no page is open.
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
