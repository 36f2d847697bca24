#pragma once

#include "VelmoSystem/Ports/DesktopAppearance.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>

namespace velmo {

/// The user's preferences from `org.freedesktop.portal.Settings`: "reduced-motion" and
/// "color-scheme" of `org.freedesktop.appearance`, and GNOME's "enable-animations" switched off.
/// Followed as they change.
class AppearancePortal : public DesktopAppearance {
    Q_OBJECT

public:
    explicit AppearancePortal(QDBusConnection bus);

    /// The bus may have to start the portal first.
    void start();

    bool shouldReduceMotion() const override;
    bool prefersDarkScheme() const override { return m_isDark; }

private Q_SLOTS:
    void settingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    void readAll();
    void take(const QString &group, const QString &key, const QVariant &value);

    QDBusConnection m_bus;
    bool m_isMotionReduced = false;
    bool m_isDark = false;
    bool m_areAnimationsEnabled = true;
};

} // namespace velmo
