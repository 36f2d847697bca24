#include "VelmoSystem/Linux/Device/UPowerDevices.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <array>
#include <cmath>

namespace velmo {

namespace {

constexpr QLatin1StringView service("org.freedesktop.UPower");
constexpr QLatin1StringView managerPath("/org/freedesktop/UPower");
constexpr QLatin1StringView managerInterface("org.freedesktop.UPower");
constexpr QLatin1StringView deviceInterface("org.freedesktop.UPower.Device");

namespace State {
constexpr uint unknown = 0;
constexpr uint charging = 1;
} // namespace State

namespace Type {
constexpr uint linePower = 1;
constexpr uint battery = 2;
} // namespace Type

struct Kind {
    const char16_t *symbol;
    const char16_t *name; ///< for a device that doesn't give its own
};

/// By UPower's "Type".
constexpr std::array kinds = {
    Kind{u"battery.100", u"Dispositivo"},
    Kind{u"powerplug", u"Adaptador de energia"},
    Kind{u"battery.100", u"Bateria"},
    Kind{u"battery.100", u"No-break"},
    Kind{u"display", u"Monitor"},
    Kind{u"computermouse", u"Mouse"},
    Kind{u"keyboard", u"Teclado"},
    Kind{u"smartphone", u"Agenda eletrônica"},
    Kind{u"smartphone", u"Celular"},
    Kind{u"music.note", u"Reprodutor de mídia"},
    Kind{u"ipad", u"Tablet"},
    Kind{u"desktopcomputer", u"Computador"},
    Kind{u"gamecontroller", u"Controle de jogo"},
    Kind{u"applepencil", u"Caneta"},
    Kind{u"hand.point.up.left", u"Touchpad"},
    Kind{u"network", u"Modem"},
    Kind{u"network", u"Rede"},
    Kind{u"headphones", u"Headset"},
    Kind{u"hifispeaker", u"Caixa de som"},
    Kind{u"headphones", u"Fones de ouvido"},
    Kind{u"video", u"Vídeo"},
    Kind{u"hifispeaker", u"Áudio"},
    Kind{u"av.remote", u"Controle remoto"},
    Kind{u"printer", u"Impressora"},
    Kind{u"scanner", u"Scanner"},
    Kind{u"camera", u"Câmera"},
    Kind{u"applewatch", u"Relógio"},
    Kind{u"gamecontroller", u"Brinquedo"},
    Kind{u"dot.radiowaves.left.and.right", u"Bluetooth"},
};

std::optional<int> percent(std::optional<double> value)
{
    if (!value || std::isnan(*value))
        return std::nullopt;
    return int(std::lround(std::clamp(*value, 0.0, 100.0)));
}

/// UPower says 0 for "unknown"; more than ten days is no estimate.
std::optional<int> minutes(double seconds)
{
    if (!(seconds > 0) || seconds > 10 * 24 * 3600)
        return std::nullopt;
    return std::max(1, int(seconds / 60));
}

/// What the machine's batteries hold and do together: joules of one are as good as another's.
struct Pack {
    int count = 0;
    int percentCount = 0;
    double percentSum = 0;
    bool isEnergyKnown = true; ///< of each, in watt-hours
    double energy = 0;
    double fullEnergy = 0;
    double rate = 0; ///< watts, in or out
    bool isCharging = false;
    double secondsToFull = 0; ///< of the last one; for a pack of one

    void add(const RemoteObjects &objects, const QString &device)
    {
        const auto number = [&](const char *name) {
            const auto value = objects.value<double>(device, QLatin1StringView(name));
            return value && std::isfinite(*value) && *value > 0 ? *value : 0;
        };
        ++count;
        if (const auto own = objects.value<double>(device, QStringLiteral("Percentage"));
            own && std::isfinite(*own)) {
            ++percentCount;
            percentSum += *own;
        }
        isEnergyKnown = isEnergyKnown && number("EnergyFull") > 0;
        energy += number("Energy");
        fullEnergy += number("EnergyFull");
        rate += number("EnergyRate");
        isCharging =
            isCharging || objects.value<uint>(device, QStringLiteral("State")) == State::charging;
        secondsToFull =
            double(objects.value<qlonglong>(device, QStringLiteral("TimeToFull")).value_or(0));
    }

    std::optional<int> level() const
    {
        if (count > 1 && isEnergyKnown)
            return percent(100 * energy / fullEnergy);
        return percentCount > 0 ? percent(percentSum / percentCount) : std::nullopt;
    }

    std::optional<int> minutesRemaining() const
    {
        if (!isCharging)
            return std::nullopt;
        if (count == 1)
            return minutes(secondsToFull);
        if (!isEnergyKnown || rate <= 0)
            return std::nullopt;
        return minutes((fullEnergy - energy) / rate * 3600);
    }
};

QByteArray attribute(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
}

/// Whether the kernel knows of a battery that is the machine's own, not a mouse's.
bool listsBattery(const QString &supplies)
{
    const auto folders = QDir(supplies).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot);
    return std::ranges::any_of(folders, [](const QFileInfo &supply) {
        return attribute(supply.filePath() + QStringLiteral("/type")) == "Battery" &&
               attribute(supply.filePath() + QStringLiteral("/scope")) != "Device";
    });
}

} // namespace

