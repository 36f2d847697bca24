#include "VelmoSystem/Input/GlobalHotKeyCenter.h"

#include "tests/support/FakeHotKeyGrabber.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

namespace velmo {
namespace {

constexpr KeyCombo panelKey{45, KeyCombo::control | KeyCombo::option};
constexpr KeyCombo otherKey{9, KeyCombo::command};

TEST(GlobalHotKeyCenter, RunsTheActionOfAShortcutUntilItIsUnregistered)
{
    FakeHotKeyGrabber grabber;
    {
        GlobalHotKeyCenter center(grabber);
        QString ran;
        GlobalHotKeyCenter::ID id = 0;
        id = center.registerHotKey(panelKey, [&, name = QStringLiteral("panel")] {
            center.unregister(id);
            ran += name; // the action outlives its own registration
        });
        center.registerHotKey(otherKey, [&] { ran += u" other"; });
        grabber.press(panelKey);
        grabber.press(panelKey);
        grabber.press(otherKey);
        center.unregister(id);
        EXPECT_EQ(ran, u"panel other");
        EXPECT_EQ(grabber.grabbed.size(), 1U);
    }
    EXPECT_TRUE(grabber.grabbed.empty());
    EXPECT_FALSE(grabber.onPressed);
}

TEST(GlobalHotKeyCenter, SaysWhyAShortcutIsRefusedAndKeepsNothingOfIt)
{
    FakeHotKeyGrabber grabber;
    GlobalHotKeyCenter center(grabber);
    grabber.refusals = {{panelKey, HotKeyGrabber::AlreadyTaken{}},
                        {otherKey, HotKeyGrabber::Failed{8}}};
    for (const auto &[combo, reason] :
         {std::pair(panelKey, "Este atalho já está em uso por outro aplicativo ou pelo sistema."),
          {otherKey, "Não foi possível registrar o atalho (código 8)."},
          {KeyCombo{45, KeyCombo::shift}, "Use ao menos uma das teclas ⌃, ⌥ ou ⌘."}}) {
        try {
            center.registerHotKey(combo, [] {});
            ADD_FAILURE() << reason;
        } catch (const GlobalHotKeyCenter::RegistrationError &error) {
            EXPECT_EQ(error.description(), reason);
        }
    }
    EXPECT_TRUE(grabber.grabbed.empty());
    grabber.refusals.clear();
    EXPECT_NO_THROW(center.registerHotKey(panelKey, [] {}));
}

} // namespace
} // namespace velmo
