#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoUI/Modules/Frame/ModuleRegistry.h"
#include "VelmoUI/Notch/NotchContent.h"

#include "tests/VelmoUI/PanelFixture.h"
#include "tests/support/Printers.h"

#include <QMimeData>
#include <QQuickItem>

#include <X11/keysym.h>
#include <cmath>

namespace velmo {
namespace {

using NotchCoordinatorTest = PanelFixture;

TEST_F(NotchCoordinatorTest, OpensUnderAPointerThatRestsAndTakesTheKeyboardByAPress)
{
    start();
    desktop.movePointer(notchOf(1));
    wait(0.11s);
    desktop.movePointer({notchOf(1).x + 5, -4});
    EXPECT_EQ(shown(), u"collapsed");
    wait(0.01s);
    EXPECT_EQ(shown(), u"expanded") << "a move inside starts nothing again";
    EXPECT_FALSE(window().isKey()) << "the keyboard stays where it is";
    desktop.pointer.press(notchOf(1), window().id());
    EXPECT_TRUE(window().isKey());
    desktop.pointer.release(notchOf(1));

    desktop.pointer.press(outside, 7);
    EXPECT_EQ(shown(), u"collapsed");
    EXPECT_FALSE(window().isKey());
    desktop.pointer.press(notchOf(1), window().id());
    EXPECT_FALSE(window().isKey()) << "a closed panel takes it when the tap has opened it";
}

TEST_F(NotchCoordinatorTest, ClosesSomeTimeAfterThePointerLeft)
{
    start();
    hover();
    desktop.movePointer({300, -100});
    wait(1s);
    EXPECT_EQ(shown(), u"expanded") << "the open panel is larger than the notch";
    desktop.movePointer(outside);
    wait(0.4s);
    desktop.movePointer(notchOf(1));
    wait(1s);
    EXPECT_EQ(shown(), u"expanded") << "it came back in time";
    desktop.movePointer(outside);
    wait(0.49s);
    EXPECT_EQ(shown(), u"expanded");
    wait(0.01s);
    EXPECT_EQ(shown(), u"collapsed");

    change([](AppSettings &next) {
        next.hoverBehavior = HoverBehavior::preview;
        next.closeDelay = 5s;
    });
    hover();
    EXPECT_EQ(shown(), u"preview");
    desktop.movePointer(outside);
    wait(0.17s);
    EXPECT_EQ(shown(), u"preview");
    wait(0.01s);
    EXPECT_EQ(shown(), u"collapsed");
}

TEST_F(NotchCoordinatorTest, ClosesBehindAPointerThatItOpenedUnder)
{
    FakeModule &narrow = FakeModule::addTo(*services.modules, u"estreito"_qs);
    narrow.width = 600;
    start();
    desktop.movePointer({300, -100});
    coordinator.toggleFromHotKey();
    desktop.movePointer(outside);
    wait(0.5s);
    EXPECT_EQ(shown(), u"collapsed");

    coordinator.toggleFromHotKey();
    desktop.movePointer({101, -601});
    wait(5s);
    EXPECT_EQ(shown(), u"expanded") << "the pointer was never in it";

    desktop.movePointer({300, -100});
    coordinator.toggleFromHotKey();
    coordinator.open({.module = narrow.id()});
    desktop.movePointer(outside);
    wait(5s);
    EXPECT_EQ(shown(), u"expanded") << "the pointer was in what closed before";
}

TEST_F(NotchCoordinatorTest, StaysOpenWhenItShrinksAwayFromAPointerThatRests)
{
    FakeModule &narrow = FakeModule::addTo(*services.modules, u"estreito"_qs);
    narrow.width = 600;
    start();
    hover();
    for (const Point rest : {Point{230, -100}, {1370, -150}}) {
        coordinator.open({.module = u"um"_qs});
        desktop.movePointer(rest);
        coordinator.open({.module = narrow.id()});
        ASSERT_GT(std::abs(rest.x - 800), shape()[2].toInt() / 2);
        QEvent crossing(QEvent::Leave); // the server says it left what is now smaller
        QCoreApplication::sendEvent(&view(), &crossing);
        wait(5s);
        EXPECT_EQ(shown(), u"expanded");
        desktop.movePointer({rest.x + 1, rest.y});
        wait(5s);
        EXPECT_EQ(shown(), u"expanded") << "still where it was in the panel";
    }
    desktop.movePointer(outside);
    wait(0.5s);
    EXPECT_EQ(shown(), u"collapsed");

    hover();
    desktop.movePointer({230, -100});
    desktop.movePointer({800, -100});
    desktop.movePointer({230, -100});
    wait(0.5s);
    EXPECT_EQ(shown(), u"collapsed") << "it was in the smaller panel since";
}

TEST_F(NotchCoordinatorTest, HoldsItsWidthWhileThePointerIsAtItsSymbols)
{
    FakeModule &narrow = FakeModule::addTo(*services.modules, u"estreito"_qs);
    narrow.width = 700;
    start();
    coordinator.open({.module = u"um"_qs});
    const auto width = [&] { return shape()[2].toInt(); };
    const int wide = width();
    desktop.movePointer({240, -10});
    coordinator.open({.module = narrow.id()});
    EXPECT_EQ(width(), wide);
    desktop.movePointer(notchOf(1));
    desktop.movePointer({1300, -10});
    EXPECT_EQ(width(), wide) << "on the way to the other side";
    desktop.movePointer({1300, -100});
    EXPECT_EQ(width(), wide) << "it would go from under the pointer";
    desktop.movePointer({1000, -100});
    EXPECT_EQ(width(), 720 + 2 * 12);
    coordinator.open({.module = u"um"_qs});
    desktop.movePointer({240, -10});
    coordinator.open({.module = narrow.id()});
    desktop.movePointer(outside);
    EXPECT_EQ(width(), 720 + 2 * 12);
}

TEST_F(NotchCoordinatorTest, HeedsACommandWhileThePointerIsLeaving)
{
    const struct {
        std::function<void()> run;
        QString shown;
    } commands[] = {
        {[&] { coordinator.open(); }, "expanded"},
        {[&] { coordinator.open({.module = u"dois"_qs}); }, "expanded"},
        {[&] { coordinator.openFiles({QUrl(u"file:///a"_qs)}); }, "dropResult"},
    };
    start();
    for (const auto &command : commands) {
        hover();
        EXPECT_EQ(window().isKey(), false);
        desktop.movePointer(outside);
        wait(0.4s);
        command.run();
        wait(5s);
        EXPECT_EQ(shown(), command.shown);
        EXPECT_EQ(window().isKey(), command.shown == u"expanded");
        desktop.movePointer(notchOf(1));
        desktop.movePointer(outside);
        wait(0.5s);
        EXPECT_EQ(shown(), u"collapsed");
    }
}

TEST_F(NotchCoordinatorTest, TakesDelaysAsAFileHoldsThem)
{
    start();
    for (const Seconds delay : {-5s, 0s, 60s}) {
        change([&](AppSettings &next) { next.hoverDelay = next.closeDelay = delay; });
        desktop.movePointer(notchOf(1));
        for (const auto &[before, after, way] :
             {std::tuple(u"collapsed", u"expanded", outside), {u"expanded", u"collapsed", {}}}) {
            wait(std::max(delay - 1s, Seconds(0)));
            EXPECT_EQ(shown(), delay > 0s ? before : after) << delay.count();
            wait(1s);
            EXPECT_EQ(shown(), after) << delay.count();
            desktop.movePointer(way);
        }
    }
}

TEST_F(NotchCoordinatorTest, AnswersTheKeysOfThePanel)
{
    const struct {
        quint32 keysym;
        Qt::KeyboardModifiers modifiers;
        QString shown;
        QString module;
        quint32 scanCode = 0;
    } cases[] = {
        {'w', Qt::ControlModifier, "collapsed", ""},
        {'w', {}, "expanded", "um"},
        {0xff09, Qt::ControlModifier, "expanded", "dois"},
        {0xfe20, Qt::ControlModifier | Qt::ShiftModifier, "expanded", "três"},
        {0xff09, {}, "expanded", "um"},
        {'3', Qt::ControlModifier, "expanded", "três"},
        {'9', Qt::ControlModifier, "expanded", "um"},
        {'3', {}, "expanded", "um"},
        {',', Qt::ControlModifier, "collapsed", ""},
        // Keys of a French, a Russian and a Dvorak keyboard.
        {XK_quotedbl, Qt::ControlModifier, "expanded", "três", 12},
        {XK_minus, Qt::ControlModifier | Qt::ShiftModifier, "expanded", "um", 12},
        {XK_z, Qt::ControlModifier, "collapsed", "", 25},
        {XK_w, Qt::ControlModifier, "collapsed", "", 52},
        {XK_z, {}, "expanded", "um", 25},
        {XK_Cyrillic_tse, Qt::ControlModifier, "collapsed", "", 25},
        {XK_comma, Qt::ControlModifier, "collapsed", "", 25},
    };
    int settingsOpened = 0;
    services.openSettings = [&](auto) { ++settingsOpened; };
    start();
    for (const auto &[keysym, modifiers, expectedState, expectedModule, scanCode] : cases) {
        coordinator.open({.module = u"um"_qs});
        EXPECT_TRUE(window().isKey());
        press(keysym, modifiers, Qt::Key_unknown, scanCode);
        EXPECT_EQ(shown(), expectedState) << keysym;
        EXPECT_EQ(module(), expectedModule) << keysym;
    }
    EXPECT_EQ(settingsOpened, 2);
}

TEST_F(NotchCoordinatorTest, OpensTheDropSurfaceForARealDragOnly)
{
    start();
    desktop.pointer.press(notchOf(1), window().id());
    desktop.dragPasteboard.begin({.hasFiles = true});
    desktop.pointer.moveTo({notchOf(1).x + 9, -4});
    EXPECT_EQ(shown(), u"collapsed") << "a drag out of the panel itself";
    desktop.pointer.release(notchOf(1));

    beginDrag();
    desktop.pointer.moveTo(notchOf(1));
    EXPECT_EQ(shown(), u"dropTarget");
    desktop.pointer.moveTo(outside);
    wait(0.1s);
    desktop.pointer.moveTo({101, -600});
    wait(0.12s);
    EXPECT_EQ(shown(), u"collapsed") << "moves outside don't prolong it";
}

TEST_F(NotchCoordinatorTest, StaysOpenBehindADialogOfItsOwn)
{
    const FakeModule &module = FakeModule::addTo(*services.modules, u"arquivos"_qs);
    start();
    coordinator.open({.module = u"arquivos"_qs});
    desktop.movePointer(notchOf(1));
    module.panel->setPresentingSystemUI(true);
    window().resignKey();
    desktop.movePointer(outside);
    desktop.pointer.press(outside, 7);
    EXPECT_EQ(shown(), u"expanded");

    module.panel->setPresentingSystemUI(false);
    wait(NotchViewModel::keyboardDelay);
    EXPECT_TRUE(window().isKey());
    wait(5s);
    EXPECT_EQ(shown(), u"expanded") << "the pointer left it for the dialog";
    desktop.pointer.press(outside, 7);
    EXPECT_EQ(shown(), u"collapsed");
}

TEST_F(NotchCoordinatorTest, ReturnsToWhatItWasWhenADragEndsWithoutADrop)
{
    start();
    coordinator.open();
    beginDrag();
    EXPECT_EQ(shown(), u"collapsed") << "the press was outside";
    desktop.pointer.release(outside);
    coordinator.open();
    change([](AppSettings &next) { next.closeOnClickOutside = false; });
    beginDrag();
    desktop.pointer.moveTo(notchOf(1));
    EXPECT_EQ(shown(), u"dropTarget");
    desktop.pointer.release(notchOf(1));
    wait(0.29s);
    EXPECT_EQ(shown(), u"dropTarget");
    wait(0.01s);
    EXPECT_EQ(shown(), u"expanded");
}

TEST_F(NotchCoordinatorTest, ShowsWhatWasDroppedOnItsView)
{
    start();
    showView();
    auto *content = view().rootObject()->property("content").value<NotchContent *>();
    const auto targeted = [&] {
        StringList zones;
        for (int row = 0; row < content->drop()->zones()->rowCount(); ++row) {
            if (field(content->drop()->zones(), row, "isTargeted").toBool())
                zones.push_back(field(content->drop()->zones(), row, "id").toString());
        }
        return zones;
    };
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(desktop.folder.path(u"a.txt"_qs))});
    const double middle = window().frame().width / 2;

