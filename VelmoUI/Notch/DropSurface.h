#pragma once

#include "VelmoCore/Foundation/Geometry.h"
#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoCore/Notch/NotchStateMachine.h"
#include "VelmoCore/Shelf/DroppedItem.h"
#include "VelmoSystem/Shelf/ShelfMover.h"
#include "VelmoUI/Modules/Frame/PanelPort.h"
#include "VelmoUI/Notch/PanelServices.h"

#include <boost/describe.hpp>

#include <functional>
#include <optional>
#include <vector>

namespace velmo {

/// The parts of the drop surface, from left to right.
enum class DropZone { airdrop, actions, notch };
BOOST_DESCRIBE_ENUM(DropZone, airdrop, actions, notch)

/// The picture of a dropped thing on its way into the notch.
struct Droplet {
    Uuid id;
    Point start; ///< in the window, y downward, where the drop happened
    DroppedItem item;
};

/// What is dragged over one panel, what was dropped there, and what can be done with it.
class DropSurface : public QObject {
    Q_OBJECT

public:
    /// How long a droplet flies before the notch swallows it.
    static constexpr Seconds dropletFlight = 0.45s;

    /// `panel` outlives this object; `send` lets its state machine answer an event.
    DropSurface(PanelPort &panel, const PanelServices &services,
                std::function<void(NotchEvent)> send);

    /// A drag comes in: nothing is dropped yet.
    void begin();
    /// What the surface offers, from left to right.
    const std::vector<DropZone> &zones() const { return m_zones; }
    bool isTargeted() const { return m_isTargeted; }
    DropZone zone() const { return m_zone; }
    void setTargeted(bool isTargeted);
    void setZone(DropZone zone);
    /// Whether files that fall there now leave the place where they stand.
    bool takesFiles() const { return m_zone == DropZone::notch; }

    /// Does what the zone under the drop is for. The items show on the result surface unless they
    /// have been handed over or kept without asking; then the panel closes.
    void receive(const std::vector<DroppedItem> &items);
    const std::vector<DroppedItem> &items() const { return m_items; }
    /// Takes the item with that id off the result surface, which closes with the last one.
    void removeItem(const QString &id);

    /// Puts things on the shelf, files by moving them into the notch's folder. Dropped items that
    /// have moved are shown where they are now; the user hears of those that can't be moved.
    void moveIntoNotch(const std::vector<DroppedItem> &items);
    /// Whether what was dropped may go on the shelf still.
    bool canKeep() const { return !m_isKept; }
    void keep();
    /// The id of the job that carries what was dropped to the shelf, if it took one.
    const std::optional<QString> &job() const { return m_job; }
    /// What it hasn't carried may be kept again.
    void cancelJob();
    /// Takes back what the last drop moved in, as long as that is offered.
    void undo();

    /// Whether the desktop can be given the items.
    bool canShare() const;
    /// Hands files to the desktop's way of sending and closes the panel. The user hears of a
    /// failure.
    void share();
    /// Whether the tools work on the items, all of which are files then.
    bool canOpenTools() const;
    void openTools();
    /// Runs a quick action with the items and posts what came of it.
    void perform(const QString &action);

    /// Sends the picture of the first item flying from `start` into the notch.
    void startDroplet(const Point &start);
    const std::optional<Droplet> &droplet() const { return m_droplet; }

Q_SIGNALS:
    /// One of the items stands elsewhere; `itemsChanged` follows for all that moved at once.
    void fileMoved(const QUrl &from, const QUrl &to);
    void itemsChanged();
    void targetChanged();
    void dropletChanged();
    /// The notch swallows.
    void gulped();

private:
    std::vector<DropZone> offeredZones() const;
    void setKept(bool isKept);
    std::vector<QUrl> files() const;
    /// Follows the dropped files to where they are moved.
    ShelfMover::Moved follow();
    /// What hasn't come may be kept again.
    ShelfMover::Finished offerTheRest();

    PanelPort &m_panel;
    const PanelServices m_services;
    const std::function<void(NotchEvent)> m_send;
    std::vector<DropZone> m_zones{DropZone::actions, DropZone::notch};
    bool m_isTargeted = false;
    DropZone m_zone = DropZone::actions;
    std::vector<DroppedItem> m_items;
    bool m_isKept = false;
    std::optional<QString> m_job;
    int m_dropNumber = 0; ///< which drop it is that shows
    int m_keepNumber = 0; ///< and which time it is put on the shelf or taken back
    std::optional<Droplet> m_droplet;
    ScheduledTask m_dropletTask;
};

} // namespace velmo
