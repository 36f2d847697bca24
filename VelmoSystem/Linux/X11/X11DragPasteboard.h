#pragma once

#include "VelmoSystem/Linux/X11/X11Connection.h"
#include "VelmoSystem/Ports/DragPasteboard.h"

#include <span>

namespace velmo {

/// Follows the owner of `XdndSelection`, which each drag source becomes, and asks it what it
/// offers.
class X11DragPasteboard : public DragPasteboard {
public:
    explicit X11DragPasteboard(X11Connection &connection);
    ~X11DragPasteboard() override;

    std::uint64_t changeCount() const override { return m_changeCount; }
    Contents contents() const override { return m_contents; }

private:
    void ownerChanged(const xcb_generic_event_t &event);
    void answered(const xcb_generic_event_t &event);
    void ask(xcb_atom_t target, xcb_timestamp_t time);
    void readTypes(std::span<const xcb_atom_t> types);

    X11Connection &m_connection;
    xcb_window_t m_window;
    xcb_atom_t m_selection;
    xcb_window_t m_owner = 0;
    xcb_atom_t m_asked = 0;          ///< what the owner hasn't answered yet, 0 for nothing
    xcb_timestamp_t m_askedTime = 0; ///< distinguishes its answer from late ones
    std::uint64_t m_changeCount = 0;
    Contents m_contents;
    X11Connection::Subscription m_ownerChanges;
    X11Connection::Subscription m_answers;
};

} // namespace velmo
