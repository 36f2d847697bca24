#include "VelmoUI/Modules/Frame/TileSelection.h"

#include <Qt>

#include <algorithm>

namespace velmo {

std::optional<int> tileAfter(int key, int current, int last)
{
    switch (key) {
    case Qt::Key_Left:
        return std::max(current - 1, 0);
    case Qt::Key_Right:
        return std::min(current + 1, last);
    case Qt::Key_Home:
        return 0;
    case Qt::Key_End:
        return last;
    default:
        return std::nullopt;
    }
}

void TileSelection::setShown(std::vector<Uuid> ids)
{
    m_shown = std::move(ids);
    const auto selected = this->ids();
    m_selected = {selected.begin(), selected.end()};
}

std::vector<Uuid> TileSelection::ids() const
{
    std::vector<Uuid> ids;
    std::ranges::copy_if(m_shown, std::back_inserter(ids),
                         [this](const Uuid &id) { return contains(id); });
    return ids;
}

int TileSelection::placeOf(const Uuid &id) const
{
    const auto found = std::ranges::find(m_shown, id);
    return found == m_shown.end() ? -1 : int(found - m_shown.begin());
}

void TileSelection::press(int index, int modifiers)
{
    if (!isPlace(index))
        return;
    if ((modifiers & Qt::ShiftModifier) != 0) {
        moveTo(index, true);
        return;
    }
    const Uuid id = m_shown[std::size_t(index)];
    m_current = m_anchor = id;
    if ((modifiers & Qt::ControlModifier) == 0) {
        if (!contains(id)) // else the press may become a drag of them all
            m_selected = {id};
    } else if (m_selected.erase(id) == 0) {
        m_selected.insert(id);
    }
}

bool TileSelection::release(int index, int modifiers)
{
    const bool isAlone = modifiers == 0 && m_selected.size() > 1 && isPlace(index);
    if (isAlone)
        moveTo(index);
    return isAlone;
}

bool TileSelection::handleKey(int key, int modifiers)
{
    const int last = int(m_shown.size()) - 1;
    const bool extends = modifiers == Qt::ShiftModifier;
    if (last >= 0 && (modifiers == 0 || extends)) {
        if (const auto place = tileAfter(key, currentIndex(), last)) {
            moveTo(*place, extends);
            return true;
        }
    }
    if (key == Qt::Key_A && modifiers == Qt::ControlModifier) {
        m_selected = {m_shown.begin(), m_shown.end()};
        return true;
    }
    if (key == Qt::Key_Escape && modifiers == 0 && !isEmpty()) {
        clear();
        return true;
    }
    return false;
}

void TileSelection::select(const std::vector<Uuid> &ids)
{
    m_selected = {ids.begin(), ids.end()};
    m_current = m_anchor = ids.empty() ? std::nullopt : std::optional(ids.front());
}

void TileSelection::moveTo(int index, bool extends)
{
    const int start = m_anchor ? std::max(placeOf(*m_anchor), 0) : 0;
    const int anchor = extends ? start : index;
    m_current = m_shown[std::size_t(index)];
    m_anchor = m_shown[std::size_t(anchor)];
    const auto [first, last] = std::minmax(anchor, index);
    m_selected = {m_shown.begin() + first, m_shown.begin() + last + 1};
}

} // namespace velmo
