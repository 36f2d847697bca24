#include "VelmoSystem/Linux/X11/X11DragPasteboard.h"

#include <xcb/xfixes.h>

#include <algorithm>
#include <array>

namespace velmo {

namespace {

constexpr const char *uriList = "text/uri-list";
constexpr std::array linkTypes{uriList, "text/x-moz-url", "_NETSCAPE_URL"};
constexpr std::array textTypes{"UTF8_STRING", "text/plain", "text/plain;charset=utf-8",
                               "STRING",      "TEXT",       "COMPOUND_TEXT"};

} // namespace

X11DragPasteboard::X11DragPasteboard(X11Connection &connection)
    : m_connection(connection), m_window(xcb_generate_id(connection.handle())),
      m_selection(connection.atom("XdndSelection"))
{
    auto *server = connection.handle();
    xcb_create_window(server, 0, m_window, connection.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    m_answers = connection.subscribe(XCB_SELECTION_NOTIFY,
                                     [this](const xcb_generic_event_t &event) { answered(event); });

    const auto *fixes = xcb_get_extension_data(server, &xcb_xfixes_id);
    if (!fixes || !fixes->present)
        return; // no drag is ever seen; drops onto the panel itself still work
    const X11Reply<xcb_xfixes_query_version_reply_t> version(xcb_xfixes_query_version_reply(
        server, xcb_xfixes_query_version(server, 5, 0), nullptr)); // the server insists on it
    m_ownerChanges =
        connection.subscribe(fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY,
                             [this](const xcb_generic_event_t &event) { ownerChanged(event); });
    xcb_xfixes_select_selection_input(server, m_window, m_selection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
}

X11DragPasteboard::~X11DragPasteboard()
{
    xcb_destroy_window(m_connection.handle(), m_window);
}

void X11DragPasteboard::ownerChanged(const xcb_generic_event_t &event)
{
    const auto &change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(event);
    if (change.selection != m_selection)
        return;
    m_contents = {};
    m_owner = change.owner;
    m_asked = XCB_ATOM_NONE;
    if (m_owner == XCB_NONE)
        return;
    ++m_changeCount;
    ask(m_connection.atom("TARGETS"), change.selection_timestamp);
}

void X11DragPasteboard::ask(xcb_atom_t target, xcb_timestamp_t time)
{
    m_asked = target;
    m_askedTime = time;
    xcb_convert_selection(m_connection.handle(), m_window, m_selection, target,
                          m_connection.atom("ORVANE_DRAG_TYPES"), time);
}

// Sources differ: most answer TARGETS. Some only leave the drag protocol's list on their window,
// where one of an earlier drag may still stand. That protocol lets a source with three types or
// fewer have neither, so such a one is asked for files themselves. One that refuses that too
// offers its files only to the window that it is over.
void X11DragPasteboard::answered(const xcb_generic_event_t &event)
{
    const auto &answer = reinterpret_cast<const xcb_selection_notify_event_t &>(event);
    // A refusal need not repeat the target.
    if (answer.requestor != m_window || answer.time != m_askedTime || m_asked == XCB_ATOM_NONE)
        return;
    const xcb_atom_t files = m_connection.atom(uriList);
    const bool isList = std::exchange(m_asked, XCB_ATOM_NONE) != files;
    if (answer.property != XCB_ATOM_NONE) {
        readTypes(isList ? m_connection.property(m_window, answer.property)
                         : std::vector<std::uint32_t>{files});
        xcb_delete_property(m_connection.handle(), m_window, answer.property);
    } else if (isList) {
        if (const auto listed = m_connection.property(m_owner, m_connection.atom("XdndTypeList"));
            !listed.empty())
            readTypes(listed);
        else
            ask(files, answer.time);
    } else {
        m_contents = {.isUntold = true};
    }
}

void X11DragPasteboard::readTypes(std::span<const xcb_atom_t> types)
{
    const auto hasOneOf = [&](const auto &names) {
        return std::ranges::any_of(names, [&](const char *name) {
            return std::ranges::find(types, m_connection.atom(name)) != types.end();
        });
    };
    m_contents = {.hasFiles = hasOneOf(std::array{uriList}),
                  .hasLinks = hasOneOf(linkTypes),
                  .hasText = hasOneOf(textTypes)};
}

} // namespace velmo
