#include "VelmoUI/Modules/Tools/ArchiveContents.h"

#include "VelmoCore/Foundation/Text.h"
#include "VelmoCore/Foundation/Words.h"

#include <utility>

namespace velmo {

void ArchiveContents::setEntries(std::vector<ArchiveEntry> entries)
{
    m_entries = std::move(entries);
    filter();
}

void ArchiveContents::setQuery(const QString &query)
{
    m_query = Text::folded(query.trimmed());
    filter();
}

int ArchiveContents::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_shown.size());
}

QHash<int, QByteArray> ArchiveContents::roleNames() const
{
    return {{pathRole, "path"}, {sizeRole, "size"}, {symbolRole, "symbol"}, {spokenRole, "spoken"}};
}

QVariant ArchiveContents::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const ArchiveEntry &entry = m_entries[m_shown[std::size_t(index.row())]];
    const QString size = entry.isDirectory ? QString() : Words::size(entry.size);
    switch (role) {
    case pathRole:
        return entry.path;
    case sizeRole:
        return size;
    case symbolRole:
        return entry.isDirectory ? QStringLiteral("folder.fill") : QStringLiteral("doc.fill");
    case spokenRole:
        return QStringLiteral("%1, %2").arg(entry.path,
                                            entry.isDirectory ? QStringLiteral("pasta") : size);
    default:
        return {};
    }
}

void ArchiveContents::filter()
{
    beginResetModel();
    m_shown.clear();
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        if (m_query.isEmpty() || Text::folded(m_entries[i].path).contains(m_query))
            m_shown.push_back(i);
    }
    endResetModel();
}

} // namespace velmo
