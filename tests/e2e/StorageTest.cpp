#include "VelmoCore/Activity/ActivityEvent.h"
#include "VelmoCore/Foundation/Json.h"
#include "VelmoCore/Storage/DataCipher.h"

#include "tests/e2e/OrvaneTest.h"

#include <QDateTime>
#include <QJsonDocument>

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

TEST_F(StorageTest, LeavesAHistoryAloneThatItCannotOpen)
{
    const QByteArray sealed = DataCipher(DataCipher::generateKeyData()).seal(historyText());
    home.write(historyFile, sealed);
    launch();
    EXPECT_EQ(run({"quit"}).exitCode, 0);
    EXPECT_EQ(exitCode(), 0);
    EXPECT_EQ(home.read(historyFile), sealed);
}

} // namespace velmo
