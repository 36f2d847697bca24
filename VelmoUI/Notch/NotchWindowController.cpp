#include "VelmoUI/Notch/NotchWindowController.h"

#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/HotKeys/KeyNames.h"
#include "VelmoSystem/Ports/Platform.h"
#include "VelmoSystem/Ports/Pointer.h"
#include "VelmoUI/Design/MenuPresence.h"
#include "VelmoUI/Notch/NotchContainerView.h"

#include <QPointer>

#include <algorithm>
#include <cmath>
#include <utility>

namespace velmo {

NotchWindowController::NotchWindowController(const ScreenDescriptor &screen,
                                             const PanelServices &services, QQmlEngine &engine)
    : m_services(services), m_model(screen.displayID, NotchGeometry::metrics(screen), services),
      m_content(m_model, services), m_panel(engine, m_content, services.platform.panelWindows)
{
    m_model.onTransition = [this](NotchPresentation from, NotchPresentation to, NotchEvent event) {
        presentationChanged(from, to, event);
    };
    m_model.onTapWhileOpen = [this] { m_panel.window().makeKey(); };
    m_panel.container().setHandlers({
        .tapped = [this] { m_model.tap(); },
        .draggingEntered =
            [this] {
                m_dragExitTask.cancel();
                m_dropPerformed = false;
                m_model.drop().setTargeted(true);
                m_model.send(NotchEvent::dragEntered);
            },
        .draggingUpdated =
            [this](Point point) {
                m_dragExitTask.cancel();
                m_dragPoint = point;
                m_model.drop().setZone(dropZoneAt(point));
                return m_model.drop().takesFiles();
            },
        .draggingExited =
            [this] {
                if (m_dropPerformed)
                    return; // what it holds is on its way
                m_model.drop().setTargeted(false);
                leaveDropSurface(dragExitDelay);
            },
    });
    m_panel.window().setDropHandler({
        .began =
            [this] {
                m_dropPerformed = true;
                m_dragExitTask.cancel();
            },
        .ended = [this](const DropReader::Contents &contents) { return readDrop(contents); },
    });
    connect(&m_model.shape(), &ShapeAnimator::frameChanged, this,
            &NotchWindowController::updateOutline);
    connect(&m_model.shape(), &ShapeAnimator::targetChanged, this,
            &NotchWindowController::shapeChanged);
    reposition();
}

void NotchWindowController::setVisible(bool visible)
{
    if (visible == m_isVisible)
        return;
    m_isVisible = visible;
    if (visible) {
        reposition();
        m_panel.window().orderFront();
        return;
    }
    cancelLeaving();
    m_dragExitTask.cancel();
    m_pointerInside = false;
    m_model.send(NotchEvent::dismiss);
    m_panel.window().orderOut();
}

void NotchWindowController::open()
{
    cancelLeaving();
    const bool wasOpen = m_model.presentation() == NotchPresentation::expanded;
    m_model.send(NotchEvent::openRequested);
    if (!wasOpen)
        return;
    m_panel.window().makeKey();
    Q_EMIT m_content.called();
}

void NotchWindowController::open(const Route &route)
{
    const bool wasOpen = m_model.presentation() == NotchPresentation::expanded;
    cancelLeaving();
    m_model.go(route);
    if (wasOpen)
        open();
}

void NotchWindowController::setMetrics(const NotchMetrics &metrics)
{
    m_model.setMetrics(metrics);
    reposition();
}

void NotchWindowController::reposition()
{
    const Rect frame = NotchLayout::canvasFrame(m_model.layoutContext());
    if (m_panel.window().frame() != frame)
        m_panel.window().setFrame(frame);
    updateMousePassthrough();
    updateOutline();
}

void NotchWindowController::reassertOrder(bool repair)
{
    if (!m_isVisible)
        return;
    PanelWindow &window = m_panel.window();
    if (repair && !window.isOnActiveSpace()) {
        window.orderOut();
        reposition();
    }
    window.orderFront();
}

void NotchWindowController::handleMouseMoved(Point point)
{
    if (!m_isVisible)
        return;
    const bool inside = isInside(point);
    updateBarHold(point);
    if (inside == m_pointerInside)
        return;
    m_pointerInside = inside;
    if (!inside) {
        leaveLater(0s);
        return;
    }
    m_isLeaveHeld = false;
    m_hoverTask =
        m_services.platform.scheduler.after(m_services.settings.settings().hoverDelay,
                                            [this] { m_model.send(NotchEvent::hoverEntered); });
}

bool NotchWindowController::isInside(Point point)
{
    const NotchPresentation presentation = m_model.presentation();
    const Rect zone = NotchLayout::hoverTriggerZone(presentation, m_model.layoutContext());
    if (zone.contains(point)) {
        m_zone = zone;
        return true;
    }
    // A panel that shrank has left the pointer; the pointer hasn't left it.
    return presentation != NotchPresentation::collapsed && m_pointerInside &&
           m_zone.contains(point);
}

void NotchWindowController::followSize()
{
    const NotchPresentation presentation = m_model.presentation();
    if (presentation == NotchPresentation::collapsed)
        return;
    const Rect zone = NotchLayout::hoverZone(presentation, m_model.layoutContext());
    const Point point = m_services.platform.pointer.location();
    if (!zone.contains(point))
        return;
    m_zone = zone;
    if (!std::exchange(m_pointerInside, true))
        cancelLeaving();
    updateBarHold(point);
}

void NotchWindowController::updateBarHold(Point point)
{
    if (m_model.presentation() != NotchPresentation::expanded)
        return;
    const NotchLayoutContext context = m_model.layoutContext();
    const auto &[width, height] = context.metrics.notchSize;
    const auto isIn = [&](const NotchLayoutContext &one) {
        return NotchLayout::hoverZone(NotchPresentation::expanded, one).contains(point);
    };
    const bool isInBar = isIn(context) && point.y > context.metrics.topY - height;
    if (isInBar) {
        // There are no symbols in the notch, but the way from one side to the other is through it.
        if (std::abs(point.x - context.metrics.centerX) > width / 2)
            m_model.setBarHeld(true);
        return;
    }
    // Nor does the panel shrink away from the pointer when that goes down into the page.
    if (isIn(context.withExpandedContentWidth(m_model.modules().width())) || !isIn(context))
        m_model.setBarHeld(false);
}

void NotchWindowController::leaveLater(Seconds atLeast)
{
    if (m_model.isPresentingSystemUI()) {
        m_hoverTask.cancel();
        return;
    }
    const Seconds delay = m_model.presentation() == NotchPresentation::preview
                              ? previewCloseDelay
                              : m_services.settings.settings().closeDelay;
    m_hoverTask =
        m_services.platform.scheduler.after(std::max(delay, atLeast), [this] { leave(); });
}

void NotchWindowController::leave()
{
    const auto *text =
        isEditingText() && m_panel.window().isKey() ? m_panel.view().activeFocusItem() : nullptr;
    const bool isWriting =
        text && (m_typing.isPending() || !text->property("preeditText").toString().isEmpty());
    m_isLeaveHeld = isWriting || !m_menus.empty();
    if (!m_isLeaveHeld && !m_model.isPresentingSystemUI())
        m_model.send(NotchEvent::hoverExited);
}

void NotchWindowController::cancelLeaving()
{
    m_hoverTask.cancel();
    m_isLeaveHeld = false;
}

void NotchWindowController::handleMouseDown(WindowID window)
{
    m_dropPerformed = false;
    if (!m_isVisible || m_model.presentation() == NotchPresentation::collapsed)
        return;
    if (window == m_panel.window().id()) {
        if (m_model.isOpen())
            m_model.onTapWhileOpen();
    } else if (!m_model.isPresentingSystemUI()) {
        clickedOutside();
    }
}

void NotchWindowController::clickedOutside()
{
    if (m_menus.empty()) {
        if (!m_menuGrace.isPending())
            m_model.send(NotchEvent::clickOutside);
        return;
    }
    const auto menus = m_menus; // they go when they close
    for (MenuPresence *menu : menus)
        Q_EMIT menu->dismissed();
}

void NotchWindowController::handleMenu(MenuPresence &menu, bool opens)
{
    if (opens) {
        m_menus.push_back(&menu);
        return;
    }
    std::erase(m_menus, &menu);
    m_menuGrace = m_services.platform.scheduler.after(menuGrace, [] {});
    if (m_menus.empty() && std::exchange(m_isLeaveHeld, false))
        leaveLater(menuGrace);
}

bool NotchWindowController::isEditingText() const
{
    const QObject *focus = m_panel.view().activeFocusItem();
    return focus && focus->property("cursorPosition").isValid();
}

void NotchWindowController::handleTyping()
{
    m_typing = m_services.platform.scheduler.after(typingHold, [this] {
        if (std::exchange(m_isLeaveHeld, false))
            leave();
    });
}

void NotchWindowController::handleDrag(Point point)
{
    if (!m_isVisible || m_dropPerformed) // a movement that is older than the drop comes late
        return;
    if (NotchLayout::dropZone(m_model.presentation(), m_model.layoutContext()).contains(point)) {
        m_dragExitTask.cancel();
        if (m_model.presentation() != NotchPresentation::dropTarget)
            m_model.send(NotchEvent::dragEntered);
    } else if (!m_dragExitTask.isPending()) {
        leaveDropSurface(dragExitDelay);
    }
}

void NotchWindowController::handleDragEnded()
{
    if (!m_dropPerformed)
        leaveDropSurface(dragEndDelay);
}

void NotchWindowController::leaveDropSurface(Seconds delay)
{
    if (m_model.presentation() != NotchPresentation::dropTarget)
        return;
    m_dragExitTask = m_services.platform.scheduler.after(
        delay, [this] { m_model.send(NotchEvent::dragExited); });
}

bool NotchWindowController::handleKey(const KeyCombo &key)
{
    const bool commandOnly = key.modifiers == KeyCombo::command;
    if (key.keyCode == KeyNames::keyEscape || (key.keyCode == KeyNames::keyW && commandOnly)) {
        m_model.send(NotchEvent::escape);
        return true;
    }
    if (key.keyCode == KeyNames::keyComma && commandOnly) {
        m_model.openSettings(std::nullopt);
        return true;
    }
    if (key.keyCode == KeyNames::keyTab && key.modifiers.contains(KeyCombo::command)) {
        m_model.modules().selectAdjacent(key.modifiers.contains(KeyCombo::shift) ? -1 : 1);
        return true;
    }
    if ((key.keyCode == KeyNames::keyLeft || key.keyCode == KeyNames::keyRight) &&
        key.modifiers.contains(KeyCombo::command)) {
        Q_EMIT m_model.pageTurned(key.keyCode == KeyNames::keyLeft ? -1 : 1);
        return true;
    }
    if (const auto index = KeyNames::digitIndex(key.keyCode); index && commandOnly) {
        m_model.modules().select(*index);
        return true;
    }
    return false;
}

bool NotchWindowController::readDrop(const DropReader::Contents &contents)
{
    if (!contents.isLong())
        return takeDrop(m_dragPoint, DropReader::items(contents));
    m_reading = std::jthread([self = QPointer(this), point = m_dragPoint, contents,
                              &scheduler = m_services.platform.scheduler] {
        scheduler.post([self, point, items = DropReader::items(contents)] {
            if (self)
                self->takeDrop(point, items);
        });
    });
    return true;
}

bool NotchWindowController::takeDrop(Point point, const std::vector<DroppedItem> &items)
{
    if (!items.empty()) {
        performDrop(point, items);
        return true;
    }
    m_model.drop().setTargeted(false);
    leaveDropSurface(dragEndDelay);
    return false;
}

void NotchWindowController::performDrop(Point point, const std::vector<DroppedItem> &items)
{
    m_dropPerformed = true;
    m_dragExitTask.cancel();
    m_model.drop().receive(items);
    m_model.drop().startDroplet(point);
}

void NotchWindowController::presentationChanged(NotchPresentation from, NotchPresentation to,
                                                NotchEvent event)
{
    qCInfo(Log::notch).noquote() << QStringLiteral("Notch %1: %2 → %3")
                                        .arg(QString::number(m_model.displayID()),
                                             presentationName(from), presentationName(to));
    m_presentation = to;
    PanelWindow &window = m_panel.window();
    updateMousePassthrough();
    if (isOpen(to)) {
        cancelLeaving(); // it was meant for what showed before
        if (event == NotchEvent::tap || event == NotchEvent::hotKey ||
            event == NotchEvent::openRequested)
            window.makeKey();
        if (event == NotchEvent::hotKey || event == NotchEvent::openRequested)
            Q_EMIT m_content.called();
    } else {
        m_isLeaveHeld = false;
        window.resignKey();
    }
    if (from == NotchPresentation::collapsed)
        m_pointerInside = false; // unless it is in what has come
    followSize();
}

void NotchWindowController::shapeChanged()
{
    updateMousePassthrough();
    if (m_model.presentation() == m_presentation) // else that comes next
        followSize();
}

void NotchWindowController::updateMousePassthrough()
{
    const NotchLayoutContext context = m_model.layoutContext();
    const NotchPresentation presentation = m_model.presentation();
    m_panel.window().setInteractiveZone(contextKind(presentation)
                                            ? NotchLayout::dropZone(presentation, context)
                                            : NotchLayout::hoverZone(presentation, context));
}

void NotchWindowController::updateOutline()
{
    m_panel.window().setOutline(
        NotchLayout::outline(m_model.shape().current(), m_model.layoutContext()));
}

DropZone NotchWindowController::dropZoneAt(Point point) const
{
    const Rect canvas = NotchLayout::canvasFrame(m_model.layoutContext());
    const Rect surface = NotchLayout::shapeFrame(
        NotchLayout::shape(NotchPresentation::dropTarget, m_model.layoutContext()),
        m_model.layoutContext());
    const double fraction = (canvas.minX() + point.x - surface.minX()) / surface.width;
    const std::vector<DropZone> &zones = m_model.drop().zones();
    const int last = int(zones.size()) - 1;
    return zones[std::size_t(std::clamp(int(fraction * (last + 1)), 0, last))];
}

} // namespace velmo
