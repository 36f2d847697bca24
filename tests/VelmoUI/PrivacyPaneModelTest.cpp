#include "VelmoUI/Settings/PrivacyPaneModel.h"

#include "VelmoUI/Modules/Frame/ModuleRegistry.h"
#include "VelmoUI/Settings/SettingsServices.h"

#include "tests/VelmoUI/FakeModule.h"
#include "tests/VelmoUI/ServicesFixture.h"
#include "tests/support/Printers.h"

#include <gmock/gmock.h>

namespace velmo {
namespace {

using testing::ElementsAre;

/// A module that needs Bluetooth.
struct RadioModule : FakeModule {
    RadioModule() : FakeModule(u"radio"_qs) {}
    std::vector<PermissionKind> permissions() const override { return {PermissionKind::bluetooth}; }
};

class PrivacyPaneModelTest : public ServicesFixture {
protected:
    PrivacyPaneModelTest() { services.modules->add(std::make_unique<RadioModule>()); }

    SettingsServices window = services.settingsWindow();

    static PermissionRow row(PrivacyPaneModel &pane, int row)
    {
        return static_cast<RecordListModel<PermissionRow> *>(pane.permissions())
            ->records()
            .at(std::size_t(row));
    }
};

TEST_F(PrivacyPaneModelTest, ShowsWhatTheModulesNeedAndAsksForIt)
{
    desktop.permissions.statuses[PermissionKind::notifications] = {PermissionStatus::Granted{}};
    PrivacyPaneModel pane(window);
    pane.refresh();
    ASSERT_EQ(pane.permissions()->rowCount(), 2);
    EXPECT_EQ(row(pane, 0).spoken, u"Notificações: Permitida");
    EXPECT_FALSE(row(pane, 0).canRequest);
    EXPECT_EQ(row(pane, 1).usedBy, u"Usada por: Sistema");
    ASSERT_TRUE(row(pane, 1).canRequest);

    desktop.permissions.statuses[PermissionKind::bluetooth] = {PermissionStatus::Denied{}};
    pane.request(row(pane, 1).id);
    EXPECT_THAT(desktop.permissions.requested, ElementsAre(PermissionKind::bluetooth));
    EXPECT_EQ(row(pane, 1).status, u"Negada");
    EXPECT_EQ(row(pane, 1).style, Feedback::Error);
}

TEST_F(PrivacyPaneModelTest, SaysInTheRowWhyThePageOfTheDesktopDidNotOpen)
{
    PrivacyPaneModel pane(window);
    desktop.permissions.hasPages = false;
    pane.openSettings(row(pane, 1).id);
    EXPECT_EQ(row(pane, 0).error, u"");
    EXPECT_EQ(row(pane, 1).error, u"Este ambiente não tem essa página.");
    desktop.permissions.hasPages = true;
    pane.openSettings(row(pane, 1).id);
    EXPECT_EQ(row(pane, 1).error, u"");
}

TEST_F(PrivacyPaneModelTest, OffersTheRetentionThatIsSetBesideTheUsualOnes)
{
    PrivacyPaneModel pane(window);
    EXPECT_EQ(pane.retentionChoices(), QStringList({u"1 dia"_qs, u"7 dias"_qs, u"30 dias"_qs}));
    EXPECT_EQ(pane.retentionIndex(), 1);
    change([](AppSettings &next) { next.activityRetentionDays = 14; });
    EXPECT_EQ(pane.retentionChoices().value(pane.retentionIndex()), u"14 dias");
    pane.setRetention(3);
    EXPECT_EQ(settings().activityRetentionDays, 30);
    EXPECT_EQ(pane.retentionIndex(), 2);
    for (const int index : {-1, 3})
        pane.setRetention(index);
    EXPECT_EQ(pane.retentionIndex(), 2);
}

} // namespace
} // namespace velmo
