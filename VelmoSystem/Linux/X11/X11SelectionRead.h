#pragma once

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoSystem/Linux/X11/X11Connection.h"

namespace velmo {

/// One reading of a selection (ICCCM 2.4, with INCR) on a window of its own: however its owner
/// stops, dies or dawdles, it ends. Dropping it ends it without an answer.
class X11SelectionRead {
public:
    struct Request {
        xcb_atom_t selection = XCB_ATOM_NONE;
        xcb_atom_t target = XCB_ATOM_NONE;
        xcb_timestamp_t time = XCB_CURRENT_TIME;
        qsizetype limit = 0; ///< bytes; the rest isn't fetched
    };
    struct Result {
        xcb_atom_t type = XCB_ATOM_NONE;
        QByteArray bytes; ///< values of 32 bits in the machine's order
        bool isWhole = true;
    };
    /// May drop the reading.
    using Finished = std::function<void(const std::optional<Result> &)>;

    /// The longest that an owner may be silent.
    static constexpr Seconds patience = 2s;
    /// The longest that all of it may take.
    static constexpr Seconds deadline = 20s;

    X11SelectionRead(X11Connection &connection, Scheduler &scheduler, const Request &request,
                     Finished finished);
    ~X11SelectionRead();
    Q_DISABLE_COPY_MOVE(X11SelectionRead)

private:
    void answered(const xcb_selection_notify_event_t &event);
    void propertyChanged(const xcb_property_notify_event_t &event);
    void readChunk();
    void take(const xcb_get_property_reply_t &reply);
    void await();
    void finish(const std::optional<Result> &result);

    X11Connection &m_connection;
    Scheduler &m_scheduler;
    const Request m_request;
    Finished m_finished;
    xcb_window_t m_window;
    xcb_atom_t m_property;
    bool m_isIncremental = false;
    std::uint32_t m_offset = 0; ///< into the present property, in words of 4 bytes
    Result m_result;
    ScheduledTask m_patience;
    ScheduledTask m_deadline;
    ScheduledTask m_next; ///< the next chunk, so that events come between
    std::vector<X11Connection::Subscription> m_subscriptions;
};

} // namespace velmo
