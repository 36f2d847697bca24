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
        id = center.registerHotKey(panelKey, [&, name = u"panel"_qs] {
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

} // namespace
} // namespace velmo
