#pragma once

#include "VelmoSystem/Linux/X11/X11Pasteboard.h"
#include "VelmoSystem/Ports/PanelWindow.h"

#include <QAbstractNativeEventFilter>

namespace velmo {

/// Takes the drops on Orvane's panels (XDND 5). Qt has the rest of a drag; at its end it would wait
/// on the main thread for each type that the source gives, up to 5 s, and say that all is over as
/// soon as its event has returned, after which a source gives nothing any more. So Qt only hears
/// that the drag has left.
class X11Drops : public QAbstractNativeEventFilter {
public:
    /// Null for a window whose drops are Qt's.
    using Handlers = std::function<const PanelWindow::DropHandler *(xcb_window_t)>;

    X11Drops(X11Connection &connection, Scheduler &scheduler, Handlers handlers);
    ~X11Drops() override;
    Q_DISABLE_COPY_MOVE(X11Drops)

    /// Of Qt's connection, to which the windows belong.
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    struct Drop {
        xcb_window_t window = XCB_NONE;
        xcb_window_t source = XCB_NONE;
        std::vector<QString> types;
        DropReader::Contents contents;
    };
    using Next = std::function<void(const QByteArray &)>;

    void begin(const xcb_client_message_event_t &message);
    void readText();
    /// Goes on with nothing where the source doesn't offer that type, or refuses it.
    void read(const QString &type, const Next &next);
    void end();
    void tellSource(const Drop &drop, bool isTaken) const;
    std::vector<xcb_atom_t> offeredTypes() const;

    X11Connection &m_connection;
    Scheduler &m_scheduler;
    const Handlers m_handlers;
    X11Pasteboard m_data;
    xcb_client_message_event_t m_entered{}; ///< of the drag that is over a window of ours, or was
    std::optional<Drop> m_drop;             ///< what it holds isn't all there
};

} // namespace velmo
