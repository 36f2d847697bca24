#include "VelmoSystem/Input/HotKeyController.h"
#include "VelmoUI/Settings/SettingsWindowController.h"

#include "tests/VelmoUI/ServicesFixture.h"
#include "tests/support/Printers.h"
#include "tests/support/Warnings.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPointer>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>

namespace velmo {
namespace {

class SettingsWindowTest : public ServicesFixture {
protected:
    SettingsWindowTest()
    {
        change([](AppSettings &next) { next.animationsEnabled = false; });
        services.hotKeys->handlers[HotKeyAction::toggle] = [] {};
        services.hotKeys->apply();
    }

    static std::vector<QQuickView *> windows()
    {
        std::vector<QQuickView *> found;
        for (QWindow *window : QGuiApplication::topLevelWindows()) {
            if (window->title() == u"Ajustes do Orvane")
                found.push_back(dynamic_cast<QQuickView *>(window));
        }
        return found;
    }
    QQuickView &show(std::optional<SettingsPane> pane)
    {
        controller.show(pane);
        while (!windows().at(0)->isVisible())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::processEvents();
        return *windows().at(0);
    }
    static void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}, quint32 keysym = 0,
                      quint32 scanCode = 0)
    {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, scanCode, keysym, 0);
        QCoreApplication::sendEvent(windows().at(0), &event);
    }
    static QString focused()
    {
        const QQuickItem *item = windows().at(0)->activeFocusItem();
        while (item && !item->property("name").isValid())
            item = item->parentItem();
        return item ? item->property("name").toString() : QString();
    }
    /// Goes to a control as the user does.
    static void tabTo(const QString &name)
    {
        for (int i = 0; i < 40 && !focused().startsWith(name); ++i)
            press(Qt::Key_Tab);
        ASSERT_TRUE(focused().startsWith(name)) << name.toStdString();
    }
    /// Whether a line of that text shows.
    static bool reads(const QString &text, QQuickItem *from = windows().at(0)->rootObject())
    {
        if (from->isVisible() && from->property("text") == text)
            return true;
        return std::ranges::any_of(from->childItems(),
                                   [&](QQuickItem *child) { return reads(text, child); });
    }

    Warnings warnings;
    SettingsWindowController controller{services.settingsWindow()};
};

TEST_F(SettingsWindowTest, DrawsEveryPaneInBothThemesWithoutAWarning)
{
    const auto isLight = [] {
        return windows().at(0)->grabWindow().pixelColor(4, 400).lightness() > 128;
    };
    change([](AppSettings &next) { next.theme = ThemePreference::system; });
    show(SettingsPane::general);
    warnings.take(); // of the offscreen platform
    for (const bool isDark : {false, true}) {
        desktop.appearance.isDark = isDark;
        Q_EMIT desktop.appearance.changed();
        for (const auto &[key, text] : {std::pair{Qt::Key_1, "Abrir com um clique"},
                                        {Qt::Key_2, "Cor de destaque"},
                                        {Qt::Key_3, "Tela 1"},
                                        {Qt::Key_5, "Permissões"},
                                        {Qt::Key_6, "Armazenamento"},
                                        {Qt::Key_7, "Licença"}}) {
            press(key, Qt::ControlModifier);
            QCoreApplication::processEvents();
            EXPECT_TRUE(reads(QString::fromUtf8(text))) << text;
            EXPECT_EQ(isLight(), !isDark) << text;
            EXPECT_EQ(warnings.take(), QStringList()) << text;
        }
    }
    change([](AppSettings &next) { next.theme = ThemePreference::light; });
    QCoreApplication::processEvents();
    EXPECT_TRUE(isLight());
}

TEST_F(SettingsWindowTest, ChangesSettingsByKey)
{
    show(SettingsPane::general);
    tabTo(u"Abrir com um clique"_qs);
    press(Qt::Key_Space);
    EXPECT_FALSE(settings().openOnClick);
    tabTo(u"Fechar ao afastar o cursor"_qs);
    press(Qt::Key_Space);
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), u"Fechar ao clicar fora") << "a delay that means nothing is passed over";
    press(Qt::Key_2, Qt::ControlModifier);
    tabTo(u"Tamanho"_qs);
    press(Qt::Key_Right);
    EXPECT_EQ(settings().panelSize, PanelSize::large);
    press(Qt::Key_3, Qt::ControlModifier);
    tabTo(u"Tela 1"_qs);
    press(Qt::Key_Return);
    EXPECT_EQ(settings().displayMode, (DisplayMode{DisplayMode::Specific{1, u"Tela 1"_qs}}));
    desktop.displays.descriptors = {FakeDesktop::screen(2)};
    Q_EMIT desktop.displays.changed();
    EXPECT_TRUE(reads(u"Tela 2"_qs));
    EXPECT_TRUE(reads(u"Tela 1"_qs)) << "it is chosen, though it is gone";
}

