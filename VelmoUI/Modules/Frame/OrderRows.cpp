#include "VelmoUI/Modules/Frame/OrderRows.h"

#include <algorithm>

namespace velmo {

std::vector<OrderRow> OrderRows::finished(std::vector<OrderRow> rows, bool canHide)
{
    int place = 0;
    for (OrderRow &row : rows) {
        row.spoken = QStringLiteral("%1, %2 de %3")
                         .arg(row.title, QString::number(++place), QString::number(rows.size()));
        if (canHide)
            row.spoken += row.isShown ? QStringLiteral(", visível") : QStringLiteral(", oculto");
        row.action =
            (canHide ? QStringLiteral("Mostrar %1") : QStringLiteral("Remover %1")).arg(row.title);
    }
    return rows;
}

StringList OrderRows::moved(StringList order, const std::vector<OrderRow> &rows, int from, int to)
{
    const int count = int(rows.size());
    if (from == to || from < 0 || to < 0 || from >= count || to >= count)
        return order;
    StringList shown;
    for (const OrderRow &row : rows) {
        shown.push_back(row.id);
        if (std::ranges::find(order, row.id) == order.end())
            order.push_back(row.id);
    }
    const QString id = shown[std::size_t(from)];
    std::erase(shown, id);
    std::erase(order, id);
    const bool isLast = to == count - 1;
    const QString &neighbour = isLast ? shown.back() : shown[std::size_t(to)];
    order.insert(std::ranges::find(order, neighbour) + (isLast ? 1 : 0), id);
    return order;
}

void OrderRows::toggle(StringList &list, const QString &id)
{
    if (std::erase(list, id) == 0)
        list.push_back(id);
}

} // namespace velmo
