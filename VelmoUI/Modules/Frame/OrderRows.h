#pragma once

#include "VelmoCore/Settings/AppSettings.h"

#include <boost/describe.hpp>

namespace velmo {

/// A row of a list that the user puts in order.
struct OrderRow {
    QString id;
    QString title;
    QString symbol; ///< empty where there is an icon
    QString icon;   ///< the source of its picture
    bool isShown = true;
    bool canToggle = true;
    QString spoken; ///< for screen readers: title, place and whether it shows
    QString action; ///< what the row's control does to it

    bool operator==(const OrderRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(OrderRow, (), (id, title, symbol, icon, isShown, canToggle, spoken, action))

namespace OrderRows {

/// Adds what depends on the whole list. Rows that can't be hidden can be removed.
std::vector<OrderRow> finished(std::vector<OrderRow> rows, bool canHide);

/// `order`, with one of the rows that show at another place among them. What doesn't show stays
/// beside what it stood beside. Rows that don't exist change nothing.
StringList moved(StringList order, const std::vector<OrderRow> &rows, int from, int to);

/// Adds the id to the list, or takes it away.
void toggle(StringList &list, const QString &id);

} // namespace OrderRows
} // namespace velmo
