#include "VelmoCore/Settings/SettingsStore.h"

#include "VelmoCore/Settings/SettingsCoder.h"
#include "VelmoCore/Storage/AtomicFile.h"

#include "tests/support/ManualScheduler.h"
#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmo {
namespace {

const QString fileName = "settings.json";

class SettingsStoreTest : public testing::Test {
protected:
    SettingsStore makeStore() { return SettingsStore(folder.path(fileName), {}, scheduler); }
    AppSettings saved() const { return SettingsCoder::decode(folder.read(fileName)).settings; }

    TemporaryFolder folder;
    ManualScheduler scheduler;
};

auto setMinutes(int minutes)
{
    return [minutes](AppSettings &settings) { settings.eventAlertMinutes = minutes; };
}

TEST_F(SettingsStoreTest, SetsAnUnreadableFileAside)
{
    EXPECT_EQ(makeStore().loadIssue(), std::nullopt) << "where there is no file";
    folder.write(fileName, "[1]");
    const SettingsStore store = makeStore();
    EXPECT_EQ(store.settings(), AppSettings());
    ASSERT_EQ(folder.names().size(), 1);
    const QString copy = folder.names().first();
    EXPECT_TRUE(copy.startsWith("settings.corrupt-")) << copy.toStdString();
    EXPECT_EQ(folder.read(copy), "[1]");
    EXPECT_TRUE(store.loadIssue()->endsWith("Cópia preservada em " + copy + '.'));
}

TEST_F(SettingsStoreTest, LeavesAFileAloneThatTheSystemWontReadUntilAChange)
{
    folder.write("settings.json/inside", "x");
    SettingsStore store = makeStore();
    EXPECT_EQ(store.loadIssue(), "Não foi possível ler as configurações salvas.");
    store.flush();
    EXPECT_EQ(folder.read("settings.json/inside"), "x");
    store.update(setMinutes(9));
    store.flush();
    EXPECT_EQ(saved().eventAlertMinutes, 9);
    ASSERT_EQ(folder.names().size(), 2);
    EXPECT_EQ(folder.read(folder.names().first() + "/inside"), "x") << "set aside";
}

TEST_F(SettingsStoreTest, WritesNothingAtTheEndThatNobodyChanged)
{
    makeStore().flush();
    EXPECT_TRUE(folder.names().isEmpty());
    for (const QByteArray &text :
         {QByteArray("{\"schemaVersion\":6,\"novo\":1}"), QByteArray("{\"panelSize\":\"huge\"}")}) {
        folder.write(fileName, text);
        makeStore().flush();
        EXPECT_EQ(folder.read(fileName), text);
    }
    folder.write(fileName, "{");
    makeStore().flush();
    EXPECT_EQ(folder.names().size(), 1) << "set aside, with nothing in its place";
}

TEST_F(SettingsStoreTest, RepairsADamagedFileAtTheNextChangeOnly)
{
    const QByteArray damaged = R"({"panelSize":"huge","theme":"light"})";
    folder.write(fileName, damaged);
    SettingsStore store = makeStore();
    EXPECT_EQ(store.settings().theme, ThemePreference::light);
    EXPECT_EQ(store.loadIssue(), "Algumas preferências inválidas foram restauradas para o padrão.");
    scheduler.advance(1s);
    EXPECT_EQ(folder.read(fileName), damaged);

    store.update(setMinutes(9));
    scheduler.advance(1s);
    EXPECT_EQ(makeStore().loadIssue(), std::nullopt);
    EXPECT_EQ(saved(), store.settings());
}

TEST_F(SettingsStoreTest, SavesARunOfChangesOnceAfterTheLast)
{
    SettingsStore store = makeStore();
    store.update(setMinutes(1));
    scheduler.advance(0.2s);
    store.update(setMinutes(2));
    scheduler.advance(0.29s);
    EXPECT_TRUE(folder.names().isEmpty());
    scheduler.advance(0.02s);
    EXPECT_EQ(saved().eventAlertMinutes, 2);

    store.update(setMinutes(3));
    store.flush();
    EXPECT_EQ(saved().eventAlertMinutes, 3);
    EXPECT_EQ(scheduler.pendingCount(), 0U);
}

TEST_F(SettingsStoreTest, KeepsTheRecordWhenASaveFailsAndTriesAgain)
{
    SettingsStore store = makeStore();
    folder.write("settings.json/inside", "in the way");
    store.update(setMinutes(1));
    scheduler.advance(1s);
    EXPECT_EQ(store.settings().eventAlertMinutes, 1);

    QDir(folder.path(fileName)).removeRecursively();
    store.update([](AppSettings &settings) { settings.mailSound = true; });
    scheduler.advance(1s);
    EXPECT_EQ(saved(), store.settings());
}

TEST_F(SettingsStoreTest, TellsNobodyOfAnEqualRecord)
{
    SettingsStore store = makeStore();
    const auto observation = store.observe([](auto &, auto &) { ADD_FAILURE(); });
    store.update(setMinutes(AppSettings().eventAlertMinutes));
    EXPECT_EQ(scheduler.pendingCount(), 0U);
}

TEST_F(SettingsStoreTest, TellsEveryObserverTheChangesInTheirOrder)
{
    SettingsStore store = makeStore();
    QString notified;
    const auto note = [&](char who, const AppSettings &before, const AppSettings &after) {
        notified +=
            QString("%1%2%3 ").arg(who).arg(before.eventAlertMinutes).arg(after.eventAlertMinutes);
    };
    const auto first = store.observe([&](const AppSettings &before, const AppSettings &after) {
        note('a', before, after);
        if (after.eventAlertMinutes == 6)
            store.update(setMinutes(7));
    });
    const auto second = store.observe([&](auto &before, auto &after) { note('b', before, after); });
    QObject::connect(&store, &SettingsStore::settingsChanged, [&] { notified += "signal "; });
    store.update(setMinutes(6));
    EXPECT_EQ(notified, "a56 b56 signal a67 b67 signal ");
}

TEST_F(SettingsStoreTest, LetsObserversEndTheirOwnObservationAndOthers)
{
    SettingsStore store = makeStore();
    QString notified;
    SettingsStore::Observation first;
    SettingsStore::Observation second;
    first = store.observe([&, name = QString("a name that lives on the heap")](auto &, auto &) {
        first.reset();
        second.reset();
        notified += name;
    });
    second = store.observe([&](auto &, auto &) { ADD_FAILURE(); });
    const auto third = store.observe([&](auto &, auto &) { notified += '!'; });
    store.update(setMinutes(6));
    store.update(setMinutes(7));
    EXPECT_EQ(notified, "a name that lives on the heap!!");
}

TEST_F(SettingsStoreTest, NeverBringsTheWelcomeBackByResetOrImport)
{
    SettingsStore store = makeStore();
    folder.write("other.json", R"({"hasCompletedOnboarding":false,"mailSound":true,"theme":1})");
    store.update([](AppSettings &settings) {
        settings.hasCompletedOnboarding = true;
        settings.theme = ThemePreference::light;
    });
    store.exportTo(folder.path("backup/deep/file.json"));
    store.resetToDefaults();
    EXPECT_TRUE(store.settings().hasCompletedOnboarding);
    EXPECT_EQ(store.settings().theme, ThemePreference::dark);
    store.importFrom(folder.path("backup/deep/file.json"));
    EXPECT_EQ(store.settings().theme, ThemePreference::light);
    EXPECT_THAT(store.importFrom(folder.path("other.json")), testing::ElementsAre("theme"));
    EXPECT_TRUE(store.settings().hasCompletedOnboarding);
    EXPECT_TRUE(store.settings().mailSound);
}

} // namespace
} // namespace velmo
