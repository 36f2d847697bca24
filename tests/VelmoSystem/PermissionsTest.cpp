#include "VelmoSystem/Linux/Desktop/DesktopPermissions.h"
#include "VelmoSystem/Permissions/PermissionsCenter.h"

#include "tests/support/FakeDevices.h"
#include "tests/support/Printers.h"
#include "tests/support/PrivateBus.h"

#include <QScopeGuard>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmo {
namespace {

using enum PermissionKind;

const QDBusConnection noBus("no such connection");

/// The status as the user reads it.
QString read(PermissionSource &source, PermissionKind kind)
{
    QStringList labels;
    source.read(kind, [&](const PermissionStatus &status) { labels.append(status.label()); });
    while (labels.isEmpty())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return labels.join(u'|');
}

} // namespace

TEST(PermissionsCenter, TellsOnlyNews)
{
    FakePermissions source;
    source.statuses[camera] = {PermissionStatus::Partial{"Só fotos"}};
    PermissionsCenter center(source);
    QStringList news;
    QObject::connect(&center, &PermissionsCenter::changed,
                     [&] { news.append(center.status(camera).label()); });
    center.refreshAll();
    center.refreshAll();
    source.statuses[camera] = {PermissionStatus::Denied()};
    center.request(camera);
    EXPECT_EQ(news, QStringList({"Só fotos", "Negada"}));
}

TEST(DesktopPermissions, GrantsWhatTheSessionHas)
{
    const TemporaryFolder folder;
    folder.write("org.a11y.Bus.service", "[D-BUS Service]\nName=org.a11y.Bus\nExec=/bin/false\n");
    const PrivateBus bus(folder.path());
    FakeBluetooth adapter;
    DesktopPermissions permissions(bus.connect(), adapter);
    EXPECT_EQ(read(permissions, accessibility), "Permitida") << "it can be started";
    EXPECT_EQ(read(permissions, notifications), "Não permitida");
    auto server = bus.connect();
    EXPECT_TRUE(server.registerService("org.freedesktop.Notifications"));
    EXPECT_EQ(read(permissions, notifications), "Permitida");
    DesktopPermissions alone(noBus, adapter);
    EXPECT_EQ(read(alone, notifications), "Disponível apenas em uma sessão com D-Bus.");
    EXPECT_EQ(read(alone, accessibility), "Não permitida");

    qputenv("XDG_RUNTIME_DIR", folder.path().toUtf8());
    folder.write("pipewire-0", "no socket");
    EXPECT_EQ(read(permissions, microphone), "Não permitida");
    folder.write("pulse/pid", "1");
    ::mknod(QFile::encodeName(folder.path("pulse/native")).constData(), S_IFSOCK | 0600, 0);
    EXPECT_EQ(read(permissions, microphone), "Permitida");
}

TEST(DesktopPermissions, LeavesBluetoothAloneUntilItIsAskedFor)
{
    FakeBluetooth adapter;
    DesktopPermissions permissions(noBus, adapter);
    EXPECT_EQ(read(permissions, bluetooth), "Não solicitada");
    EXPECT_EQ(adapter.starts, 0);
    QStringList answers;
    const auto answer = [&](const PermissionStatus &status) { answers.append(status.label()); };
    permissions.request(bluetooth, answer);
    EXPECT_TRUE(answers.isEmpty());
    adapter.set(false); // switched off is an answer
    adapter.set(std::nullopt, "O Bluetooth não responde.");
    permissions.request(bluetooth, answer); // nothing may change any more
    EXPECT_EQ(answers, QStringList({"Permitida", "O Bluetooth não responde."}));
    EXPECT_EQ(adapter.starts, 2);
}

TEST(DesktopPermissions, StartsTheDesktopsOwnSettings)
{
    const TemporaryFolder folder;
    const QByteArray pipeName = QFile::encodeName(folder.path("pipe"));
    ::mkfifo(pipeName.constData(), 0600);
    const int pipe = ::open(pipeName.constData(), O_RDWR | O_CLOEXEC);
    for (const QString name : {"gnome-control-center", "kcmshell5", "blueman-manager"}) {
        folder.write(name, "#!/bin/sh\necho ${0##*/} $* > " + pipeName);
        QFile::setPermissions(folder.path(name), QFile::ReadUser | QFile::ExeUser);
    }
    const auto restore = qScopeGuard([path = qgetenv("PATH")] { qputenv("PATH", path); });
    qputenv("PATH", folder.path().toUtf8());
    FakeBluetooth adapter;
    DesktopPermissions permissions(noBus, adapter);

    const std::vector<std::tuple<QByteArray, PermissionKind, QByteArray>> cases = {
        {"ubuntu:GNOME", camera, "gnome-control-center camera"},
        {"KDE", accessibility, "kcmshell5 kcm_access"},
        {"XFCE", bluetooth, "blueman-manager"},
    };
    for (const auto &[desktop, kind, started] : cases) {
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        permissions.openSettings(kind);
        char text[100];
        EXPECT_EQ(QByteArray(text, ::read(pipe, text, sizeof text)).trimmed(), started);
    }
    ::close(pipe);
    EXPECT_EQ(PermissionsCenter(permissions).openSettings(camera),
              "Este ambiente não tem uma página para Câmera em Configurações do sistema.");
}

} // namespace velmo
