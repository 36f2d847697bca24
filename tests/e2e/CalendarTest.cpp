#include "tests/e2e/RoomTest.h"

#include <QDBusConnectionInterface>
#include <QDir>
#include <QJsonDocument>

#include <X11/keysym.h>

namespace velmo {

/// Orvane beside the desktop's real calendars.
class CalendarTest : public RoomTest {
protected:
    void SetUp() override
    {
        RoomTest::SetUp();
        QDir(home.path()).mkpath("config/evolution"); // the user has calendars
        environment.insert("GSETTINGS_BACKEND", "memory");
        serve(registry, "source-registry", "Sources");
        serve(factory, "calendar-factory", "Calendar", {"--keep-running"});
    }
    void TearDown() override
    {
        RoomTest::TearDown();
        for (QProcess *server : {&factory, &registry}) {
            server->terminate();
            server->waitForFinished();
        }
    }
    QStringList titles() const
    {
        QStringList all;
        const auto list =
            QJsonDocument::fromJson(run({"agenda", "--json"}).output.toUtf8()).array();
        for (const QJsonValue event : list)
            all << event["title"].toString();
        return all;
    }

private:
    void serve(QProcess &server, const QString &program, const QString &kind,
               const QStringList &arguments = {})
    {
        server.setProcessEnvironment(environment);
        server.setStandardErrorFile(QProcess::nullDevice());
        server.start("/usr/libexec/evolution-" + program, arguments);
        const QDBusConnection peer = bus.connect();
        EXPECT_TRUE(eventually([&] {
            const QStringList names = peer.interface()->registeredServiceNames();
            return names.filter("evolution.dataserver." + kind).size() == 1;
        }));
    }

    QProcess registry;
    QProcess factory;
};

TEST_F(CalendarTest, MakesAnEventOfALineAndTakesARemovalBack)
{
    enter("Agenda");
    click("Novo compromisso");
    type("jantar amanha 20h 2h");
    screen.typeKey(XK_Return);
    EXPECT_TRUE(eventually([&] { return titles() == QStringList{"jantar"}; }));
    click("jantar", "push button");
    click("Remover");
    EXPECT_TRUE(eventually([&] { return titles().isEmpty(); }));
    screen.typeKey(XK_z, {XK_Control_L});
    EXPECT_TRUE(eventually([&] { return titles() == QStringList{"jantar"}; }));
    click("Remover");
    screen.typeKey(XK_Escape);
    EXPECT_TRUE(shows("collapsed"));
    pause(1s); // the server has it
    EXPECT_TRUE(titles().isEmpty());
}

} // namespace velmo
