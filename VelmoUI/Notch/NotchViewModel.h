#pragma once

#include "VelmoCore/Notch/NotchLayout.h"
#include "VelmoCore/Notch/NotchMotion.h"
#include "VelmoUI/Notch/DropSurface.h"
#include "VelmoUI/Notch/ModuleSelection.h"
#include "VelmoUI/Notch/PanelServices.h"
#include "VelmoUI/Notch/ShapeAnimator.h"

namespace velmo {

/// As `status` and the log name it: "expanded".
QString presentationName(NotchPresentation presentation);

/// The observable state of one panel. Main thread only.
class NotchViewModel : public PanelPort {
    Q_OBJECT

public:
    /// By then the window manager has given the keyboard of a dialog that went to another window.
    static constexpr Seconds keyboardDelay = 0.15s;

    NotchViewModel(DisplayID displayID, const NotchMetrics &metrics, const PanelServices &services);

    DisplayID displayID() const { return m_displayID; }
    const NotchMetrics &metrics() const { return m_metrics; }
    void setMetrics(const NotchMetrics &metrics);

    const NotchState &state() const { return m_state; }
    NotchPresentation presentation() const { return m_state.presentation; }
    Date presentationChangedAt() const { return m_presentationChangedAt; }
    /// Made from values in memory at each call.
    NotchLayoutContext layoutContext() const;
    ShapeAnimator &shape() { return m_shape; }
    ModuleSelection &modules() { return m_modules; }
    const ModuleSelection &modules() const { return m_modules; }
    DropSurface &drop() { return m_drop; }
    const DropSurface &drop() const { return m_drop; }
    /// Whether the user asked the desktop for less motion.
    bool reducesMotion() const;

    /// Lets the state machine answer `event`.
    void send(NotchEvent event);
    /// A tap beside the content's controls.
    void tap();
    /// What was asked of the page that shows next, given once.
    Route takeRoute() { return std::exchange(m_route, {}); }

    void close() override { send(NotchEvent::dismiss); }
    void go(const Route &route) override;
    void openSettings(std::optional<SettingsPane> pane) override;
    void contentWidthChanged() override;
    bool isOpen() const override { return velmo::isOpen(presentation()); }
    Rect frame() const override;
    void setPresentingSystemUI(bool isPresenting) override;
    bool isPresentingSystemUI() const { return m_isPresentingSystemUI; }

    /// While the pointer is at the modules' symbols they stay where they are: their bar keeps its
    /// width, and the panel gets no narrower than that.
    void setBarHeld(bool isHeld);
    /// Of the held bar.
    std::optional<double> heldBarWidth() const;

    /// Set once by the window controller.
    std::function<void(NotchPresentation from, NotchPresentation to, NotchEvent)> onTransition;
    std::function<void()> onTapWhileOpen;

Q_SIGNALS:
    void presentationChanged();
    void metricsChanged();
    /// Of the bar or of the page, which may leave the shape as it is.
    void contentSizeChanged();
    /// A page that shows already is asked for something.
    void routed();

private:
    void showModule();
    NotchMotion motion(bool opening) const;
    /// The motion of changes that don't come through `send`: a message coming, sides growing.
    NotchMotion shapeAnimation() const;
    void updateShape(const NotchMotion &motion);

    const DisplayID m_displayID;
    const PanelServices m_services;
    NotchMetrics m_metrics;
    NotchState m_state;
    Date m_presentationChangedAt;
    ShapeAnimator m_shape;
    ModuleSelection m_modules;
    DropSurface m_drop;
    Route m_route;
    std::optional<double> m_heldBarWidth;
    bool m_isPresentingSystemUI = false;
    ScheduledTask m_keyboardTask;
    SettingsStore::Observation m_settings;
};

} // namespace velmo
