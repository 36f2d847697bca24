#pragma once

#include "VelmoCore/Foundation/Date.h"

#include <QAbstractListModel>
#include <QDateTime>

#include <boost/describe.hpp>
#include <boost/mp11.hpp>

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

    QHash<int, QByteArray> roleNames() const override
    {
        QHash<int, QByteArray> names;
        int role = Qt::UserRole;
        boost::mp11::mp_for_each<Members>([&](auto member) { names[role++] = member.name; });
        return names;
    }

    QVariant data(const QModelIndex &index, int role) const override
    {
        QVariant value;
        if (!checkIndex(index, CheckIndexOption::IndexIsValid))
            return value;
        const Record &record = m_records[std::size_t(index.row())];
        int candidate = Qt::UserRole;
        boost::mp11::mp_for_each<Members>([&](auto member) {
            if (candidate++ == role)
                value = variant(record.*member.pointer);
        });
        return value;
    }

    const std::vector<Record> &records() const { return m_records; }

    /// Shows `records`, with the fewest row changes that a walk from front to back finds.
    void setRecords(const std::vector<Record> &records)
    {
        for (int row = int(m_records.size()) - 1; row >= 0; --row) {
            if (!indexOf(records, m_records[std::size_t(row)], 0))
                removeAt(row);
        }
        for (std::size_t row = 0; row < records.size(); ++row)
            place(records[row], row);
    }

private:
    using Members = boost::describe::describe_members<Record, boost::describe::mod_public>;

    static std::optional<std::size_t> indexOf(const std::vector<Record> &records,
                                              const Record &record, std::size_t from)
    {
        for (std::size_t i = from; i < records.size(); ++i) {
            if (records[i].id == record.id)
                return i;
        }
        return std::nullopt;
    }

    void removeAt(int row)
    {
        beginRemoveRows({}, row, row);
        m_records.erase(m_records.begin() + row);
        endRemoveRows();
    }

    void place(const Record &record, std::size_t row)
    {
        const auto found = indexOf(m_records, record, row);
        if (!found) {
            beginInsertRows({}, int(row), int(row));
            m_records.insert(m_records.begin() + std::ptrdiff_t(row), record);
            endInsertRows();
            return;
        }
        if (*found != row) {
            beginMoveRows({}, int(*found), int(*found), {}, int(row));
            const auto first = m_records.begin() + std::ptrdiff_t(row);
            const auto last = m_records.begin() + std::ptrdiff_t(*found);
            std::rotate(first, last, last + 1);
            endMoveRows();
        }
        if (!(m_records[row] == record)) {
            m_records[row] = record;
            Q_EMIT dataChanged(index(int(row)), index(int(row)));
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