TEST_F(SettingsWindowTest, IgnoresAnApplicationByKey)
{
    addModules(u"clipboard"_qs);
    desktop.applications.entries = {
        {.id = u"a.desktop"_qs, .name = u"Editor"_qs, .bundleID = u"editor"_qs}};
    show(SettingsPane::privacy);
    tabTo(u"Pausar"_qs);
    press(Qt::Key_Space);
    EXPECT_TRUE(settings().clipboardPaused);
    tabTo(u"Buscar aplicativo"_qs);
    QKeyEvent letter(QEvent::KeyPress, Qt::Key_E, Qt::NoModifier, u"e"_qs);
    QCoreApplication::sendEvent(windows().at(0), &letter);
    EXPECT_TRUE(reads(u"Editor"_qs));
    press(Qt::Key_Return);
    EXPECT_EQ(settings().clipboardIgnoredBundleIDs.back(), u"editor");
    press(Qt::Key_Tab);
    press(Qt::Key_Down);
    const QPointer<QObject> first = windows().at(0)->focusObject();
    press(Qt::Key_Delete);
    ASSERT_TRUE(QTest::qWaitFor([&] { // a row, and another one
        const QObject *focused = windows().at(0)->focusObject();
        return focused != first && focused && focused->property("spoken").isValid();
    }));
    press(Qt::Key_Delete);
    EXPECT_EQ(settings().clipboardIgnoredBundleIDs.size(), 8U);
    EXPECT_EQ(settings().clipboardIgnoredBundleIDs[1], u"com.agilebits.onepassword7");
}

TEST_F(SettingsWindowTest, RecordsAShortcut)
{
    const KeyCombo before = settings().toggleHotKey;
    const KeyCombo other{40, KeyCombo::control | KeyCombo::command};
    const QString hint = u"Use ao menos uma das teclas Ctrl, Alt ou Super."_qs;
    const auto record = [this] {
        show(SettingsPane::general);
        tabTo(u"Abrir e fechar o painel, "_qs);
        press(Qt::Key_Return);
        EXPECT_TRUE(desktop.hotKeyGrabber.grabbed.empty()) << "its keys reach the field";
    };

    record();
    press(Qt::Key_Control, Qt::ControlModifier, 0xffe3);
    EXPECT_FALSE(reads(hint));
    press(Qt::Key_A, Qt::ShiftModifier, 'A');
    EXPECT_TRUE(reads(hint));
    desktop.hotKeyGrabber.refusals[other] = HotKeyGrabber::AlreadyTaken();
    press(Qt::Key_K, Qt::ControlModifier | Qt::MetaModifier, 'k');
    EXPECT_EQ(settings().toggleHotKey, other);
    EXPECT_FALSE(reads(hint));
    EXPECT_TRUE(reads(u"Este atalho já está em uso por outro aplicativo ou pelo sistema."_qs));
    change([&](AppSettings &next) { next.toggleHotKey = before; });

    services.hotKeys->handlers[HotKeyAction::newNote] = [] {};
    record();
    press(Qt::Key_M, Qt::ControlModifier | Qt::AltModifier, 'm');
    EXPECT_TRUE(reads(u"Mesmo atalho de “Nova nota”."_qs));
    EXPECT_EQ(settings().toggleHotKey, before);
    services.hotKeys->handlers.erase(HotKeyAction::newNote);
    press(Qt::Key_Escape, {}, 0xff1b);

    record();
    desktop.hotKeyGrabber.keyCodes = {{10, 18}};
    press(Qt::Key_Exclam, Qt::ControlModifier | Qt::ShiftModifier, '!', 10);
    EXPECT_EQ(services.hotKeys->displayString(HotKeyAction::toggle), u"Ctrl+Shift+1");
    change([&](AppSettings &next) { next.toggleHotKey = before; });

    const struct {
        const char *title;
        std::function<void()> end;
    } ends[] = {
        {"esc", [] { press(Qt::Key_Escape, {}, 0xff1b); }},
        {"backspace", [] { press(Qt::Key_Backspace, {}, 0xff08); }},
        {"the keyboard goes elsewhere", [] { windows().at(0)->rootObject()->forceActiveFocus(); }},
        {"another pane", [this] { controller.show(SettingsPane::about); }},
        {"closed", [] { windows().at(0)->close(); }},
    };
    for (const auto &[title, end] : ends) {
        record();
        end();
        desktop.scheduler.advance(0s);
        ASSERT_EQ(desktop.hotKeyGrabber.grabbed.size(), 1) << title;
        EXPECT_EQ(desktop.hotKeyGrabber.grabbed.begin()->second, before) << title;
    }
}

TEST_F(SettingsWindowTest, GoesWhenItIsClosedAndComesBackWhereItWas)
{
    controller.show(SettingsPane::displays);
    EXPECT_FALSE(windows().at(0)->rootObject()) << "its QML is loaded on another thread";
    show(SettingsPane::displays);
    EXPECT_EQ(windows().size(), 1);
    press(Qt::Key_W, Qt::ControlModifier);
    desktop.scheduler.advance(0s);
    EXPECT_TRUE(windows().empty());
    show(std::nullopt);
    EXPECT_TRUE(reads(u"Mostrar o painel em"_qs));
    press(Qt::Key_M, Qt::ControlModifier);
    EXPECT_TRUE(windows().at(0)->windowStates().testFlag(Qt::WindowMinimized));
    show(std::nullopt);
    EXPECT_FALSE(windows().at(0)->windowStates().testFlag(Qt::WindowMinimized));
}

} // namespace
} // namespace velmo
