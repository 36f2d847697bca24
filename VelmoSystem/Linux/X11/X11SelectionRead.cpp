#include "VelmoSystem/Linux/X11/X11SelectionRead.h"

#include <algorithm>

namespace velmo {

namespace {

/// 1 MiB: what is fetched without looking after other events, in words of 4 bytes.
constexpr std::uint32_t chunkWords = 1 << 18;

} // namespace

X11SelectionRead::X11SelectionRead(X11Connection &connection, Scheduler &scheduler,
                                   const Request &request, Finished finished)
    : m_connection(connection), m_scheduler(scheduler), m_request(request),
      m_finished(std::move(finished)), m_window(xcb_generate_id(connection.handle())),
      m_property(connection.atom("ORVANE_SELECTION"))
{
    m_subscriptions = {
        connection.subscribe(XCB_SELECTION_NOTIFY,
                             [this](const xcb_generic_event_t &event) {
                                 answered(
                                     reinterpret_cast<const xcb_selection_notify_event_t &>(event));
                             }),
        connection.subscribe(XCB_PROPERTY_NOTIFY, [this](const xcb_generic_event_t &event) {
            propertyChanged(reinterpret_cast<const xcb_property_notify_event_t &>(event));
        })};
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection.handle(), 0, m_window, connection.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &events);
    xcb_convert_selection(connection.handle(), m_window, request.selection, request.target,
                          m_property, request.time);
    xcb_flush(connection.handle());
    m_deadline = scheduler.after(deadline, [this] { finish(std::nullopt); });
    await();
}

X11SelectionRead::~X11SelectionRead()
{
    xcb_destroy_window(m_connection.handle(), m_window);
    xcb_flush(m_connection.handle());
}

void X11SelectionRead::answered(const xcb_selection_notify_event_t &event)
{
    if (event.requestor != m_window || m_isIncremental)
        return;
    if (event.property == XCB_ATOM_NONE)
        finish(std::nullopt);
    else
        readChunk();
}

void X11SelectionRead::propertyChanged(const xcb_property_notify_event_t &event)
{
    if (event.window == m_window && event.atom == m_property && m_isIncremental &&
        event.state == XCB_PROPERTY_NEW_VALUE && !m_next.isPending())
        readChunk();
}

void X11SelectionRead::readChunk()
{
    auto *server = m_connection.handle();
    const X11Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        server,
        xcb_get_property(server, false, m_window, m_property, XCB_ATOM_ANY, m_offset, chunkWords),
        nullptr));
    if (!reply || reply->type == XCB_ATOM_NONE) {
        finish(std::nullopt);
    } else if (!m_isIncremental && reply->type == m_connection.atom("INCR")) {
        m_isIncremental = true;
        xcb_delete_property(server, m_window, m_property); // has the owner begin
        await();
    } else {
        take(*reply);
    }
}

void X11SelectionRead::take(const xcb_get_property_reply_t &reply)
{
    const bool isEmpty = m_offset == 0 && reply.value_len == 0;
    const qsizetype length = xcb_get_property_value_length(&reply);
    const qsizetype room = m_request.limit - m_result.bytes.size();
    m_result.type = reply.type;
    m_result.bytes.append(static_cast<const char *>(xcb_get_property_value(&reply)),
                          std::min(length, room));
    if (length > room || (length == room && reply.bytes_after > 0)) {
        m_result.isWhole = false;
        finish(std::move(m_result));
    } else if (reply.bytes_after > 0) {
        m_offset += chunkWords;
        m_next = m_scheduler.after(0s, [this] { readChunk(); });
        await();
    } else if (m_isIncremental && !isEmpty) {
        m_offset = 0;
        xcb_delete_property(m_connection.handle(), m_window, m_property);
        await();
    } else {
        finish(std::move(m_result));
    }
}

void X11SelectionRead::await()
{
    m_patience = m_scheduler.after(patience, [this] { finish(std::nullopt); });
}

void X11SelectionRead::finish(const std::optional<Result> &result)
{
    m_subscriptions.clear();
    m_patience.cancel();
    m_deadline.cancel();
    m_next.cancel();
    if (const Finished finished = std::exchange(m_finished, nullptr))
        finished(result);
}

} // namespace velmo
