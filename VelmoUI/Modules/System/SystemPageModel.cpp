#include "VelmoUI/Modules/System/SystemPageModel.h"

#include "VelmoSystem/Ports/Accessories.h"
#include "VelmoSystem/Ports/MachineLoad.h"
#include "VelmoSystem/Storage/StorageInspector.h"
#include "VelmoUI/App/AppServices.h"

#include <QLocale>

#include <algorithm>
#include <cmath>
#include <utility>

namespace velmo {

namespace {

constexpr Seconds updateInterval = 2s;
constexpr int lowBattery = 15;

/// A size, which a line doesn't part from its unit.
QString sizeText(qint64 bytes)
{
    return StorageInspector::format(bytes).replace(u' ', QChar::Nbsp);
}

QString percentText(int percent)
{
    return QStringLiteral("%1%").arg(QLocale().toString(percent));
}

/// "1 h 20 min", where a line parts hours from minutes at most.
QString durationText(int minutes)
{
    const QLocale locale;
    const QString rest = QStringLiteral("%1\u00a0min").arg(locale.toString(minutes % 60));
    if (minutes < 60)
        return rest;
    const QString hours = QStringLiteral("%1\u00a0h").arg(locale.toString(minutes / 60));
    return minutes % 60 == 0 ? hours : QStringLiteral("%1 %2").arg(hours, rest);
}

/// Where a reading is missing, and why.
SystemTileRow unknown(SystemTileRow tile, const QString &reason)
{
    tile.value = QStringLiteral("Indisponível");
    tile.detail = reason;
    return tile;
}

SystemTileRow battery(const BatteryInfo &info)
{
    SystemTileRow tile{.id = QStringLiteral("battery"),
                       .symbol = QStringLiteral("battery.100"),
                       .title = QStringLiteral("Bateria"),
                       .value = percentText(info.percent),
                       .detail = batteryText(info),
                       .progress = info.percent / 100.0};
    if (info.isCharging) {
        tile.symbol = QStringLiteral("battery.100.bolt");
    } else if (info.percent <= lowBattery) {
        tile.isWarning = true;
        tile.title = QStringLiteral("Bateria fraca");
    } else if (info.isOnAC) {
        tile.symbol = QStringLiteral("powerplug");
    }
    return tile;
}

SystemTileRow storage(const std::optional<MachineLoad::Storage> &reading)
{
    SystemTileRow tile{.id = QStringLiteral("storage"),
                       .symbol = QStringLiteral("internaldrive"),
                       .title = QStringLiteral("Armazenamento")};
    if (!reading || reading->total <= 0)
        return unknown(tile, QStringLiteral("O disco não pôde ser lido."));
    const double free = double(reading->available) / double(reading->total);
    tile.value = sizeText(reading->available);
    tile.detail = QStringLiteral("livres de %1").arg(sizeText(reading->total));
    tile.progress = 1 - free;
    if (free < 0.1) {
        tile.isWarning = true;
        tile.title = QStringLiteral("Pouco espaço");
    }
    return tile;
}

SystemTileRow memory(const std::optional<MachineLoad::Memory> &reading)
{
    SystemTileRow tile{.id = QStringLiteral("memory"),
                       .symbol = QStringLiteral("memorychip"),
                       .title = QStringLiteral("Memória")};
    if (!reading || reading->total <= 0)
        return unknown(tile, QStringLiteral("A memória não pôde ser lida."));
    tile.value = sizeText(reading->used);
    tile.detail = QStringLiteral("em uso de %1").arg(sizeText(reading->total));
    tile.progress = double(reading->used) / double(reading->total);
    if (tile.progress > 0.9) {
        tile.isWarning = true;
        tile.title = QStringLiteral("Memória cheia");
    }
    return tile;
}

SystemTileRow processor(std::optional<double> load)
{
    SystemTileRow tile{.id = QStringLiteral("processor"),
                       .symbol = QStringLiteral("cpu"),
                       .title = QStringLiteral("Processador")};
    if (!load)
        return unknown(tile, QStringLiteral("A carga não pôde ser lida."));
    tile.progress = std::min(*load, 1.0); // what waits for a busy processor makes it no busier
    tile.value = percentText(int(std::lround(tile.progress * 100)));
    tile.detail = QStringLiteral("no último minuto");
    return tile;
}

AccessoryRow accessoryRow(const AccessoryInfo &info)
{
    const QString percent = info.batteryPercent ? percentText(*info.batteryPercent) : QString();
    const QString spoken =
        percent.isEmpty() ? info.name : QStringLiteral("%1, %2").arg(info.name, percent);
    return {info.id, info.symbol, info.name, percent, spoken};
}

QString spokenText(const SystemTileRow &tile)
{
    QString text = tile.title;
    if (!tile.value.isEmpty())
        text += QStringLiteral(": ") + tile.value;
    if (!tile.detail.isEmpty())
        text += QStringLiteral(", ") + tile.detail;
    return text;
}

} // namespace

QString batteryText(const BatteryInfo &battery)
{
    if (battery.isCharging) {
        return battery.minutesRemaining
                   ? QStringLiteral("Carrega em %1").arg(durationText(*battery.minutesRemaining))
                   : QStringLiteral("Carregando");
    }
    if (battery.isOnAC)
        return QStringLiteral("Na tomada");
    return QStringLiteral("Fora da tomada");
}

SystemPageModel::SystemPageModel(AppServices &services) : m_services(services)
{
    const auto updateIfWatched = [this] {
        if (m_isWatched)
            update();
    };
    connect(&services.platform.power, &PowerInfo::changed, this, updateIfWatched);
    connect(&services.platform.accessories, &Accessories::changed, this, updateIfWatched);
    connect(&services.connectivity, &ConnectivityService::changed, this, updateIfWatched);
}

void SystemPageModel::setWatched(bool watched)
{
    if (watched == m_isWatched)
        return;
    m_isWatched = watched;
    m_nextUpdate.cancel();
    if (watched)
        updateRegularly();
}

void SystemPageModel::checkBluetooth()
{
    m_services.connectivity.checkBluetooth();
    m_services.permissions.refresh(PermissionKind::bluetooth);
}

void SystemPageModel::updateRegularly()
{
    update();
    m_nextUpdate =
        m_services.platform.scheduler.after(updateInterval, [this] { updateRegularly(); });
}

void SystemPageModel::update()
{
    updateAccessories();
    const Platform &platform = m_services.platform;
    std::vector<SystemTileRow> tiles;
    if (const auto info = platform.power.battery()) {
        tiles.push_back(battery(*info));
    } else if (const QString issue = platform.power.issue(); !issue.isEmpty()) {
        tiles.push_back(unknown({.id = QStringLiteral("battery"),
                                 .symbol = QStringLiteral("battery.unknown"),
                                 .title = QStringLiteral("Bateria")},
                                issue));
    }
    const bool hasBattery = !tiles.empty();
    tiles.push_back(network());
    tiles.push_back(bluetooth());
    if (accessoryCount() > 0)
        tiles.push_back({.id = QStringLiteral("accessories"),
                         .symbol = QStringLiteral("headphones"),
                         .title = QStringLiteral("Acessórios")});
    tiles.push_back(storage(platform.load.storage()));
    tiles.push_back(memory(platform.load.memory()));
    tiles.push_back(processor(platform.load.processor()));
    for (SystemTileRow &tile : tiles) {
        if (tile.isWarning)
            tile.symbol = QStringLiteral("exclamationmark.triangle.fill");
        tile.spoken = spokenText(tile);
    }
    m_tiles.setRecords(tiles);
    if (std::exchange(m_hasBattery, hasBattery) != hasBattery)
        Q_EMIT hasBatteryChanged();
}

void SystemPageModel::updateAccessories()
{
    const int before = accessoryCount();
    std::vector<AccessoryRow> rows;
    std::ranges::transform(m_services.platform.accessories.connected(), std::back_inserter(rows),
                           accessoryRow);
    m_accessories.setRecords(rows);
    if (accessoryCount() != before)
        Q_EMIT accessoryCountChanged();
}

SystemTileRow SystemPageModel::network() const
{
    using enum ConnectivityService::Link;
    const ConnectivityService &connectivity = m_services.connectivity;
    SystemTileRow tile{.id = QStringLiteral("network"),
                       .symbol = QStringLiteral("network"),
                       .title = QStringLiteral("Rede")};
    const auto link = connectivity.link();
    if (!link) {
        if (!connectivity.networkIssue().isEmpty())
            return unknown(tile, connectivity.networkIssue());
        tile.value = QStringLiteral("Verificando");
        return tile;
    }
    QString kind;
    switch (*link) {
    case offline:
        tile.symbol = QStringLiteral("wifi.slash");
        tile.value = QStringLiteral("Sem conexão");
        break;
    case wifi:
        tile.symbol = QStringLiteral("wifi");
        kind = QStringLiteral("Wi-Fi");
        break;
    case ethernet:
        tile.symbol = QStringLiteral("cable.connector");
        kind = QStringLiteral("Ethernet");
        break;
    case other:
        kind = QStringLiteral("Outra rede");
        break;
    }
    const QString name = connectivity.networkName();
    if (*link != offline) {
        tile.value = name.isEmpty() ? kind : name;
        tile.detail = name.isEmpty() ? QStringLiteral("Conectada") : kind;
    }
    if (*link != wifi && connectivity.isWiFiPoweredOn() == false) {
        const auto radio = QStringLiteral("Wi-Fi desligado");
        tile.detail =
            tile.detail.isEmpty() ? radio : QStringLiteral("%1 · %2").arg(tile.detail, radio);
    }
    return tile;
}

SystemTileRow SystemPageModel::bluetooth() const
{
    SystemTileRow tile{.id = QStringLiteral("bluetooth"),
                       .symbol = QStringLiteral("dot.radiowaves.left.and.right"),
                       .title = QStringLiteral("Bluetooth")};
    const auto &state = m_services.connectivity.bluetoothState();
    if (!state) {
        tile.value = QStringLiteral("Não verificado");
        tile.action = QStringLiteral("Verificar");
        return tile;
    }
    if (!m_services.platform.bluetooth.issue().isEmpty())
        return unknown(tile, *state);
    tile.value = *state;
    return tile;
}

} // namespace velmo
