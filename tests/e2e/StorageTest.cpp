#include "VelmoCore/Activity/ActivityEvent.h"
#include "VelmoCore/Foundation/Json.h"
#include "VelmoCore/Foundation/Uuid.h"
#include "VelmoCore/Notes/NotesStore.h"
#include "VelmoCore/Storage/DataCipher.h"
#include "VelmoSystem/Linux/Keys/SecretServiceItems.h"

#include "tests/e2e/OrvaneTest.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QJsonDocument>

#include <X11/keysym.h>
#include <csignal>

namespace velmo {

namespace {

const QString historyFile = QStringLiteral("data/Orvane/activity-history.json");

/// Something of an hour ago, and something too old to be kept.
QByteArray historyText()
{
    const Date now{Seconds(double(QDateTime::currentSecsSinceEpoch()))};
    const auto event = [&](Seconds age, const QString &title) {
        return ActivityEvent::make(now - age, "doc", title, FeedbackStyle::info, "files");
    };
    return Json::encode(std::vector{event(1h, "novo"), event(24h * 30, "velho")});
}

} // namespace

class StorageTest : public OrvaneTest {
protected:
    /// Whether it comes to be.
    bool isSealed(const QString &file) const
    {
        return eventually([&] { return DataCipher::isSealedFile(home.path(file)); });
    }
    std::vector<ActivityEvent> sealedHistory() const
    {
        const DataCipher cipher(home.read("state/Orvane/app.velmo.Velmo.storage:data-key-v1"));
        return Json::decode<std::vector<ActivityEvent>>(cipher.open(home.read(historyFile)));
    }
};

TEST_F(StorageTest, IsSavedWhenASignalEndsOrvane)
{
    for (const int signal : {SIGTERM, SIGINT}) {
        home.write(historyFile, historyText());
        writeSettings({{"panelSize", "large"}});
        launch();
        ASSERT_TRUE(isSealed(historyFile));
        EXPECT_EQ(sealedHistory().size(), 2U);
        ::kill(pid_t(orvane.processId()), signal);
        EXPECT_EQ(exitCode(), 0);
        const auto history = sealedHistory();
        ASSERT_EQ(history.size(), 1U);
        EXPECT_EQ(history.front().title, "novo");
        const auto settings = QJsonDocument::fromJson(home.read("data/Orvane/settings.json"));
        EXPECT_EQ(settings["panelSize"], "large");
    }
}

TEST_F(StorageTest, NeedsNoDataFolder)
{
    home.write("occupied", "x");
    environment.insert("XDG_DATA_HOME", home.path("occupied"));
    launch();
    EXPECT_TRUE(logs("Não foi possível criar os diretórios do app"));
    EXPECT_EQ(run({"open"}).exitCode, 0);
    EXPECT_TRUE(shows("expanded"));
}

TEST_F(StorageTest, ComesWithTheKeyOfAKeyStoreThatWasSilentAtTheStart)
{
    QProcess keyring;
    keyring.setProcessEnvironment(environment);
    keyring.start("gnome-keyring-daemon", {"--foreground", "--components=secrets", "--unlock"});
    keyring.write("senha");
    keyring.closeWriteChannel();
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toUtf8());
    ASSERT_TRUE(eventually([] { return SecretServiceItems::isReachable(); }));
    home.write("data/Orvane/notes.json", Json::encode(NotesStore::Snapshot{}));
    launch();
    ASSERT_TRUE(isSealed("data/Orvane/notes.json"));
    EXPECT_EQ(run({"quit"}).exitCode, 0);
    EXPECT_EQ(exitCode(), 0);
    const auto key = SecretServiceItems().find({"app.velmo.Velmo.storage", "data-key-v1", {}, {}});
    ASSERT_TRUE(key) << "the key is in the keyring";
    const auto notes = [&] {
        const auto text = DataCipher(*key).open(home.read("data/Orvane/notes.json"));
        return Json::decode<NotesStore::Snapshot>(text).notes;
    };
    const Date now{Seconds(double(QDateTime::currentSecsSinceEpoch()))};
    const Note kept{.id = makeUuid(), .text = "antes", .created = now, .updated = now};
    const NotesStore::Snapshot before{{kept}, {}};
    home.write("data/Orvane/notes.json", DataCipher(*key).seal(Json::encode(before)));

    ::kill(pid_t(keyring.processId()), SIGSTOP);
    QElapsedTimer clock;
    clock.start();
    launch();
    EXPECT_TRUE(becomesVisible(true));
    EXPECT_LT(clock.elapsed(), 1000) << "ms until the panel shows";
    clock.start();
    EXPECT_EQ(run({"quit"}).exitCode, 0);
    EXPECT_EQ(exitCode(), 0);
    EXPECT_LT(clock.elapsed(), 2000) << "ms until the end, with nothing to save";
    EXPECT_EQ(notes(), before.notes);

    launch();
    const xcb_window_t focused = screen.focusedWindow();
    screen.typeKey(XK_m, {XK_Control_L, XK_Alt_L});
    ASSERT_TRUE(eventually([&] { return screen.focusedWindow() != focused; }));
    screen.typeKey(XK_x);
    ::kill(pid_t(keyring.processId()), SIGCONT);
    EXPECT_TRUE(eventually([&] {
        const auto all = notes();
        return all.size() == 2 && all[0].text == "x" && all[1] == kept;
    }));
    EXPECT_EQ(run({"quit"}).exitCode, 0);
    EXPECT_EQ(exitCode(), 0);
    keyring.kill();
    keyring.waitForFinished();
}

TEST_F(StorageTest, RemovesAtTheStartWhatAKilledRunLeft)
{
    home.write("tmp/Orvane-extract-" + uuidText(makeUuid()) + "/content/a", "x");
    environment.insert("TMPDIR", home.path("tmp"));
    launch();
    EXPECT_EQ(run({"quit"}).exitCode, 0);
    EXPECT_EQ(exitCode(), 0);
    EXPECT_EQ(QDir(home.path("tmp")).entryList({"Orvane-*"}, QDir::AllEntries), QStringList());
}

} // namespace velmo
