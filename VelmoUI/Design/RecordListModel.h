#pragma once

#include "VelmoCore/Foundation/Date.h"

#include <QAbstractListModel>
#include <QDateTime>
#include <QSet>

#include <boost/describe.hpp>
#include <boost/mp11.hpp>

#include <algorithm>
#include <optional>
#include <vector>

namespace velmo {

/// A list of described records for QML. Roles are the records' fields, in their order; a record is
/// known by its field `id`, so that rows move, come and go one by one.
template <class Record>
class RecordListModel : public QAbstractListModel {
public:
    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : int(m_records.size());
    }

    QHash<int, QByteArray> roleNames() const override { return namesOfRoles(); }

    QVariant data(const QModelIndex &index, int role) const override
    {
        if (!checkIndex(index, CheckIndexOption::IndexIsValid))
            return {};
        return field(m_records[std::size_t(index.row())], role);
    }

    static QHash<int, QByteArray> namesOfRoles()
    {
        QHash<int, QByteArray> names;
        int role = Qt::UserRole;
        boost::mp11::mp_for_each<Members>([&](auto member) { names[role++] = member.name; });
        return names;
    }

    /// What a record holds for a role.
    static QVariant field(const Record &record, int role)
    {
        QVariant value;
        int candidate = Qt::UserRole;
        boost::mp11::mp_for_each<Members>([&](auto member) {
            if (candidate++ == role)
                value = variant(record.*member.pointer);
        });
        return value;
    }

    const std::vector<Record> &records() const { return m_records; }

    /// Shows `records`. Rows that come or go together are announced as one change, so a list that
    /// only grows, shrinks or changes costs time in proportion to its length.
    void setRecords(const std::vector<Record> &records)
    {
        if (records == m_records)
            return;
        removeAllBut(idsOf(records));
        const QSet<Id> known = idsOf(m_records);
        std::size_t row = 0;
        while (row < records.size()) {
            std::size_t end = row;
            while (end < records.size() && !known.contains(records[end].id))
                ++end;
            if (end == row)
                place(records[end++], row);
            else
                insert(row, records.begin() + std::ptrdiff_t(row),
                       records.begin() + std::ptrdiff_t(end));
            row = end;
        }
        if (m_records.size() > records.size())
            remove(records.size(), m_records.size());
        update(records);
    }

private:
    using Members = boost::describe::describe_members<Record, boost::describe::mod_public>;

    using Id = decltype(Record::id);

    static QSet<Id> idsOf(const std::vector<Record> &records)
    {
        QSet<Id> ids;
        ids.reserve(qsizetype(records.size()));
        for (const Record &record : records)
            ids.insert(record.id);
        return ids;
    }

    void removeAllBut(const QSet<Id> &ids)
    {
        const auto stays = [&](std::size_t row) { return ids.contains(m_records[row].id); };
        for (std::size_t end = m_records.size(); end > 0; --end) {
            std::size_t first = end;
            while (first > 0 && !stays(first - 1))
                --first;
            if (first < end)
                remove(first, end);
            end = std::max<std::size_t>(first, 1);
        }
    }

    void remove(std::size_t first, std::size_t end)
    {
        beginRemoveRows({}, int(first), int(end) - 1);
        m_records.erase(m_records.begin() + std::ptrdiff_t(first),
                        m_records.begin() + std::ptrdiff_t(end));
        endRemoveRows();
    }

    template <class Iterator>
    void insert(std::size_t row, Iterator first, Iterator end)
    {
        beginInsertRows({}, int(row), int(row) + int(end - first) - 1);
        m_records.insert(m_records.begin() + std::ptrdiff_t(row), first, end);
        endInsertRows();
    }

    /// Brings the row that is known by `record`'s id to `row`.
    void place(const Record &record, std::size_t row)
    {
        const auto from = m_records.begin() + std::ptrdiff_t(row);
        const auto found = std::find_if(from, m_records.end(),
                                        [&](const Record &other) { return other.id == record.id; });
        if (found == m_records.end()) { // the same id twice
            insert(row, &record, &record + 1);
        } else if (found != from) {
            beginMoveRows({}, int(found - m_records.begin()), int(found - m_records.begin()), {},
                          int(row));
            std::rotate(from, found, found + 1);
            endMoveRows();
        }
    }

    void update(const std::vector<Record> &records)
    {
        std::size_t first = 0;
        for (std::size_t row = 0; row <= records.size(); ++row) {
            const bool isChanged = row < records.size() && !(m_records[row] == records[row]);
            if (isChanged) {
                m_records[row] = records[row];
                continue;
            }
            if (first < row)
                Q_EMIT dataChanged(index(int(first)), index(int(row) - 1));
            first = row + 1;
        }
    }

    template <class Value>
    static QVariant variant(const Value &value)
    {
        return QVariant::fromValue(value);
    }
    template <class Value>
    static QVariant variant(const std::optional<Value> &value)
    {
        return value ? variant(*value) : QVariant();
    }

    std::vector<Record> m_records;
};

} // namespace velmo
