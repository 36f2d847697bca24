#pragma once

#include "VelmoSystem/Input/DragSessionWatcher.h"
#include "VelmoSystem/Input/FullscreenDetector.h"
#include "VelmoSystem/Input/MouseEventMonitor.h"
#include "VelmoUI/Notch/NotchWindowController.h"
#include "VelmoUI/Notch/PagePreloader.h"
#include "VelmoUI/Notch/PanelEngine.h"

#include <map>
#include <memory>

class QKeyEvent;

namespace velmo {

/// Owns one controller a target screen and hands commands, pointer, keys and the desktop's changes
/// to them. Lives for the run, on the main thread.
class NotchCoordinator : public QObject {
    Q_OBJECT

public:
    NotchCoordinator(const PanelServices &services, std::unique_ptr<PanelEngine> engine);
    ~NotchCoordinator() override;

    /// Makes the panels and starts to watch.
    void start();

    /// Opens the panel of the screen under the pointer. This and the commands below show a hidden
    /// notch first; without a visible panel they do nothing.
    void open();
    void open(const Route &route);
    /// Hands files to the panel as if they were dropped on it.
    void openFiles(const std::vector<QUrl> &urls);
    /// Toggles the panel under the pointer and closes the others.
    void toggleFromHotKey();

    bool isUserHidden() const { return m_isUserHidden; }
    void setUserHidden(bool hidden);
    bool isAnyPanelOpen() const;
    /// Whether the user sees a panel, open or collapsed.
    bool isAnyPanelShown() const;

    /// One JSON object: `hidden`; `displays`, each with `id`, `name`, `visible`, `presentation`,
    /// `module` (null unless expanded), `shape` and `canvas` as [x, y, width, height] in the
    /// display server's pixels; `live`, ids in order; `feedback`, its title or null.
    QString statusText() const;

    /// Plays a drop of `file` at a point of the preferred panel's window.
    void debugDropAnimation(const QString &file, Point point);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void userHiddenChanged();

private:
    NotchWindowController *preferredController();
    /// Shows a notch that the user has hidden, and gives the panel that a command is for.
    NotchWindowController *commandTarget();
    void rebuildScreens();
    void applyVisibility();
    void reassertOrder(bool repair);
    void settingsChanged(const AppSettings &before, const AppSettings &after);
    void route(const MouseEventMonitor::Event &event);
    bool isPanelWindow(WindowID window);
    /// Null for a window that is no panel's.
    NotchWindowController *controllerOf(const QObject *window);
    bool handleKey(NotchWindowController &controller, const QKeyEvent &press);
    /// Whether the page used the key, which it has been given then.
    bool isTakenByPage(NotchWindowController &controller, const QKeyEvent &press);

    const PanelServices m_services;
    std::unique_ptr<PanelEngine> m_engine;
    PagePreloader m_preloader;
    std::map<DisplayID, ScreenDescriptor> m_screens;
    std::map<DisplayID, std::unique_ptr<NotchWindowController>> m_controllers;
    MouseEventMonitor m_mouse;
    DragSessionWatcher m_drag;
    FullscreenDetector m_fullscreen;
    bool m_isUserHidden = false;
    bool m_isButtonDown = false;
    bool m_dragStartedInPanel = false;
    bool m_isOfferingKey = false; ///< a page looks at a key first
    SettingsStore::Observation m_settings;
};

} // namespace velmo
