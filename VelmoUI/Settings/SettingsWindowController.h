#pragma once

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoCore/Settings/SettingsPane.h"
#include "VelmoUI/Settings/SettingsServices.h"

#include <QObject>

#include <memory>
#include <optional>

class QKeyEvent;

namespace velmo {

/// The settings window: an ordinary window, made when it is asked for and gone when it is closed.
class SettingsWindowController : public QObject {
    Q_OBJECT

public:
    explicit SettingsWindowController(const SettingsServices &services);
    ~SettingsWindowController() override;

    /// Shows the window in front, on `pane` or on the one it was last on.
    void show(std::optional<SettingsPane> pane);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Window; ///< the window, its engine and its model

    /// Whether the key was used: those of the main menu, and the panes' numbers.
    bool handleKey(const QKeyEvent &press);

    const SettingsServices m_services;
    std::unique_ptr<Window> m_window;
    SettingsPane m_pane = SettingsPane::general;
    ScheduledTask m_closing;
};

} // namespace velmo
