#pragma once

#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoCore/Storage/AppPaths.h"
#include "VelmoUI/Design/RecordListModel.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <thread>

class QFileDialog;

namespace velmo {

class FileViewer;

/// A folder of Orvane's as the pane shows it.
struct FolderRow {
    QString id; ///< its path
    QString title;
    QString size; ///< "Calculando…" until it is known

    bool operator==(const FolderRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(FolderRow, (), (id, title, size))

/// What an action does, then what came of it.
class PaneNote {
    Q_GADGET
    QML_ANONYMOUS
    Q_PROPERTY(QString text MEMBER text CONSTANT)
    Q_PROPERTY(bool isError MEMBER isError CONSTANT)

public:
    QString text;
    bool isError = false;
};

/// Sizes on disk, export, import and reset.
class DataPaneModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made in C++")
    Q_PROPERTY(QAbstractItemModel *folders READ folders CONSTANT)
    Q_PROPERTY(bool isClearing READ isClearing NOTIFY clearingChanged)
    Q_PROPERTY(velmo::PaneNote clearNote READ clearNote NOTIFY notesChanged)
    Q_PROPERTY(velmo::PaneNote fileNote READ fileNote NOTIFY notesChanged)
    Q_PROPERTY(QString resetNote READ resetNote NOTIFY notesChanged)

public:
    /// All of them outlive this object.
    DataPaneModel(SettingsStore &settings, const AppPaths &paths, FileViewer &fileViewer,
                  Scheduler &scheduler);
    /// Waits for a clearing that has begun.
    ~DataPaneModel() override;

    QAbstractItemModel *folders() { return &m_folders; }
    bool isClearing() const { return m_isClearing; }
    PaneNote clearNote() const { return m_clearNote; }
    PaneNote fileNote() const { return m_fileNote; }
    QString resetNote() const { return m_resetNote; }

    /// Measures the folders on a thread of its own, and forgets what came of earlier actions.
    Q_INVOKABLE void refresh();
    Q_INVOKABLE void reveal(const QString &path);
    /// Removes caches, then temporary files, on a thread of its own; the data stays.
    Q_INVOKABLE void clear();

    Q_INVOKABLE void chooseExport();
    Q_INVOKABLE void chooseImport();
    void exportTo(const QString &path);
    void importFrom(const QString &path);
    Q_INVOKABLE void resetSettings();

Q_SIGNALS:
    void clearingChanged();
    void notesChanged();

private:
    using Sizes = std::array<std::optional<qint64>, 3>;

    void measure();
    void showSizes(const Sizes &sizes);
    void finishClearing(const PaneNote &note);
    void tellOfFile(const PaneNote &note);
    void choose(std::unique_ptr<QFileDialog> dialog, void (DataPaneModel::*use)(const QString &));

    SettingsStore &m_settings;
    const AppPaths m_paths;
    FileViewer &m_fileViewer;
    Scheduler &m_scheduler;
    RecordListModel<FolderRow> m_folders;
    PaneNote m_clearNote;
    PaneNote m_fileNote;
    QString m_resetNote;
    bool m_isClearing = false;
    std::unique_ptr<QFileDialog> m_dialog;
    std::jthread m_measuring;
    std::jthread m_clearing;
};

} // namespace velmo
