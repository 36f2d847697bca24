#include "VelmoUI/Notch/PagePreloader.h"

#include "tests/support/ManualScheduler.h"

#include <QCoreApplication>
#include <QQmlEngine>

#include <gtest/gtest.h>

namespace velmo {
namespace {

TEST(PagePreloader, LoadsEveryFileAndThenLetsTheMachineSleep)
{
    ManualScheduler scheduler;
    QQmlEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    PagePreloader preloader(engine, scheduler);
    preloader.start();
    EXPECT_FALSE(preloader.isDone());
    scheduler.advance(10s);
    EXPECT_EQ(scheduler.pendingCount(), 0u);
    while (!preloader.isDone()) // by another thread
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_TRUE(QQmlComponent(&engine,
                              QStringLiteral("qrc:/qt/qml/Velmo/Modules/Notes/NotesPage.qml"),
                              QQmlComponent::Asynchronous)
                    .isReady());
}

} // namespace
} // namespace velmo