    beginDrag();
    QDragEnterEvent enter({int(middle), 10}, Qt::CopyAction | Qt::MoveAction, &files,
                          Qt::LeftButton, {});
    QCoreApplication::sendEvent(&view(), &enter);
    EXPECT_EQ(shown(), u"dropTarget");
    EXPECT_EQ(targeted(), StringList{u"actions"_qs});
    for (const auto &[x, zone] :
         {std::pair(middle - 500, "airdrop"), {middle + 10, "actions"}, {middle + 500, "notch"}}) {
        QDragMoveEvent move({int(x), 60}, Qt::CopyAction | Qt::MoveAction, &files, Qt::LeftButton,
                            {});
        QCoreApplication::sendEvent(&view(), &move);
        EXPECT_EQ(targeted(), StringList{QString::fromLatin1(zone)});
        EXPECT_EQ(move.dropAction(),
                  std::string_view(zone) == "notch" ? Qt::MoveAction : Qt::CopyAction)
            << zone;
    }
    desktop.pointer.moveTo(notchOf(1));
    desktop.pointer.release(notchOf(1));
    wait(0.2s);
    window().drops.began();
    QDragLeaveEvent leave; // all that Qt hears of a drop
    QCoreApplication::sendEvent(&view(), &leave);
    wait(2s);
    EXPECT_EQ(shown(), u"dropTarget") << "the source takes its time";
    EXPECT_TRUE(window().drops.ended({files.data(u"text/uri-list"_qs), {}, {}}));
    wait(2s);
    EXPECT_EQ(shown(), u"dropResult") << "the drop finished after the button went up";
    EXPECT_EQ(content->drop()->title(), u"1 item");
    EXPECT_EQ(targeted(), StringList());
}

