#include "VelmoSystem/Linux/X11/X11Connection.h"

#include "VelmoCore/Foundation/LocalizedError.h"
#include "VelmoCore/Foundation/Log.h"

#include <QAbstractEventDispatcher>

#include <xcb/shape.h>
#include <xcb/xfixes.h>
#include <xcb/xinput.h>

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

namespace velmo {

namespace {

// Property values longer than this many 32-bit words are cut: more windows than any desktop has.
constexpr std::uint32_t longestProperty = 65'536;

// What every start asks for.
constexpr std::array firstAtoms{"CLIPBOARD",
                                "PRIMARY",
                                "XdndSelection",
                                "_BAMF_DESKTOP_FILE",
                                "_COMPTON_SHADOW",
                                "_GTK_APPLICATION_ID",
                                "_KDE_NET_WM_DESKTOP_FILE",
                                "_NET_ACTIVE_WINDOW",
                                "_NET_CLIENT_LIST",
                                "_NET_CLIENT_LIST_STACKING",
                                "_NET_CURRENT_DESKTOP",
                                "_NET_SUPPORTING_WM_CHECK",
                                "_NET_WM_DESKTOP",
                                "_NET_WM_NAME",
                                "_NET_WM_PID",
                                "_NET_WM_STATE",
                                "_NET_WM_STATE_ABOVE",
                                "_NET_WM_STATE_FULLSCREEN",
                                "_NET_WM_STATE_SKIP_PAGER",
                                "_NET_WM_STATE_SKIP_TASKBAR",
                                "_NET_WM_STATE_STICKY",
                                "_NET_WM_WINDOW_TYPE",
                                "_NET_WM_WINDOW_TYPE_DOCK"};
constexpr std::array extensions{&xcb_input_id, &xcb_shape_id, &xcb_xfixes_id};

xcb_window_t rootOfScreen(xcb_connection_t *connection, int number)
{
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    while (number-- > 0)
        xcb_screen_next(&screens);
    return screens.data->root;
}

} // namespace

X11Connection::X11Connection(const QByteArray &display)
    : m_connection(xcb_connect(display.isEmpty() ? nullptr : display.constData(), &m_screenNumber))
{
    if (xcb_connection_has_error(handle()))
        throw LocalizedError(QStringLiteral("Não foi possível conectar ao servidor X."));
    m_root = rootOfScreen(handle(), m_screenNumber);
    prefetch();

    m_notifier =
        std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(handle()), QSocketNotifier::Read);
    m_notifier->setObjectName(QStringLiteral("X11Connection"));
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &X11Connection::readEvents);
    // Reading a reply also reads the events before it, and then the socket stays silent about them.
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
            &X11Connection::handleQueued);
}

X11Connection::~X11Connection() = default;

/// Asks together for what would be asked for one after another, each time waiting for the server.
void X11Connection::prefetch()
{
    for (xcb_extension_t *extension : extensions)
        xcb_prefetch_extension_data(handle(), extension);
    xcb_prefetch_maximum_request_length(handle());
    std::array<xcb_intern_atom_cookie_t, firstAtoms.size()> cookies;
    std::ranges::transform(firstAtoms, cookies.begin(), [this](std::string_view name) {
        return xcb_intern_atom(handle(), false, std::uint16_t(name.size()), name.data());
    });
    for (std::size_t i = 0; i < cookies.size(); ++i) {
        const X11Reply<xcb_intern_atom_reply_t> reply(
            xcb_intern_atom_reply(handle(), cookies[i], nullptr));
        if (reply)
            m_atoms.insert(firstAtoms[i], reply->atom);
    }
}

xcb_atom_t X11Connection::atom(const QByteArray &name) const
{
    if (const auto known = m_atoms.constFind(name); known != m_atoms.cend())
        return *known;
    const auto cookie = xcb_intern_atom(handle(), false, std::uint16_t(name.size()), name.data());
    const X11Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(handle(), cookie, nullptr));
    if (!reply)
        return XCB_ATOM_NONE;
    return *m_atoms.insert(name, reply->atom);
}

std::vector<std::uint32_t> X11Connection::property(xcb_window_t window, xcb_atom_t name) const
{
    const auto cookie =
        xcb_get_property(handle(), false, window, name, XCB_ATOM_ANY, 0, longestProperty);
    const X11Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(handle(), cookie, nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto *values = static_cast<const std::uint32_t *>(xcb_get_property_value(reply.get()));
    return {values, values + reply->value_len};
}

std::optional<QPoint> X11Connection::pointerPosition() const
{
    const X11Reply<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(handle(), xcb_query_pointer(handle(), m_root), nullptr));
    if (!reply || !reply->same_screen)
        return std::nullopt;
    return QPoint(reply->root_x, reply->root_y);
}

X11Connection::Subscription X11Connection::subscribe(int responseType, Handler handler)
{
    return subscribe(Route{responseType, 0}, std::move(handler));
}

X11Connection::Subscription X11Connection::subscribeGeneric(int majorOpcode, Handler handler)
{
    return subscribe(Route{XCB_GE_GENERIC, majorOpcode}, std::move(handler));
}

X11Connection::Subscription X11Connection::subscribe(Route route, Handler handler)
{
    std::erase_if(m_handlers, [](const auto &entry) { return entry.second.expired(); });
    auto subscription = std::make_shared<const Handler>(std::move(handler));
    m_handlers.emplace(route, subscription);
    return subscription;
}

void X11Connection::readEvents()
{
    bool isAny = false;
    while (const X11Reply<xcb_generic_event_t> event{xcb_poll_for_event(handle())}) {
        handle(*event);
        isAny = true;
    }
    if (isAny)
        Q_EMIT eventsHandled();
    if (const int error = xcb_connection_has_error(handle())) {
        qCCritical(Log::app, "A conexão com o servidor X caiu (código %d)", error);
        m_notifier->setEnabled(false);
    }
}

void X11Connection::handleQueued()
{
    bool isAny = false;
    do {
        isAny = false;
        while (const X11Reply<xcb_generic_event_t> event{xcb_poll_for_queued_event(handle())}) {
            handle(*event);
            isAny = true;
        }
        if (isAny)
            Q_EMIT eventsHandled();
        xcb_flush(handle());
    } while (isAny);
}

void X11Connection::handle(const xcb_generic_event_t &event)
{
    const int type = event.response_type & 0x7f; // the top bit marks what a client sent
    if (type == 0) {
        // The usual one is a window that went before our request reached it.
        const auto &error = reinterpret_cast<const xcb_generic_error_t &>(event);
        qCDebug(Log::app, "Erro %d do servidor X no pedido %d", error.error_code, error.major_code);
        return;
    }
    const int opcode = type == XCB_GE_GENERIC
                           ? reinterpret_cast<const xcb_ge_generic_event_t &>(event).extension
                           : 0;
    std::vector<Subscription> handlers; // a handler may subscribe or drop a subscription
    const auto [first, last] = m_handlers.equal_range({type, opcode});
    for (auto entry = first; entry != last; ++entry)
        if (auto handler = entry->second.lock())
            handlers.push_back(std::move(handler));
    for (const auto &handler : handlers)
        (*handler)(event);
}

} // namespace velmo
