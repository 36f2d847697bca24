#include "VelmoSystem/Linux/Desktop/DesktopApplications.h"

#include "VelmoCore/Foundation/LocalizedError.h"

#include "tests/support/PrivateBus.h"

#include <QDeadlineTimer>
#include <QDir>

#include <gtest/gtest.h>

#include <unistd.h>

namespace velmo {
namespace {

bool wait(const std::function<bool()> &isDone)
{
    const QDeadlineTimer deadline(20'000);
    while (!isDone() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    return isDone();
}

/// GIO asks for its folders and the bus once a run, so all tests share them.
class DesktopApplicationsTest : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        folder = new TemporaryFolder;
        for (const char *name :
             {"home/applications", "first/applications", "second/applications", "services"})
            QDir().mkpath(folder->path(name));
        bus = new PrivateBus(folder->path("services"));
        qputenv("XDG_DATA_HOME", folder->path("home").toUtf8());
        qputenv("XDG_DATA_DIRS",
                folder->path("first").toUtf8() + ':' + folder->path("second").toUtf8());
        qputenv("DBUS_SESSION_BUS_ADDRESS", bus->address().toUtf8());
        qputenv("LANGUAGE", "pt_BR");
        bus->stop();
    }
    static void TearDownTestSuite()
    {
        delete bus;
        delete folder;
    }

    /// Gives the path of the entry.
    static QString write(const QString &file, const QByteArray &keys)
    {
        const QString name = file.section('/', 0, 0) + "/applications/" + file.section('/', 1);
        folder->write(name, "[Desktop Entry]\nType=Application\n" + keys + '\n');
        return folder->path(name);
    }
    QStringList shown() const
    {
        QStringList ids;
        for (const auto &application : applications.installed())
            ids += application.id.chopped(8); // without ".desktop"
        return ids;
    }
    /// GIO hears of a new entry a moment after it was written, and of the bus when it answers.
    void launch(const QString &id)
    {
        bus->resume();
        EXPECT_TRUE(wait([&] { return applications.find(id).has_value(); }));
        QString issue;
        while ((issue = failure(id)).endsWith("a sessão não responde."))
            QCoreApplication::processEvents();
        EXPECT_EQ(issue, "");
    }
    QString failure(const QString &id)
    {
        try {
            applications.launch(id);
        } catch (const LocalizedError &error) {
            return error.description();
        }
        return {};
    }

    static inline TemporaryFolder *folder = nullptr;
    static inline PrivateBus *bus = nullptr;
    DesktopApplications applications;
};

TEST_F(DesktopApplicationsTest, WaitsForNoBus)
{
    write("first/early.desktop", "Name=Cedo\nNoDisplay=true\nExec=true");
    EXPECT_TRUE(wait([&] { return applications.find("early.desktop").has_value(); }));
    EXPECT_EQ(failure("early.desktop"), "“Cedo” não pôde ser aberto: a sessão não responde.");
    launch("early.desktop");
}

TEST_F(DesktopApplicationsTest, ListsWhatMenusShowAndFollowsChanges)
{
    write("first/tool.desktop",
          "Name=Tool\nName[pt_BR]=Abridor\nGenericName=Thing\n"
          "Keywords=one;two;\nIcon=tool.png\nExec=/bin/sh %U\nStartupWMClass=Werkzeug");
    write("second/tool.desktop", "Name=Ensombrado\nExec=/bin/sh");
    const QString nested = write("second/kde/tool.desktop", "Name=Zíper\nExec=sh");
    const QString unseen = write("second/unseen.desktop", "Name=U\nExec=sh\nNoDisplay=true");
    const QString hidden = write("second/hidden.desktop", "Name=H\nExec=sh\nHidden=true");
    write("second/elsewhere.desktop", "Name=E\nExec=sh\nOnlyShowIn=Nowhere;");
    write("second/gone.desktop", "Name=G\nExec=/no/such/program");
    write("second/broken.desktop", "Name");
    EXPECT_TRUE(wait([&] { return shown() == QStringList{"tool", "kde-tool"}; }));
    EXPECT_EQ(applications.find("tool.desktop"),
              (Applications::Application{"tool.desktop", "Abridor", "tool.png", "Thing one two sh",
                                         "tool", "Werkzeug"}));
    EXPECT_TRUE(applications.find("unseen.desktop"));
    for (const char *id : {"hidden.desktop", "gone.desktop", "broken.desktop", "none.desktop", ""})
        EXPECT_FALSE(applications.find(id)) << id;

    QFile::link(nested, folder->path("link.desktop"));
    QFile::copy(nested, folder->path("copy.desktop"));
    const std::vector<std::pair<QString, QString>> ids = {
        {nested, "kde-tool.desktop"},
        {folder->path("link.desktop"), "kde-tool.desktop"},
        {unseen, "unseen.desktop"},
        {folder->path("copy.desktop"), {}},
        {folder->path("second/applications/tool.desktop"), {}}, // the first folder's one counts
        {hidden, {}},
    };
    for (const auto &[file, id] : ids)
        EXPECT_EQ(applications.idOf(QUrl::fromLocalFile(file)).value_or(QString()), id);
    EXPECT_FALSE(applications.idOf(QUrl("https://example.com/tool.desktop")));

    bool isTold = false;
    QObject::connect(&applications, &Applications::changed, [&] { isTold = true; });
    write("home/new.desktop", "Name=Novo\nExec=sh");
    EXPECT_TRUE(wait([&] { return isTold && shown().contains("new"); }));
    isTold = false;
    QFile::remove(folder->path("home/applications/new.desktop"));
    EXPECT_TRUE(wait([&] { return isTold && !shown().contains("new"); }));
}

TEST_F(DesktopApplicationsTest, StartsAProgramOfItsOwnSession)
{
    const int kept = ::dup(STDERR_FILENO);
    folder->write("program", R"(#!/bin/sh
        exec >"$0.out"
        printf '<%s>' "$@"; echo
        pwd
        ps -o sid= -o ppid= -p $$
        [ -e /proc/$$/fd/)" + QByteArray::number(kept) +
                                 R"( ] && echo kept
        mv "$0.out" "$0.done")");
    QFile::setPermissions(folder->path("program"), QFile::ReadOwner | QFile::ExeOwner);
    const QByteArray program = folder->path("program").toUtf8();
    write("first/program.desktop", "Name=Programa\nNoDisplay=true\nExec=" + program +
                                       " --open \"two words\" 100%% %c %F %i\nIcon=picture");
    launch("program.desktop");
    ASSERT_TRUE(wait([] { return QFile::exists(folder->path("program.done")); }));
    const auto lines = folder->read("program.done").split('\n');
    EXPECT_EQ(lines[0], "<--open><two words><100%><Programa><--icon><picture>");
    EXPECT_EQ(lines[1], QDir::homePath().toUtf8());
    const auto process = lines[2].simplified().split(' ');
    EXPECT_NE(process[0].toInt(), ::getsid(0));
    EXPECT_NE(process[1].toInt(), ::getpid());
    EXPECT_EQ(lines[3], "");
    ::close(kept);

    EXPECT_EQ(failure("none.desktop"), "O aplicativo não está mais instalado.");
    write("first/lost.desktop", "Name=Perdido\nNoDisplay=true\nExec=sh\nPath=/no/such/folder");
    EXPECT_TRUE(wait([&] { return applications.find("lost.desktop").has_value(); }));
    EXPECT_TRUE(failure("lost.desktop").startsWith("“Perdido” não pôde ser aberto: "))
        << qPrintable(failure("lost.desktop"));
}

TEST_F(DesktopApplicationsTest, ActivatesByTheBusWhatSaysSo)
{
    folder->write("services/org.example.Activated.service",
                  "[D-BUS Service]\nName=org.example.Activated\nExec=/bin/touch " +
                      folder->path("activated").toUtf8());
    write("first/org.example.Activated.desktop",
          "Name=Ativado\nNoDisplay=true\nExec=/bin/false\nDBusActivatable=true");
    launch("org.example.Activated.desktop");
    EXPECT_TRUE(wait([] { return QFile::exists(folder->path("activated")); }));
}

} // namespace
} // namespace velmo
