#include "VelmoUI/Settings/ModulesPaneModel.h"

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoUI/Modules/Frame/ModuleRegistry.h"
#include "VelmoUI/Modules/Home/HomeSettingsModel.h"

#include "tests/VelmoUI/FakeModule.h"
#include "tests/VelmoUI/ServicesFixture.h"
#include "tests/support/Printers.h"

#include <QAbstractItemModelTester>

#include <gmock/gmock.h>

namespace velmo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ModulesPaneModelTest : public ServicesFixture {
protected:
    ModulesPaneModelTest()
    {
        for (const char16_t *id : {u"home", u"system", u"activity"})
            FakeModule::addTo(*services.modules, QString::fromUtf16(id));
    }
};

TEST_F(ModulesPaneModelTest, MovesRowsAndKeepsWhatThisVersionDoesNotKnow)
{
    change([](AppSettings &next) {
        next.moduleOrder = {u"later"_qs, u"home"_qs, u"latest"_qs, u"activity"_qs};
    });
    ModulesPaneModel pane(*services.settings, *services.modules);
    const QAbstractItemModelTester tester(pane.modules());
    ASSERT_THAT(column(pane.modules(), "id"), ElementsAre(u"home", u"activity", u"system"));

    pane.moveModule(2, 0);
    EXPECT_THAT(settings().moduleOrder,
                ElementsAre(u"later", u"system", u"home", u"latest", u"activity"));
    EXPECT_THAT(column(pane.modules(), "spoken"),
                ElementsAre(u"SYSTEM, 1 de 3, visível", u"HOME, 2 de 3, visível",
                            u"ACTIVITY, 3 de 3, visível"));
    pane.moveModule(0, 2);
    EXPECT_THAT(settings().moduleOrder,
                ElementsAre(u"later", u"home", u"latest", u"activity", u"system"));
    for (const auto &[from, to] : {std::pair(0, 3), {3, 0}, {-1, 0}, {0, -1}, {1, 1}})
        pane.moveModule(from, to);
    EXPECT_THAT(column(pane.modules(), "id"), ElementsAre(u"home", u"activity", u"system"));

    pane.resetModuleOrder();
    EXPECT_THAT(settings().moduleOrder, IsEmpty());
    EXPECT_THAT(column(pane.modules(), "id"), ElementsAre(u"home", u"system", u"activity"));
}

TEST_F(ModulesPaneModelTest, HidesAllModulesButTheLast)
{
    change([](AppSettings &next) { next.hiddenModules = {u"later"_qs}; });
    ModulesPaneModel pane(*services.settings, *services.modules);
    for (const int row : {0, 2, 1, 3, -1})
        pane.toggleModule(row);
    EXPECT_THAT(settings().hiddenModules, ElementsAre(u"later", u"home", u"activity"));
    EXPECT_THAT(column(pane.modules(), "canToggle"), ElementsAre(u"true", u"false", u"true"));
    pane.toggleModule(0);
    EXPECT_THAT(settings().hiddenModules, ElementsAre(u"later", u"activity"));
}

class HomeSettingsModelTest : public ServicesFixture {};

TEST_F(HomeSettingsModelTest, OffersTheCardsThatModulesBring)
{
    addModules(u"home"_qs);
    addModules(u"system"_qs);
    FavoriteApps favorites(*services.settings, desktop.applications, *services.activity,
                           desktop.scheduler);
    HomeSettingsModel pane({*services.modules, *services.settings}, favorites);
    EXPECT_THAT(column(pane.cards(), "id"), ElementsAre(u"favorites", u"system"));
    pane.moveCard(1, 0);
    EXPECT_THAT(column(pane.cards(), "id"), ElementsAre(u"system", u"favorites"));
    EXPECT_EQ(settings().homeCardOrder.size(), 9U) << "the others stay in order behind them";
    EXPECT_EQ(settings().homeCardOrder[2], u"music");

    pane.toggleCard(0);
    pane.toggleCard(1);
    EXPECT_THAT(settings().hiddenHomeCards,
                ElementsAre(u"notes", u"clipboard", u"captures", u"favorites"));
}

} // namespace
} // namespace velmo
