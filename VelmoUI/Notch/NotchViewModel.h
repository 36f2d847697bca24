#pragma once

#include "VelmoCore/Notch/NotchLayout.h"
#include "VelmoCore/Notch/NotchMotion.h"
#include "VelmoCore/Shelf/DroppedItem.h"
#include "VelmoUI/App/AppServices.h"
#include "VelmoUI/Notch/ShapeAnimator.h"
#include "VelmoUI/Notch/ShelfDrop.h"

#include <QObject>
#include <QPointF>

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

/// The observable state of one panel. Main thread only.
class NotchViewModel : public QObject {
    Q_OBJECT

public:
    /// How long a droplet flies before the notch swallows it.
    static constexpr Seconds dropletFlight = 0.45s;
    /// By then the window manager has given the keyboard of a dialog that went to another window.
    static constexpr Seconds keyboardDelay = 0.15s;

    NotchViewModel(DisplayID displayID, const NotchMetrics &metrics, AppServices &services);
    ~NotchViewModel() override;

    DisplayID displayID() const { return m_displayID; }
    AppServices &services() const { return m_services; }
    const NotchMetrics &metrics() const { return m_metrics; }
    void setMetrics(const NotchMetrics &metrics);

    const NotchState &state() const { return m_state; }
    NotchPresentation presentation() const { return m_state.presentation; }
    Date presentationChangedAt() const { return m_presentationChangedAt; }
    /// Built anew from values in memory at each call.
    NotchLayoutContext layoutContext() const;
    ShapeAnimator &shape() { return m_shape; }
    /// Whether the user asked the desktop for less motion.
    bool reducesMotion() const;

    /// Lets the state machine answer `event`.
    void send(NotchEvent event);

    /// A tap beside the content's controls.
    void tap();

    /// The module on show; null only without a visible module.
    NotchModule *selectedModule() const;
    /// The width of the panel that the selected module asks for, open or not.
    std::optional<double> moduleWidth() const;
    /// While the pointer is at the modules' symbols they stay where they are: their bar keeps its
    /// width, and the panel gets no narrower than that.
    void setBarHeld(bool isHeld);
    /// Of the held bar.
    std::optional<double> heldBarWidth() const;
    /// The module on show asks for another width.
    void contentWidthChanged();
    /// Does nothing unless a visible module has that id.
    void selectModule(const QString &id);
    /// Selects by place among the visible modules; out of range does nothing.
    void selectModule(int index);
    /// Steps through the visible modules, around the end.
    void selectAdjacentModule(int direction);
    /// Asks Home for its next (1) or previous (-1) page.
    void requestHomePage(int direction) { Q_EMIT homePageRequested(direction); }

    /// Whether a dialog of the desktop belongs to this panel: neither a pointer that leaves nor a
    /// click outside closes it then.
    bool isPresentingSystemUI() const { return m_isPresentingSystemUI; }
    /// An open panel takes the keyboard back at the dialog's end.
    void setPresentingSystemUI(bool isPresenting);

    /// What the drop surface offers, from left to right; settled when a drag enters.
    const std::vector<DropZone> &dropZones() const { return m_dropZones; }
    const std::vector<DroppedItem> &droppedItems() const { return m_droppedItems; }
    bool isDropTargeted() const { return m_isDropTargeted; }
    DropZone dropZone() const { return m_dropZone; }
    void setDropTargeted(bool targeted);
    void setDropZone(DropZone zone);
    /// Whether files that fall there now leave the place where they stand.
    bool dropTakesFiles() const { return m_dropZone == DropZone::notch; }
    /// Does what the zone under the drop is for. The items show on the result surface unless they
    /// have been handed over or kept without asking; then the panel closes.
    void receiveDrop(const std::vector<DroppedItem> &items);
    /// Puts things on the shelf, files by moving them into the notch's folder. Dropped items that
    /// have moved are shown where they are now; names of those that can't be moved are told.
    void moveIntoNotch(const std::vector<DroppedItem> &items);
    /// Whether the desktop can be given these.
    bool canShare(const std::vector<DroppedItem> &items) const;
    /// Hands files to the desktop's way of sending and closes the panel. A failure is told.
    void share(const std::vector<DroppedItem> &items);
    /// Whether what was dropped may go on the shelf still.
    bool canKeepDropped() const { return !m_isDropKept; }
    void keepDropped();
    /// The id of the job that brings what was dropped to the shelf, if it took one.
    const std::optional<QString> &dropJob() const { return m_dropJob; }
    /// What it hasn't brought may be kept anew.
    void cancelDropJob();
    /// Takes back what the last drop moved in, as long as that is offered.
    void undoDrop();
    /// Whether the tools work on what was dropped, which then takes nothing but files.
    bool canOpenTools() const;
    void openTools();
    /// Does a quick action with what was dropped and tells what it came to.
    void performAction(const QString &id);
    /// Sends the picture of the first item flying from `start` into the notch.
    void startDroplet(const Point &start, const std::vector<DroppedItem> &items);
    /// Takes the item with that id off the result surface, which closes with the last one.
    void removeDroppedItem(const QString &id);
    const std::optional<Droplet> &droplet() const { return m_droplet; }
    /// Counts the swallowing animations.
    int gulpSerial() const { return m_gulpSerial; }

    /// Set once by the window controller.
    std::function<void(NotchPresentation from, NotchPresentation to, NotchEvent)> onTransition;
    std::function<void()> onTapWhileOpen;

Q_SIGNALS:
    void presentationChanged();
    void metricsChanged();
    void selectedModuleChanged();
    void modulesChanged();
    /// Of the bar or of the page, which may leave the shape as it is.
    void contentSizeChanged();
    void homePageRequested(int direction);
    /// One of the dropped items stands elsewhere; all that moved at once are told next.
    void droppedFileMoved(const QUrl &from, const QUrl &to);
    void droppedItemsChanged();
    void dropTargetChanged();
    void dropletChanged();
    void gulped();

private:
    std::vector<DropZone> offeredDropZones() const;
    void setDropKept(bool isKept);
    static std::vector<QUrl> files(const std::vector<DroppedItem> &items);
    /// Follows the dropped files to where they are moved.
    ShelfDrop::Moved followDropped();
    /// What hasn't come may be kept anew.
    ShelfDrop::Finished offerTheRest();
    void activateShownModule();
    void showSelectedModule();
    NotchMotion motion(bool opening) const;
    /// The motion of changes that don't come through `send`: a message coming, sides growing.
    NotchMotion shapeAnimation() const;
    void updateShape(const NotchMotion &motion);
    void settingsChanged(const AppSettings &before, const AppSettings &after);

    const DisplayID m_displayID;
    AppServices &m_services;
    NotchMetrics m_metrics;
    NotchState m_state;
    Date m_presentationChangedAt;
    ShapeAnimator m_shape;
    QString m_selectedModuleID;
    std::optional<double> m_heldBarWidth;
    bool m_isPresentingSystemUI = false;
    ScheduledTask m_keyboardTask;
    std::vector<DroppedItem> m_droppedItems;
    bool m_isDropTargeted = false;
    DropZone m_dropZone = DropZone::actions;
    bool m_isDropKept = false;
    std::optional<QString> m_dropJob;
    int m_dropNumber = 0; ///< which drop it is that shows
    int m_keepNumber = 0; ///< and which time it is put on the shelf or taken back
    std::vector<DropZone> m_dropZones{DropZone::actions, DropZone::notch};
    std::optional<Droplet> m_droplet;
    int m_gulpSerial = 0;
    ScheduledTask m_dropletTask;
    SettingsStore::ObserverID m_settingsObserver;
};

} // namespace velmo
