#pragma once

#include "VelmoUI/Modules/Clipboard/ClipRow.h"

#include <QAbstractListModel>

#include <utility>

namespace velmo {

/// Items of the clipboard's history for QML, in roles as `ClipRow` has fields. There may be
/// thousands: a row is made when it is looked at, and a list that becomes another is told in a
/// change or two.
class ClipList : public QAbstractListModel {
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex &parent = {}) const override;
    QHash<int, QByteArray> roleNames() const override;
    QVariant data(const QModelIndex &index, int role) const override;

    const std::vector<ClipItem> &items() const { return m_items; }
    /// -1 for none.
    int placeOf(const std::optional<Uuid> &id) const;
    void setItems(std::vector<ClipItem> items, Date now);

private:
    const ClipRow &row(int place) const;
    void replace(std::vector<ClipItem> items, std::size_t first, std::size_t end);

    std::vector<ClipItem> m_items;
    Date m_now;
    mutable std::pair<int, ClipRow> m_lastRow{-1, {}}; ///< views ask for its fields one by one
};

} // namespace velmo
