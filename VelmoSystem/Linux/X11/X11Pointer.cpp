#include "VelmoSystem/Linux/X11/X11Pointer.h"

#include "VelmoCore/Foundation/LocalizedError.h"
#include "VelmoSystem/Linux/X11/X11Displays.h"

#include <xcb/xinput.h>

namespace velmo {

namespace {

constexpr std::uint16_t anyButton = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;

bool isWheel(std::uint32_t button)
{
    return button >= 4 && button <= 7;
}

/// The extension's major opcode. Throws `LocalizedError` without version 2.2, whose raw events are
/// the first that come during grabs of others.
int requireXInput(xcb_connection_t *connection)
{
    const auto *extension = xcb_get_extension_data(connection, &xcb_input_id);
    X11Reply<xcb_input_xi_query_version_reply_t> version;
    if (extension && extension->present)
        version.reset(xcb_input_xi_query_version_reply(
            connection, xcb_input_xi_query_version(connection, 2, 2), nullptr));
    if (!version || version->major_version < 2 ||
        (version->major_version == 2 && version->minor_version < 2))
        throw LocalizedError(QStringLiteral("O servidor X não oferece o XInput 2.2."));
    return extension->major_opcode;
}

} // namespace

X11Pointer::X11Pointer(X11Connection &connection, const X11Displays &displays, Scheduler &scheduler)
    : m_connection(connection), m_displays(displays), m_scheduler(scheduler)
{
}

void X11Pointer::start(std::function<void(const Sample &)> observer)
{
    const int opcode = requireXInput(m_connection.handle());
    m_observer = std::move(observer);
    m_rawEvents = m_connection.subscribeGeneric(
        opcode, [this](const xcb_generic_event_t &event) { handleRaw(event); });
    QObject::connect(&m_connection, &X11Connection::eventsHandled, &m_context,
                     [this] { tellMove(); });

    const struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } selection{{.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1},
                XCB_INPUT_XI_EVENT_MASK_RAW_MOTION | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS |
                    XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE};
    xcb_input_xi_select_events(m_connection.handle(), m_connection.root(), 1, &selection.head);
}

Point X11Pointer::location() const
{
    if (const auto pixel = m_connection.pointerPosition())
        m_location = m_displays.toPoints(*pixel);
    return m_location;
}

void X11Pointer::handleRaw(const xcb_generic_event_t &event)
{
    const auto &raw = reinterpret_cast<const xcb_input_raw_button_press_event_t &>(event);
    switch (raw.event_type) {
    case XCB_INPUT_RAW_MOTION:
        m_hasMoved = true;
        break;
    case XCB_INPUT_RAW_BUTTON_PRESS:
        if (!isWheel(raw.detail))
            notify(Change::pressed);
        break;
    case XCB_INPUT_RAW_BUTTON_RELEASE:
        if (!isWheel(raw.detail))
            notify(Change::released);
        break;
    default:
        break;
    }
}

void X11Pointer::tellMove()
{
    if (!m_hasMoved || m_pause.isPending())
        return;
    m_hasMoved = false;
    m_pause = m_scheduler.after(moveInterval, [this] { tellMove(); });
    notify(Change::moved);
}

void X11Pointer::notify(Change change)
{
    auto *connection = m_connection.handle();
    const X11Reply<xcb_query_pointer_reply_t> pointer(xcb_query_pointer_reply(
        connection, xcb_query_pointer(connection, m_connection.root()), nullptr));
    if (!pointer || !pointer->same_screen)
        return;
    m_location = m_displays.toPoints(QPoint(pointer->root_x, pointer->root_y));
    m_observer({.change = change,
                .position = m_location,
                .window = change == Change::pressed ? pointer->child : 0,
                .isButtonDown = (pointer->mask & anyButton) != 0});
}

} // namespace velmo
