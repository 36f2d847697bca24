#include "VelmoCore/Foundation/Json.h"
#include "VelmoCore/Notes/NotesStore.h"
#include "VelmoCore/Storage/DataCipher.h"
#include "VelmoCore/Timers/TimerCenter.h"

#include "tests/e2e/OrvaneTest.h"

#include <QDateTime>

#include <X11/keysym.h>
#include <csignal>

namespace velmo {

class NotesTest : public OrvaneTest {
protected:
    /// What is sealed on disk; nothing while there is no file.
    std::vector<Note> sealedNotes() const
    {
        if (!QFile::exists(home.path("data/Orvane/notes.json")))
            return {};
        const DataCipher cipher(home.read("state/Orvane/app.velmo.Velmo.storage:data-key-v1"));
        const auto text = cipher.open(home.read("data/Orvane/notes.json"));
        return Json::decode<NotesStore::Snapshot>(text).notes;
    }
};

TEST_F(NotesTest, KeepANoteThatTheHotKeyBegan)
{
    launch();
    const xcb_window_t focused = screen.focusedWindow();
    screen.typeKey(XK_m, {XK_Control_L, XK_Alt_L});
    ASSERT_TRUE(shows("expanded"));
    ASSERT_TRUE(eventually([&] { return screen.focusedWindow() != focused; }));
    const auto isOnDisk = [&](const QString &text) {
        return eventually([&] {
            const auto notes = sealedNotes();
            return notes.size() == 1 && notes.front().text == text;
        });
    };
    ASSERT_TRUE(isOnDisk({}));
    for (const xcb_keysym_t key : {XK_s, XK_e, XK_g, XK_r, XK_e, XK_d, XK_o})
        screen.typeKey(key);
    ASSERT_TRUE(isOnDisk("segredo"));
    screen.typeKey(XK_Escape);
    ASSERT_TRUE(shows("collapsed"));
    EXPECT_FALSE(home.read("data/Orvane/notes.json").contains("segredo"));
    ::kill(pid_t(orvane.processId()), SIGKILL);
    EXPECT_LT(exitCode(), 0);
    launch();
    EXPECT_TRUE(isOnDisk("segredo"));
}

TEST_F(NotesTest, KeepWhatWasTypedIntoALongOneJustBeforeTheEnd)
{
    writeSettings({{"animationsEnabled", false}});
    const QString text = QString("linha\n").repeated(20'000);
    const Date now{Seconds(double(QDateTime::currentSecsSinceEpoch()))};
    const Note note{.id = makeUuid(), .text = text, .created = now, .updated = now};
    home.write("data/Orvane/notes.json", Json::encode(NotesStore::Snapshot{{note}, {}}));
    QString typed;
    const auto typeAndEnd = [&](xcb_keysym_t key, char letter, const std::function<void()> &end) {
        launch();
        const xcb_window_t focused = screen.focusedWindow();
        ASSERT_EQ(run({"open", "notes"}).exitCode, 0);
        ASSERT_TRUE(eventually([&] { return screen.focusedWindow() != focused; }));
        screen.typeKey(XK_End, {XK_Control_L});
        screen.typeKey(key);
        typed += QLatin1Char(letter);
        pause(200ms); // the key comes before the end, but the note's rest after it
        end();
        EXPECT_EQ(exitCode(), 0);
        EXPECT_EQ(sealedNotes().front().text.sliced(text.size()), typed);
    };
    typeAndEnd(XK_x, 'x', [&] { ::kill(pid_t(orvane.processId()), SIGTERM); });
    typeAndEnd(XK_y, 'y', [&] { run({"quit"}); });
}

TEST_F(NotesTest, TellTheDesktopOfATimerThatWasRunningBeforeTheStart)
{
    const Date now{Seconds(double(QDateTime::currentSecsSinceEpoch()))};
    const TimerCenter::Snapshot running{.timers = {CountdownTimer::make("chá", 60s, now - 58s)},
                                        .presets = {},
                                        .pomodoro = std::nullopt,
                                        .history = {}};
    home.write("data/Orvane/timers.json", Json::encode(running));
    screen.run("dunst", {"-conf", "/dev/null"});
    launch();
    const auto control = [&](const QStringList &words) {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start("dunstctl", words);
        process.waitForFinished();
        return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    };
    EXPECT_TRUE(eventually([&] { return control({"count", "displayed"}) == "1"; }));
    control({"close-all"});
    EXPECT_TRUE(eventually([&] { return control({"history"}).contains("Timer concluído"); }));
}

} // namespace velmo