TEST_F(NotchCoordinatorTest, TakesNoMovementThatIsOlderThanTheDropForANewDrag)
{
    start();
    showView();
    const QByteArray files =
        QUrl::fromLocalFile(desktop.folder.path(u"a.txt"_qs)).toEncoded() + "\r\n";
    for (int drag = 0; drag < 2; ++drag) {
        beginDrag();
        desktop.pointer.moveTo(notchOf(1));
        EXPECT_EQ(shown(), u"dropTarget");
        window().drops.began();
        EXPECT_TRUE(window().drops.ended({files, {}, {}}));
        desktop.pointer.moveTo(notchOf(1)); // the drop came on another connection
        EXPECT_EQ(shown(), u"dropResult");
        desktop.pointer.release(notchOf(1));
        wait(1s);
        EXPECT_EQ(shown(), u"dropResult");
    }
}

TEST_F(NotchCoordinatorTest, FollowsTheScreens)
{
    start({FakeDesktop::screen(1), FakeDesktop::screen(2)});
    desktop.movePointer({1700, -500});
    coordinator.open();
    ScreenDescriptor small = FakeDesktop::screen(1);
    small.frame = small.visibleFrame = {0, -720, 1280, 720};
    desktop.displays.arrange({small});
    EXPECT_TRUE(display(2).isEmpty());
    EXPECT_EQ(window().frame().maxX(), 1280);
    coordinator.open();
    EXPECT_EQ(shown(), u"expanded") << "any visible panel answers where none is under the pointer";

    desktop.displays.arrange({});
    coordinator.open();
    EXPECT_EQ(status()[u"displays"].toArray().size(), 0);
    desktop.displays.arrange({FakeDesktop::screen(1), FakeDesktop::screen(2)});
    EXPECT_EQ(shown(1) + u'+' + shown(2), u"collapsed+collapsed");
    change([](AppSettings &next) { next.displayMode = {DisplayMode::Specific{2, u"Tela 2"_qs}}; });
    EXPECT_TRUE(display(1).isEmpty());
    EXPECT_TRUE(isVisible(2));
}

