#include "VelmoSystem/Linux/Desktop/XdgAutostart.h"

#include "VelmoCore/Storage/AtomicFile.h"
#include "VelmoSystem/Device/LaunchAtLoginService.h"

#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <QCoreApplication>
#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>

namespace velmo {

using Status = LoginItem::Status;

TEST(XdgAutostart, WritesAnEntryThatStartsThisBinary)
{
    const TemporaryFolder folder;
    const QString file = folder.path("autostart/app.orvane.Orvane.desktop");
    XdgAutostart item(folder.path());
    EXPECT_EQ(item.status(), Status::disabled);
    item.setEnabled(true);
    EXPECT_EQ(item.status(), Status::enabled);
    const QByteArray own = QCoreApplication::applicationFilePath().toUtf8();
    EXPECT_TRUE(AtomicFile::read(file).contains("\nExec=\"" + own + "\"\n"));
    EXPECT_TRUE(QStandardPaths::findExecutable("desktop-file-validate").isEmpty() ||
                QProcess::execute("desktop-file-validate", {file}) == 0);
    item.setEnabled(false);
    EXPECT_TRUE(QDir(folder.path("autostart")).isEmpty());
    QDir().rmdir(folder.path("autostart"));
    folder.write("autostart", "a file where a folder belongs");
    EXPECT_NO_THROW(item.setEnabled(false));
    LaunchAtLoginService service(item);
    service.setEnabled(true);
    EXPECT_TRUE(service.message().contains("autostart")) << qPrintable(service.message());
    EXPECT_EQ(service.status(), Status::disabled);
}

TEST(XdgAutostart, TellsWhetherTheUserSwitchedItOffInTheDesktop)
{
    const TemporaryFolder folder;
    XdgAutostart item(folder.path());
    LaunchAtLoginService service(item);
    const std::vector<std::pair<QByteArray, Status>> cases = {
        {"[Desktop Entry]\r\nHidden = true\r\n", Status::requiresApproval},
        {"[Desktop Entry]\nX-GNOME-Autostart-enabled=false", Status::requiresApproval},
        {"[Desktop Entry]\nHidden=false\n#Hidden=true\n[Desktop Action a]\nHidden=true\n",
         Status::enabled},
    };
    for (const auto &[entry, status] : cases) {
        folder.write("autostart/app.orvane.Orvane.desktop", entry);
        service.refresh();
        EXPECT_EQ(service.status(), status) << entry.toStdString();
        EXPECT_EQ(service.message().isEmpty(), status == Status::enabled);
        service.setEnabled(true);
        EXPECT_EQ(service.status(), Status::enabled);
    }
}

} // namespace velmo
