#include "VelmoSystem/Linux/X11/X11Drops.h"

#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Foundation/Scheduler.h"

#include <QCoreApplication>

#include <algorithm>

namespace velmo {

namespace {

/// More than any file manager drags; what is cut would be another drop.
constexpr qsizetype mostBytes = 64 << 20;

} // namespace

X11Drops::X11Drops(X11Connection &connection, Scheduler &scheduler, Handlers handlers)
    : m_connection(connection), m_scheduler(scheduler), m_handlers(std::move(handlers)),
      m_data(connection, scheduler, "XdndSelection", X11Pasteboard::Owners::ignored)
{
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11Drops::~X11Drops() = default;

bool X11Drops::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    constexpr int sentByClient = 0x80;
    auto &event = *static_cast<xcb_client_message_event_t *>(message);
    if (eventType != "xcb_generic_event_t" ||
        (event.response_type & ~sentByClient) != XCB_CLIENT_MESSAGE)
        return false;
    if (event.type == m_connection.atom("XdndEnter")) {
        m_entered = event;
    } else if (event.type == m_connection.atom("XdndDrop") &&
               event.data.data32[0] == m_entered.data.data32[0] && m_handlers(event.window)) {
        begin(event);
        event.type = m_connection.atom("XdndLeave");
    }
    return false;
}

void X11Drops::begin(const xcb_client_message_event_t &message)
{
    if (const auto earlier = std::exchange(m_drop, std::nullopt))
        tellSource(*earlier, false);
    const xcb_timestamp_t time = message.data.data32[2];
    m_drop = {.window = message.window,
              .source = message.data.data32[0],
              .types = m_data.startOffer(time, offeredTypes()),
              .contents = {}};
    m_handlers(message.window)->began();
    read(QStringLiteral("text/uri-list"), [this](QByteArray urls) {
        while (urls.endsWith('\0')) // programs in C send the end of their string
            urls.chop(1);
        m_drop->contents.urls = urls;
        if (!urls.trimmed().isEmpty()) {
            readText();
            return;
        }
        read(QStringLiteral("text/x-moz-url"), [this](const QByteArray &addresses) {
            m_drop->contents.mozillaURLs = addresses;
            readText();
        });
    });
}

void X11Drops::readText()
{
    if (m_drop->contents.isLong()) {
        end();
        return;
    }
    read(Pasteboard::textType.toString(), [this](const QByteArray &text) {
        m_drop->contents.text = QString::fromUtf8(text);
        end();
    });
}

void X11Drops::read(const QString &type, const Next &next)
{
    if (std::ranges::find(m_drop->types, type) == m_drop->types.end()) {
        next({});
        return;
    }
    m_data.read(type, mostBytes, [this, next, asked = m_scheduler.elapsed()](const auto &data) {
        if (!m_drop)
            return; // another has come, which ends the readings of this one
        const bool isSilent = !data && m_scheduler.elapsed() - asked >= X11SelectionRead::patience;
        if (isSilent || (data && !data->isWhole)) {
            qCInfo(Log::app, "O que foi solto não veio de onde foi arrastado, ou é longo demais.");
            end();
            return;
        }
        next(data ? data->bytes : QByteArray());
    });
}

void X11Drops::end()
{
    const Drop drop = *std::exchange(m_drop, std::nullopt);
    const auto *handler = m_handlers(drop.window);
    tellSource(drop, handler && handler->ended(drop.contents));
}

/// What moves is moved by Orvane: a source that heard of a move might remove the file itself, even
/// before it has come. It hears that the drop was taken, as a copy if it allows one, else as
/// nothing.
void X11Drops::tellSource(const Drop &drop, bool isTaken) const
{
    const xcb_atom_t copy = m_connection.atom("XdndActionCopy");
    const auto actions = m_connection.property(drop.source, m_connection.atom("XdndActionList"));
    const bool canBeCopy = actions.empty() || std::ranges::count(actions, copy) > 0;
    xcb_client_message_event_t finished{};
    finished.response_type = XCB_CLIENT_MESSAGE;
    finished.format = 32;
    finished.window = drop.source;
    finished.type = m_connection.atom("XdndFinished");
    finished.data.data32[0] = drop.window;
    finished.data.data32[1] = isTaken ? 1 : 0;
    finished.data.data32[2] = isTaken && canBeCopy ? copy : xcb_atom_t(XCB_ATOM_NONE);
    xcb_send_event(m_connection.handle(), false, drop.source, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char *>(&finished));
    xcb_flush(m_connection.handle());
}

/// Three at most stand in the message; more are on the source's window.
std::vector<xcb_atom_t> X11Drops::offeredTypes() const
{
    const auto &[source, flags, first, second, third] = m_entered.data.data32;
    if (flags & 1)
        return m_connection.property(source, m_connection.atom("XdndTypeList"));
    std::vector<xcb_atom_t> types{first, second, third};
    std::erase(types, xcb_atom_t(XCB_ATOM_NONE));
    return types;
}

} // namespace velmo
