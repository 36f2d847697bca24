#include "VelmoUI/Modules/System/SystemPageModel.h"

#include "VelmoCore/Foundation/Words.h"
#include "VelmoSystem/Ports/Accessories.h"
#include "VelmoSystem/Ports/MachineLoad.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace velmo {

namespace {

constexpr Seconds updateInterval = 2s;
constexpr int lowBattery = 15;

QString sizeText(qint64 bytes)
{
    return Words::unbroken(Words::size(bytes));
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
                       .value = Words::percent(info.percent),
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
    tile.progress = std::min(*load, 1.0); // the load counts waiting tasks too
    tile.value = Words::percent(int(std::lround(tile.progress * 100)));
    tile.detail = QStringLiteral("no último minuto");
    return tile;
}

AccessoryRow accessoryRow(const AccessoryInfo &info)
{
    const QString percent = info.batteryPercent ? Words::percent(*info.batteryPercent) : QString();
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
                   ? QStringLiteral("Carrega em %1")
                         .arg(Words::unbroken(Words::duration(*battery.minutesRemaining)))
                   : QStringLiteral("Carregando");
    }
    if (battery.isOnAC)
        return QStringLiteral("Na tomada");
    return QStringLiteral("Fora da tomada");
}

SystemPageModel::SystemPageModel(const SystemSources &sources) : m_sources(sources)
{
    const auto updateIfWatched = [this] {
        if (isWatched())
            update();
    };
    connect(&sources.power, &PowerInfo::changed, this, updateIfWatched);
    connect(&sources.accessories, &Accessories::changed, this, updateIfWatched);
    connect(&sources.connectivity, &ConnectivityService::changed, this, updateIfWatched);
}

void SystemPageModel::watch(bool isWatched)
{
    m_nextUpdate.cancel();
    if (isWatched)
        updateRegularly();
}

void SystemPageModel::checkBluetooth()
{
    m_sources.connectivity.checkBluetooth();
    m_sources.permissions.refresh(PermissionKind::bluetooth);
}

void SystemPageModel::updateRegularly()
{
    update();
    m_nextUpdate = m_sources.scheduler.after(updateInterval, [this] { updateRegularly(); });
}

void SystemPageModel::update()
{
    updateAccessories();
    std::vector<SystemTileRow> tiles;
    if (const auto info = m_sources.power.battery()) {
        tiles.push_back(battery(*info));
    } else if (const QString issue = m_sources.power.issue(); !issue.isEmpty()) {
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
    tiles.push_back(storage(m_sources.load.storage()));
    tiles.push_back(memory(m_sources.load.memory()));
    tiles.push_back(processor(m_sources.load.processor()));
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
    std::ranges::transform(m_sources.accessories.connected(), std::back_inserter(rows),
                           accessoryRow);
    m_accessories.setRecords(rows);
    if (accessoryCount() != before)
        Q_EMIT accessoryCountChanged();
}

SystemTileRow SystemPageModel::network() const
{
    using enum ConnectivityService::Link;
    const ConnectivityService &connectivity = m_sources.connectivity;
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
    const auto &state = m_sources.connectivity.bluetoothState();
    if (!state) {
        tile.value = QStringLiteral("Não verificado");
        tile.action = QStringLiteral("Verificar");
        return tile;
    }
    if (!m_sources.connectivity.bluetoothIssue().isEmpty())
        return unknown(tile, *state);
    tile.value = *state;
    return tile;
}

} // namespace velmo
