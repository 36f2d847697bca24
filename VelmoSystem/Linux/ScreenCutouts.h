#pragma once

#include <QSize>
#include <QString>

#include <map>
#include <optional>

namespace velmo {

/// A cut-out at the top edge of a screen, in points.
struct ScreenCutout {
    double top = 0;   ///< its height
    double left = 0;  ///< usable width left of it
    double right = 0; ///< usable width right of it

    bool operator==(const ScreenCutout &) const = default;
};

/// Where the screens have a cut-out, which X11 doesn't report: from the environment, else from a
/// table of devices.
class ScreenCutouts {
public:
    /// `override` has the form "<screen>:top,left,right" in points, several separated by ';'. A
    /// part that isn't of this form is logged and passed over. `deviceModel` may be empty.
    ScreenCutouts(const QString &override, const QString &deviceModel);
    /// Of this machine, with ORVANE_SCREEN_CUTOUT as the override.
    static ScreenCutouts ofThisMachine();

    /// `native` in pixels, `scale` in pixels a point. The table holds for built-in screens only.
    std::optional<ScreenCutout> find(const QString &screen, bool isBuiltIn, QSize native,
                                     double scale) const;

private:
    std::map<QString, ScreenCutout> m_overrides;
    QString m_deviceModel;
};

} // namespace velmo
