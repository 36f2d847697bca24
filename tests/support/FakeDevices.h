#pragma once

#include "VelmoCore/Foundation/LocalizedError.h"
#include "VelmoSystem/Ports/Accessories.h"
#include "VelmoSystem/Ports/Applications.h"
#include "VelmoSystem/Ports/BluetoothAdapter.h"
#include "VelmoSystem/Ports/DesktopAppearance.h"
#include "VelmoSystem/Ports/FrontApplication.h"
#include "VelmoSystem/Ports/LoginItem.h"
#include "VelmoSystem/Ports/MachineLoad.h"
#include "VelmoSystem/Ports/NetworkMonitor.h"
#include "VelmoSystem/Ports/NotificationServer.h"
#include "VelmoSystem/Ports/Pasteboard.h"
#include "VelmoSystem/Ports/PermissionSource.h"
#include "VelmoSystem/Ports/PowerInfo.h"
#include "VelmoSystem/Ports/ShareService.h"
#include "VelmoSystem/Ports/SoundPlayer.h"
#include "VelmoSystem/Ports/StatusArea.h"
#include "VelmoSystem/Ports/Thumbnailer.h"

#include <QFileInfo>

#include <algorithm>
#include <map>
#include <vector>

namespace velmo {

struct FakeAppearance : DesktopAppearance {
    bool shouldReduceMotion() const override { return isReduced; }
    bool prefersDarkScheme() const override { return isDark; }

    bool isReduced = false;
    bool isDark = false;
};

struct FakePower : PowerInfo {
    std::optional<BatteryInfo> battery() const override { return info; }
    QString issue() const override { return missing; }
    void set(std::optional<BatteryInfo> battery)
    {
        info = std::move(battery);
        Q_EMIT changed();
    }

    std::optional<BatteryInfo> info;
    QString missing;
};

struct FakeAccessories : Accessories {
    std::vector<AccessoryInfo> connected() const override { return devices; }

    std::vector<AccessoryInfo> devices;
};

struct FakeNetwork : NetworkMonitor {
    void start() override { ++starts; }
    std::optional<Path> path() const override { return current; }
    std::optional<bool> isWiFiPoweredOn() const override { return wifi; }
    QString issue() const override { return missing; }
    void set(std::optional<Path> path)
    {
        current = std::move(path);
        Q_EMIT changed();
    }

    int starts = 0;
    std::optional<Path> current;
    std::optional<bool> wifi;
    QString missing;
};

struct FakeBluetooth : BluetoothAdapter {
    void start() override { ++starts; }
    std::optional<bool> isPoweredOn() const override { return power; }
    QString issue() const override { return missing; }
    void set(std::optional<bool> isOn, const QString &issue = {})
    {
        power = isOn;
        missing = issue;
        Q_EMIT changed();
    }

    int starts = 0;
    std::optional<bool> power;
    QString missing;
};

struct FakeLoad : MachineLoad {
    std::optional<Memory> memory() const override
    {
        ++reads;
        return memoryNow;
    }
    std::optional<double> processor() const override { return processorNow; }
    std::optional<Storage> storage() const override { return storageNow; }

    mutable int reads = 0;
    std::optional<Memory> memoryNow;
    std::optional<double> processorNow;
    std::optional<Storage> storageNow;
};

struct FakeApplications : Applications {
    std::vector<Application> installed() const override { return entries; }
    std::optional<Application> find(const QString &id) const override
    {
        const auto found = std::ranges::find(entries, id, &Application::id);
        return found == entries.end() ? std::nullopt : std::optional(*found);
    }
    std::optional<QString> idOf(const QUrl &file) const override
    {
        const QString name = QFileInfo(file.toLocalFile()).fileName();
        return find(name) ? std::optional(name) : std::nullopt;
    }
    std::optional<QString> handlerOf(const QString &mediaType) const override
    {
        const auto handler = handlers.find(mediaType);
        return handler == handlers.end() ? std::nullopt : std::optional(handler->second);
    }
    void launch(const QString &id) override
    {
        if (!find(id))
            throw LocalizedError(u"O aplicativo não está mais instalado."_qs);
        launched.push_back(id);
    }

