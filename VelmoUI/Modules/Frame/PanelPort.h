#pragma once

#include "VelmoCore/Foundation/Geometry.h"
#include "VelmoCore/Notch/Route.h"
#include "VelmoCore/Settings/SettingsPane.h"

#include <QObject>

#include <optional>

namespace velmo {

/// What a page may ask of the panel that shows it, and learn from it. Outlives the page.
class PanelPort : public QObject {
    Q_OBJECT

public:
    /// Closes the panel.
    virtual void close() = 0;
    /// Shows a module in this panel.
    virtual void go(const Route &route) = 0;
    /// Closes the panel and shows the settings; without a pane the one that showed last.
    virtual void openSettings(std::optional<SettingsPane> pane) = 0;
    /// The module on show asks for another width.
    virtual void contentWidthChanged() = 0;

    virtual bool isOpen() const = 0;
    /// The panel's shape, in points of the desktop with y upward.
    virtual Rect frame() const = 0;
    /// While a dialog of the desktop belongs to the panel, neither a pointer that leaves nor a
    /// click outside closes it. An open panel takes the keyboard back at the dialog's end.
    virtual void setPresentingSystemUI(bool isPresenting) = 0;

Q_SIGNALS:
    void openChanged();
    /// The user asks for the module's next (1) or previous (-1) page.
    void pageTurned(int direction);
};

} // namespace velmo
