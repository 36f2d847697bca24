#pragma once

#include "VelmoSystem/Linux/X11/X11Connection.h"

#include <QStringList>

namespace velmo {

/// A window's property of text. It is asked for when this is made, so that many can be under way
/// before the first is waited for.
class X11WindowText {
public:
    X11WindowText(const X11Connection &connection, xcb_window_t window, xcb_atom_t property);

    /// Its parts between zero bytes, read as UTF-8; empty without it. Once.
    QStringList read() const;

private:
    xcb_connection_t *m_server;
    xcb_get_property_cookie_t m_request;
};

/// What a window says of its application, asked for in the same way.
class X11WindowNames {
public:
    X11WindowNames(const X11Connection &connection, xcb_window_t window);

    /// Names that may be those of its desktop entry, the surest first. Once.
    QStringList read() const;

private:
    std::vector<X11WindowText> m_entries;
    X11WindowText m_classes;
};

} // namespace velmo
