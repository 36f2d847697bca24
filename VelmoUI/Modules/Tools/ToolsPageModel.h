#pragma once

#include "VelmoSystem/FileProcessing/FileSummary.h"
#include "VelmoUI/App/AppServices.h"
#include "VelmoUI/Modules/NotchModule.h"
#include "VelmoUI/Modules/Tools/ArchiveContents.h"
#include "VelmoUI/Modules/Tools/RenameForm.h"
#include "VelmoUI/Modules/Tools/ToolRows.h"
#include "VelmoUI/Notch/PanelFileDialog.h"

#include <QtQml/qqmlregistration.h>

#include <thread>

namespace velmo {

/// A chosen file as the summary shows it.
struct FileRow {
    QString id; ///< its path
    QString symbol;
    QString name;
    QString detail;
    QString removal; ///< names the button that leaves it out
    QString spoken;  ///< for screen readers

    bool operator==(const FileRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(FileRow, (), (id, symbol, name, detail, removal, spoken))

/// The Tools page of one panel: files, what can be done with them, and what came of it. The work is
/// that of `ToolsWork`, and so goes on without the page.
class ToolsPageModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by its module")
    Q_PROPERTY(bool hasFiles READ hasFiles NOTIFY filesChanged)
    /// "3 itens", or the only file's name.
    Q_PROPERTY(QString filesTitle READ filesTitle NOTIFY filesChanged)
    /// Their size together, or the only file's kind and size.
    Q_PROPERTY(QString filesDetail READ filesDetail NOTIFY filesChanged)
    /// What they are called, or the folder of the only one.
    Q_PROPERTY(QString filesNames READ filesNames NOTIFY filesChanged)
    Q_PROPERTY(QAbstractItemModel *files READ files CONSTANT)
    Q_PROPERTY(QAbstractItemModel *tools READ tools CONSTANT)
    /// The id of the open tool, empty while all show.
    Q_PROPERTY(QString tool READ tool NOTIFY toolChanged)
    Q_PROPERTY(QString toolTitle READ toolTitle NOTIFY toolChanged)

    Q_PROPERTY(bool isRunning READ isRunning NOTIFY jobChanged)
    Q_PROPERTY(QString jobTitle READ jobTitle NOTIFY jobChanged)
    /// 0 to 1, negative if it isn't known.
    Q_PROPERTY(qreal progress READ progress NOTIFY jobChanged)
    /// What came of the last job, or why nothing did.
    Q_PROPERTY(QString note READ note NOTIFY jobChanged)
    Q_PROPERTY(bool isNoteError READ isNoteError NOTIFY jobChanged)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY jobChanged)
    Q_PROPERTY(bool canReveal READ canReveal NOTIFY jobChanged)

    Q_PROPERTY(velmo::RenameForm *renameForm READ renameForm CONSTANT)
    Q_PROPERTY(QString zipName READ zipName WRITE setZipName NOTIFY zipChanged)
    /// Where the archive goes, or why its name can't be.
    Q_PROPERTY(QString zipDetail READ zipDetail NOTIFY zipChanged)
    Q_PROPERTY(bool canZip READ canZip NOTIFY zipChanged)
    Q_PROPERTY(QString extractDetail READ extractDetail NOTIFY filesChanged)
    /// What the archive tools say of the password; empty if none is asked for.
    Q_PROPERTY(QString passwordQuestion READ passwordQuestion NOTIFY passwordChanged)
    /// Of which archive, which needn't be one of those chosen now.
    Q_PROPERTY(QString passwordTitle READ passwordTitle NOTIFY passwordChanged)
    Q_PROPERTY(QAbstractItemModel *entries READ entries CONSTANT)
    Q_PROPERTY(QString entriesDetail READ entriesDetail NOTIFY entriesChanged)

public:
    explicit ToolsPageModel(const ModuleContext &context);

    bool hasFiles() const { return !urls().empty(); }
    QString filesTitle() const;
    QString filesDetail() const { return m_filesDetail; }
    QString filesNames() const;
    RecordListModel<FileRow> *files() { return &m_files; }
    RecordListModel<ToolRow> *tools() { return &m_tools; }
    QString tool() const;
    QString toolTitle() const;

    bool isRunning() const { return work().isRunning(); }
    QString jobTitle() const { return work().jobTitle(); }
    qreal progress() const { return m_progress; }
    QString note() const { return work().note(); }
    bool isNoteError() const { return work().isNoteError(); }
    bool canUndo() const { return work().canUndo(); }
    bool canReveal() const { return !isRunning() && !work().outputs().empty(); }

    RenameForm *renameForm() { return &m_renameForm; }
    QString zipName() const { return m_zipName; }
    void setZipName(const QString &name);
    QString zipDetail() const;
    bool canZip() const;
    QString extractDetail() const;
    QString passwordQuestion() const { return work().passwordQuestion(); }
    QString passwordTitle() const;
    ArchiveContents *entries() { return &m_entries; }
    QString entriesDetail() const;

    /// Whether the page can be seen. A tool that another view asked for starts only then.
    Q_INVOKABLE void setWatched(bool watched);

    /// Asks for files, which join those chosen.
    Q_INVOKABLE void chooseFiles();
    Q_INVOKABLE void clear();
    Q_INVOKABLE void remove(const QString &path);
    /// Opens the tool, or does at once what needs no answer.
    Q_INVOKABLE void open(const QString &tool);
    Q_INVOKABLE void closeTool();

    Q_INVOKABLE void rename();
    Q_INVOKABLE void zip();
    /// Beside each archive.
    Q_INVOKABLE void extract();
    Q_INVOKABLE void chooseExtractFolder();
    void moveTo(const QUrl &folder) { work().moveTo(folder); }
    /// Tries again what a password was asked for.
    Q_INVOKABLE void usePassword(const QString &password) { work().usePassword(password); }
    Q_INVOKABLE void declinePassword() { work().declinePassword(); }
    Q_INVOKABLE void searchEntries(const QString &query);

    Q_INVOKABLE void cancel() { work().cancel(); }
    Q_INVOKABLE void undo() { work().undo(); }
    /// Shows what the last job made.
    Q_INVOKABLE void reveal();

Q_SIGNALS:
    void filesChanged();
    void toolChanged();
    void jobChanged();
    void zipChanged();
    void passwordChanged();
    void entriesChanged();

private:
    ToolsWork &work() const { return m_context.services.toolsWork; }
    const std::vector<QUrl> &urls() const { return m_context.services.tools.urls(); }
    void takeFiles();
    void summarize();
    void showSummaries(const std::vector<FileSummary> &summaries, qint64 size);
    void startTool();
    void askForFolder(const QString &title, const QString &acceptText,
                      const std::function<void(const QUrl &)> &use);

    void updateProgress();
    void showEntries();

    const ModuleContext m_context;
    PanelFileDialog m_dialog;
    bool m_isWatched = false;
    std::jthread m_summarizing;
    QString m_filesDetail;
    RecordListModel<FileRow> m_files;
    RecordListModel<ToolRow> m_tools;

    qreal m_progress = -1;
    RenameForm m_renameForm;
    QString m_zipName;
    ArchiveContents m_entries;
};

} // namespace velmo
