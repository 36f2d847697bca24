#pragma once

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoSystem/Linux/X11/X11Connection.h"

#include <span>

namespace velmo {

/// Owns a selection and serves what it offers (ICCCM 2.2), what is long in pieces (INCR).
class X11SelectionSource {
public:
    struct Offer {
        xcb_atom_t target = XCB_ATOM_NONE;
        xcb_atom_t type = XCB_ATOM_NONE;
        QByteArray bytes;
    };

    /// A requestor that stops fetching pieces is given up after this long.
    static constexpr Seconds patience = 10s;

    X11SelectionSource(X11Connection &connection, Scheduler &scheduler, xcb_atom_t selection);
    ~X11SelectionSource();
    Q_DISABLE_COPY_MOVE(X11SelectionSource)

    xcb_window_t window() const { return m_window; }
    /// Takes the selection; with nothing to offer, leaves it without an owner.
    void own(std::vector<Offer> offers);
    /// When the server made us the owner.
    void setTime(xcb_timestamp_t time) { m_time = time; }

private:
    /// Something long on its way to a window.
    struct Transfer {
        xcb_window_t requestor = XCB_NONE;
        Offer offer; ///< `target` is the property
        qsizetype sent = 0;
        ScheduledTask patience = {};
    };

    void requested(const xcb_selection_request_event_t &request);
    void propertyChanged(const xcb_property_notify_event_t &event);
    bool convert(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
    bool convertMultiple(xcb_window_t requestor, xcb_atom_t property);
    void serve(xcb_window_t requestor, xcb_atom_t property, const Offer &offer);
    void begin(Transfer transfer);
    void awaitFetch(Transfer &transfer);
    void endTransfer(xcb_window_t requestor, xcb_atom_t property);
    void setProperty(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type,
                     std::span<const std::uint32_t> values) const;

    X11Connection &m_connection;
    Scheduler &m_scheduler;
    const xcb_atom_t m_selection;
    const xcb_window_t m_window;
    const qsizetype m_pieceSize;
    xcb_timestamp_t m_time = XCB_CURRENT_TIME;
    std::vector<Offer> m_offers;
    std::vector<Transfer> m_transfers;
    std::vector<X11Connection::Subscription> m_subscriptions;
};

} // namespace velmo
