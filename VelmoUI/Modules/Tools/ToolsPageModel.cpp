#include "VelmoUI/Modules/Tools/ToolsPageModel.h"

#include "VelmoSystem/Ports/FileViewer.h"
#include "VelmoSystem/Storage/StorageInspector.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
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

ToolsPageModel::ToolsPageModel(const ModuleContext &context)
    : m_context(context), m_dialog(context.panel), m_renameForm(context.services.platform.scheduler)
{
    ToolsSelection &selection = context.services.tools;
    connect(&selection, &ToolsSelection::urlsChanged, this, &ToolsPageModel::takeFiles);
    connect(&selection, &ToolsSelection::toolChanged, this, [this] {
        askForPassword({});
        Q_EMIT toolChanged();
        startTool();
    });
    connect(&context.services.activity, &ActivityCenter::liveChanged, this,
            &ToolsPageModel::updateProgress);
    takeFiles();
}

QString ToolsPageModel::filesTitle() const
{
    if (urls().size() == 1)
        return urls().front().fileName();
    return QStringLiteral("%L1 itens").arg(urls().size());
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
    return m_context.services.tools.tool().value_or(QString());
}

QString ToolsPageModel::toolTitle() const
{
    const auto &rows = m_tools.records();
    const auto row = std::ranges::find(rows, tool(), &ToolRow::id);
    return row == rows.end() ? QString() : row->title;
}

void ToolsPageModel::setWatched(bool watched)
{
    if (watched == m_isWatched)
        return;
    m_isWatched = watched;
    if (!watched)
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
                      m_context.services.tools.replace(std::move(all));
                  });
}

void ToolsPageModel::clear()
{
    m_context.services.tools.open({}, std::nullopt);
}

void ToolsPageModel::remove(const QString &path)
{
    std::vector<QUrl> rest = urls();
    std::erase(rest, QUrl::fromLocalFile(path));
    const bool isLast = rest.empty();
    m_context.services.tools.replace(std::move(rest));
    if (isLast)
        closeTool();
}

void ToolsPageModel::open(const QString &tool)
{
    if (!isRunning())
        m_context.services.tools.setTool(tool);
}

void ToolsPageModel::closeTool()
{
    m_context.services.tools.setTool(std::nullopt);
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
    if (!m_listed)
        return {};
    const int all = m_entries.entryCount();
    const int shown = m_entries.rowCount();
    if (all == 0)
        return QStringLiteral("Vazio");
    if (shown == 0)
        return QStringLiteral("Nada encontrado");
    const QString total =
        all == 1 ? QStringLiteral("1 item") : QStringLiteral("%L1 itens").arg(all);
    return shown == all ? total : QStringLiteral("%1 de %2").arg(QLocale().toString(shown), total);
}

void ToolsPageModel::usePassword(const QString &password)
{
    if (m_passwordQuestion.isEmpty() || password.isEmpty() || isRunning())
        return;
    const auto use = m_withPassword; // which takes its own place
    use(password);
}

void ToolsPageModel::searchEntries(const QString &query)
{
    m_entries.setQuery(query);
    Q_EMIT entriesChanged();
}

void ToolsPageModel::cancel()
{
    m_context.services.activity.cancel(m_jobID);
}

void ToolsPageModel::reveal()
{
    m_context.services.platform.fileViewer.reveal(m_outputs);
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
    if (!isRunning()) {
        m_toExtract.clear();
        askForPassword({});
        const bool isOther = std::ranges::none_of(
            m_taken, [this](const QUrl &file) { return std::ranges::count(urls(), file) > 0; });
        if (isOther) { // what came of the last job is nothing of theirs
            m_outputs.clear();
            m_undo = {};
            tell({}, false);
        }
    }
    m_taken = urls();
    summarize();
    Q_EMIT zipChanged();
    Q_EMIT toolChanged();
    startTool();
}

void ToolsPageModel::summarize()
{
    m_filesDetail = QStringLiteral("Calculando…");
    Q_EMIT filesChanged();
    m_summarizing = std::jthread(
        [self = QPointer(this), files = urls(),
         &scheduler = m_context.services.platform.scheduler](const std::stop_token &stop) {
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
        m_filesDetail = QStringLiteral("%1 ao todo").arg(StorageInspector::format(size));
    Q_EMIT filesChanged();
}

} // namespace velmo
