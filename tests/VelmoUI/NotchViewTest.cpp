#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Clipboard/ClipboardStore.h"
#include "VelmoCore/Notes/NotesStore.h"
#include "VelmoCore/Shelf/ShelfStore.h"
#include "VelmoCore/Timers/TimerCenter.h"
#include "VelmoSystem/FileProcessing/ToolsSelection.h"
#include "VelmoSystem/FileProcessing/ToolsWork.h"
#include "VelmoUI/Design/TileDrag.h"
#include "VelmoUI/Modules/Frame/ModuleRegistry.h"

#include "tests/VelmoUI/NotchViewFixture.h"

#include <QFont>
#include <QQmlComponent>
#include <QRegularExpression>

#include <set>

namespace velmo {
namespace {

class NotchViewTest : public NotchViewFixture {
protected:
    void check(const char *state)
    {
        QCoreApplication::processEvents();
        EXPECT_EQ(warnings.take(), QStringList()) << state;
        const QImage picture = view().grabWindow();
        const int left = shape()[0].toInt();
        const int width = shape()[2].toInt();
        const int height = shape()[3].toInt();
        for (const QPoint body : {QPoint(left + width / 2, height - 3), {left + 16, height / 2}})
            EXPECT_EQ(picture.pixelColor(body), QColor(Qt::black)) << state;
        for (const QPoint around :
             {QPoint(left - 40, height / 2), {left + 1, height - 1}, {left + 40, height + 50}})
            EXPECT_GT(picture.pixelColor(around).lightness(), 80) << state;
        const QRect notch(picture.width() / 2 - 80, 0, 160, 32);
        QImage hidden(notch.size(), picture.format());
        hidden.fill(Qt::black);
        EXPECT_EQ(picture.copy(notch), hidden) << state << " draws behind the notch";
    }

    /// Where the text of an item stands in it.
    static QRectF drawn(const QQuickItem &item)
    {
        const QSizeF size(std::min(item.width(), item.implicitWidth()),
                          std::min(item.height(), item.implicitHeight()));
        return {QPointF(item.width() - size.width(), item.height() - size.height()) / 2, size};
    }

    /// The texts, symbols and numbers of what one presentation shows, as one rectangle.
    QRectF contentOf(const char *type)
    {
        view().grabWindow(); // rows and columns place what is in them when it is drawn
        QRectF found;
        for (const QQuickItem *item : items()) {
            bool isWithin = false;
            for (const QQuickItem *outer = item; outer; outer = outer->parentItem())
                isWithin =
                    isWithin || QByteArray(outer->metaObject()->className()).startsWith(type);
            if (isWithin && !item->property("text").toString().isEmpty())
                found |= item->mapRectToScene(drawn(*item));
        }
        return found;
    }

    /// The names of the controls of which only a part is to be seen.
    QStringList cutNames()
    {
        QStringList found;
        for (const QQuickItem *item : items()) {
            const QString name = item->property("name").toString();
            for (const QQuickItem *box = item->parentItem(); box && !name.isEmpty();
                 box = box->parentItem()) {
                const QRectF place = item->mapRectToItem(box, item->boundingRect());
                if (box->clip() && place.intersects(box->boundingRect()) &&
                    !box->boundingRect().adjusted(-1, -1, 1, 1).contains(place))
                    found.append(name);
            }
        }
        return found;
    }

