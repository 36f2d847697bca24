#include "VelmoUI/Modules/Tools/ToolsPageModel.h"

#include "VelmoCore/Foundation/Words.h"
#include "VelmoSystem/Ports/FileViewer.h"
#include "VelmoSystem/Storage/StorageInspector.h"

#include <QDir>
#include <QFileInfo>
#include <QPointer>

#include <algorithm>
#include <ranges>

namespace velmo {

namespace {

/// More don't fit.
constexpr std::size_t namesShown = 8;

QString folderOf(const QUrl &url)
{
    return QDir(url.adjusted(QUrl::RemoveFilename).toLocalFile()).dirName();
}

FileRow fileRow(const FileSummary &summary)
{
    const QString detail = summary.detail();
    return {summary.url.toLocalFile(),
            summary.isDirectory ? QStringLiteral("folder.fill") : QStringLiteral("doc.fill"),
            summary.name,
            detail,
            QStringLiteral("Tirar %1 da seleção").arg(summary.name),
            QStringLiteral("%1, %2").arg(summary.name, detail)};
}

} // namespace

ToolsPageModel::ToolsPageModel(ToolsSelection &selection, ToolsWork &work, ActivityCenter &activity,
                               FileViewer &fileViewer, Scheduler &scheduler, PanelPort &panel)
    : m_selection(selection), m_work(work), m_activity(activity), m_fileViewer(fileViewer),
      m_scheduler(scheduler), m_dialog(panel), m_renameForm(scheduler)
{
    connect(&selection, &ToolsSelection::urlsChanged, this, &ToolsPageModel::takeFiles);
    connect(&selection, &ToolsSelection::toolChanged, this, [this] {
        Q_EMIT toolChanged();
        startTool();
    });
    connect(&work, &ToolsWork::changed, this, [this] {
        m_progress = -1;
        updateProgress();
        Q_EMIT jobChanged();
    });
    connect(&work, &ToolsWork::finished, this, &ToolsPageModel::startTool);
    connect(&work, &ToolsWork::passwordChanged, this, &ToolsPageModel::passwordChanged);
    connect(&work, &ToolsWork::entriesChanged, this, &ToolsPageModel::showEntries);
    connect(&activity, &ActivityCenter::liveChanged, this, &ToolsPageModel::updateProgress);
    showEntries();
    takeFiles();
}

QString ToolsPageModel::filesTitle() const
{
    return urls().size() == 1 ? urls().front().fileName() : Words::items(urls().size());
}

QString ToolsPageModel::filesNames() const
{
    if (!hasFiles())
        return {};
    if (urls().size() == 1)
        return QStringLiteral("Na pasta “%1”").arg(folderOf(urls().front()));
    QStringList names;
    for (const QUrl &url : urls() | std::views::take(namesShown))
        names.append(url.fileName());
    return names.join(QStringLiteral(", "));
}

QString ToolsPageModel::tool() const
{
    return m_selection.tool().value_or(QString());
}

QString ToolsPageModel::toolTitle() const
{
    const auto &rows = m_tools.records();
    const auto row = std::ranges::find(rows, tool(), &ToolRow::id);
    return row == rows.end() ? QString() : row->title;
}

void ToolsPageModel::watch(bool isWatched)
{
    if (!isWatched)
        return;
    summarize();
    m_renameForm.update();
    startTool();
}

void ToolsPageModel::chooseFiles()
{
    const QString folder =
        hasFiles() ? urls().front().adjusted(QUrl::RemoveFilename).toLocalFile() : QDir::homePath();
    m_dialog.open(PanelFileDialog::Kind::files, QStringLiteral("Escolher arquivos"),
                  QStringLiteral("Escolher"), folder, [this](const std::vector<QUrl> &chosen) {
                      std::vector<QUrl> all = urls();
                      all.insert(all.end(), chosen.begin(), chosen.end());
                      m_selection.replace(std::move(all));
                  });
}

void ToolsPageModel::clear()
{
    m_selection.open({}, std::nullopt);
}

void ToolsPageModel::remove(const QString &path)
{
    std::vector<QUrl> rest = urls();
    std::erase(rest, QUrl::fromLocalFile(path));
    const bool isLast = rest.empty();
    m_selection.replace(std::move(rest));
    if (isLast)
        closeTool();
}

void ToolsPageModel::open(const QString &tool)
{
    if (!isRunning())
        m_selection.setTool(tool);
}

void ToolsPageModel::closeTool()
{
    m_selection.setTool(std::nullopt);
}

void ToolsPageModel::setZipName(const QString &name)
{
    if (std::exchange(m_zipName, name) != name)
        Q_EMIT zipChanged();
}

bool ToolsPageModel::canZip() const
{
    return FileNaming::isValid(m_zipName.trimmed() + QStringLiteral(".zip"));
}

QString ToolsPageModel::zipDetail() const
{
    if (!canZip())
        return QStringLiteral("Esse nome não pode ser usado.");
    return hasFiles() ? QStringLiteral("Fica na pasta “%1”, ao lado do que entra nele.")
                            .arg(folderOf(urls().front()))
                      : QString();
}

QString ToolsPageModel::extractDetail() const
{
    return urls().size() == 1 ? QStringLiteral("O conteúdo fica ao lado do arquivo ou na pasta que "
                                               "você escolher. O arquivo continua onde está.")
                              : QStringLiteral("O conteúdo fica ao lado de cada arquivo ou na "
                                               "pasta que você escolher. Os arquivos continuam "
                                               "onde estão.");
}

QString ToolsPageModel::entriesDetail() const
{
    if (!m_work.listed())
        return {};
    const int all = m_entries.entryCount();
    const int shown = m_entries.rowCount();
    if (all == 0)
        return QStringLiteral("Vazio");
    if (shown == 0)
        return QStringLiteral("Nada encontrado");
    const QString total = Words::items(all);
    return shown == all ? total : QStringLiteral("%1 de %2").arg(Words::number(shown), total);
}

QString ToolsPageModel::passwordTitle() const
{
    const auto archive = m_work.lockedArchive();
    return archive ? QStringLiteral("Senha de “") + archive->fileName() + u'”' : QString();
}

void ToolsPageModel::showEntries()
{
    m_entries.setEntries(m_work.entries());
    Q_EMIT entriesChanged();
}

void ToolsPageModel::searchEntries(const QString &query)
{
    m_entries.setQuery(query);
    Q_EMIT entriesChanged();
}

void ToolsPageModel::rename()
{
    if (m_renameForm.isPossible())
        m_work.rename(m_renameForm.pattern(), m_renameForm.start());
}

void ToolsPageModel::zip()
{
    if (!canZip())
        return;
    QString name = m_zipName.trimmed();
    if (name.endsWith(u".zip", Qt::CaseInsensitive) && name.size() > 4)
        name.chop(4);
    m_work.zip(name);
}

void ToolsPageModel::extract()
{
    m_work.extract(std::nullopt);
}

void ToolsPageModel::chooseExtractFolder()
{
    askForFolder(QStringLiteral("Extrair para"), QStringLiteral("Extrair"),
                 [this](const QUrl &folder) { m_work.extract(folder); });
}

void ToolsPageModel::reveal()
{
    m_fileViewer.reveal(m_work.outputs());
}

void ToolsPageModel::updateProgress()
{
    const auto &live = m_activity.live();
    const auto row = std::ranges::find(live, m_work.jobID(), &LiveActivity::id);
    const qreal progress = row == live.end() ? -1 : row->progress.value_or(-1);
    if (isRunning() && std::exchange(m_progress, progress) != progress)
        Q_EMIT jobChanged();
}

void ToolsPageModel::startTool()
{
    const QString id = tool();
    if (id.isEmpty() || !isWatched() || isRunning())
        return;
    const auto &rows = m_tools.records();
    const auto row = std::ranges::find(rows, id, &ToolRow::id);
    if (row == rows.end() || !row->isEnabled) {
        const QString reason = row == rows.end() || !hasFiles() ? QString() : row->detail;
        closeTool();
        if (!reason.isEmpty())
            m_work.report(QStringLiteral("%1: %2").arg(row->title, reason), true);
        return;
    }
    if (id == u"duplicate") {
        closeTool();
        m_work.duplicate();
    } else if (id == u"organize") {
        closeTool();
        m_work.organize();
    } else if (id == u"move") {
        closeTool();
        askForFolder(QStringLiteral("Mover para"), QStringLiteral("Mover"),
                     [this](const QUrl &folder) { moveTo(folder); });
    } else if (id == u"list" && m_work.listed() != urls().front() &&
               m_work.lockedArchive() != urls().front()) {
        m_work.list();
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

void ToolsPageModel::takeFiles()
{
    m_tools.setRecords(toolRows(urls()));
    m_renameForm.setUrls(urls());
    m_zipName =
        urls().size() == 1
            ? QFileInfo(FileNaming::output(urls().front(), std::nullopt, std::nullopt, QString())
                            .toLocalFile())
                  .fileName()
            : QStringLiteral("Arquivos");
    summarize();
    Q_EMIT zipChanged();
    Q_EMIT toolChanged();
    startTool();
}

void ToolsPageModel::summarize()
{
    m_filesDetail = QStringLiteral("Calculando…");
    Q_EMIT filesChanged();
    m_summarizing = std::jthread([self = QPointer(this), files = urls(),
                                  &scheduler = m_scheduler](const std::stop_token &stop) {
        std::vector<FileSummary> summaries;
        qint64 size = 0;
        for (const QUrl &file : files) {
            if (stop.stop_requested())
                return;
            FileSummary summary = FileSummary::make(file);
            if (summary.isDirectory)
                summary.byteSize = StorageInspector::size(file.toLocalFile(), stop);
            size += summary.byteSize.value_or(0);
            summaries.push_back(summary);
        }
        if (stop.stop_requested())
            return;
        scheduler.post([self, files, summaries, size] {
            if (self && self->urls() == files)
                self->showSummaries(summaries, size);
        });
    });
}

void ToolsPageModel::showSummaries(const std::vector<FileSummary> &summaries, qint64 size)
{
    std::vector<FileRow> rows;
    std::ranges::transform(summaries, std::back_inserter(rows), fileRow);
    m_files.setRecords(rows);
    if (rows.size() == 1)
        m_filesDetail = rows.front().detail;
    else
        m_filesDetail = QStringLiteral("%1 ao todo").arg(Words::size(size));
    Q_EMIT filesChanged();
}

} // namespace velmo
