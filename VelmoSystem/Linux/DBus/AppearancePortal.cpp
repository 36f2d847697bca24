#include "VelmoSystem/Linux/DBus/AppearancePortal.h"

#include "VelmoCore/Foundation/Log.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

namespace velmo {

namespace {

constexpr QLatin1StringView service("org.freedesktop.portal.Desktop");
constexpr QLatin1StringView path("/org/freedesktop/portal/desktop");
constexpr QLatin1StringView interface("org.freedesktop.portal.Settings");
constexpr QLatin1StringView appearance("org.freedesktop.appearance");
constexpr QLatin1StringView gnomeInterface("org.gnome.desktop.interface");

} // namespace

AppearancePortal::AppearancePortal(QDBusConnection bus) : m_bus(std::move(bus))
{
}

void AppearancePortal::start()
{
    if (!m_bus.isConnected())
        return;
    qRegisterMetaType<QDBusVariant>(); // `connect` looks the slot's types up by name
    m_bus.connect(service, path, interface, QStringLiteral("SettingChanged"), this,
                  SLOT(settingChanged(QString, QString, QDBusVariant)));
    readAll();
}

bool AppearancePortal::shouldReduceMotion() const
{
    return m_isMotionReduced || !m_areAnimationsEnabled;
}

void AppearancePortal::settingChanged(const QString &group, const QString &key,
                                      const QDBusVariant &value)
{
    take(group, key, value.variant());
}

void AppearancePortal::readAll()
{
    auto message =
        QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("ReadAll"));
    message << QStringList{appearance, gnomeInterface};
    auto *const watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        if (watcher->isError()) {
            qCInfo(Log::app, "Preferências de aparência indisponíveis: %ls",
                   qUtf16Printable(watcher->error().message()));
            return;
        }
        const auto groups =
            qdbus_cast<QMap<QString, QVariantMap>>(watcher->reply().arguments().value(0));
        for (const auto &[group, settings] : groups.asKeyValueRange()) {
            for (const auto &[key, value] : settings.asKeyValueRange())
                take(group, key, value);
        }
    });
}

void AppearancePortal::take(const QString &group, const QString &key, const QVariant &value)
{
    if (group == appearance && key == u"reduced-motion")
        m_isMotionReduced = value.toUInt() == 1;
    else if (group == gnomeInterface && key == u"enable-animations")
        m_areAnimationsEnabled = value.toBool();
    else if (group == appearance && key == u"color-scheme")
        m_isDark = value.toUInt() == 1;
    else
        return;
    Q_EMIT changed();
}

} // namespace velmo
