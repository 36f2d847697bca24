#include "VelmoUI/Modules/Activity/ActivityModule.h"
#include "VelmoUI/Modules/Shelf/ShelfModule.h"

#include "tests/VelmoUI/PanelFixture.h"
#include "tests/support/Printers.h"

#include <QQuickItem>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <X11/keysym.h>

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
        const QRect notch(picture.width() / 2 - 80, 0, 160, 24);
        QImage hidden(notch.size(), picture.format());
        hidden.fill(Qt::black);
        EXPECT_EQ(picture.copy(notch), hidden) << state << " draws behind the notch";
    }

    /// Everything that is to be seen.
    std::vector<QQuickItem *> items()
    {
        QCoreApplication::processEvents();
        std::vector<QQuickItem *> found{view().rootObject()};
        for (std::size_t i = 0; i < found.size(); ++i) {
            for (QQuickItem *child : found[i]->childItems()) {
                if (child->isVisible())
                    found.push_back(child);
            }
        }
        return found;
    }
    /// The names and texts of it.
    QStringList names()
    {
        QStringList found;
        for (const QQuickItem *item : items())
            found << item->property("name").toString() << item->property("text").toString();
        return found;
    }

    /// The name of the control that has the keyboard after that key.
    QString nameAfter(Qt::Key key)
    {
        QKeyEvent event(QEvent::KeyPress, key, {});
        QCoreApplication::sendEvent(&view(), &event);
        return view().activeFocusItem()->property("name").toString();
    }
};

