#include "VelmoUI/Modules/Timers/TimersPageModel.h"

#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoCore/Timers/TimerCenter.h"
#include "VelmoUI/Composition/AppServices.h"

#include "tests/support/FakeDesktop.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

namespace velmo {
namespace {

class TimersPageModelTest : public testing::Test {
protected:
    QString seen(const char *role)
    {
        const int number = page.timers()->roleNames().key(role);
        return page.timers()->index(0, 0).data(number).toString();
    }

    FakeDesktop desktop;
    AppServices services{desktop.paths(), {DataProtectionStatus::Disabled{}}, desktop.platform};
    TimersPageModel page{*services.timers, *services.settings, desktop.scheduler};
};

TEST_F(TimersPageModelTest, StartsWhatIsTypedAndSaysWhatItCannotRead)
{
    EXPECT_FALSE(page.start(u"logo"_qs, {}));
    EXPECT_EQ(page.issue(), u"Digite uma duração, como 1:30, 90 ou 1h20.");
    EXPECT_TRUE(page.start(u"1:30"_qs, u" chá "_qs));
    EXPECT_EQ(page.issue(), QString());
    EXPECT_EQ(seen("title"), u"chá");
    page.togglePause(seen("id"));
    EXPECT_EQ(seen("value"), u"Pausado, 1:30");
    page.togglePause(seen("id"));
    desktop.scheduler.advance(90s);
    EXPECT_EQ(seen("spoken"), u"chá, Concluído");
    EXPECT_TRUE(page.hasFinished());
    page.restart(seen("id"));
    EXPECT_EQ(seen("value"), u"1:30");
    page.remove(seen("id"));
    EXPECT_FALSE(page.hasTimers());
    EXPECT_EQ(page.undoTitle(), u"Desfazer: timer removido");
    page.undo();
    EXPECT_EQ(seen("title"), u"chá");
    EXPECT_EQ(page.undoTitle(), QString());
    page.setWatched(true);
    page.remove(seen("id"));
    desktop.scheduler.advance(UndoStack::time);
    EXPECT_EQ(page.undoTitle(), QString());
    page.start(u"1h"_qs, {});
    page.remove(seen("id"));
    page.setWatched(false); // nothing comes back to a page that was closed
    EXPECT_EQ(page.undoTitle(), QString());
    EXPECT_TRUE(page.addPreset(u"2"_qs));
    page.startPreset(u"120"_qs);
    EXPECT_EQ(seen("value"), u"2:00");
}

TEST_F(TimersPageModelTest, TicksOnceASecondOnlyWhileItIsWatchedAndSomethingRuns)
{
    int updates = 0;
    page.start(u"1h"_qs, {});
    desktop.scheduler.advance(0.3s);
    page.start(u"2h"_qs, {});
    QObject::connect(&page, &TimersPageModel::changed, [&] { ++updates; });
    desktop.scheduler.advance(10s);
    EXPECT_EQ(updates, 0);
    page.setWatched(true);
    updates = 0;
    desktop.scheduler.advance(10s);
    EXPECT_EQ(updates, 10);
    page.togglePause(seen("id"));
    page.setWatched(false);
    updates = 0;
    desktop.scheduler.advance(10s);
    EXPECT_EQ(updates, 0);
}

TEST_F(TimersPageModelTest, TellsOfTheCycleAndItsHistory)
{
    EXPECT_EQ(page.pomodoroTime(), u"25:00");
    EXPECT_EQ(page.today(), u"Hoje: nenhuma sessão");
    page.startPomodoro();
    desktop.scheduler.advance(25min);
    EXPECT_EQ(page.phase(), u"Pausa curta");
    EXPECT_EQ(page.cyclesText(), u"1 de 4 focos");
    EXPECT_EQ(page.today(), u"Hoje: 1 sessão");
    EXPECT_EQ(page.total(), u"25 min de foco");
    const int share = page.days()->roleNames().key("share");
    EXPECT_EQ(page.days()->index(27, 0).data(share), 1.0);
    page.stopPomodoro();
    page.clearHistory();
    EXPECT_FALSE(page.hasHistory());
    EXPECT_EQ(page.phase(), u"Foco");
}

} // namespace
} // namespace velmo
