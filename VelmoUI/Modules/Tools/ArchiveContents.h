#pragma once

#include "VelmoCore/Files/ArchiveListing.h"

#include <QAbstractListModel>

namespace velmo {

/// The entries of an archive that match a search, as a list for QML. An archive may hold very many,
/// so the texts are made only for the rows on show.
class ArchiveContents : public QAbstractListModel {
    Q_OBJECT

public:
    void setEntries(std::vector<ArchiveEntry> entries);
    /// Shows what has `query` in its path, whatever the case and accents.
    void setQuery(const QString &query);

    int entryCount() const { return int(m_entries.size()); }
    int rowCount(const QModelIndex &parent = {}) const override;
    QHash<int, QByteArray> roleNames() const override;
    QVariant data(const QModelIndex &index, int role) const override;

private:
    enum Role { pathRole = Qt::UserRole, sizeRole, symbolRole, spokenRole };

    void filter();

    std::vector<ArchiveEntry> m_entries;
    QString m_query; ///< folded
    std::vector<std::size_t> m_shown;
};

} // namespace velmo