TEST_F(NotchCoordinatorTest, MakesRoomForAFullScreenWindow)
{
    const auto fullScreen = [](DisplayID id) {
        return Workspace::Window{7, FakeDesktop::screen(id).frame, true};
    };
    start({FakeDesktop::screen(1), FakeDesktop::screen(2)});
    desktop.workspace.show({fullScreen(1)});
    wait(0.35s);
    EXPECT_FALSE(isVisible(1));
    EXPECT_TRUE(isVisible(2));
    desktop.movePointer(notchOf(1));
    wait(1s);
    EXPECT_EQ(shown(1), u"collapsed");
    change([](AppSettings &next) { next.fullscreenBehavior = FullscreenBehavior::keepVisible; });
    EXPECT_TRUE(window(1).isOrderedIn);

    change([](AppSettings &next) {
        next.fullscreenBehavior = FullscreenBehavior::hide;
        next.hoverBehavior = HoverBehavior::preview;
    });
    desktop.workspace.show({});
    wait(0.35s);
    hover();
    EXPECT_EQ(shown(1), u"preview");
    desktop.workspace.show({fullScreen(1)});
    wait(0.35s);
    desktop.movePointer(outside);
    desktop.workspace.show({});
    wait(0.35s);
    EXPECT_TRUE(isVisible(1));
    EXPECT_EQ(shown(1), u"collapsed") << "nothing would close what was left open";
}

