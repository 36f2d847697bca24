#pragma once

#include "VelmoCore/HotKeys/KeyCombo.h"
#include "VelmoSystem/FileProcessing/DropReader.h"
#include "VelmoUI/Notch/NotchContent.h"
#include "VelmoUI/Notch/NotchPanel.h"
#include "VelmoUI/Notch/NotchViewModel.h"

#include <thread>

namespace velmo {

class MenuPresence;

/// The bridge between pointer, keys and window on one side and a panel's model on the other. One a
/// target screen.
class NotchWindowController : public QObject {
    Q_OBJECT

public:
    static constexpr Seconds previewCloseDelay = 0.18s;
    static constexpr Seconds dragExitDelay = 0.22s;
    /// Room for a drop that finishes just after the button went up.
    static constexpr Seconds dragEndDelay = 0.3s;
    /// The click that closes a menu isn't meant for the panel.
    static constexpr Seconds menuGrace = 0.8s;
    /// Who has just typed into the panel is still at it, wherever the pointer is.
    static constexpr Seconds typingHold = 10s;

    NotchWindowController(const ScreenDescriptor &screen, const PanelServices &services,
                          QQmlEngine &engine);

    NotchViewModel &model() { return m_model; }
    const NotchViewModel &model() const { return m_model; }
    NotchPanel &panel() { return m_panel; }
    /// Whether the panel should show on its screen.
    bool isVisible() const { return m_isVisible; }
    /// A panel closes before it goes, so that it comes back closed.
    void setVisible(bool visible);

    /// Opens the panel for a command. One that is open takes the keyboard, and stays although the
    /// pointer has left it.
    void open();
    /// The same, at a place.
    void open(const Route &route);

    void setMetrics(const NotchMetrics &metrics);
    /// Fits the window to the canvas again.
    void reposition();
    /// Puts the panel on top again; `repair` also after the desktop may have lost it.
    void reassertOrder(bool repair);

    void handleMouseMoved(Point point);
    void handleMouseDown(WindowID window);
    void handleDrag(Point point);
    void handleDragEnded();
    /// Whether the key was used. In a panel Ctrl stands for both `command` and `control`.
    bool handleKey(const KeyCombo &key);

    /// A menu of the panel's opened or closed.
    void handleMenu(MenuPresence &menu, bool opens);
    bool isEditingText() const;
    /// The keyboard or an input method wrote into a text of the panel.
    void handleTyping();

    /// Flies a picture of `items` from a point of the window into the notch and shows them.
    void performDrop(Point point, const std::vector<DroppedItem> &items);

private:
    void presentationChanged(NotchPresentation from, NotchPresentation to, NotchEvent event);
    void shapeChanged();
    bool isInside(Point point);
    /// The size changed, not the pointer's place.
    void followSize();
    void updateBarHold(Point point);
    void leaveLater(Seconds atLeast);
    void leave();
    void cancelLeaving();
    void clickedOutside();
    void leaveDropSurface(Seconds delay);
    void updateMousePassthrough();
    void updateOutline();
    /// Reads a long drop away from the main thread. False if nothing of it can be taken.
    bool readDrop(const DropReader::Contents &contents);
    /// The same.
    bool takeDrop(Point point, const std::vector<DroppedItem> &items);
    DropZone dropZoneAt(Point point) const;

    const PanelServices m_services;
    NotchViewModel m_model;
    NotchContent m_content;
    NotchPanel m_panel;
    bool m_isVisible = false;
    bool m_pointerInside = false;
    Rect m_zone; ///< that the pointer was in last
    NotchPresentation m_presentation = NotchPresentation::collapsed;
    /// The pointer has left, but who uses the panel keeps it open.
    bool m_isLeaveHeld = false;
    std::vector<MenuPresence *> m_menus; ///< that are open
    ScheduledTask m_menuGrace;
    ScheduledTask m_typing;
    Point m_dragPoint; ///< where in the window a drag was last
    bool m_dropPerformed = false;
    ScheduledTask m_hoverTask;
    ScheduledTask m_dragExitTask;
    std::jthread m_reading;
};

} // namespace velmo
