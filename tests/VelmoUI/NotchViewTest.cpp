#include "VelmoUI/Design/TileDrag.h"

#include "tests/VelmoUI/PanelFixture.h"
#include "tests/support/Printers.h"
#include "tests/support/Warnings.h"

#include <QFont>
#include <QLocale>
#include <QPointer>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QRegularExpression>

#include <X11/keysym.h>
#include <set>

namespace velmo {
namespace {

class NotchViewTest : public PanelFixture {
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

    static ScreenDescriptor screenWithCutout()
    {
        ScreenDescriptor screen = FakeDesktop::screen(1);
        screen.safeAreaTop = 32;
        screen.auxiliaryTopLeftWidth = screen.auxiliaryTopRightWidth = 705;
        return screen;
    }

    QQuickItem *found(const std::function<bool(const QQuickItem &)> &isWanted)
    {
        for (QQuickItem *item : items()) {
            if (isWanted(*item))
                return item;
        }
        return nullptr;
    }
    /// A module with that page.
    void addPage(const QByteArray &qml)
    {
        desktop.folder.write(u"Page.qml"_qs, qml);
        FakeModule::addTo(services.modules, u"página"_qs).page =
            QUrl::fromLocalFile(desktop.folder.path(u"Page.qml"_qs));
    }
    /// The same, opened with the keyboard in it.
    void openPage(const QByteArray &qml)
    {
        addPage(qml);
        start();
        showView();
        view().requestActivate();
        coordinator.open({.module = u"página"_qs});
        desktop.movePointer(notchOf(1));
        QCoreApplication::processEvents();
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

    /// The name of the control that has the keyboard after that key.
    QString nameAfter(Qt::Key key)
    {
        QKeyEvent event(QEvent::KeyPress, key, {});
        QCoreApplication::sendEvent(&view(), &event);
        return view().activeFocusItem()->property("name").toString();
    }

    Warnings warnings;
};

TEST_F(NotchViewTest, DrawsEveryPresentationWithoutAWarning)
{
    addPage(R"(import QtQuick
        Item { property QtObject page; property color accent; property bool watched })");
    addModules(u"activity"_qs);
    addModules(u"shelf"_qs);
    services.shelf.addText(u"Nota"_qs);
    services.shelf.addLink(QUrl(u"https://example.org"_qs));
    start({screenWithCutout()});
    showView();
    view().setColor(Qt::white);
    check("empty");

    services.activity.post(ActivityEvent::make(desktop.scheduler.now(), u"doc.fill"_qs,
                                               u"Pronto"_qs, FeedbackStyle::success, u"test"_qs,
                                               u"Detalhe"_qs, {QUrl(u"file:///a"_qs)}));
    services.activity.upsert(
        {.id = u"timer"_qs,
         .symbol = u"timer"_qs,
         .title = u"Timer"_qs,
         .countdown = DateRange{desktop.scheduler.now(), desktop.scheduler.now() + 90s},
         .isCancellable = true});
    check("message");
    services.activity.dismissFeedback();
    check("live");
    change([](AppSettings &next) { next.hoverBehavior = HoverBehavior::preview; });
    hover();
    check("preview");
    for (const char16_t *page : {u"activity", u"página", u"activity", u"shelf", u"um"}) {
        coordinator.open({.module = QString::fromUtf16(page)});
        check("page");
    }
    coordinator.open({.module = u"activity"_qs});
    services.activity.clearHistory();
    services.activity.cancel(u"timer"_qs);
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

// ctest runs it at other scales too, where edges lie between pixels.
TEST_F(NotchViewTest, LetsNothingThroughTheShape)
{
    auto &module = FakeModule::addTo(services.modules, u"vazio"_qs);
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
    services.activity.upsert(
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
    services.activity.post(ActivityEvent::make(desktop.scheduler.now(), u"doc.fill"_qs,
                                               u"Pronto"_qs, FeedbackStyle::success, u"test"_qs,
                                               u"Um detalhe"_qs));
    expectMiddle("FeedbackContent");
}

TEST_F(NotchViewTest, KeepsTheAgeOfACopyBesideALongName)
{
    addModules(u"clipboard"_qs);
    const QString name = u"Um aplicativo com um nome muito comprido"_qs;
    services.clipboard.add(
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
        services.activity.post(ActivityEvent::make(desktop.scheduler.now(), u"doc.fill"_qs,
                                                   u"Pronto"_qs, FeedbackStyle::success, u"test"_qs,
                                                   {}));
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

TEST_F(NotchViewTest, ReachesEveryControlByTabAndWorksItByKey)
{
    addModules(u"activity"_qs);
    bool isCancelled = false;
    services.activity.upsert(
        {.id = u"job"_qs, .title = u"Job"_qs, .progress = 0.5, .isCancellable = true},
        [&] { isCancelled = true; });
    services.activity.post(ActivityEvent::make(desktop.scheduler.now(), {}, u"Pronto"_qs,
                                               FeedbackStyle::success, u"test"_qs, {},
                                               {QUrl(u"file:///a"_qs)}));
    start();
    showView();
    view().requestActivate();
    coordinator.open({.module = u"activity"_qs});
    QCoreApplication::processEvents();
    ASSERT_TRUE(view().activeFocusItem());
    EXPECT_EQ(view().activeFocusItem()->property("name").toString(), QString())
        << "no control is set off by a key that was meant for another window";

    QStringList names;
    while (names.size() < 20 && !names.contains(u"Fechar"_qs))
        names.append(nameAfter(names.isEmpty() ? Qt::Key_Down : Qt::Key_Tab));
    names.replaceInStrings(QRegularExpression(u"Pronto, .*"_qs), u"Pronto"_qs);
    EXPECT_EQ(names, QStringList({u"Job, 50%"_qs, u"Cancelar"_qs, u"Limpar"_qs, u"Pronto"_qs,
                                  u"Mostrar na pasta"_qs, u"UM"_qs, u"DOIS"_qs, u"TRÊS"_qs,
                                  u"Atividade"_qs, u"Ajustes"_qs, u"Fechar"_qs}));
    EXPECT_EQ(nameAfter(Qt::Key_Right), u"Fechar") << "the bar's end";
    EXPECT_EQ(nameAfter(Qt::Key_Left), u"Ajustes");
    EXPECT_EQ(nameAfter(Qt::Key_Left), u"Atividade");
    nameAfter(Qt::Key_Tab);
    nameAfter(Qt::Key_Tab);
    EXPECT_EQ(nameAfter(Qt::Key_Tab), u"Cancelar");
    nameAfter(Qt::Key_Space);
    EXPECT_TRUE(isCancelled);
}

TEST_F(NotchViewTest, CutsNothingAndLeavesNoRoomForWhatHasNoData)
{
    addModules();
    change([](AppSettings &next) {
        next.hasCompletedOnboarding = true;
        next.hiddenHomeCards = {};
    });
    for (int number = 0; number < 20; ++number) {
        const QString text = u"Item %1"_qs.arg(number);
        services.shelf.addText(text);
        services.notes.addTask(text);
        services.clipboard.add(ClipItems::fromText(text, {}, desktop.scheduler.now()).value());
    }
    for (int number = 0; number < 2; ++number)
        services.timers.startTimer(10s);
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

TEST_F(NotchViewTest, GivesTheKeyboardToThePageThatIsCalled)
{
    addModules();
    services.shelf.addText(u"Texto"_qs);
    services.notes.createNote(u"Nota"_qs);
    services.clipboard.add(ClipItems::fromText(u"Cópia"_qs, {}, desktop.scheduler.now()).value());
    start();
    showView();
    view().requestActivate();
    coordinator.open();
    const struct {
        const char16_t *page;
        const char16_t *written; ///< in what has the keyboard after an "x"
    } pages[] = {{u"home", u""},       {u"tools", u""},  {u"shelf", u"x"}, {u"clipboard", u"x"},
                 {u"notes", u"Notax"}, {u"timers", u""}, {u"system", u""}, {u"activity", u""}};
    for (const auto &[page, written] : pages) {
        QCoreApplication::processEvents();
        found([](const auto &item) {
            return item.property("name") == u"Fechar"_qs;
        })->forceActiveFocus();
        coordinator.open({.module = QString::fromUtf16(page)});
        QCoreApplication::processEvents();
        QKeyEvent letter(QEvent::KeyPress, Qt::Key_X, {}, u"x"_qs);
        QCoreApplication::sendEvent(&view(), &letter);
        const QQuickItem *item = view().activeFocusItem();
        EXPECT_EQ(item->property("text").toString(), written)
            << QString::fromUtf16(page).toStdString();
        while (item && !item->property("page").isValid())
            item = item->parentItem();
        EXPECT_TRUE(item) << QString::fromUtf16(page).toStdString() << " hasn't the keyboard";
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
        const auto told = [&](bool loads) {
            keeper.loads = loads;
            services.files.notify();
            coordinator.open({.module = QString::fromUtf16(page)});
            const QRegularExpression words(
                u"aparece|guardar|copiar|vazia|Nenhuma a|Sem tarefas|Carre"_qs);
            return names().filter(words);
        };
        EXPECT_EQ(told(true), QStringList(u"Carregando…"_qs))
            << QString::fromUtf16(page).toStdString();
        const QStringList after = told(false);
        EXPECT_FALSE(after.isEmpty() || after.contains(u"Carregando…"_qs));
    }
    services.files.remove(keeper);
}

TEST_F(NotchViewTest, DragsThePictureOfARoundTile)
{
    addModules();
    services.shelf.addText(u"Texto"_qs);
    services.clipboard.add(ClipItems::fromText(u"Cópia"_qs, {}, desktop.scheduler.now()).value());
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
    services.tools.open({QUrl::fromLocalFile(desktop.folder.path(u"a.txt"_qs))}, std::nullopt);
    coordinator.open({.module = u"tools"_qs});
    services.toolsWork.rename(u"b"_qs, 1);
    while (services.toolsWork.isRunning() || !services.toolsWork.canUndo())
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
        services.clipboard.add(
            ClipItems::fromText(QString(200, u'█') + QChar(u'a' + number), {}, {}).value());
    services.timers.startTimer(10s);
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

TEST_F(NotchViewTest, GivesTheKeyboardToTheActionsOfAnotherDrop)
{
    start();
    showView();
    view().requestActivate();
    const auto drop = [this] {
        coordinator.openFiles({QUrl(u"file:///a"_qs)});
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

TEST_F(NotchViewTest, KeepsItsSymbolsInPlaceUnderThePointer)
{
    FakeModule::addTo(services.modules, u"estreito"_qs).width = 1;
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

TEST_F(NotchViewTest, StaysOpenForWhoIsWritingInIt)
{
    openPage(R"(import QtQuick
        FocusScope {
            focus: true
            property QtObject page; property bool watched
            TextInput { focus: true }
        })");
    const auto leave = [&](Seconds time) {
        desktop.movePointer(notchOf(1));
        desktop.movePointer(outside);
        wait(time);
        return shown();
    };
    press(XK_a, {}, Qt::Key_A);
    EXPECT_EQ(leave(9.9s), u"expanded");
    press(XK_b, {}, Qt::Key_B);
    wait(9.9s);
    EXPECT_EQ(shown(), u"expanded");
    wait(0.1s);
    EXPECT_EQ(shown(), u"collapsed");

    const auto compose = [&](const QString &preedit) {
        QInputMethodEvent event(preedit, {});
        QCoreApplication::sendEvent(view().activeFocusItem(), &event);
    };
    const auto reopen = [&] {
        coordinator.open();
        QCoreApplication::processEvents();
    };
    reopen();
    compose({});
    EXPECT_EQ(leave(0.5s), u"collapsed") << "nothing was written";
    reopen();
    compose(u"か"_qs);
    EXPECT_EQ(leave(60s), u"expanded");
    compose({});
    wait(10s);
    EXPECT_EQ(shown(), u"collapsed");
    reopen();
    press(XK_a, {}, Qt::Key_A);
    view().activeFocusItem()->setFocus(false);
    EXPECT_EQ(leave(0.5s), u"collapsed") << "the text hasn't the keyboard";
}

TEST_F(NotchViewTest, StaysOpenWhileAMenuOfItsOwnIs)
{
    openPage(R"(import QtQuick
        import Velmo.Design
        FocusScope {
            property QtObject page; property bool watched
            function openMenu() { menu.open(Qt.point(5, 5)) }
            ContextMenu { id: menu; model: 0 }
        })");
    const auto openMenu = [&] {
        auto *page = found([](const auto &item) { return item.property("watched").isValid(); });
        QMetaObject::invokeMethod(page, "openMenu");
        return page->childItems().front();
    };
    const QQuickItem *menu = openMenu();
    desktop.movePointer(outside);
    wait(60s);
    EXPECT_EQ(shown(), u"expanded");
    desktop.pointer.press(outside, 7);
    EXPECT_FALSE(menu->isVisible());
    desktop.pointer.press(outside, 7);
    wait(0.79s);
    EXPECT_EQ(shown(), u"expanded");
    wait(0.01s);
    EXPECT_EQ(shown(), u"collapsed") << "the pointer has left it";

    change([](AppSettings &next) { next.closeOnMouseLeave = false; });
    coordinator.open();
    openMenu();
    desktop.pointer.press(outside, 7);
    wait(0.8s);
    desktop.pointer.press(outside, 7);
    EXPECT_EQ(shown(), u"collapsed");
    coordinator.open();
    openMenu();
    coordinator.open({.module = u"um"_qs});
    QCoreApplication::processEvents();
    wait(0.8s);
    desktop.pointer.press(outside, 7);
    EXPECT_EQ(shown(), u"collapsed") << "the menu went with its page";
}

TEST_F(NotchViewTest, ShowsWhereTheKeyboardIsToWhoGoesByKey)
{
    openPage(R"(import QtQuick
        import Velmo.Design
        FocusScope {
            focus: true
            property QtObject page; property bool watched
            ActionButton { name: "Um"; focus: true }
            TextEntry { name: "Texto"; y: 40 }
        })");
    const auto rings = [&] {
        int count = 0;
        for (const QQuickItem *item : items())
            count += QByteArray(item->metaObject()->className()).startsWith("FocusRing");
        return count;
    };
    const auto click = [&](const char *name) {
        const auto *item = found(
            [&](const auto &one) { return one.property("name") == QString::fromLatin1(name); });
        const QPointF middle = item->mapToScene({item->width() / 2, item->height() / 2});
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QMouseEvent event(type, middle, middle, Qt::LeftButton,
                              type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, {});
            QCoreApplication::sendEvent(&view(), &event);
        }
    };
    nameAfter(Qt::Key_Tab);
    EXPECT_EQ(rings(), 1);
    click("Um");
    EXPECT_EQ(rings(), 0);
    nameAfter(Qt::Key_Tab);
    EXPECT_EQ(rings(), 1);
    click("Texto");
    EXPECT_TRUE(view().activeFocusItem()->property("cursorPosition").isValid());
    nameAfter(Qt::Key_A);
    EXPECT_EQ(rings(), 0) << "what is written shows where the keyboard is";
    coordinator.toggleFromHotKey();
    coordinator.toggleFromHotKey();
    QCoreApplication::processEvents();
    EXPECT_EQ(rings(), 1) << "called by key";
}

TEST_F(NotchViewTest, NeverTabsToWhatIsNotSeen)
{
    change([](AppSettings &next) {
        next.hasCompletedOnboarding = true;
        next.hiddenHomeCards.clear();
    });
    addModules();
    std::vector<QUrl> files;
    for (int i = 0; i < 30; ++i) {
        const QString text = u"Número %1"_qs.arg(i);
        services.shelf.addText(text);
        services.notes.createNote(text + u" #"_qs + QString(i + 1, u'a') + u" https://x.org/%1"_qs);
        services.notes.addTask(text, std::nullopt);
        services.timers.addPreset(60s * (i + 1));
        services.timers.startTimer(60s, text);
        services.clipboard.add(ClipItems::fromText(text, {}, desktop.scheduler.now()).value());
        services.clipboard.createCollection(text);
        services.activity.post(ActivityEvent::make(desktop.scheduler.now(), {}, text,
                                                   FeedbackStyle::success, u"test"_qs, {},
                                                   {QUrl(u"file:///a"_qs)}));
        desktop.folder.write(text, "?");
        files.push_back(QUrl::fromLocalFile(desktop.folder.path(text)));
    }
    start();
    showView();
    view().requestActivate();
    services.tools.open(files, std::nullopt);
    for (const char16_t *page :
         {u"home", u"shelf", u"notes", u"timers", u"activity", u"tools", u"clipboard", u"system"}) {
        coordinator.open({.module = QString::fromUtf16(page)});
        view().grabWindow(); // lays it out
        for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) {
            QCoreApplication::processEvents();
            std::vector<QPointer<QQuickItem>> visited; // lists make and delete what is in them
            int within = 0;
            for (int i = 0; i < 300; ++i) {
                const QString name = nameAfter(key);
                QQuickItem *item = view().activeFocusItem();
                if (std::ranges::any_of(visited, [&](const auto &one) { return one == item; }))
                    break;
                visited.emplace_back(item);
                QCoreApplication::processEvents(); // it is scrolled to
                const QRectF place = item->boundingRect();
                within += item->mapRectToScene(place).top() > 32 ? 1 : 0;
                for (auto *holder = item->parentItem(); holder; holder = holder->parentItem()) {
                    EXPECT_TRUE(!holder->clip() ||
                                holder->contains(item->mapToItem(holder, place.center())))
                        << QString::fromUtf16(page).toStdString() << ": " << name.toStdString();
                }
            }
            EXPECT_GT(within, 0) << QString::fromUtf16(page).toStdString();
        }
    }
}

TEST_F(NotchViewTest, SaysWhyAPageIsMissingAndLoadsItOnDemand)
{
    auto &module = FakeModule::addTo(services.modules, u"quebrado"_qs);
    module.failure = u"Falta um serviço."_qs;
    start();
    showView();
    coordinator.open({.module = u"quebrado"_qs});
    EXPECT_TRUE(names().contains(u"QUEBRADO não pôde ser carregado"_qs));
    EXPECT_TRUE(names().contains(u"Falta um serviço."_qs));
    coordinator.open({.module = u"um"_qs});
    EXPECT_FALSE(names().contains(u"Tentar novamente"_qs));

    coordinator.open({.module = u"quebrado"_qs});
    view().requestActivate();
    QCoreApplication::processEvents();
    EXPECT_EQ(nameAfter(Qt::Key_Space), u"Tentar novamente") << "it fails again";
    module.failure.clear();
    warnings.take(); // of the failures
    nameAfter(Qt::Key_Space);
    EXPECT_EQ(module.activations, 4);
    EXPECT_FALSE(names().contains(u"Tentar novamente"_qs));
}

TEST_F(NotchViewTest, FitsTwelveModulesBesideTheNotchOfTheNarrowestPanel)
{
    for (int i = 4; i <= 12; ++i)
        FakeModule::addTo(services.modules, QString::number(i)).width = 1;
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

TEST_F(NotchViewTest, LetsThePageHaveItsKeysFirst)
{
    openPage(R"(import QtQuick
        FocusScope {
            focus: true
            property QtObject page; property bool watched; property bool asks: true
            TextInput {
                focus: true; text: "duas palavras"; cursorPosition: 13
                Keys.onEscapePressed: event => { event.accepted = parent.asks; parent.asks = false }
            }
        })");
    press(XK_Left, Qt::ControlModifier, Qt::Key_Left);
    EXPECT_EQ(view().activeFocusItem()->property("cursorPosition"), 5);
    press(XK_Escape, {}, Qt::Key_Escape);
    EXPECT_EQ(shown(), u"expanded");
    press(XK_Escape, {}, Qt::Key_Escape);
    EXPECT_EQ(shown(), u"collapsed");
}

TEST_F(NotchViewTest, WorksOnTasksByKey)
{
    addModules();
    services.notes.createNote(u"Plano"_qs);
    services.notes.addTask(u"regar"_qs);
    start();
    showView();
    view().requestActivate();
    coordinator.open({.module = u"notes"_qs});
    QQuickItem *editor = found([](const auto &item) { return item.property("isLong").isValid(); });
    QQuickItem *line =
        found([](const auto &item) { return item.property("name") == u"Nova tarefa"_qs; });
    const auto focusTask = [&] {
        view().grabWindow(); // lists make what is in them when it is drawn
        found([](const auto &item) {
            return item.property("removal") == u"Remover regar"_qs;
        })->forceActiveFocus();
    };
    const auto count = [&] { return services.notes.tasks().size(); };
    const auto remove = [&] {
        focusTask();
        press(XK_Delete, {}, Qt::Key_Delete);
        EXPECT_EQ(count(), 0U);
    };
    const auto undo = [&] {
        press(XK_z, Qt::ControlModifier, Qt::Key_Z);
        return count();
    };
    remove();
    EXPECT_EQ(undo(), 1U);
    for (QQuickItem *field : {editor, line}) {
        remove();
        field->forceActiveFocus();
        EXPECT_EQ(undo(), 1U);
    }
    remove();
    constexpr quint32 placeOfZ = 52;
    press(XK_Cyrillic_ya, Qt::ControlModifier, 0x42f, placeOfZ);
    EXPECT_EQ(count(), 1U) << "the layout has no z";
    remove();
    line->forceActiveFocus();
    QKeyEvent typing(QEvent::KeyPress, Qt::Key_A, {}, u"a"_qs);
    QCoreApplication::sendEvent(&view(), &typing);
    EXPECT_EQ(undo(), 0U) << "what was typed goes first";
    EXPECT_EQ(undo(), 1U);

    focusTask();
    press(XK_Menu, {}, Qt::Key_Menu);
    EXPECT_EQ(view().activeFocusItem()->property("name"), u"Concluir"_qs);
    EXPECT_EQ(nameAfter(Qt::Key_Down), u"Lembrete…");
    EXPECT_FALSE(names().contains(u"Lembrete: regar"_qs));
    press(XK_Return, {}, Qt::Key_Return);
    EXPECT_TRUE(names().contains(u"Lembrete: regar"_qs));
    focusTask();
    press(XK_Menu, {}, Qt::Key_Menu);
    EXPECT_EQ(nameAfter(Qt::Key_Escape), u"regar") << "it goes back to the task";
    EXPECT_EQ(warnings.take(), QStringList());
}

TEST_F(NotchViewTest, NeverConfirmsWhereTheFirstPressWas)
{
    start();
    showView();
    QQmlComponent probe(qmlEngine(view().rootObject()));
    probe.setData(R"(import QtQuick
        import Velmo.Design
        Item {
            width: 600
            ConfirmButton {
                anchors.right: parent.right
                name: "Restaurar tudo agora…"
                question: "Certeza?"
                confirmName: "Sim"
            }
        })",
                  {});
    const std::unique_ptr<QObject> made(probe.create());
    auto *const item = qobject_cast<QQuickItem *>(made.get());
    ASSERT_TRUE(item) << qPrintable(probe.errorString());
    item->setParentItem(view().rootObject());
    const auto button = [&](const QString &name) {
        for (QQuickItem *child : item->childItems().front()->childItems()) {
            if (child->property("name").toString() == name)
                return child;
        }
        throw std::logic_error("no such button");
    };
    const auto place = [](const QQuickItem *of) {
        return of->mapRectToScene({0, 0, of->width(), of->height()});
    };
    view().grabWindow();
    QQuickItem *const first = button(u"Restaurar tudo agora…"_qs);
    const QRectF pressed = place(first);
    QMetaObject::invokeMethod(first, "triggered");
    view().grabWindow();
    EXPECT_FALSE(place(button(u"Sim"_qs)).intersects(pressed));
    EXPECT_TRUE(place(button(u"Manter"_qs)).contains(pressed));
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
