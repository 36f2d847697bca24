#pragma once

#include "VelmoSystem/Ports/MotionPreference.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>

namespace velmo {

/// The wish for less motion from `org.freedesktop.portal.Settings`: "reduced-motion" of
/// `org.freedesktop.appearance`, or GNOME's "enable-animations" switched off. Followed as it
/// changes.
class AppearancePortal : public QObject, public MotionPreference {
    Q_OBJECT

public:
    explicit AppearancePortal(QDBusConnection bus);

    bool shouldReduceMotion() const override;

private Q_SLOTS:
    void settingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    void readAll(QDBusConnection &bus);
    void take(const QString &group, const QString &key, const QVariant &value);

    bool m_isMotionReduced = false;
    bool m_areAnimationsEnabled = true;
};

} // namespace velmo
