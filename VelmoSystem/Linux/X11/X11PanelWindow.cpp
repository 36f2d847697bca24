#include "VelmoSystem/Linux/X11/X11PanelWindow.h"

#include "VelmoCore/Foundation/LocalizedError.h"

#include <QGuiApplication>
#include <QPlatformSurfaceEvent>
#include <qguiapplication_platform.h>

#include <xcb/shape.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <cmath>

namespace velmo {

X11PanelWindowFactory::X11PanelWindowFactory(X11Connection &connection, Scheduler &scheduler)
    : m_connection(connection), m_server(nullptr),
      m_drops(connection, scheduler, [this](xcb_window_t window) { return dropHandler(window); })
{
    if (auto *native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>())
        m_server = native->connection();
    if (!m_server)
        throw LocalizedError(QStringLiteral("O painel precisa de uma área de trabalho X11."));

    auto *server = connection.handle();
    const auto *fixes = xcb_get_extension_data(server, &xcb_xfixes_id);
    if (fixes && fixes->present) {
        const X11Reply<xcb_xfixes_query_version_reply_t> version(xcb_xfixes_query_version_reply(
            server, xcb_xfixes_query_version(server, 5, 0), nullptr));
        m_compositorChanges = connection.subscribe(fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY,
                                                   [this](const auto &) {
                                                       if (readCompositor())
                                                           for (X11PanelWindow *panel : m_panels)
                                                               panel->applyZones();
                                                   });
        const QByteArray name = "_NET_WM_CM_S" + QByteArray::number(connection.screenNumber());
        xcb_xfixes_select_selection_input(
            server, connection.root(), connection.atom(name),
            XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    }
    readCompositor();
}

std::unique_ptr<PanelWindow> X11PanelWindowFactory::adopt(QWindow &window)
{
    return std::make_unique<X11PanelWindow>(*this, window);
}

/// Whether that changed anything.
bool X11PanelWindowFactory::readCompositor()
{
    auto *server = m_connection.handle();
    const QByteArray name = "_NET_WM_CM_S" + QByteArray::number(m_connection.screenNumber());
    const X11Reply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        server, xcb_get_selection_owner(server, m_connection.atom(name)), nullptr));
    const bool hasCompositor = owner && owner->owner != XCB_NONE;
    return std::exchange(m_hasCompositor, hasCompositor) != hasCompositor;
}

/// Null for a window that isn't a panel's.
const PanelWindow::DropHandler *X11PanelWindowFactory::dropHandler(xcb_window_t window) const
{
    const auto panel = std::ranges::find(m_panels, window, &X11PanelWindow::id);
    const bool isThere = panel != m_panels.end() && (*panel)->m_dropHandler.ended;
    return isThere ? &(*panel)->m_dropHandler : nullptr;
}

X11PanelWindow::X11PanelWindow(X11PanelWindowFactory &factory, QWindow &window)
    : m_factory(factory), m_window(window)
{
    m_window.setFlags(m_window.flags() | X11PanelWindowFactory::panelFlags);
    if (m_window.title().isEmpty())
        m_window.setTitle(QStringLiteral("Orvane"));
    m_window.installEventFilter(this);
    m_window.create();
    describe(); // also where it existed already
    applyZones();
    m_factory.m_panels.insert(this);
}

X11PanelWindow::~X11PanelWindow()
{
    m_factory.m_panels.erase(this);
}

WindowID X11PanelWindow::id() const
{
    return m_window.handle() ? WindowID(m_window.winId()) : 0;
}

void X11PanelWindow::setFrame(const Rect &frame)
{
    const auto pixel = [](double length) { return int(std::lround(length)); };
    m_window.setGeometry(pixel(frame.minX()), pixel(-frame.maxY()), pixel(frame.width),
                         pixel(frame.height));
    applyZones();
}

Rect X11PanelWindow::frame() const
{
    const QRect geometry = m_window.geometry();
    return {double(geometry.x()), -double(geometry.y() + geometry.height()),
            double(geometry.width()), double(geometry.height())};
}

void X11PanelWindow::orderFront()
{
    m_window.show();
    m_window.raise();
}

void X11PanelWindow::orderOut()
{
    resignKey();
    m_window.hide();
}

bool X11PanelWindow::isOnActiveSpace() const
{
    return id() != 0 && isViewable(id());
}

void X11PanelWindow::setInteractiveZone(const std::optional<Rect> &zone)
{
    if (m_interactiveZone == zone)
        return;
    m_interactiveZone = zone;
    applyZones();
}

void X11PanelWindow::setOutline(const std::vector<Rect> &rows)
{
    if (m_outline == rows)
        return;
    m_outline = rows;
    if (!m_factory.m_hasCompositor) // else this runs for each frame of an animation in vain
        applyZones();
}

void X11PanelWindow::makeKey()
{
    if (id() == 0)
        return;
    const xcb_window_t owner = keyboardOwner();
    if (owner == id())
        return;
    // From panel to panel the keyboard is still owed to the window that had it before both.
    if (std::ranges::none_of(m_factory.m_panels,
                             [&](const X11PanelWindow *panel) { return panel->id() == owner; }))
        m_factory.m_keyboardOwner = owner;
    focus(id());
}

