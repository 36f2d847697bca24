#include "VelmoCore/Files/FailedFiles.h"

#include "VelmoCore/Files/FileNaming.h"
#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Storage/AtomicFile.h"
#include "VelmoCore/Storage/FileReasons.h"

#include <algorithm>

namespace velmo {

namespace {

QString reasonOf(const std::exception &error)
{
    if (const auto *file = dynamic_cast<const FileError *>(&error))
        return FileReasons::text(file->code());
    if (const auto *localized = dynamic_cast<const LocalizedError *>(&error))
        return localized->description();
    return QStringLiteral("erro inesperado (%1)").arg(QString::fromUtf8(error.what()));
}

} // namespace

void FailedFiles::add(const QUrl &file, const std::exception &error)
{
    qCWarning(Log::storage).noquote() << file.toLocalFile() + u':' << error.what();
    ++m_count;
    const QString reason = reasonOf(error);
    auto group = std::ranges::find(m_groups, reason, &Group::reason);
    if (group == m_groups.end())
        group = m_groups.insert(group, {reason, {}});
    group->names.append(FileNaming::nameOf(file));
}

QString FailedFiles::text() const
{
    QStringList texts;
    for (const Group &group : m_groups)
        texts.append(group.names.join(QStringLiteral(", ")) + QStringLiteral(": ") + group.reason);
    return texts.join(QStringLiteral("; "));
}

} // namespace velmo
