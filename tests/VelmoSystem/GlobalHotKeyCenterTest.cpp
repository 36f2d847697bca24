#include "VelmoSystem/Input/GlobalHotKeyCenter.h"

#include "tests/support/FakeHotKeyGrabber.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

namespace velmo {
namespace {

constexpr KeyCombo panelKey{45, KeyCombo::control | KeyCombo::option};

QString registrationFailure(GlobalHotKeyCenter &center, const KeyCombo &combo)
{
    try {
        center.registerHotKey(combo, [] {});
    } catch (const GlobalHotKeyCenter::RegistrationError &error) {
        return error.description();
    }
    return {};
}

TEST(GlobalHotKeyCenter, RunsTheActionOfThePressedShortcutOnly)
{
    FakeHotKeyGrabber grabber;
    GlobalHotKeyCenter center(grabber);
    constexpr KeyCombo otherKey{9, KeyCombo::command};
    int panel = 0;
    int other = 0;
    const auto id = center.registerHotKey(panelKey, [&] { ++panel; });
    center.registerHotKey(otherKey, [&] { ++other; });

    grabber.press(panelKey);
    grabber.press(panelKey);
    EXPECT_EQ(panel, 2);
    EXPECT_EQ(other, 0);

    center.unregister(id);
    center.unregister(id);
    grabber.press(panelKey);
    center.fire(id);
    EXPECT_EQ(panel, 2);
    EXPECT_EQ(grabber.grabbed.size(), 1U);
}

TEST(GlobalHotKeyCenter, SaysWhyAShortcutIsRefusedAndKeepsNothingOfIt)
{
    FakeHotKeyGrabber grabber;
    GlobalHotKeyCenter center(grabber);
    constexpr KeyCombo brokenKey{46, KeyCombo::command};
    grabber.refusals = {{panelKey, HotKeyGrabber::AlreadyTaken{}},
                        {brokenKey, HotKeyGrabber::Failed{8}}};

    EXPECT_EQ(registrationFailure(center, panelKey),
              u"Este atalho já está em uso por outro aplicativo ou pelo sistema.");
    EXPECT_EQ(registrationFailure(center, brokenKey),
              u"Não foi possível registrar o atalho (código 8).");
    EXPECT_EQ(registrationFailure(center, {45, KeyCombo::shift}),
              u"Use ao menos uma das teclas ⌃, ⌥ ou ⌘.");
    EXPECT_TRUE(grabber.grabbed.empty());

    grabber.refusals.clear();
    EXPECT_EQ(registrationFailure(center, panelKey), QString());
}

TEST(GlobalHotKeyCenter, LetsAnActionUnregisterItself)
{
    FakeHotKeyGrabber grabber;
    GlobalHotKeyCenter center(grabber);
    GlobalHotKeyCenter::ID id = 0;
    QString seen;
    id = center.registerHotKey(panelKey, [&, text = QStringLiteral("capturado")] {
        center.unregister(id);
        seen = text;
    });
    grabber.press(panelKey);
    grabber.press(panelKey);
    EXPECT_EQ(seen, u"capturado");
    EXPECT_TRUE(grabber.grabbed.empty());
}

TEST(GlobalHotKeyCenter, ReleasesItsShortcutsAtItsEnd)
{
    FakeHotKeyGrabber grabber;
    {
        GlobalHotKeyCenter center(grabber);
        center.registerHotKey(panelKey, [] {});
    }
    EXPECT_TRUE(grabber.grabbed.empty());
    EXPECT_FALSE(grabber.onPressed);
}

} // namespace
} // namespace velmo
