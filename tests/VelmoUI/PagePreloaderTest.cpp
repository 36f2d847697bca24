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
    scheduler.advance(10s);
    EXPECT_EQ(scheduler.pendingCount(), 0u);
    for (const char *file : {"Notch/ExpandedContent.qml", "Modules/Notes/NotesPage.qml"}) {
        const auto isLoaded = [&] { // by another thread
            return QQmlComponent(&engine, QStringLiteral("qrc:/qt/qml/Velmo/") + file,
                                 QQmlComponent::Asynchronous)
                .isReady();
        };
        while (!isLoaded())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

} // namespace
} // namespace velmo