    std::vector<Application> entries;
    std::map<QString, QString> handlers; ///< by media type
    std::vector<QString> launched;
};

struct FakePermissions : PermissionSource {
    void read(PermissionKind kind, Answer answer) override { answer(statuses[kind]); }
    void request(PermissionKind kind, Answer answer) override
    {
        requested.push_back(kind);
        answer(statuses[kind]);
    }
    void openSettings(PermissionKind kind) override
    {
        if (!hasPages)
            throw LocalizedError(u"Este ambiente não tem essa página."_qs);
        shown.push_back(kind);
    }
    bool hasBundle() const override { return isPackaged; }

    std::map<PermissionKind, PermissionStatus> statuses;
    std::vector<PermissionKind> requested;
    std::vector<PermissionKind> shown;
    bool hasPages = true;
    bool isPackaged = true;
};

struct FakeNotifications : NotificationServer {
    void show(const QString &identifier, const Notification &notification) override
    {
        shown[identifier] = notification;
    }
    void withdraw(const QString &identifier) override { shown.erase(identifier); }

    std::map<QString, Notification> shown;
};

struct FakeSounds : SoundPlayer {
    void play(SystemSound sound) override { played.push_back(sound); }

    std::vector<SystemSound> played;
};

struct FakeLoginItem : LoginItem {
    Status status() const override { return current; }
    void setEnabled(bool isEnabled) override
    {
        if (!failure.isEmpty())
            throw LocalizedError(failure);
        current = isEnabled ? Status::enabled : Status::disabled;
    }

    Status current = Status::disabled;
    QString failure; ///< what `setEnabled` throws, nothing if empty
};

/// Answers at once, and remembers what was asked for.
struct FakePasteboard : Pasteboard {
    std::uint64_t changeCount() const override { return count; }
    void readTypes(Answer<std::vector<QString>> answer) override
    {
        std::vector<QString> types;
        for (const auto &[type, bytes] : offered)
            types.push_back(type);
        answer(types);
    }
    void read(const QString &type, qsizetype limit, Answer<Data> answer) override
    {
        asked.append(type);
        const auto found = offered.find(type);
        if (found == offered.end() || isSilent)
            answer(std::nullopt);
        else
            answer(Data{found->second.first(std::min(limit, found->second.size())),
                        found->second.size() <= limit});
    }
    void write(const Contents &contents) override
    {
        ++count;
        written = contents;
        text = contents.text.value_or(QString());
        offered.clear();
        if (contents.text)
            offered[textType.toString()] = contents.text->toUtf8();
    }

    /// Another application copies something.
    void offer(std::map<QString, QByteArray> contents)
    {
        ++count;
        offered = std::move(contents);
        Q_EMIT changed();
    }

    std::uint64_t count = 0;
    std::map<QString, QByteArray> offered;
    QStringList asked;
    bool isSilent = false; ///< the owner gives its types and nothing else
    Contents written;
    QString text;
};

struct FakeFrontApplication : FrontApplication {
    std::optional<Info> current() const override { return info; }

    std::optional<Info> info;
};

struct FakeShare : ShareService {
    bool isAvailable() const override { return isThere; }
    void share(const std::vector<QUrl> &files) override { shared = files; }

    bool isThere = true;
    std::vector<QUrl> shared;
};

struct FakeThumbnailer : Thumbnailer {
    QImage picture(const QString &path, int side, std::stop_token) override
    {
        if (!path.endsWith(u".png"))
            return {};
        QImage picture(side, side, QImage::Format_RGB32);
        picture.fill(Qt::red);
        return picture;
    }
};

struct FakeStatusArea : StatusArea {
    bool isAvailable() const override { return false; }
};

} // namespace velmo
