#include "VelmoUI/Modules/Frame/SettingsModel.h"

#include "tests/support/ManualScheduler.h"
#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExpression>

#include <gtest/gtest.h>

namespace velmo {
namespace {

class SettingsModelTest : public testing::Test {
protected:
    SettingsModelTest() { engine.rootContext()->setContextProperty(u"settings"_qs, &model); }

    QString run(const char *script)
    {
        QQmlExpression expression(engine.rootContext(), nullptr, QString::fromUtf8(script));
        const QString result = expression.evaluate().toString();
        EXPECT_FALSE(expression.hasError()) << expression.error().toString().toStdString();
        return result;
    }

    TemporaryFolder folder;
    ManualScheduler scheduler;
    SettingsStore store{folder.path(u"settings.json"_qs), {}, scheduler};
    SettingsModel model{store};
    QQmlEngine engine;
};

TEST_F(SettingsModelTest, WritesAndShowsEveryKindOfKey)
{
    run("settings.openOnClick = false; settings.clipboardMaxItems = 50; settings.hoverDelay = 0.3;"
        "settings.closeDelay = 2; settings.hoverBehavior = 'preview';"
        "settings.radialFavoritesName = 'Anel'; settings.moduleOrder = ['a', 'b'];"
        "settings.hiddenHomeCards = []; settings.focusMinutes = 52; settings.autoAdvance = false");
    AppSettings expected;
    expected.openOnClick = false;
    expected.clipboardMaxItems = 50;
    expected.hoverDelay = 0.3s;
    expected.closeDelay = 2s;
    expected.hoverBehavior = HoverBehavior::preview;
    expected.radialFavoritesName = u"Anel"_qs;
    expected.moduleOrder = {u"a"_qs, u"b"_qs};
    expected.hiddenHomeCards.clear();
    expected.pomodoro.focusMinutes = 50;
    expected.pomodoro.autoAdvance = false;
    EXPECT_EQ(store.settings(), expected);

    run("for (let d = 0.12; d < 0.95; d += 0.02) settings.hoverDelay = d;" // as a slider counts
        "settings.closeDelay = 0.1 + 0.2");
    expected.hoverDelay = 0.94s;
    expected.closeDelay = 0.3s;
    EXPECT_EQ(store.settings(), expected);

    store.update([](AppSettings &next) {
        next.theme = ThemePreference::light;
        next.closeDelay = 1s;
    });
    EXPECT_EQ(run("settings.theme + settings.closeDelay + settings.moduleOrder.length"),
              u"light12");
}

TEST_F(SettingsModelTest, LeavesAKeyThatAValueDoesNotFit)
{
    run("settings.openOnClick = 1; settings.clipboardMaxItems = '5'; settings.hoverDelay = true;"
        "settings.clipboardRetentionDays = 1e300; settings.closeDelay = NaN;"
        "settings.hoverBehavior = 'explode'; settings.theme = 1; settings.moduleOrder = 'a';"
        "settings.radialFavoritesName = 7; settings.toggleHotKey = 'x'");
    EXPECT_EQ(store.settings(), AppSettings());
    EXPECT_EQ(run("[settings.openOnClick, settings.clipboardMaxItems, settings.hoverDelay,"
                  "settings.hoverBehavior, settings.theme, settings.radialFavoritesName].join()"),
              u"true,200,0.12,expand,dark,Meu anel")
        << "what is shown stays what is stored";
}

} // namespace
} // namespace velmo
