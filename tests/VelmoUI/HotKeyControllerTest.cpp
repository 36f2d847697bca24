#include "VelmoSystem/Input/HotKeyController.h"

#include "VelmoCore/Settings/SettingsStore.h"

#include "tests/support/FakeHotKeyGrabber.h"
#include "tests/support/FakeWorkspace.h"
#include "tests/support/ManualScheduler.h"
#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class HotKeyControllerTest : public testing::Test {
protected:
    HotKeyControllerTest()
    {
        for (const HotKeyAction action : {HotKeyAction::toggle, HotKeyAction::newNote,
                                          HotKeyAction::clipboard, HotKeyAction::search})
            controller.handlers[action] = [this, action] { ran.push_back(action); };
        QObject::connect(&controller, &HotKeyController::errorsChanged, [this] { ++errorChanges; });
    }

    void change(const std::function<void(AppSettings &)> &change) { settings.update(change); }

    TemporaryFolder folder;
    ManualScheduler scheduler;
    SettingsStore settings{folder.path(u"settings.json"_qs), {}, scheduler};
    FakeHotKeyGrabber grabber;
    GlobalHotKeyCenter center{grabber};
    FakeWorkspace workspace;
    HotKeyController controller{settings, center, workspace, scheduler};
    std::vector<HotKeyAction> ran;
    int errorChanges = 0;
};

TEST_F(HotKeyControllerTest, GivesADoubleShortcutToTheEarlierAction)
{
    const KeyCombo combo = settings.settings().newNoteHotKey;
    change([&](AppSettings &next) { next.searchHotKey = combo; });
    controller.apply();
    grabber.press(combo);
    EXPECT_THAT(ran, ElementsAre(HotKeyAction::newNote));
    EXPECT_THAT(controller.errors(),
                ElementsAre(Pair(HotKeyAction::search, u"Mesmo atalho de “Nova nota”."_qs)));

    // The earlier action gives it up, and the later one gets it.
    change([](AppSettings &next) { next.newNoteHotKeyEnabled = false; });
    ran.clear();
    grabber.press(combo);
    EXPECT_THAT(ran, ElementsAre(HotKeyAction::search));
    EXPECT_THAT(controller.errors(), IsEmpty());
    EXPECT_EQ(errorChanges, 2);
}

TEST_F(HotKeyControllerTest, TellsOfARefusedShortcutWhileItIsEnabled)
{
    grabber.refusals = {{settings.settings().newNoteHotKey, HotKeyGrabber::Failed{8}},
                        {settings.settings().clipboardHotKey, HotKeyGrabber::AlreadyTaken{}}};
    change([](AppSettings &next) { next.searchHotKey = {40, KeyCombo::shift}; });
    controller.apply();
    EXPECT_THAT(
        controller.errors(),
        ElementsAre(
            Pair(HotKeyAction::newNote, u"Não foi possível registrar o atalho (código 8)."_qs),
            Pair(HotKeyAction::clipboard,
                 u"Este atalho já está em uso por outro aplicativo ou pelo sistema."_qs),
            Pair(HotKeyAction::search, u"Use ao menos uma das teclas Ctrl, Alt ou Super."_qs)));
    EXPECT_EQ(grabber.grabbed.size(), 1U);

    change([](AppSettings &next) {
        next.newNoteHotKeyEnabled = next.clipboardHotKeyEnabled = false;
        next.searchHotKeyEnabled = false;
    });
    EXPECT_THAT(controller.errors(), IsEmpty());
}

TEST_F(HotKeyControllerTest, TellsOfALostShortcutAndTakesItBackWhenItCan)
{
    const KeyCombo combo = settings.settings().clipboardHotKey;
    const auto reports = [&] {
        return controller.errors() ==
               std::map{std::pair(
                   HotKeyAction::clipboard,
                   u"Este atalho já está em uso por outro aplicativo ou pelo sistema."_qs)};
    };
    const std::function<void()> moments[] = {
        [&] { grabber.changeLayout(); },
        [&] { controller.retry(); },
        [&] {
            workspace.show({});
            scheduler.advance(1s);
        },
        [&] {
            Q_EMIT workspace.frontApplicationChanged();
            scheduler.advance(1s);
        },
    };
    controller.apply();
    for (const auto &happens : moments) {
        grabber.refusals = {{combo, HotKeyGrabber::AlreadyTaken{}}};
        grabber.changeLayout();
        EXPECT_TRUE(reports());
        happens();
        EXPECT_TRUE(reports());
        grabber.refusals.clear();
        happens();
        scheduler.advance(1s); // of the longer wait after a try in vain
        EXPECT_THAT(controller.errors(), IsEmpty());
        ran.clear();
        grabber.press(combo);
        EXPECT_THAT(ran, ElementsAre(HotKeyAction::clipboard));
        EXPECT_EQ(grabber.grabbed.size(), 4U);
    }
    EXPECT_EQ(errorChanges, 8);
}

TEST_F(HotKeyControllerTest, TriesEverLessOftenAndNeverAnIdleMachine)
{
    const KeyCombo combo = settings.settings().clipboardHotKey;
    grabber.refusals = {{combo, HotKeyGrabber::AlreadyTaken{}}};
    controller.apply();
    const int before = grabber.grabCount;
    scheduler.advance(1h);
    EXPECT_EQ(grabber.grabCount, before) << "nothing happened";
    for (int second = 0; second < 600; ++second) {
        Q_EMIT workspace.frontApplicationChanged();
        scheduler.advance(1s);
    }
    EXPECT_LT(grabber.grabCount, before + 20);
    controller.setSuspended(true);
    workspace.show({});
    scheduler.advance(1h);
    EXPECT_THAT(grabber.grabbed, IsEmpty());
}

TEST_F(HotKeyControllerTest, RegistersNothingWhileSuspended)
{
    controller.apply();
    controller.setSuspended(true);
    EXPECT_THAT(grabber.grabbed, IsEmpty());

    const KeyCombo recorded{17, KeyCombo::command};
    change([&](AppSettings &next) { next.toggleHotKey = recorded; });
    EXPECT_THAT(grabber.grabbed, IsEmpty());

    controller.setSuspended(false);
    grabber.press(recorded);
    EXPECT_THAT(ran, ElementsAre(HotKeyAction::toggle));
    EXPECT_EQ(grabber.grabbed.size(), 4U);
}

TEST_F(HotKeyControllerTest, LeavesAShortcutWithoutAnActionToOthers)
{
    change([](AppSettings &next) { next.searchHotKey = next.newNoteHotKey; });
    controller.handlers.erase(HotKeyAction::newNote);
    controller.apply();
    grabber.press(settings.settings().searchHotKey);
    EXPECT_THAT(ran, ElementsAre(HotKeyAction::search));
    EXPECT_THAT(controller.errors(), IsEmpty());
    EXPECT_EQ(grabber.grabbed.size(), 3U);
}

} // namespace
} // namespace velmo
