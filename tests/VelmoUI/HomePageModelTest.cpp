#include "VelmoUI/Modules/Home/HomePageModel.h"

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Notes/NotesStore.h"
#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoCore/Timers/TimerCenter.h"
#include "VelmoSystem/Input/HotKeyController.h"
#include "VelmoUI/Modules/Frame/ModuleRegistry.h"
#include "VelmoUI/Modules/Home/FavoritesModel.h"
#include "VelmoUI/Modules/Home/HomeCardSources.h"
#include "VelmoUI/Modules/Mail/SignInsModel.h"

#include "tests/VelmoUI/MailScripts.h"
#include "tests/VelmoUI/PanelFixture.h"
#include "tests/support/Printers.h"
#include "tests/support/Warnings.h"

#include <QPointer>
#include <QQmlEngine>
#include <QQuickItem>

#include <X11/keysym.h>

namespace velmo {
namespace {

class HomePageModelTest : public PanelFixture {
protected:
    HomePageModelTest()
    {
        addModules();
        change([](AppSettings &settings) {
            settings.hasCompletedOnboarding = true;
            settings.hiddenHomeCards = {u"agenda"_qs, u"shelf"_qs, u"clipboard"_qs};
            settings.moduleOrder = {u"home"_qs};
        });
    }

    QStringList shownCards()
    {
        QStringList names;
        for (const auto &card : HomeCardSources{*services.modules, *services.settings}.shown())
            names.append(HomeCards::name(card.card));
        return names;
    }
    int width() const { return shape()[2].toInt(); }
    void install(std::initializer_list<const char16_t *> names)
    {
        for (const char16_t *name : names) {
            const QString text = QString::fromUtf16(name);
            desktop.applications.entries.push_back({text + u".desktop"_qs, text, {}, u"fotos"_qs});
        }
    }
    void open()
    {
        start();
        showView();
        coordinator.open();
        QCoreApplication::processEvents();
    }
    /// Opens Home, which a new mail with a code waits for.
    void receiveCode()
    {
        desktop.servers.scripts = MailScripts::newAccount();
        services.mail->add(MailAccount::make(u"ana@example.org"_qs, {}), u"x"_qs,
                           [](const auto &) {});
        while (services.mail->messages().empty())
            desktop.scheduler.runPosted();
        open();
    }
    HomePageModel &page()
    {
        const QVariant content = view().rootObject()->property("content");
        return dynamic_cast<HomePageModel &>(*content.value<NotchContent *>()->pages()->page());
    }
    FavoritesModel &favorites()
    {
        const QVariant model = field(page().cards(), 0, "content");
        return dynamic_cast<FavoritesModel &>(*model.value<QObject *>());
    }
    static QStringList names(const QAbstractItemModel *model) { return column(model, "name"); }
    /// What is drawn by that QML.
    static const QQuickItem *part(const QByteArray &type, const QQuickItem *from)
    {
        if (QByteArray(from->metaObject()->className()).startsWith(type))
            return from;
        for (const QQuickItem *child : from->childItems()) {
            if (const QQuickItem *found = part(type, child))
                return found;
        }
        return nullptr;
    }
};

} // namespace

TEST_F(HomePageModelTest, BringsWhatMattersNowToTheFront)
{
    const auto first = [&](int percent, bool isCharging) {
        desktop.power.set(BatteryInfo{.percent = percent, .isCharging = isCharging});
        return shownCards().front();
    };
    EXPECT_EQ(first(16, false), u"favorites");
    EXPECT_EQ(first(15, false), u"system");
    EXPECT_EQ(first(15, true), u"favorites");
    desktop.power.set(std::nullopt);
    EXPECT_EQ(shownCards().front(), u"favorites");
    const Uuid timer = services.timers->startTimer(60s).id;
    EXPECT_EQ(shownCards().front(), u"focus");
    services.timers->pause(timer);
    EXPECT_EQ(shownCards().front(), u"favorites");
    services.notes->addTask(u"ler"_qs, desktop.scheduler.now() - 1s);
    EXPECT_EQ(shownCards().front(), u"notes");
}

TEST_F(HomePageModelTest, OffersALoginUntilItIsUsed)
{
    receiveCode();
    const int withOffer = width();
    EXPECT_EQ(column(page().cards(), "id").front(), u"mail.offer");
    page().askAbout(u"mail.offer"_qs);
    EXPECT_EQ(column(page().commands(), "title"),
              (QStringList{u"Abrir E-mail"_qs, u"Escolher cartões"_qs}));
    auto *offer = field(page().cards(), 0, "content").value<QObject *>();
    auto &card = dynamic_cast<SignInsModel &>(*offer);
    EXPECT_EQ(column(card.signIns(), "code"), QStringList{u"482913"_qs}) << "sent twice";
    card.use(column(card.signIns(), "id").front());
    EXPECT_EQ(desktop.pasteboard.written.text, u"482913");
    EXPECT_EQ(column(page().cards(), "id").front(), u"favorites");
    EXPECT_EQ(withOffer - width(), 250 + 10);
}

TEST_F(HomePageModelTest, OffersNoOldLogin)
{
    receiveCode();
    desktop.scheduler.advance(599s);
    EXPECT_EQ(column(page().cards(), "id").front(), u"mail.offer");
    desktop.scheduler.advance(1s);
    EXPECT_EQ(column(page().cards(), "id").front(), u"favorites");
}

TEST_F(HomePageModelTest, MakesThePanelAsWideAsItsCards)
{
    change([](AppSettings &settings) { settings.hasCompletedOnboarding = false; });
    open();
    Warnings warnings;
    const int withWelcome = width();
    page().finishOnboarding();
    EXPECT_EQ(warnings.take(), QStringList());
    constexpr int wanted = 72 + (146 + 10) + (158 + 10) + (214 + 10) + 290 + 20;
    constexpr int leastForTheBar = 240 + 190 + 240;
    EXPECT_EQ(withWelcome - width(), wanted - leastForTheBar);
}

TEST_F(HomePageModelTest, TeachesWhatWorksWhereNoCardIsShown)
{
    change([](AppSettings &settings) {
        settings.hiddenHomeCards = {u"favorites"_qs, u"agenda"_qs,    u"focus"_qs, u"shelf"_qs,
                                    u"notes"_qs,     u"clipboard"_qs, u"system"_qs};
        settings.newNoteHotKeyEnabled = false;
        settings.hoverBehavior = HoverBehavior::preview;
    });
    for (const auto action : {HotKeyAction::toggle, HotKeyAction::newNote})
        services.hotKeys->handlers[action] = [] {};
    open();
    EXPECT_TRUE(page().isEmpty());
    EXPECT_EQ(column(page().tips(), "title"),
              (QStringList{u"Arraste até aqui"_qs, u"Passe o cursor"_qs, u"Ctrl+Alt+N"_qs}));
    EXPECT_EQ(column(page().tips(), "detail").at(1), u"Ver uma prévia");
    change([](AppSettings &settings) { settings.hoverBehavior = HoverBehavior::none; });
    EXPECT_EQ(page().tips()->rowCount(), 2);
}

TEST_F(HomePageModelTest, TurnsItsPagesByKeyAndWheel)
{
    open();
    EXPECT_EQ(page().pageCount(), 1);
    page().setWidth(620, 10);
    ASSERT_EQ(page().pageCount(), 2);
    press(XK_Right, Qt::ControlModifier, Qt::Key_Right);
    press(XK_Right, Qt::ControlModifier, Qt::Key_Right);
    EXPECT_EQ(page().pageIndex(), 1);
    press(XK_Left, Qt::ControlModifier, Qt::Key_Left);
    EXPECT_EQ(page().pageIndex(), 0);
    const auto turn = [&](int angle) {
        page().turnWheel(angle);
        return page().pageIndex();
    };
    EXPECT_EQ(turn(-119), 0);
    EXPECT_EQ(turn(10), 0); // turning back begins anew
    EXPECT_EQ(turn(-60), 0);
    EXPECT_EQ(turn(-60), 1);
    EXPECT_EQ(turn(-119), 1);
    EXPECT_EQ(turn(120), 0);
}

TEST_F(HomePageModelTest, KeepsWhatItsCardsShowWhileThePanelIsClosed)
{
    open();
    const QPointer<QObject> favorites = &this->favorites();
    press(XK_Escape, {}, Qt::Key_Escape);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    qmlEngine(view().rootObject())->collectGarbage();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(favorites);
}

TEST_F(HomePageModelTest, ReadsTheMachineOnlyWhileItIsSeen)
{
    open();
    for (const auto &module : {u"home"_qs, u"system"_qs}) {
        coordinator.open({.module = module});
        QCoreApplication::processEvents();
        const int before = desktop.load.reads;
        wait(10s);
        EXPECT_GT(desktop.load.reads, before) << module.toStdString();
        press(XK_Escape, {}, Qt::Key_Escape);
        const int closed = desktop.load.reads;
        wait(10s);
        EXPECT_EQ(desktop.load.reads, closed) << module.toStdString();
    }
}

TEST_F(HomePageModelTest, MovesAndRemovesTheFavoriteThatHasTheKeyboard)
{
    install({u"a", u"b", u"c"});
    change([](AppSettings &settings) {
        settings.favoriteApps = {u"a.desktop"_qs, u"b.desktop"_qs, u"c.desktop"_qs};
    });
    open();
    press(XK_Tab, {}, Qt::Key_Tab); // the button that adds one
    press(XK_Tab, {}, Qt::Key_Tab);
    press(XK_Right, Qt::ControlModifier | Qt::ShiftModifier, Qt::Key_Right);
    EXPECT_EQ(names(favorites().favorites()), (QStringList{u"b"_qs, u"a"_qs, u"c"_qs}));
    view().grabWindow(); // lays the moved ones out
    press(XK_Left, {}, Qt::Key_Left);
    press(XK_Delete, {}, Qt::Key_Delete);
    EXPECT_EQ(favorites().removedName(), u"b");
    press(XK_Escape, {}, Qt::Key_Escape);
    EXPECT_EQ(favorites().removedName(), QString());
    EXPECT_EQ(names(favorites().favorites()), (QStringList{u"a"_qs, u"c"_qs}));
}

TEST_F(HomePageModelTest, OffersMenusOfItsFavoritesAndCards)
{
    install({u"a", u"b"});
    change([](AppSettings &settings) {
        settings.favoriteApps = {u"a.desktop"_qs, u"b.desktop"_qs};
    });
    open();
    const auto choose = [this](int place) {
        QCoreApplication::processEvents();
        for (int i = 0; i < place; ++i)
            press(XK_Down, {}, Qt::Key_Down);
        press(XK_Return, {}, Qt::Key_Return);
    };
    press(XK_Tab, {}, Qt::Key_Tab);
    press(XK_Tab, {}, Qt::Key_Tab);
    press(XK_Menu, {}, Qt::Key_Menu);
    choose(1);
    EXPECT_EQ(names(favorites().favorites()), QStringList{u"b"_qs});

    const auto openMenuOf = [this](const char *card) {
        coordinator.open({.module = u"home"_qs});
        view().grabWindow(); // lays it out
        const QQuickItem *item = part(card, view().rootObject());
        ASSERT_TRUE(item) << card;
        const QPointF title = item->mapToScene({20, 20});
        QMouseEvent press(QEvent::MouseButtonPress, title, title, Qt::RightButton, Qt::RightButton,
                          {});
        QCoreApplication::sendEvent(&view(), &press);
    };
    openMenuOf("FocusCard");
    EXPECT_EQ(column(page().commands(), "title").first(), u"Abrir Timers");
    choose(0);
    EXPECT_EQ(module(), u"timers");
    openMenuOf("FocusCard");
    choose(1);
    EXPECT_EQ(settings().hiddenHomeCards.back(), u"focus");
    openMenuOf("FavoritesCard");
    choose(0);
    EXPECT_EQ(settings().hiddenHomeCards.back(), u"favorites") << "no module is behind it";
}

TEST_F(HomePageModelTest, StartsKeepsAndBringsBackFavorites)
{
    install({u"alfa", u"beta", u"Álbum"});
    open();
    FavoritesModel &favorites = this->favorites();
    favorites.startPicking();
    favorites.search(u"AL"_qs);
    EXPECT_EQ(names(favorites.found()), (QStringList{u"alfa"_qs, u"Álbum"_qs}));
    favorites.addFirst();
    favorites.search(u"Foto"_qs);
    EXPECT_EQ(favorites.found()->rowCount(), 3);
    favorites.toggle(u"beta.desktop"_qs);
    favorites.remove(u"alfa.desktop"_qs);
    EXPECT_EQ(favorites.removedName(), u"alfa");
    favorites.undoRemove();
    EXPECT_EQ(names(favorites.favorites()), (QStringList{u"alfa"_qs, u"beta"_qs}));
    EXPECT_EQ(favorites.removedName(), QString());

    favorites.launch(u"beta.desktop"_qs);
    EXPECT_EQ(desktop.applications.launched, std::vector{u"beta.desktop"_qs});
    EXPECT_EQ(shown(), u"collapsed");
    coordinator.open();
    desktop.applications.entries.clear();
    favorites.launch(u"beta.desktop"_qs);
    EXPECT_EQ(services.activity->feedback()->title, u"Não foi possível abrir");
    EXPECT_EQ(shown(), u"collapsed"); // an open panel shows no feedback
}

} // namespace velmo
