#include "VelmoSystem/Linux/X11/X11SelectionSource.h"

#include <algorithm>
#include <array>

namespace velmo {

namespace {

constexpr qsizetype largestPiece = 256 << 10;

/// What fits into one request, with room for its head.
qsizetype pieceSize(xcb_connection_t *server)
{
    return std::min<qsizetype>(largestPiece, xcb_get_maximum_request_length(server) * 4LL - 64);
}

} // namespace

X11SelectionSource::X11SelectionSource(X11Connection &connection, Scheduler &scheduler,
                                       xcb_atom_t selection)
    : m_connection(connection), m_scheduler(scheduler), m_selection(selection),
      m_window(xcb_generate_id(connection.handle())), m_pieceSize(pieceSize(connection.handle()))
{
    xcb_create_window(connection.handle(), 0, m_window, connection.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    m_subscriptions = {
        connection.subscribe(XCB_SELECTION_REQUEST,
                             [this](const xcb_generic_event_t &event) {
                                 requested(reinterpret_cast<const xcb_selection_request_event_t &>(
                                     event));
                             }),
        connection.subscribe(
            XCB_SELECTION_CLEAR,
            [this](const xcb_generic_event_t &event) {
                if (reinterpret_cast<const xcb_selection_clear_event_t &>(event).owner == m_window)
                    m_offers.clear(); // what is on its way arrives
            }),
        connection.subscribe(XCB_PROPERTY_NOTIFY, [this](const xcb_generic_event_t &event) {
            propertyChanged(reinterpret_cast<const xcb_property_notify_event_t &>(event));
        })};
}

X11SelectionSource::~X11SelectionSource()
{
    xcb_destroy_window(m_connection.handle(), m_window);
    xcb_flush(m_connection.handle());
}

void X11SelectionSource::own(std::vector<Offer> offers)
{
    m_offers = std::move(offers);
    // The server's present time: nobody's earlier request can win over it.
    xcb_set_selection_owner(m_connection.handle(), m_offers.empty() ? XCB_NONE : m_window,
                            m_selection, XCB_CURRENT_TIME);
    xcb_flush(m_connection.handle());
}

void X11SelectionSource::requested(const xcb_selection_request_event_t &request)
{
    if (request.owner != m_window)
        return;
    // Clients of old leave the property to us.
    const xcb_atom_t property =
        request.property == XCB_ATOM_NONE ? request.target : request.property;
    const bool isServed = request.target == m_connection.atom("MULTIPLE")
                              ? convertMultiple(request.requestor, property)
                              : convert(request.requestor, request.target, property);
    const xcb_selection_notify_event_t answer{.response_type = XCB_SELECTION_NOTIFY,
                                              .time = request.time,
                                              .requestor = request.requestor,
                                              .selection = request.selection,
                                              .target = request.target,
                                              .property =
                                                  isServed ? property : xcb_atom_t(XCB_ATOM_NONE)};
    std::array<char, 32> event{}; // the length of every event
    std::copy_n(reinterpret_cast<const char *>(&answer), sizeof answer, event.begin());
    xcb_send_event(m_connection.handle(), false, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                   event.data());
    xcb_flush(m_connection.handle());
}

bool X11SelectionSource::convert(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property)
{
    if (m_offers.empty())
        return false;
    if (target == m_connection.atom("TARGETS")) {
        std::vector<std::uint32_t> targets{target, m_connection.atom("TIMESTAMP"),
                                           m_connection.atom("MULTIPLE")};
        for (const Offer &offer : m_offers)
            targets.push_back(offer.target);
        setProperty(requestor, property, XCB_ATOM_ATOM, targets);
        return true;
    }
    if (target == m_connection.atom("TIMESTAMP")) {
        setProperty(requestor, property, XCB_ATOM_INTEGER, std::array{m_time});
        return true;
    }
    const auto offer = std::ranges::find(m_offers, target, &Offer::target);
    if (offer == m_offers.end())
        return false;
    serve(requestor, property, *offer);
    return true;
}

bool X11SelectionSource::convertMultiple(xcb_window_t requestor, xcb_atom_t property)
{
    auto pairs = m_connection.property(requestor, property);
    if (pairs.empty() || pairs.size() % 2 != 0)
        return false;
    for (std::size_t place = 0; place < pairs.size(); place += 2) {
        xcb_atom_t &answer = pairs[place + 1];
        if (answer != XCB_ATOM_NONE && !convert(requestor, pairs[place], answer))
            answer = XCB_ATOM_NONE;
    }
    setProperty(requestor, property, m_connection.atom("ATOM_PAIR"), pairs);
    return true;
}

void X11SelectionSource::serve(xcb_window_t requestor, xcb_atom_t property, const Offer &offer)
{
    if (offer.bytes.size() > m_pieceSize) {
        begin({requestor, {property, offer.type, offer.bytes}});
        return;
    }
    xcb_change_property(m_connection.handle(), XCB_PROP_MODE_REPLACE, requestor, property,
                        offer.type, 8, std::uint32_t(offer.bytes.size()), offer.bytes.constData());
}

void X11SelectionSource::begin(Transfer transfer)
{
    auto *server = m_connection.handle();
    const xcb_window_t requestor = transfer.requestor;
    const X11Reply<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        server, xcb_get_window_attributes(server, requestor), nullptr));
    if (!attributes)
        return;
    // It may be a window that others of this connection listen to.
    const std::uint32_t events = attributes->your_event_mask | XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(server, requestor, XCB_CW_EVENT_MASK, &events);
    endTransfer(requestor, transfer.offer.target);
    setProperty(requestor, transfer.offer.target, m_connection.atom("INCR"),
                std::array{std::uint32_t(transfer.offer.bytes.size())});
    awaitFetch(m_transfers.emplace_back(std::move(transfer)));
}

void X11SelectionSource::propertyChanged(const xcb_property_notify_event_t &event)
{
    if (event.state != XCB_PROPERTY_DELETE)
        return;
    const auto transfer = std::ranges::find_if(m_transfers, [&](const Transfer &each) {
        return each.requestor == event.window && each.offer.target == event.atom;
    });
    if (transfer == m_transfers.end())
        return;
    const Offer &offer = transfer->offer;
    const qsizetype size = std::min(m_pieceSize, offer.bytes.size() - transfer->sent);
    xcb_change_property(m_connection.handle(), XCB_PROP_MODE_REPLACE, transfer->requestor,
                        offer.target, offer.type, 8, std::uint32_t(size),
                        offer.bytes.constData() + transfer->sent);
    xcb_flush(m_connection.handle());
    transfer->sent += size;
    if (size == 0) // that was the end's mark
        m_transfers.erase(transfer);
    else
        awaitFetch(*transfer);
}

void X11SelectionSource::awaitFetch(Transfer &transfer)
{
    transfer.patience = m_scheduler.after(
        patience, [this, requestor = transfer.requestor, property = transfer.offer.target] {
            endTransfer(requestor, property);
        });
}

void X11SelectionSource::endTransfer(xcb_window_t requestor, xcb_atom_t property)
{
    std::erase_if(m_transfers, [&](const Transfer &each) {
        return each.requestor == requestor && each.offer.target == property;
    });
}

void X11SelectionSource::setProperty(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type,
                                     std::span<const std::uint32_t> values) const
{
    xcb_change_property(m_connection.handle(), XCB_PROP_MODE_REPLACE, requestor, property, type, 32,
                        std::uint32_t(values.size()), values.data());
}

} // namespace velmo