UPowerDevices::UPowerDevices(QDBusConnection systemBus)
    : m_objects(std::move(systemBus), service, RemoteObjects::Activation::allowed)
{
    connect(&m_objects, &RemoteObjects::shouldAsk, this, &UPowerDevices::ask);
    connect(&m_objects, &RemoteObjects::changed, this, &UPowerDevices::update);
}

void UPowerDevices::deviceAdded(const QDBusObjectPath &path)
{
    m_objects.follow(path.path(), deviceInterface);
}

void UPowerDevices::deviceRemoved(const QDBusObjectPath &path)
{
    m_objects.forget(path.path());
}

const UPowerDevices::Reading &UPowerDevices::reading()
{
    if (!std::exchange(m_isStarted, true)) {
        m_objects.listen(managerInterface, QStringLiteral("DeviceAdded"), this,
                         SLOT(deviceAdded(QDBusObjectPath)));
        m_objects.listen(managerInterface, QStringLiteral("DeviceRemoved"), this,
                         SLOT(deviceRemoved(QDBusObjectPath)));
        m_objects.start();
        if (!m_objects.isWaiting())
            m_reading = read();
    }
    return m_reading;
}

void UPowerDevices::ask()
{
    m_isListed = false;
    m_objects.follow(managerPath, managerInterface);
    m_objects.call(managerPath, managerInterface, QStringLiteral("EnumerateDevices"), {},
                   [this](const QVariant &answer) {
                       const auto devices = DBusValue::as<QList<QDBusObjectPath>>(answer);
                       m_isListed = devices.has_value();
                       m_objects.followOnly(devices.value_or(QList<QDBusObjectPath>()),
                                            deviceInterface);
                   });
}

void UPowerDevices::update()
{
    Reading reading = read();
    if (reading == m_reading)
        return;
    m_reading = std::move(reading);
    Q_EMIT changed();
}

UPowerDevices::Reading UPowerDevices::read() const
{
    if (m_objects.isMissing())
        return {.issue = QStringLiteral("O UPower não está disponível.")};
    const auto isOnBattery = m_objects.value<bool>(managerPath, QStringLiteral("OnBattery"));
    if (!m_isListed || !isOnBattery)
        return {.issue = QStringLiteral("O UPower não respondeu.")};
    Reading reading;
    Pack pack;
    for (const QString &device : m_objects.paths(deviceInterface)) {
        const auto type = m_objects.value<uint>(device, QStringLiteral("Type"));
        if (!type || *type == Type::linePower ||
            !m_objects.value<bool>(device, QStringLiteral("IsPresent")).value_or(true))
            continue;
        if (!m_objects.value<bool>(device, QStringLiteral("PowerSupply")).value_or(false))
            reading.accessories.push_back(accessory(device, *type));
        else if (*type == Type::battery)
            pack.add(m_objects, device);
    }
    if (const auto level = pack.level()) {
        reading.battery = {.percent = *level,
                           .isCharging = pack.isCharging,
                           .isOnAC = !*isOnBattery,
                           .minutesRemaining = pack.minutesRemaining()};
    }
    return reading;
}

AccessoryInfo UPowerDevices::accessory(const QString &device, uint type) const
{
    const Kind &kind = kinds[type < kinds.size() ? type : 0];
    const QString model =
        m_objects.value<QString>(device, QStringLiteral("Model")).value_or(QString()).trimmed();
    auto level = percent(m_objects.value<double>(device, QStringLiteral("Percentage")));
    // A device that hasn't reported its charge yet stands at 0 in an unknown state.
    if (level == 0 &&
        m_objects.value<uint>(device, QStringLiteral("State")).value_or(State::unknown) ==
            State::unknown)
        level.reset();
    return {.id = device,
            .name = model.isEmpty() ? QString::fromUtf16(kind.name) : model,
            .symbol = QString::fromUtf16(kind.symbol),
            .batteryPercent = level};
}

UPowerBattery::UPowerBattery(UPowerDevices &devices, QString supplies)
    : m_devices(devices), m_supplies(std::move(supplies))
{
    connect(&devices, &UPowerDevices::changed, this, &PowerInfo::changed);
}

QString UPowerBattery::issue() const
{
    const QString issue = m_devices.issue();
    return !issue.isEmpty() && listsBattery(m_supplies) ? issue : QString();
}

UPowerAccessories::UPowerAccessories(UPowerDevices &devices) : m_devices(devices)
{
    connect(&devices, &UPowerDevices::changed, this, &Accessories::changed);
}

} // namespace velmo
