#include "VelmoSystem/Linux/DBus/AppearancePortal.h"

#include "tests/support/PrivateBus.h"

#include <QDBusMetaType>
#include <QDBusVirtualObject>

#include <gtest/gtest.h>

namespace velmo {

namespace {

using Settings = QMap<QString, QVariantMap>;

constexpr QLatin1StringView portalPath("/org/freedesktop/portal/desktop");
constexpr QLatin1StringView portalInterface("org.freedesktop.portal.Settings");

/// A desktop that holds some settings.
class Portal : public QDBusVirtualObject {
public:
    Portal(QDBusConnection bus, Settings settings) : m_bus(bus), m_settings(std::move(settings))
    {
        qDBusRegisterMetaType<Settings>();
        m_bus.registerVirtualObject(portalPath, this);
        m_bus.registerService(u"org.freedesktop.portal.Desktop"_qs);
    }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &call, const QDBusConnection &bus) override
    {
        return call.member() == u"ReadAll" &&
               bus.send(call.createReply(QVariant::fromValue(m_settings)));
    }

    void change(const char *group, const char *key, const QVariant &value)
    {
        auto signal = QDBusMessage::createSignal(portalPath, portalInterface, u"SettingChanged"_qs);
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        m_bus.send(signal);
    }

private:
    QDBusConnection m_bus;
    Settings m_settings;
};

} // namespace

TEST(AppearancePortal, FollowsWhatTheDesktopPrefers)
{
    constexpr auto appearance = "org.freedesktop.appearance";
    constexpr auto gnome = "org.gnome.desktop.interface";
    const PrivateBus bus;
    Portal portal(bus.connect(), {{appearance, {{"reduced-motion", 1U}, {"color-scheme", 1U}}},
                                  {gnome, {{"enable-animations", true}}}});
    const auto own = bus.connect();
    AppearancePortal preference(own);
    preference.start();
    EXPECT_FALSE(preference.shouldReduceMotion()) << "before the desktop has answered";
    EXPECT_FALSE(preference.prefersDarkScheme());

    // Answers and signals keep their order: what was sent before our own question has come with it.
    const auto settle = [&] {
        PrivateBus::answer(own.asyncCall(
            QDBusMessage::createMethodCall(u"org.freedesktop.portal.Desktop"_qs, portalPath,
                                           portalInterface, u"NoSuchMethod"_qs)));
        QCoreApplication::processEvents();
        return preference.shouldReduceMotion();
    };
    EXPECT_TRUE(settle());
    EXPECT_TRUE(preference.prefersDarkScheme());
    portal.change(appearance, "reduced-motion", 0U);
    EXPECT_FALSE(settle());
    EXPECT_TRUE(preference.prefersDarkScheme());
    for (const auto lightOrNone : {2U, 0U}) {
        portal.change(appearance, "color-scheme", 1U);
        portal.change(appearance, "color-scheme", lightOrNone);
        EXPECT_FALSE(settle() || preference.prefersDarkScheme());
    }
    portal.change(gnome, "enable-animations", false);
    EXPECT_TRUE(settle());
    portal.change("org.example", "enable-animations", true);
    EXPECT_TRUE(settle());
    portal.change(gnome, "enable-animations", true);
    EXPECT_FALSE(settle());
}

} // namespace velmo
