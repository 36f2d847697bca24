#pragma once

#include "VelmoSystem/Linux/X11/X11Drops.h"
#include "VelmoSystem/Ports/PanelWindow.h"

#include <QWindow>

#include <set>

namespace velmo {

class X11PanelWindow;

/// Adopts windows with the flags `panelFlags`: the window manager has no say in them, so they stand
/// above all its windows, full-screen ones too, on every desktop, and no list shows them.
class X11PanelWindowFactory : public PanelWindowFactory {
public:
    static constexpr Qt::WindowFlags panelFlags =
        Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint;

    X11PanelWindowFactory(X11Connection &connection, Scheduler &scheduler);

    /// The factory outlives the panel windows.
    std::unique_ptr<PanelWindow> adopt(QWindow &window) override;

private:
    friend class X11PanelWindow;

    bool readCompositor();
    const PanelWindow::DropHandler *dropHandler(xcb_window_t window) const;

    X11Connection &m_connection;
    xcb_connection_t *m_server; ///< Qt's, so that requests about its windows keep their order
    std::set<X11PanelWindow *> m_panels;
    bool m_hasCompositor = false;
    xcb_window_t m_keyboardOwner = 0; ///< who had the keyboard before the first panel took it
    X11Connection::Subscription m_compositorChanges;
    X11Drops m_drops;
};

class X11PanelWindow : public QObject, public PanelWindow {
    Q_OBJECT

public:
    X11PanelWindow(X11PanelWindowFactory &factory, QWindow &window);
    ~X11PanelWindow() override;

    WindowID id() const override;
    void setFrame(const Rect &frame) override;
    Rect frame() const override;
    void orderFront() override;
    void orderOut() override;
    bool isOnActiveSpace() const override;

    void setInteractiveZone(const std::optional<Rect> &zone) override;
    void setOutline(const std::vector<Rect> &rows) override;

    void makeKey() override;
    void resignKey() override;
    bool isKey() const override;

    void setDropHandler(DropHandler handler) override { m_dropHandler = std::move(handler); }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    friend class X11PanelWindowFactory;

    void describe() const;
    void applyZones() const;
    xcb_rectangle_t native(const Rect &zone) const;
    xcb_atom_t atom(const char *name) const;
    void setProperty32(const char *name, xcb_atom_t type,
                       const std::vector<std::uint32_t> &values) const;
    xcb_window_t keyboardOwner() const;
    bool isViewable(xcb_window_t window) const;
    bool focus(xcb_window_t window) const;

    X11PanelWindowFactory &m_factory;
    QWindow &m_window;
    std::optional<Rect> m_interactiveZone;
    std::vector<Rect> m_outline;
    DropHandler m_dropHandler;
};

} // namespace velmo