    static ScreenDescriptor screenWithCutout()
    {
        ScreenDescriptor screen = FakeDesktop::screen(1);
        screen.safeAreaTop = 32;
        screen.auxiliaryTopLeftWidth = screen.auxiliaryTopRightWidth = 705;
        return screen;
    }
};

TEST_F(NotchViewTest, DrawsEveryPresentationWithoutAWarning)
{
    addPage(R"(import QtQuick
        Item { property QtObject page; property color accent; property bool watched })");
    addModules(u"activity"_qs);
    addModules(u"shelf"_qs);
    services.shelf->addText(u"Nota"_qs);
    services.shelf->addLink(QUrl(u"https://example.org"_qs));
    start({screenWithCutout()});
    showView();
    view().setColor(Qt::white);
    check("empty");

    services.activity->post(ActivityEvent::make(desktop.scheduler.now(), u"doc.fill"_qs,
                                                u"Pronto"_qs, FeedbackStyle::success, u"test"_qs,
                                                u"Detalhe"_qs, {QUrl(u"file:///a"_qs)}));
    services.activity->upsert(
        {.id = u"timer"_qs,
         .symbol = u"timer"_qs,
         .title = u"Timer"_qs,
         .countdown = DateRange{desktop.scheduler.now(), desktop.scheduler.now() + 90s},
         .isCancellable = true});
    check("message");
    services.activity->dismissFeedback();
    check("live");
    change([](AppSettings &next) { next.hoverBehavior = HoverBehavior::preview; });
    hover();
    check("preview");
    for (const char16_t *page : {u"activity", u"página", u"activity", u"shelf", u"um"}) {
        coordinator.open({.module = QString::fromUtf16(page)});
        check("page");
    }
    coordinator.open({.module = u"activity"_qs});
    services.activity->clearHistory();
    services.activity->cancel(u"timer"_qs);
    check("empty page");
    coordinator.open();
    desktop.movePointer(notchOf(1));
    change([](AppSettings &next) { next.closeOnClickOutside = false; });
    beginDrag();
    desktop.pointer.moveTo(notchOf(1));
    check("drop surface");
    desktop.pointer.release(notchOf(1));
    coordinator.openFiles({QUrl(u"file:///a.txt"_qs), QUrl(u"file:///b"_qs)});
    check("dropped");
    coordinator.toggleFromHotKey();
    change([](AppSettings &next) { next.accent = AccentChoice::blue; });
    check("closed");
}

TEST_F(NotchViewTest, BeginsWithoutLettersWhichWouldWaitForTheFonts)
{
    start();
    for (const QQuickItem *item : view().rootObject()->findChildren<QQuickItem *>())
        EXPECT_FALSE(item->inherits("QQuickText")) << qPrintable(item->parent()->objectName());
    EXPECT_EQ(shown(), u"collapsed");
    coordinator.open();
    EXPECT_TRUE(std::ranges::any_of(view().rootObject()->findChildren<QQuickItem *>(),
                                    [](const auto *item) { return item->inherits("QQuickText"); }));
}

// ctest runs it at other scales too, where edges lie between pixels.

TEST_F(NotchViewTest, LetsNothingThroughTheShape)
{
    auto &module = FakeModule::addTo(*services.modules, u"vazio"_qs);
    start();
    showView();
    view().setColor(Qt::white);
    const double scale = view().devicePixelRatio();
    for (int width = 700; width < 740; ++width) {
        module.width = width;
        coordinator.toggleFromHotKey();
        coordinator.open({.module = u"vazio"_qs});
        QCoreApplication::processEvents();
        const QJsonArray body = shape();
        const auto pixels = [&](double left, double top, double right, double bottom) {
            return QRectF(QPointF(left, top) * scale, QPointF(right, bottom) * scale).toRect();
        };
        const double left = body[0].toDouble() + 12;
        const double right = left + body[2].toDouble() - 24;
        const double bottom = body[3].toDouble();
        const QImage picture = view().grabWindow();
        for (const QRect &inside : {pixels(left + 1, 30, right - 1, bottom - 28),
                                    pixels(left + 28, 30, right - 28, bottom - 1)}) {
            QImage black(inside.size(), picture.format());
            black.fill(Qt::black);
            black.setDevicePixelRatio(scale);
            EXPECT_EQ(picture.copy(inside), black) << width << " at " << scale;
        }
    }
}

TEST_F(NotchViewTest, StandsInTheMiddleWhereNoCutoutIs)
{
    start();
    showView();
    change([](AppSettings &next) { next.hoverBehavior = HoverBehavior::preview; });
    const auto expectMiddle = [this](const char *type) {
        const QRectF content = contentOf(type);
        const double middle = shape()[0].toDouble() + shape()[2].toDouble() / 2;
        const double height = shape()[3].toDouble();
        EXPECT_NEAR(content.center().x(), middle, 1.5) << type;
        EXPECT_NEAR(content.center().y(), height / 2, 1.5) << type;
        EXPECT_LE(content.width(), shape()[2].toDouble() - 2 * 12) << type;
    };
    services.activity->upsert(
        {.id = u"timer"_qs,
         .source = u"timers"_qs,
         .symbol = u"timer"_qs,
         .title = u"Chá de camomila com um nome que não cabe em nenhuma linha do painel"_qs,
         .countdown = DateRange{desktop.scheduler.now(), desktop.scheduler.now() + 90s}});
    expectMiddle("LiveContent");
    hover();
    expectMiddle("PreviewContent");
    const auto clock = [&] {
        return localDateTime(desktop.scheduler.now()).time().toString(u"HH:mm"_qs);
    };
    EXPECT_TRUE(names().contains(clock()));
    EXPECT_TRUE(names().contains(u"Timer · faltam 1:30"_qs));
    wait(61s);
    EXPECT_TRUE(names().contains(clock()));
    EXPECT_TRUE(names().contains(u"Timer · faltam 0:29"_qs));
    coordinator.toggleFromHotKey();
    coordinator.toggleFromHotKey();
    services.activity->post(ActivityEvent::make(desktop.scheduler.now(), u"doc.fill"_qs,
                                                u"Pronto"_qs, FeedbackStyle::success, u"test"_qs,
                                                u"Um detalhe"_qs));
    expectMiddle("FeedbackContent");
}

TEST_F(NotchViewTest, KeepsTheAgeOfACopyBesideALongName)
{
    addModules(u"clipboard"_qs);
    const QString name = u"Um aplicativo com um nome muito comprido"_qs;
    services.clipboard->add(
        ClipItems::fromText(u"Nota"_qs, {.appName = name}, desktop.scheduler.now()).value());
    start();
    showView();
    coordinator.open({.module = u"clipboard"_qs});
    QRectF tile;
    QRectF age;
    for (const QQuickItem *item : items()) {
        const QRectF place = item->mapRectToScene({0, 0, item->width(), item->height()});
        if (QByteArray(item->metaObject()->className()).startsWith("ClipTile"))
            tile = place;
        if (item->property("text").toString() == u"· agora") {
            age = place;
            EXPECT_GE(item->width(), item->implicitWidth());
        }
    }
    EXPECT_GT(age.width(), 0);
    EXPECT_LE(age.right(), tile.right() - 12);
}

TEST_F(NotchViewTest, EnlargesWhatALargePanelShows)
{
    addModules(u"activity"_qs);
    for (int i = 0; i < 6; ++i)
        services.activity->post(ActivityEvent::make(desktop.scheduler.now(), u"doc.fill"_qs,
                                                    u"Pronto"_qs, FeedbackStyle::success,
                                                    u"test"_qs, {}));
    start();
    showView();
    const auto look = [this](PanelSize size) {
        change([&](AppSettings &next) { next.panelSize = size; });
        coordinator.open({.module = u"activity"_qs});
        view().grabWindow(); // the grid places its cards when it is drawn
        std::set<double> rows;
        int type = 0;
        for (const QQuickItem *item : items()) {
            if (item->property("text").toString() == u"Pronto") {
                rows.insert(item->mapToScene({}).y());
                type = item->property("font").value<QFont>().pixelSize();
            }
        }
        return std::pair(rows.size(), type);
    };
    EXPECT_EQ(look(PanelSize::regular), std::pair(std::size_t(2), 13));
    EXPECT_EQ(look(PanelSize::large), std::pair(std::size_t(3), 15));
}

TEST_F(NotchViewTest, CutsNothingAndLeavesNoRoomForWhatHasNoData)
{
    addModules();
    change([](AppSettings &next) {
        next.hasCompletedOnboarding = true;
        next.hiddenHomeCards = {u"agenda"_qs};
    });
    for (int number = 0; number < 20; ++number) {
        const QString text = u"Item %1"_qs.arg(number);
        services.shelf->addText(text);
        services.notes->addTask(text);
        services.clipboard->add(ClipItems::fromText(text, {}, desktop.scheduler.now()).value());
    }
    for (int number = 0; number < 2; ++number)
        services.timers->startTimer(10s);
    wait(11s);
    start();
    showView();
    for (const PanelSize size : {PanelSize::compact, PanelSize::regular, PanelSize::large}) {
        change([&](AppSettings &next) { next.panelSize = size; });
        for (const char16_t *page : {u"home", u"timers"}) {
            coordinator.open({.module = QString::fromUtf16(page)});
            view().grabWindow(); // lays it out
            EXPECT_EQ(cutNames(), QStringList())
                << int(size) << QString::fromUtf16(page).toStdString();
        }
        for (const QQuickItem *item : items())
            EXPECT_FALSE(item->property("truncated").toBool())
                << int(size) << item->property("text").toString().toStdString();
        const auto *preset =
            found([](const auto &item) { return item.property("name") == "25:00"; });
        ASSERT_TRUE(preset);
        const auto *presets = preset->parentItem()->parentItem();
        EXPECT_LE(preset->mapRectToItem(presets, preset->boundingRect()).right(), presets->width());
        EXPECT_TRUE(names().contains(u"Limpar concluídos"_qs));
        EXPECT_FALSE(names().contains(u"Últimas 4 semanas"_qs)) << "there is no history yet";
        coordinator.open({.module = u"home"_qs});
        view().grabWindow();
        const auto *last =
            found([](auto &item) { return item.property("text") == u"Processador"_qs; });
        ASSERT_TRUE(last);
        const auto *line = last->parentItem();
        EXPECT_GT(line->y() + line->height(), line->parentItem()->height() - 4)
            << "as if there were a battery";
    }
}

TEST_F(NotchViewTest, SaysThatAPageIsEmptyOnlyOnceItIsLoaded)
{
    struct : DataFiles::Keeper {
        QStringList issues() const override { return {}; }
        void dismissIssues() override {}
        bool isLoading() const override { return loads; }
        bool holdsUnsaved() override { return false; }
        void keyCame() override {}
        void flush() override {}

        bool loads = true;
    } keeper;
    services.files.add(keeper);
    addModules();
    change([](AppSettings &next) { next.hiddenHomeCards.clear(); });
    start();
    showView();
    for (const char16_t *page :
         {u"home", u"shelf", u"clipboard", u"notes", u"timers", u"activity"}) {
        const auto emptyTexts = [&](bool loads) {
            keeper.loads = loads;
            services.files.notify();
            coordinator.open({.module = QString::fromUtf16(page)});
            const QRegularExpression words(
                u"aparece|guardar|copiar|vazia|Nenhuma a|Sem tarefas|Carre"_qs);
            return names().filter(words);
        };
        EXPECT_EQ(emptyTexts(true), QStringList(u"Carregando…"_qs))
            << QString::fromUtf16(page).toStdString();
        const QStringList after = emptyTexts(false);
        EXPECT_FALSE(after.isEmpty() || after.contains(u"Carregando…"_qs));
    }
    services.files.remove(keeper);
}

TEST_F(NotchViewTest, DragsThePictureOfARoundTile)
{
    addModules();
    services.shelf->addText(u"Texto"_qs);
    services.clipboard->add(ClipItems::fromText(u"Cópia"_qs, {}, desktop.scheduler.now()).value());
    start();
    showView();
    for (const auto &[page, type] :
         {std::pair(u"shelf", "ShelfTile"), {u"clipboard", "ClipTile"}}) {
        coordinator.open({.module = QString::fromUtf16(page)});
        view().grabWindow(); // makes the tiles
        const auto *tile = found([&, name = type](const auto &item) {
            return QByteArray(item.metaObject()->className()).startsWith(name);
        });
        ASSERT_TRUE(tile);
        const QImage picture = TileDrag::picture(*tile).toImage();
        EXPECT_EQ(picture.pixelColor(1, 1).alpha(), 0) << type;
        EXPECT_EQ(picture.pixelColor(picture.rect().center()).alpha(), 255) << type;
    }
}

TEST_F(NotchViewTest, KeepsWhatIsBesideAnUndoThatGoes)
{
    addModules();
    desktop.folder.write(u"a.txt"_qs, "?");
    start();
    showView();
    services.tools->open({QUrl::fromLocalFile(desktop.folder.path(u"a.txt"_qs))}, std::nullopt);
    coordinator.open({.module = u"tools"_qs});
    services.toolsWork->rename(u"b"_qs, 1);
    while (services.toolsWork->isRunning() || !services.toolsWork->canUndo())
        desktop.scheduler.runPosted();
    const auto place = [this] {
        view().grabWindow(); // lays it out
        const auto *button =
            found([](const auto &item) { return item.property("name") == u"Mostrar"_qs; });
        return button ? button->mapToScene({}) : QPointF();
    };
    const QPointF before = place();
    EXPECT_TRUE(names().contains(u"Desfazer"_qs));
    wait(8s);
    EXPECT_FALSE(names().contains(u"Desfazer"_qs));
    EXPECT_NE(before, QPointF());
    EXPECT_EQ(place(), before);
}

TEST_F(NotchViewTest, FillsAPageFromMarginToMargin)
{
    addModules();
    for (int number = 0; number < 20; ++number)
        services.clipboard->add(
            ClipItems::fromText(QString(200, u'█') + QChar(u'a' + number), {}, {}).value());
    services.timers->startTimer(10s);
    start();
    showView();
    for (const PanelSize size : {PanelSize::compact, PanelSize::regular, PanelSize::large}) {
        change([&](AppSettings &next) { next.panelSize = size; });
        int edge = 0;
        for (const auto &[page, card] :
             {std::pair(u"system", "SystemTile"), {u"timers", "TimerCard"}}) {
            coordinator.open({.module = QString::fromUtf16(page)});
            view().grabWindow();                                 // lays it out
            edge = shape()[0].toInt() + shape()[2].toInt() - 20; // its foot is 12 wide
            double right = 0;
            for (const QQuickItem *item : items()) {
                if (QByteArray(item->metaObject()->className()).startsWith(card))
                    right = std::max(right, item->mapToScene({item->width(), 0}).x());
            }
            EXPECT_EQ(right, edge) << card << int(size);
        }
        coordinator.open({.module = u"clipboard"_qs});
        const QImage picture = view().grabWindow();
        for (int y = 40; y < shape()[3].toInt(); ++y)
            EXPECT_LT(picture.pixelColor(edge - 1, y).lightness(), 16) << "it fades at " << y;
    }
}

TEST_F(NotchViewTest, KeepsItsSymbolsInPlaceUnderThePointer)
{
    FakeModule::addTo(*services.modules, u"estreito"_qs).width = 1;
    start();
    showView();
    const auto places = [&] {
        std::vector<QPointF> found;
        for (const QQuickItem *item : items()) {
            if (item->property("surfaceHeight").isValid())
                found.push_back(item->mapToScene({}));
        }
        return found;
    };
    coordinator.open({.module = u"dois"_qs});
    for (const char16_t *other : {u"estreito", u"um", u"estreito"}) {
        const auto before = places();
        ASSERT_EQ(before.size(), 6U);
        desktop.movePointer({before[2].x() + 15, -10});
        coordinator.open({.module = QString::fromUtf16(other)});
        EXPECT_EQ(places(), before) << QString::fromUtf16(other).toStdString();
        desktop.movePointer({800, -100});
        EXPECT_NE(places(), before);
    }
}

TEST_F(NotchViewTest, FitsTwelveModulesBesideTheNotchOfTheNarrowestPanel)
{
    for (int i = 4; i <= 12; ++i)
        FakeModule::addTo(*services.modules, QString::number(i)).width = 1;
    start({screenWithCutout()});
    showView();
    view().setColor(Qt::white);
    coordinator.open({.module = u"12"_qs});
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

TEST_F(NotchViewTest, DrawsNoGulpAcrossAnOpenPanel)
{
    start();
    showView();
    change([](AppSettings &next) { next.animationsEnabled = true; });
    desktop.folder.write(u"a.txt"_qs, "?");
    coordinator.debugDropAnimation(desktop.folder.path(u"a.txt"_qs), {700, 60});
    const auto *glow = view().rootObject()->findChild<QQuickItem *>(u"glow"_qs);
    ASSERT_TRUE(glow);
    wait(DropSurface::dropletFlight);
    while (glow->opacity() < 0.4)
        QCoreApplication::processEvents();
    EXPECT_EQ(shown(), u"dropResult");
    EXPECT_FALSE(glow->isVisible());
    coordinator.toggleFromHotKey();
    EXPECT_TRUE(glow->isVisible()) << "along the notch's edge";
}

} // namespace
} // namespace velmo
