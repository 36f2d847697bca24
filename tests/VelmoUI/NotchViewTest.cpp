#include "VelmoUI/Modules/Activity/ActivityModule.h"

#include "tests/VelmoUI/PanelFixture.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

namespace velmo {
namespace {

QStringList warnings;

void keepWarnings(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type != QtDebugMsg && type != QtInfoMsg)
        warnings.append(message);
}

class NotchViewTest : public PanelFixture {
protected:
    NotchViewTest() { qInstallMessageHandler(keepWarnings); }
    ~NotchViewTest() override { qInstallMessageHandler(nullptr); }

    void check(const char *state)
    {
        QCoreApplication::processEvents();
        EXPECT_EQ(std::exchange(warnings, {}), QStringList()) << state;
        const QImage picture = view().grabWindow();
        const int left = shape()[0].toInt();
        const int width = shape()[2].toInt();
        const int height = shape()[3].toInt();
        for (const QPoint body : {QPoint(left + width / 2, height - 3), {left + 16, height / 2}})
            EXPECT_EQ(picture.pixelColor(body), QColor(Qt::black)) << state;
        for (const QPoint around :
             {QPoint(left - 40, height / 2), {left + 1, height - 1}, {left + 40, height + 50}})
            EXPECT_GT(picture.pixelColor(around).lightness(), 80) << state;
    }
};

TEST_F(NotchViewTest, DrawsEveryPresentationWithoutAWarning)
{
    desktop.folder.write(QStringLiteral("Page.qml"), R"(import QtQuick
        Item { property QtObject page; property color accent; property bool watched })");
    FakeModule::addTo(services.modules, QStringLiteral("fake")).page =
        QUrl::fromLocalFile(desktop.folder.path(QStringLiteral("Page.qml")));
    services.modules.add(std::make_unique<ActivityModule>());
    start();
    showView();
    view().setColor(Qt::white);
    check("empty");

    services.activity.post(ActivityEvent::make(desktop.scheduler.now(), QStringLiteral("doc.fill"),
                                               QStringLiteral("Pronto"), FeedbackStyle::success,
                                               QStringLiteral("test"), QStringLiteral("Detalhe"),
                                               {QUrl(QStringLiteral("file:///a"))}));
    services.activity.upsert(
        {.id = QStringLiteral("timer"),
         .symbol = QStringLiteral("timer"),
         .title = QStringLiteral("Timer"),
         .countdown = DateRange{desktop.scheduler.now(), desktop.scheduler.now() + 90s},
         .isCancellable = true});
    check("message");
    services.activity.dismissFeedback();
    check("live");
    change([](AppSettings &next) { next.hoverBehavior = HoverBehavior::preview; });
    hover();
    check("preview");
    for (const char16_t *page : {u"activity", u"fake", u"activity", u"um"}) {
        coordinator.open(QString::fromUtf16(page));
        check("page");
    }
    coordinator.open(QStringLiteral("activity"));
    services.activity.clearHistory();
    services.activity.cancel(QStringLiteral("timer"));
    check("empty page");
    coordinator.open();
    desktop.movePointer(notchOf(1));
    change([](AppSettings &next) { next.closeOnClickOutside = false; });
    beginDrag();
    desktop.pointer.moveTo(notchOf(1));
    check("drop surface");
    desktop.pointer.release(notchOf(1));
    coordinator.openFiles(
        {QUrl(QStringLiteral("file:///a.txt")), QUrl(QStringLiteral("file:///b"))});
    check("dropped");
    coordinator.toggleFromHotKey();
    change([](AppSettings &next) { next.accent = AccentChoice::blue; });
    check("closed");
}

} // namespace
} // namespace velmo