TEST_F(NotchViewTest, DrawsEveryPresentationWithoutAWarning)
{
    desktop.folder.write(QStringLiteral("Page.qml"), R"(import QtQuick
        Item { property QtObject page; property color accent; property bool watched })");
    FakeModule::addTo(services.modules, QStringLiteral("fake")).page =
        QUrl::fromLocalFile(desktop.folder.path(QStringLiteral("Page.qml")));
    services.modules.add(std::make_unique<ActivityModule>());
    services.modules.add(std::make_unique<ShelfModule>());
    services.shelf.addText(QStringLiteral("Nota"));
    services.shelf.addLink(QUrl(QStringLiteral("https://example.org")));
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
    for (const char16_t *page : {u"activity", u"fake", u"activity", u"shelf", u"um"}) {
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

TEST_F(NotchViewTest, ReachesEveryControlByTabAndWorksItByKey)
{
    services.modules.add(std::make_unique<ActivityModule>());
    bool isCancelled = false;
    services.activity.upsert({.id = QStringLiteral("job"),
                              .title = QStringLiteral("Job"),
                              .progress = 0.5,
                              .isCancellable = true},
                             [&] { isCancelled = true; });
    services.activity.post(ActivityEvent::make(
        desktop.scheduler.now(), {}, QStringLiteral("Pronto"), FeedbackStyle::success,
        QStringLiteral("test"), {}, {QUrl(QStringLiteral("file:///a"))}));
    start();
    showView();
    view().requestActivate();
    coordinator.open(QStringLiteral("activity"));
    QCoreApplication::processEvents();
    ASSERT_TRUE(view().activeFocusItem());
    EXPECT_EQ(view().activeFocusItem()->property("name").toString(), QString())
        << "no control is set off by a key that was meant for another window";

    QStringList names;
    while (names.size() < 20 && !names.contains(QStringLiteral("Fechar")))
        names.append(nameAfter(names.isEmpty() ? Qt::Key_Down : Qt::Key_Tab));
    names.replaceInStrings(QRegularExpression(QStringLiteral("Pronto, .*")),
                           QStringLiteral("Pronto"));
    EXPECT_EQ(names, QStringList({QStringLiteral("Job, 50 %"), QStringLiteral("Cancelar"),
                                  QStringLiteral("Limpar"), QStringLiteral("Pronto"),
                                  QStringLiteral("Mostrar no Finder"), QStringLiteral("UM"),
                                  QStringLiteral("DOIS"), QStringLiteral("TRÊS"),
                                  QStringLiteral("Atividade"), QStringLiteral("Ajustes"),
                                  QStringLiteral("Fechar")}));
    EXPECT_EQ(nameAfter(Qt::Key_Right), u"Fechar") << "the bar's end";
    EXPECT_EQ(nameAfter(Qt::Key_Left), u"Ajustes");
    EXPECT_EQ(nameAfter(Qt::Key_Left), u"Atividade");
    nameAfter(Qt::Key_Tab);
    nameAfter(Qt::Key_Tab);
    EXPECT_EQ(nameAfter(Qt::Key_Tab), u"Cancelar");
    nameAfter(Qt::Key_Space);
    EXPECT_TRUE(isCancelled);
}

TEST_F(NotchViewTest, GivesTheKeyboardToTheActionsOfAnotherDrop)
{
    start();
    showView();
    view().requestActivate();
    const auto drop = [this] {
        coordinator.openFiles({QUrl(QStringLiteral("file:///a"))});
        QCoreApplication::processEvents();
        return view().activeFocusItem()->property("name").toString();
    };
    const QString first = drop();
    QString reached;
    for (int i = 0; i < 10 && reached != u"Fechar"; ++i)
        reached = nameAfter(Qt::Key_Tab);
    ASSERT_EQ(reached, u"Fechar");
    change([](AppSettings &next) { next.animationsEnabled = true; }); // the first one only fades
    EXPECT_EQ(drop(), first);
}

TEST_F(NotchViewTest, SaysWhyAPageIsMissingAndLoadsItOnDemand)
{
    auto &module = FakeModule::addTo(services.modules, QStringLiteral("quebrado"));
    module.failure = QStringLiteral("Falta um serviço.");
    start();
    showView();
    coordinator.open(QStringLiteral("quebrado"));
    EXPECT_TRUE(names().contains(QStringLiteral("QUEBRADO não pôde ser carregado")));
    EXPECT_TRUE(names().contains(QStringLiteral("Falta um serviço.")));
    coordinator.open(QStringLiteral("um"));
    EXPECT_FALSE(names().contains(QStringLiteral("Tentar novamente")));

    coordinator.open(QStringLiteral("quebrado"));
    view().requestActivate();
    QCoreApplication::processEvents();
    EXPECT_EQ(nameAfter(Qt::Key_Space), u"Tentar novamente") << "it fails again";
    module.failure.clear();
    warnings.clear(); // of the failures
    nameAfter(Qt::Key_Space);
    EXPECT_EQ(module.activations, 4);
    EXPECT_FALSE(names().contains(QStringLiteral("Tentar novamente")));
}

TEST_F(NotchViewTest, FitsTwelveModulesBesideTheNotchOfTheNarrowestPanel)
{
    for (int i = 4; i <= 12; ++i)
        FakeModule::addTo(services.modules, QString::number(i)).width = 1;
    start();
    showView();
    view().setColor(Qt::white);
    coordinator.open(QStringLiteral("12"));
    check("twelve modules");
    std::vector<QRectF> places;
    for (const QQuickItem *item : items()) {
        if (item->property("surfaceHeight").isValid())
            places.push_back(item->mapRectToScene({0, 0, item->width(), item->height()}));
    }
    EXPECT_EQ(places.size(), 13U) << "and the settings; Esc closes";
    for (std::size_t i = 0; i < places.size(); ++i) {
        EXPECT_TRUE(QRectF(shape()[0].toInt(), 0, shape()[2].toInt(), 99).contains(places[i]));
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_FALSE(places[i].intersects(places[j]));
    }
}

TEST_F(NotchViewTest, LetsThePageHaveItsKeysFirst)
{
    desktop.folder.write(QStringLiteral("Page.qml"), R"(import QtQuick
        FocusScope {
            focus: true
            property QtObject page; property bool watched; property bool asks: true
            TextInput {
                focus: true; text: "duas palavras"; cursorPosition: 13
                Keys.onEscapePressed: event => { event.accepted = parent.asks; parent.asks = false }
            }
        })");
    FakeModule::addTo(services.modules, QStringLiteral("texto")).page =
        QUrl::fromLocalFile(desktop.folder.path(QStringLiteral("Page.qml")));
    start();
    showView();
    view().requestActivate();
    coordinator.open(QStringLiteral("texto"));
    QCoreApplication::processEvents();
    press(XK_Left, Qt::ControlModifier, Qt::Key_Left);
    EXPECT_EQ(view().activeFocusItem()->property("cursorPosition"), 5);
    press(XK_Escape, {}, Qt::Key_Escape);
    EXPECT_EQ(shown(), u"expanded");
    press(XK_Escape, {}, Qt::Key_Escape);
    EXPECT_EQ(shown(), u"collapsed");
}

} // namespace
} // namespace velmo
