#include "VelmoSystem/Notifications/SystemNotifier.h"

#include "tests/support/FakeDevices.h"
#include "tests/support/ManualScheduler.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

namespace velmo {
namespace {

class SystemNotifierTest : public testing::Test {
protected:
    SystemNotifierTest()
    {
        notifier.onActivated = [this](const Route &route) { opened.append(route.module); };
    }

    void schedule(const char16_t *identifier, const char16_t *title, Seconds delay)
    {
        notifier.schedule(QString::fromUtf16(identifier), {QString::fromUtf16(title), {}},
                          scheduler.now() + delay, {.module = u"notes"_qs});
    }
    QStringList shown() const
    {
        QStringList titles;
        for (const auto &[identifier, notification] : server.shown)
            titles.append(notification.title);
        return titles;
    }

    ManualScheduler scheduler;
    FakeNotifications server;
    SystemNotifier notifier{server, scheduler};
    QStringList opened;
};

} // namespace

TEST_F(SystemNotifierTest, FollowsTheWallClockWhenItIsSet)
{
    const Date start = scheduler.now();
    schedule(u"a", u"um", 600s);
    schedule(u"b", u"dois", 900s);
    scheduler.setClock(start + 650s);
    EXPECT_EQ(shown(), QStringList(u"um"_qs));
    scheduler.setClock(start);
    scheduler.advance(899s);
    EXPECT_EQ(shown().size(), 1);
    scheduler.advance(1s);
    EXPECT_EQ(shown().size(), 2);
}

TEST_F(SystemNotifierTest, OpensTheModuleOfAClickedNotification)
{
    schedule(u"a", u"agora", 0s);
    Q_EMIT server.activated(u"a"_qs, {});
    Q_EMIT server.activated(u"outro"_qs, {});
    Q_EMIT server.activated(u"a"_qs, u"copy"_qs);
    EXPECT_EQ(opened, QStringList(u"notes"_qs));
    Q_EMIT server.closed(u"a"_qs);
    Q_EMIT server.activated(u"a"_qs, {});
    EXPECT_EQ(opened.size(), 1);
}

} // namespace velmo
