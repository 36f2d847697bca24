#include "VelmoUI/Settings/DataPaneModel.h"

#include "VelmoSystem/Ports/FileViewer.h"
#include "VelmoSystem/Storage/StorageInspector.h"

#include <QDir>
#include <QFileDialog>
#include <QGuiApplication>
#include <QPointer>
#include <QStandardPaths>
#include <QWindow>

namespace velmo {

namespace {

/// Runs `action` and says how it ended.
template <class Action>
PaneNote outcome(Action action)
{
    try {
        return {action()};
    } catch (const LocalizedError &error) {
        return {error.description(), true};
    }
}

/// Over the settings window, with our words where the dialog is Qt's own.
std::unique_ptr<QFileDialog> fileDialog(QFileDialog::AcceptMode mode, const QString &title,
                                        const QString &acceptText)
{
    auto dialog = std::make_unique<QFileDialog>();
    dialog->setAcceptMode(mode);
    dialog->setWindowTitle(title);
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    dialog->setDirectory(QDir(documents).exists() ? documents : QDir::homePath());
    dialog->setNameFilter(QStringLiteral("Ajustes do Orvane (*.json)"));
    dialog->setDefaultSuffix(QStringLiteral("json"));
    dialog->winId();
    dialog->windowHandle()->setTransientParent(QGuiApplication::focusWindow());
    dialog->setLabelText(QFileDialog::Accept, acceptText);
    dialog->setLabelText(QFileDialog::Reject, QStringLiteral("Cancelar"));
    dialog->setLabelText(QFileDialog::LookIn, QStringLiteral("Pasta:"));
    dialog->setLabelText(QFileDialog::FileName, QStringLiteral("Nome:"));
    dialog->setLabelText(QFileDialog::FileType, QStringLiteral("Tipo:"));
    return dialog;
}

} // namespace

DataPaneModel::DataPaneModel(SettingsStore &settings, const AppPaths &paths, FileViewer &fileViewer,
                             Scheduler &scheduler)
    : m_settings(settings), m_paths(paths), m_fileViewer(fileViewer), m_scheduler(scheduler)
{
    showSizes({});
}

DataPaneModel::~DataPaneModel() = default;

void DataPaneModel::refresh()
{
    m_clearNote = {QStringLiteral("São refeitos quando preciso. Os dados do app ficam.")};
    m_fileNote = {QStringLiteral("Leve seus ajustes para outro computador.")};
    m_resetNote = QStringLiteral("Volta ao que o Orvane traz.");
    Q_EMIT notesChanged();
    measure();
}

void DataPaneModel::measure()
{
    m_measuring = std::jthread([model = QPointer(this), &scheduler = m_scheduler,
                                paths = m_paths](const std::stop_token &stop) {
        Sizes sizes;
        std::size_t row = 0;
        for (const QString &folder : {paths.support, paths.caches, paths.temporary})
            sizes[row++] = StorageInspector::size(folder, stop);
        if (stop.stop_requested())
            return;
        scheduler.post([model, sizes] {
            if (model)
                model->showSizes(sizes);
        });
    });
}

void DataPaneModel::reveal(const QString &path)
{
    m_fileViewer.reveal({QUrl::fromLocalFile(path)});
}

void DataPaneModel::clear()
{
    if (m_isClearing)
        return;
    m_isClearing = true;
    Q_EMIT clearingChanged();
    m_clearing = std::jthread([model = QPointer(this), &scheduler = m_scheduler, paths = m_paths] {
        const PaneNote note = outcome([&] {
            paths.ensureExists(); // A temporary folder that became somebody else's throws here.
            StorageInspector::clearContents(paths.caches);
            StorageInspector::clearContents(paths.temporary);
            return QStringLiteral("Cache e temporários removidos.");
        });
        scheduler.post([model, note] {
            if (model)
                model->finishClearing(note);
        });
    });
}

void DataPaneModel::chooseExport()
{
    auto dialog = fileDialog(QFileDialog::AcceptSave, QStringLiteral("Exportar ajustes"),
                             QStringLiteral("Exportar"));
    dialog->selectFile(QStringLiteral("Orvane-configuracoes.json"));
    choose(std::move(dialog), &DataPaneModel::exportTo);
}

void DataPaneModel::chooseImport()
{
    auto dialog = fileDialog(QFileDialog::AcceptOpen, QStringLiteral("Importar ajustes"),
                             QStringLiteral("Importar"));
    dialog->setFileMode(QFileDialog::ExistingFile);
    choose(std::move(dialog), &DataPaneModel::importFrom);
}

void DataPaneModel::exportTo(const QString &path)
{
    tellOfFile(outcome([&] {
        m_settings.exportTo(path);
        return QStringLiteral("Ajustes exportados.");
    }));
}

void DataPaneModel::importFrom(const QString &path)
{
    tellOfFile(outcome([&] {
        const StringList discarded = m_settings.importFrom(path);
        if (discarded.empty())
            return QStringLiteral("Ajustes importados.");
        return QStringLiteral("Ajustes importados. Descartados: %1.")
            .arg(QStringList(discarded.begin(), discarded.end()).join(QStringLiteral(", ")));
    }));
}

void DataPaneModel::resetSettings()
{
    m_settings.resetToDefaults();
    m_resetNote = QStringLiteral("Ajustes padrão restaurados.");
    Q_EMIT notesChanged();
}

void DataPaneModel::showSizes(const Sizes &sizes)
{
    const auto text = [](std::optional<qint64> size) {
        return size ? StorageInspector::format(*size) : QStringLiteral("Calculando…");
    };
    const AppPaths &paths = m_paths;
    m_folders.setRecords({{paths.support, QStringLiteral("Dados do app"), text(sizes[0])},
                          {paths.caches, QStringLiteral("Cache"), text(sizes[1])},
                          {paths.temporary, QStringLiteral("Temporários"), text(sizes[2])}});
}

void DataPaneModel::finishClearing(const PaneNote &note)
{
    m_isClearing = false;
    Q_EMIT clearingChanged();
    m_clearNote = note;
    Q_EMIT notesChanged();
    measure();
}

void DataPaneModel::tellOfFile(const PaneNote &note)
{
    m_fileNote = note;
    Q_EMIT notesChanged();
}

void DataPaneModel::choose(std::unique_ptr<QFileDialog> dialog,
                           void (DataPaneModel::*use)(const QString &))
{
    connect(dialog.get(), &QFileDialog::fileSelected, this, use);
    m_dialog = std::move(dialog);
    m_dialog->open();
}

} // namespace velmo
