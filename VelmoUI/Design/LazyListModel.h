#pragma once

#include "VelmoCore/Foundation/Uuid.h"
#include "VelmoUI/Design/RecordListModel.h"

#include <functional>
#include <utility>

namespace velmo {

/// Thousands of records for QML, in roles as `Row` has fields. A row is made from its record when a
/// view asks for it. A record is known by its field `id`.
template <class Record, class Row>
class LazyListModel : public QAbstractListModel {
public:
    explicit LazyListModel(std::function<Row(const Record &)> makeRow)
        : m_makeRow(std::move(makeRow))
    {
    }

    int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : int(m_records.size());
    }

    QHash<int, QByteArray> roleNames() const override
    {
        return RecordListModel<Row>::namesOfRoles();
    }

    QVariant data(const QModelIndex &index, int role) const override
    {
        if (!checkIndex(index, CheckIndexOption::IndexIsValid))
            return {};
        if (m_lastPlace != index.row()) {
            m_lastRow = m_makeRow(m_records[std::size_t(index.row())]);
            m_lastPlace = index.row();
        }
        return RecordListModel<Row>::field(m_lastRow, role);
    }

    const std::vector<Record> &records() const { return m_records; }

    /// -1 for none.
    int placeOf(const std::optional<Uuid> &id) const
    {
        const auto found = id ? std::ranges::find(m_records, *id, &Record::id) : m_records.end();
        return found == m_records.end() ? -1 : int(found - m_records.begin());
    }

    /// Shows `records`, and all rows as they look now. At most one change of the list's length or
    /// order: what only comes, only goes or moves alone leaves the other rows in place, else rows
    /// that there are show other records.
    void setRecords(std::vector<Record> records)
    {
        const auto differ = std::ranges::mismatch(m_records, records, {}, &Record::id, &Record::id);
        const auto first = differ.in1 - m_records.begin();
        const auto tail = std::mismatch(m_records.rbegin(), std::reverse_iterator(differ.in1),
                                        records.rbegin(), std::reverse_iterator(differ.in2), sameID)
                              .first -
                          m_records.rbegin();
        replace(std::move(records), int(first), int(tail));
        if (!m_records.empty())
            Q_EMIT dataChanged(index(0), index(rowCount() - 1));
    }

private:
    static bool sameID(const Record &one, const Record &other) { return one.id == other.id; }

    /// The lists are the same before `first` and in the last `tail` records.
    void replace(std::vector<Record> records, int first, int tail)
    {
        const int oldEnd = rowCount() - tail;
        const int newEnd = int(records.size()) - tail;
        const auto set = [&] {
            m_records = std::move(records);
            m_lastPlace = -1;
        };
        const auto movesTo = [&](int from, int to) { // of all that differ only this
            const auto begin = m_records.begin() + first;
            const auto end = m_records.begin() + oldEnd;
            const auto next = records.begin() + first;
            const auto turn = from < to ? begin + 1 : end - 1;
            return oldEnd == newEnd && std::equal(turn, end, next, sameID) &&
                   std::equal(begin, turn, next + (end - turn), sameID);
        };
        const auto move = [&](int from, int to) {
            beginMoveRows({}, from, from, {}, to);
            set();
            endMoveRows();
        };
        const auto insert = [&](int begin, int end) {
            beginInsertRows({}, begin, end - 1);
            set();
            endInsertRows();
        };
        const auto remove = [&](int begin, int end) {
            beginRemoveRows({}, begin, end - 1);
            set();
            endRemoveRows();
        };
        const int length = int(records.size());
        if (length == rowCount() && first == oldEnd)
            set();
        else if (first == oldEnd)
            insert(first, newEnd);
        else if (first == newEnd)
            remove(first, oldEnd);
        else if (movesTo(oldEnd - 1, first))
            move(oldEnd - 1, first);
        else if (movesTo(first, oldEnd))
            move(first, oldEnd);
        else if (length > rowCount())
            insert(rowCount(), length);
        else if (length < rowCount())
            remove(length, rowCount());
        else
            set();
    }

    const std::function<Row(const Record &)> m_makeRow;
    std::vector<Record> m_records;
    mutable int m_lastPlace = -1; ///< views ask for a row's fields one by one
    mutable Row m_lastRow;
};

} // namespace velmo
