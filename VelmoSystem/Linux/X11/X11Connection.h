#pragma once

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QPoint>
#include <QSocketNotifier>

#include <xcb/xcb.h>

#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace velmo {

struct X11Free {
    void operator()(void *memory) const { std::free(memory); }
};

/// What a request was answered with; empty after an error, as for a window that has gone.
template <class Answer>
using X11Reply = std::unique_ptr<Answer, X11Free>;

/// The adapters' own connection to the X server, beside Qt's. Requests wait for the server at most,
/// never for another client. A connection that breaks is logged and stays silent from then on:
/// replies are empty and no events come.
class X11Connection : public QObject {
    Q_OBJECT

public:
    using Handler = std::function<void(const xcb_generic_event_t &)>;
    /// Dropping it ends the subscription.
    using Subscription = std::shared_ptr<const Handler>;

    /// Connects to `display`, by default to that of the environment. Throws `LocalizedError`.
    explicit X11Connection(const QByteArray &display = {});
    ~X11Connection() override;

    xcb_connection_t *handle() const { return m_connection.get(); }
    xcb_window_t root() const { return m_root; }
    int screenNumber() const { return m_screenNumber; }

    xcb_atom_t atom(const QByteArray &name) const;
    /// A property of 32-bit values; empty without it.
    std::vector<std::uint32_t> property(xcb_window_t window, xcb_atom_t name) const;
    /// The pointer's pixel on the desktop; nothing while it's on another X screen.
    std::optional<QPoint> pointerPosition() const;

    /// `handler` runs for each event with that response type. An extension's events count from
    /// its first event.
    [[nodiscard]] Subscription subscribe(int responseType, Handler handler);
    /// `handler` runs for each generic event of the extension with that major opcode.
    [[nodiscard]] Subscription subscribeGeneric(int majorOpcode, Handler handler);

Q_SIGNALS:
    /// The events that had come are handled; what they piled up can be dealt with at once.
    void eventsHandled();

private:
    struct Disconnect {
        void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
    };
    using Route = std::pair<int, int>; // response type, major opcode of generic events

    [[nodiscard]] Subscription subscribe(Route route, Handler handler);
    void prefetch();
    void readEvents();
    void handleQueued();
    void handle(const xcb_generic_event_t &event);

    int m_screenNumber = 0;
    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    xcb_window_t m_root = 0;
    std::unique_ptr<QSocketNotifier> m_notifier;
    mutable QHash<QByteArray, xcb_atom_t> m_atoms;
    std::multimap<Route, std::weak_ptr<const Handler>> m_handlers;
};

} // namespace velmo
