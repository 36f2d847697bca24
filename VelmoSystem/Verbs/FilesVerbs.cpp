#include "VelmoSystem/Verbs/FilesVerbs.h"

#include "VelmoCore/Files/FailedFiles.h"
#include "VelmoCore/Files/FileNaming.h"
#include "VelmoCore/Foundation/Cancelled.h"
#include "VelmoCore/Foundation/Words.h"
#include "VelmoSystem/Control/VerbJob.h"
#include "VelmoSystem/FileProcessing/FileJobs.h"

#include <QFileInfo>

#include <array>

namespace velmo {

namespace {

const QString noun = QStringLiteral("files");
const QString patternOption = QStringLiteral("pattern");
const QString startOption = QStringLiteral("start");
const QString formatOption = QStringLiteral("format");
const QString toOption = QStringLiteral("to");

FileJob rename(const VerbCall &call, const Scheduler &scheduler)
{
    const auto pattern = call.options.find(patternOption);
    if (pattern == call.options.end())
        throw LocalizedError(
            QStringLiteral("Diga os nomes novos, como em --pattern \"Foto {n:3}\"."));
    return FileJobs::rename(call.files(0), pattern->second,
                            VerbTable::number(call, startOption).value_or(1), scheduler.now());
}

struct Format {
    const char16_t *name;
    ArchiveFormat format;
};
constexpr std::array formats{Format{u"zip", ArchiveFormat::zip},
                             Format{u"7z", ArchiveFormat::sevenZip},
                             Format{u"tar.gz", ArchiveFormat::tarGzip}};

/// The one asked for, else the one that the archive's name ends with, else a ZIP.
ArchiveFormat formatOf(const VerbCall &call, const QString &archive)
{
    const auto named = call.options.find(formatOption);
    for (const auto &[name, format] : formats) {
        if (named != call.options.end()
                ? named->second == QStringView(name)
                : archive.endsWith(ArchiveEngine::suffix(format), Qt::CaseInsensitive))
            return format;
    }
    return ArchiveFormat::zip;
}

/// Before a tool fails there, in words about files of its own. Throws `LocalizedError`.
void requireFolder(const QUrl &folder)
{
    if (!QFileInfo(folder.toLocalFile()).isDir())
        throw LocalizedError(
            QStringLiteral("A pasta “%1” não existe.").arg(FileNaming::nameOf(folder)));
}

FileJob compress(const VerbCall &call)
{
    const auto target = VerbTable::file(call, toOption);
    QString name = target ? target->fileName() : QString();
    const ArchiveFormat format = formatOf(call, name);
    if (!target)
        return FileJobs::compress(call.files(0), std::nullopt, std::nullopt, format);
    const QString suffix = ArchiveEngine::suffix(format);
    if (name.endsWith(suffix, Qt::CaseInsensitive))
        name.chop(suffix.size());
    const QUrl folder = target->adjusted(QUrl::RemoveFilename | QUrl::StripTrailingSlash);
    FileJob job = FileJobs::compress(call.files(0), name, folder, format);
    job.work = [folder, work = job.work](JobProgress &progress, const std::stop_token &stop,
                                         MovedFiles &moved) {
        requireFolder(folder);
        return work(progress, stop, moved);
    };
    return job;
}

/// Unpacks one archive after the other: one that fails doesn't keep the others from it.
JobOutcome extractEach(const std::vector<QUrl> &archives, const std::optional<QUrl> &folder,
                       const Scheduler &scheduler, JobProgress &progress,
                       const std::stop_token &stop)
{
    if (folder)
        requireFolder(*folder);
    JobOutcome outcome{
        .message = QStringLiteral("%1 arquivos extraídos").arg(Words::number(archives.size()))};
    FailedFiles failed;
    for (std::size_t i = 0; i < archives.size(); ++i) {
        JobProgress part(scheduler, [&](std::optional<double> share, const auto &) {
            progress.update((double(i) + share.value_or(0)) / double(archives.size()),
                            archives[i].fileName());
        });
        try {
            MovedFiles moved;
            const auto one = FileJobs::extract(archives[i], folder).work(part, stop, moved);
            outcome.outputURLs.push_back(one.outputURLs.front());
            if (archives.size() == 1)
                outcome.message = one.message;
        } catch (const Cancelled &) {
            throw;
        } catch (const LocalizedError &error) {
            failed.add(archives[i], error);
        }
    }
    if (failed.count() > 0) {
        outcome.message = QStringLiteral("Não foi possível extrair");
        outcome.detail = failed.text();
        outcome.style = FeedbackStyle::error;
    }
    return outcome;
}

FileJob extract(const VerbCall &call, const Scheduler &scheduler)
{
    const auto archives = call.files(0);
    const auto folder = VerbTable::file(call, toOption);
    const FileJob first = FileJobs::extract(archives.front(), folder);
    const auto work = [archives, folder, &scheduler](JobProgress &progress,
                                                     const std::stop_token &stop, MovedFiles &) {
        return extractEach(archives, folder, scheduler, progress, stop);
    };
    return {archives.size() == 1
                ? first.title
                : QStringLiteral("Extrair %1 arquivos").arg(Words::number(archives.size())),
            first.symbol, work};
}

QStringList formatNames()
{
    QStringList names;
    for (const Format &format : formats)
        names.append(QString::fromUtf16(format.name));
    return names;
}

const VerbArgument files{
    .name = QStringLiteral("ARQUIVO"), .kind = VerbArgument::Kind::file, .isRepeated = true};
const VerbColumn path{QStringLiteral("path"), QStringLiteral("Caminho")};

} // namespace

std::vector<VerbSyntax> FilesVerbs::syntaxes()
{
    return {
        {noun,
         QStringLiteral("rename"),
         QStringLiteral("dá nomes novos aos arquivos"),
         {files},
         {{patternOption,
           QStringLiteral("NOMES"),
           QStringLiteral("os nomes novos, com {nome}, {data}, {ext}, {n} ou {n:3}"),
           {}},
          {startOption, QStringLiteral("N"), QStringLiteral("o primeiro número de {n}"), {}}},
         {path}},
        {noun,
         QStringLiteral("compress"),
         QStringLiteral("compacta os arquivos em um só"),
         {files},
         {{toOption,
           QStringLiteral("ARQUIVO"),
           QStringLiteral("o arquivo a criar; sem ela, ao lado do primeiro"),
           {},
           VerbArgument::Kind::file},
          {formatOption, QStringLiteral("FORMATO"), QStringLiteral("o formato, senão o do nome"),
           formatNames()}},
         {path}},
        {noun,
         QStringLiteral("extract"),
         QStringLiteral("extrai arquivos compactados"),
         {files},
         {{toOption,
           QStringLiteral("PASTA"),
           QStringLiteral("onde extrair; sem ela, ao lado de cada um"),
           {},
           VerbArgument::Kind::file}},
         {path}},
        {noun,
         QStringLiteral("organize"),
         QStringLiteral("move cada arquivo para uma pasta com o nome da sua extensão"),
         {files},
         {},
         {path}},
    };
}

std::vector<Verb> FilesVerbs::make(JobCenter &jobs, ActivityCenter &activity,
                                   const Scheduler &scheduler)
{
    const auto run = [&jobs, &activity](const FileJob &job, const VerbReply &reply) {
        const QString id =
            jobs.run(job.title, job.symbol, QStringLiteral("tools"),
                     [work = job.work](JobProgress &progress, const std::stop_token &stop) {
                         MovedFiles moved;
                         return work(progress, stop, moved);
                     });
        VerbJob::follow(id, jobs, activity, reply, [reply](const JobOutcome &outcome) {
            reply.list(VerbTable::paths(outcome.outputURLs));
        });
    };
    const auto renameAll = [run, &scheduler](const VerbCall &call, const VerbReply &reply) {
        run(rename(call, scheduler), reply);
    };
    const auto compressAll = [run](const VerbCall &call, const VerbReply &reply) {
        run(compress(call), reply);
    };
    const auto extractAll = [run, &scheduler](const VerbCall &call, const VerbReply &reply) {
        run(extract(call, scheduler), reply);
    };
    const auto organizeAll = [run](const VerbCall &call, const VerbReply &reply) {
        run(FileJobs::organize(call.files(0)), reply);
    };
    return VerbTable::bind(syntaxes(), {{QStringLiteral("files rename"), renameAll},
                                        {QStringLiteral("files compress"), compressAll},
                                        {QStringLiteral("files extract"), extractAll},
                                        {QStringLiteral("files organize"), organizeAll}});
}

} // namespace velmo