TEST_F(NotchCoordinatorTest, ComesOutOfHidingForACommand)
{
    const struct {
        std::function<void()> run;
        QString shown;
    } commands[] = {
        {[&] { coordinator.open(); }, "expanded"},
        {[&] { coordinator.toggleFromHotKey(); }, "expanded"},
        {[&] { coordinator.openFiles({}); }, "collapsed"},
        {[&] { coordinator.openFiles({QUrl(u"file:///a"_qs)}); }, "dropResult"},
    };
    start();
    for (const auto &command : commands) {
        coordinator.setUserHidden(true);
        EXPECT_FALSE(window().isOrderedIn);
        EXPECT_EQ(shown(), u"collapsed");
        EXPECT_TRUE(status()[u"hidden"].toBool());
        command.run();
        EXPECT_FALSE(coordinator.isUserHidden());
        EXPECT_TRUE(window().isOrderedIn);
        EXPECT_EQ(shown(), command.shown);
    }

    desktop.workspace.show({{7, FakeDesktop::screen(1).frame, true}});
    wait(0.35s);
    coordinator.setUserHidden(true);
    coordinator.open();
    EXPECT_FALSE(coordinator.isUserHidden());
    EXPECT_EQ(shown(), u"collapsed") << "no panel is to be seen";
}

TEST_F(NotchCoordinatorTest, StaysOnTopWhateverHappensToTheDesktop)
{
    start();
    FakePanelWindow &panel = window();
    const auto timesRaised = [&](const std::function<void()> &happens) {
        const int before = panel.orderFrontCount;
        happens();
        return panel.orderFrontCount - before;
    };
    Workspace &workspace = desktop.workspace;
    EXPECT_GE(timesRaised([&] { desktop.workspace.show({}); }), 1);
    panel.isLost = true;
    for (const auto signal :
         {&Workspace::windowManagerChanged, &Workspace::activeSpaceChanged, &Workspace::didWake}) {
        panel.setFrame({});
        EXPECT_GE(timesRaised([&] { Q_EMIT(workspace.*signal)(); }), 1);
        EXPECT_EQ(panel.frame().width, 1600);
    }
    coordinator.setUserHidden(true);
    EXPECT_EQ(timesRaised([&] { Q_EMIT workspace.windowManagerChanged(); }), 0);
}

TEST_F(NotchCoordinatorTest, TellsItsStateInThePixelsOfTheScreen)
{
    start();
    services.activity->upsert({.id = u"timer"_qs, .priority = 1});
    services.activity->upsert({.id = u"job"_qs, .priority = 2});
    services.activity->post(
        ActivityEvent::make(desktop.scheduler.now(), {}, u"Oi"_qs, FeedbackStyle::info, {}));
    change([](AppSettings &next) { next.panelSize = PanelSize::compact; });
    coordinator.open({.module = u"dois"_qs});
    const auto expected = QJsonDocument::fromJson(R"({
        "hidden": false, "live": ["job", "timer"], "feedback": "Oi",
        "displays": [{"id": 1, "name": "Tela 1", "visible": true, "presentation": "expanded",
                      "module": "dois", "shape": [268, 0, 1064, 180],
                      "canvas": [0, 0, 1600, 266]}]})");
    EXPECT_EQ(QJsonDocument(status()).toJson().toStdString(), expected.toJson().toStdString());

    coordinator.toggleFromHotKey();
    services.activity->dismissFeedback();
    EXPECT_TRUE(display()[u"module"].isNull());
    EXPECT_TRUE(status()[u"feedback"].isNull());
}

} // namespace
} // namespace velmo
