#include "Velmo/CompressProbe.h"

#include "VelmoCore/Files/FileNaming.h"
#include "VelmoCore/Files/FileTransfer.h"
#include "VelmoSystem/FileProcessing/ArchiveEngine.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>

namespace velmo {

namespace {

QStringList copiesOf(const QStringList &files, const QString &folder)
{
    QStringList copies;
    for (const QString &file : files) {
        const QUrl source = QUrl::fromLocalFile(QFileInfo(file).absoluteFilePath());
        const QUrl target = QUrl::fromLocalFile(folder + u'/' + FileNaming::nameOf(source));
        copies.append(FileTransfer::copyUnique(source, target).toLocalFile());
    }
    return copies;
}

/// How it went, and how large the archive is.
QString compress(const ArchiveEngine &engine, const QStringList &files, const QString &archive,
                 int level)
{
    for (const ToolCommand &command : engine.compression(archive, files, level)) {
        const ProcessResult result = ToolProcess::run(command);
        if (result.status != 0)
            return ArchiveEngine::compressionFailure(result);
    }
    return QStringLiteral("%1 bytes").arg(QFileInfo(archive).size());
}

} // namespace

QString CompressProbe::run(const QStringList &files)
{
    const std::vector<ArchiveEngine> engines = ArchiveEngine::allThatMake();
    if (engines.empty())
        throw LocalizedError(QStringLiteral("Nenhum compactador está instalado."));
    const QTemporaryDir folder;
    if (!folder.isValid())
        throw LocalizedError(folder.errorString());
    const QStringList copies = copiesOf(files, folder.path());
    QString report = QStringLiteral("%1 arquivos, %2\n")
                         .arg(QString::number(copies.size()), engines.front().tool());
    for (int level = 1; level <= 9; ++level) {
        const QString archive = folder.filePath(QStringLiteral("nivel-%1.zip").arg(level));
        report +=
            QStringLiteral("nível %1: %2\n")
                .arg(QString::number(level), compress(engines.front(), copies, archive, level));
    }
    return report;
}

} // namespace velmo
