#pragma once

#include "VelmoCore/Foundation/Uuid.h"

#include <optional>
#include <set>
#include <vector>

namespace velmo {

/// Where an arrow key, Home or End leads from `current` in a row of tiles that ends with `last`;
/// nothing for other keys.
std::optional<int> tileAfter(int key, int current, int last);

/// Which tiles of a row are selected and which one has the keyboard, as file managers do it.
class TileSelection {
public:
    /// The tiles that show, in their order. What doesn't show isn't selected any more.
    void setShown(std::vector<Uuid> ids);

    bool isEmpty() const { return m_selected.empty(); }
    bool contains(const Uuid &id) const { return m_selected.contains(id); }
    /// In the order shown.
    std::vector<Uuid> ids() const;
    /// The place of the tile that has the keyboard; -1 for none.
    int currentIndex() const { return m_current ? placeOf(*m_current) : -1; }
    /// -1 for what doesn't show.
    int placeOf(const Uuid &id) const;

    /// A press on a tile: alone, with Ctrl one more or less, with Shift all up to it.
    void press(int index, int modifiers);
    /// The end of a press that became no drag: of several selected ones only this stays. False if
    /// that changes nothing.
    bool release(int index, int modifiers);
    /// Whether the key, with these modifiers, has moved or changed the selection.
    bool handleKey(int key, int modifiers);
    void select(const std::vector<Uuid> &ids);
    /// This tile alone, or with `extends` all from where the selection began.
    void moveTo(int index, bool extends = false);
    void clear() { m_selected.clear(); }

private:
    bool isPlace(int index) const { return index >= 0 && index < int(m_shown.size()); }

    std::vector<Uuid> m_shown;
    std::set<Uuid> m_selected;
    std::optional<Uuid> m_current;
    std::optional<Uuid> m_anchor; ///< where a selection by Shift begins
};

} // namespace velmo
