#pragma once

#include "VelmoSystem/FileProcessing/FileSummary.h"
#include "VelmoSystem/FileProcessing/ToolsWork.h"
#include "VelmoUI/Modules/Frame/ModulePage.h"
#include "VelmoUI/Modules/Frame/PanelFileDialog.h"
#include "VelmoUI/Modules/Tools/ArchiveContents.h"
#include "VelmoUI/Modules/Tools/RenameForm.h"
#include "VelmoUI/Modules/Tools/ToolRows.h"

#include <QtQml/qqmlregistration.h>

#include <thread>

namespace velmo {

class FileViewer;
class PanelPort;

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

/// The Tools page of one panel: files, what can be done with them, and the result. `ToolsWork` does
/// the work, so it goes on without the page.
class ToolsPageModel : public velmo::ModulePage {
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
    /// The result of the last job, or why it failed.
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
    /// All of them outlive this object.
    ToolsPageModel(ToolsSelection &selection, ToolsWork &work, ActivityCenter &activity,
                   FileViewer &fileViewer, Scheduler &scheduler, PanelPort &panel);

    bool hasFiles() const { return !urls().empty(); }
    QString filesTitle() const;
    QString filesDetail() const { return m_filesDetail; }
    QString filesNames() const;
    RecordListModel<FileRow> *files() { return &m_files; }
    RecordListModel<ToolRow> *tools() { return &m_tools; }
    QString tool() const;
    QString toolTitle() const;

    bool isRunning() const { return m_work.isRunning(); }
    QString jobTitle() const { return m_work.jobTitle(); }
    qreal progress() const { return m_progress; }
    QString note() const { return m_work.note(); }
    bool isNoteError() const { return m_work.isNoteError(); }
    bool canUndo() const { return m_work.canUndo(); }
    bool canReveal() const { return !isRunning() && !m_work.outputs().empty(); }

    RenameForm *renameForm() { return &m_renameForm; }
    QString zipName() const { return m_zipName; }
    void setZipName(const QString &name);
    QString zipDetail() const;
    bool canZip() const;
    QString extractDetail() const;
    QString passwordQuestion() const { return m_work.passwordQuestion(); }
    QString passwordTitle() const;
    ArchiveContents *entries() { return &m_entries; }
    QString entriesDetail() const;

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
    void moveTo(const QUrl &folder) { m_work.moveTo(folder); }
    /// Tries again what a password was asked for.
    Q_INVOKABLE void usePassword(const QString &password) { m_work.usePassword(password); }
    Q_INVOKABLE void declinePassword() { m_work.declinePassword(); }
    Q_INVOKABLE void searchEntries(const QString &query);

    Q_INVOKABLE void cancel() { m_work.cancel(); }
    Q_INVOKABLE void undo() { m_work.undo(); }
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
    /// A tool that another view asked for starts only when the page is seen.
    void watch(bool isWatched) override;
    const std::vector<QUrl> &urls() const { return m_selection.urls(); }
    void takeFiles();
    void summarize();
    void showSummaries(const std::vector<FileSummary> &summaries, qint64 size);
    void startTool();
    void askForFolder(const QString &title, const QString &acceptText,
                      const std::function<void(const QUrl &)> &use);

    void updateProgress();
    void showEntries();

    ToolsSelection &m_selection;
    ToolsWork &m_work;
    ActivityCenter &m_activity;
    FileViewer &m_fileViewer;
    Scheduler &m_scheduler;
    PanelFileDialog m_dialog;
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