void X11PanelWindow::resignKey()
{
    if (id() == 0 || keyboardOwner() != id())
        return;
    const xcb_window_t previous = std::exchange(m_factory.m_keyboardOwner, XCB_NONE);
    if (previous > XCB_INPUT_FOCUS_POINTER_ROOT && focus(previous))
        return;
    const auto active =
        m_factory.m_connection.property(m_factory.m_connection.root(), atom("_NET_ACTIVE_WINDOW"));
    if (active.empty() || active.front() == XCB_NONE || !focus(active.front()))
        focus(XCB_INPUT_FOCUS_POINTER_ROOT);
}

bool X11PanelWindow::isKey() const
{
    return QGuiApplication::focusWindow() == &m_window;
}

bool X11PanelWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::PlatformSurface &&
        static_cast<QPlatformSurfaceEvent *>(event)->surfaceEventType() ==
            QPlatformSurfaceEvent::SurfaceCreated) {
        describe();
        applyZones();
    }
    return QObject::eventFilter(watched, event);
}

// The window manager doesn't read these; pagers, task bars and compositors may. Compositors
// commonly spare docks from shadows and fades.
void X11PanelWindow::describe() const
{
    if (id() == 0)
        return;
    setProperty32("_NET_WM_DESKTOP", XCB_ATOM_CARDINAL, {0xFFFFFFFF});
    setProperty32("_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, {atom("_NET_WM_WINDOW_TYPE_DOCK")});
    setProperty32("_NET_WM_STATE", XCB_ATOM_ATOM,
                  {atom("_NET_WM_STATE_ABOVE"), atom("_NET_WM_STATE_STICKY"),
                   atom("_NET_WM_STATE_SKIP_TASKBAR"), atom("_NET_WM_STATE_SKIP_PAGER")});
    setProperty32("_COMPTON_SHADOW", XCB_ATOM_CARDINAL, {0});
    static constexpr char wmClass[] = "orvane\0Orvane";
    xcb_change_property(m_factory.m_server, XCB_PROP_MODE_REPLACE, id(), XCB_ATOM_WM_CLASS,
                        XCB_ATOM_STRING, 8, sizeof wmClass, wmClass);
}

void X11PanelWindow::applyZones() const
{
    if (id() == 0)
        return;
    auto *server = m_factory.m_server;
    const auto clicks = m_interactiveZone ? native(*m_interactiveZone) : xcb_rectangle_t{};
    xcb_shape_rectangles(server, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED,
                         id(), 0, 0, m_interactiveZone ? 1 : 0, &clicks);
    if (!m_outline.empty() && !m_factory.m_hasCompositor) {
        std::vector<xcb_rectangle_t> visible;
        for (const Rect &row : m_outline)
            visible.push_back(native(row));
        xcb_shape_rectangles(server, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                             XCB_CLIP_ORDERING_UNSORTED, id(), 0, 0, std::uint32_t(visible.size()),
                             visible.data());
    } else {
        xcb_shape_mask(server, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, id(), 0, 0,
                       XCB_PIXMAP_NONE);
    }
    xcb_flush(server);
}

/// A part of the desktop in the window's own pixels; a pixel that it holds in part counts.
xcb_rectangle_t X11PanelWindow::native(const Rect &zone) const
{
    const double scale = m_window.devicePixelRatio();
    const Rect outer = frame();
    const auto pixel = [](double length) { return int(std::clamp(length, -32'768.0, 32'767.0)); };
    const int left = pixel(std::floor((zone.minX() - outer.minX()) * scale));
    const int right = pixel(std::ceil((zone.maxX() - outer.minX()) * scale));
    const int top = pixel(std::floor((outer.maxY() - zone.maxY()) * scale));
    const int bottom = pixel(std::ceil((outer.maxY() - zone.minY()) * scale));
    return {std::int16_t(left), std::int16_t(top), std::uint16_t(std::max(right - left, 0)),
            std::uint16_t(std::max(bottom - top, 0))};
}

xcb_atom_t X11PanelWindow::atom(const char *name) const
{
    return m_factory.m_connection.atom(name);
}

void X11PanelWindow::setProperty32(const char *name, xcb_atom_t type,
                                   const std::vector<std::uint32_t> &values) const
{
    xcb_change_property(m_factory.m_server, XCB_PROP_MODE_REPLACE, id(), atom(name), type, 32,
                        std::uint32_t(values.size()), values.data());
}

xcb_window_t X11PanelWindow::keyboardOwner() const
{
    auto *server = m_factory.m_server;
    const X11Reply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(server, xcb_get_input_focus(server), nullptr));
    return reply ? reply->focus : xcb_window_t(XCB_NONE);
}

bool X11PanelWindow::isViewable(xcb_window_t window) const
{
    auto *server = m_factory.m_server;
    const X11Reply<xcb_get_window_attributes_reply_t> reply(xcb_get_window_attributes_reply(
        server, xcb_get_window_attributes(server, window), nullptr));
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

/// False if the window has gone or isn't viewable.
bool X11PanelWindow::focus(xcb_window_t window) const
{
    auto *server = m_factory.m_server;
    // The server's present time: no older request of anyone can be taken for a newer one.
    const auto cookie =
        xcb_set_input_focus_checked(server, XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    const X11Reply<xcb_generic_error_t> error(xcb_request_check(server, cookie));
    return !error;
}

} // namespace velmo
