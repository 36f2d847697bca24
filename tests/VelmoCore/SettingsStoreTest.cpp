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

using testing::ElementsAre;
using testing::Pair;

const QString fileName = QStringLiteral("settings.json");

class SettingsStoreTest : public testing::Test {
protected:
    SettingsStore makeStore() { return SettingsStore(folder.path(fileName), scheduler); }
    AppSettings saved() const { return SettingsCoder::decode(folder.read(fileName)).settings; }

    TemporaryFolder folder;
    ManualScheduler scheduler;
};

auto setMinutes(int minutes)
{
    return [minutes](AppSettings &settings) { settings.eventAlertMinutes = minutes; };
}

TEST_F(SettingsStoreTest, StartsWithDefaultsWhereThereIsNoFile)
{
    const SettingsStore store = makeStore();
    EXPECT_EQ(store.settings(), AppSettings());
    EXPECT_EQ(store.loadIssue(), std::nullopt);
    EXPECT_EQ(scheduler.pendingCount(), 0U);
    EXPECT_TRUE(folder.names().isEmpty());
}

TEST_F(SettingsStoreTest, SetsAnUnreadableFileAside)
{
    folder.write(fileName, "[1]");
    const SettingsStore store = makeStore();
    EXPECT_EQ(store.settings(), AppSettings());
    ASSERT_EQ(folder.names().size(), 1);
    const QString copy = folder.names().first();
    EXPECT_TRUE(copy.startsWith(u"settings.corrupt-")) << copy.toStdString();
    EXPECT_EQ(folder.read(copy), "[1]");
    EXPECT_EQ(store.loadIssue(),
              u"As configurações salvas estavam corrompidas e foram "
              u"restauradas para o padrão. Cópia preservada em %1."_qs.arg(copy));
}

TEST_F(SettingsStoreTest, LeavesAFileAloneThatTheSystemWontRead)
{
    folder.write(u"settings.json/inside"_qs, "x");
    const SettingsStore store = makeStore();
    EXPECT_EQ(store.loadIssue(), u"Não foi possível ler as configurações salvas."_qs);
    EXPECT_EQ(folder.read(u"settings.json/inside"_qs), "x");
}

TEST_F(SettingsStoreTest, RepairsADamagedFileAtTheNextChangeOnly)
{
    const QByteArray damaged = R"({"panelSize":"huge","theme":"light"})";
    folder.write(fileName, damaged);
    SettingsStore store = makeStore();
    EXPECT_EQ(store.settings().theme, ThemePreference::light);
    EXPECT_EQ(store.loadIssue(),
              u"Algumas preferências inválidas foram restauradas para o padrão."_qs);
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
    EXPECT_EQ(scheduler.pendingCount(), 1U);
    scheduler.advance(0.02s);
    EXPECT_EQ(saved().eventAlertMinutes, 2);

    store.update(setMinutes(3));
    store.flush();
    EXPECT_EQ(saved().eventAlertMinutes, 3);
    EXPECT_EQ(scheduler.pendingCount(), 0U);
}

TEST_F(SettingsStoreTest, KeepsTheRecordWhenASaveFailsAndTriesAgain)
{
    folder.write(u"home"_qs, "a file, not a folder");
    SettingsStore store(folder.path(u"home/settings.json"_qs), scheduler);
    store.update(setMinutes(1));
    scheduler.advance(1s);
    EXPECT_EQ(store.settings().eventAlertMinutes, 1);

    QFile::remove(folder.path(u"home"_qs));
    store.update([](AppSettings &settings) { settings.mailSound = true; });
    scheduler.advance(1s);
    EXPECT_EQ(SettingsCoder::decode(folder.read(u"home/settings.json"_qs)).settings,
              store.settings());
}

TEST_F(SettingsStoreTest, TellsNobodyOfAnEqualRecord)
{
    SettingsStore store = makeStore();
    store.observe([](const AppSettings &, const AppSettings &) { ADD_FAILURE(); });
    store.update(setMinutes(AppSettings().eventAlertMinutes));
    store.replace(AppSettings());
    EXPECT_EQ(scheduler.pendingCount(), 0U);
}

TEST_F(SettingsStoreTest, TellsEveryObserverTheChangesInTheirOrder)
{
    SettingsStore store = makeStore();
    std::vector<std::pair<int, int>> early;
    std::vector<std::pair<int, int>> late;
    const auto note = [](auto &list, const AppSettings &before, const AppSettings &after) {
        list.emplace_back(before.eventAlertMinutes, after.eventAlertMinutes);
    };
    store.observe([&](const AppSettings &before, const AppSettings &after) {
        note(early, before, after);
        if (after.eventAlertMinutes == 6)
            store.update(setMinutes(7));
    });
    store.observe(
        [&](const AppSettings &before, const AppSettings &after) { note(late, before, after); });
    int signalled = 0;
    QObject::connect(&store, &SettingsStore::settingsChanged, [&] {
        ++signalled;
        EXPECT_EQ(late.size(), static_cast<std::size_t>(signalled));
    });

    store.update(setMinutes(6));
    EXPECT_THAT(early, ElementsAre(Pair(5, 6), Pair(6, 7)));
    EXPECT_EQ(late, early);
    EXPECT_EQ(signalled, 2);
    EXPECT_EQ(scheduler.pendingCount(), 1U);
}

TEST_F(SettingsStoreTest, LetsObserversRemoveThemselvesAndOthers)
{
    SettingsStore store = makeStore();
    int calls = 0;
    SettingsStore::ObserverID first = 0;
    SettingsStore::ObserverID second = 0;
    first = store.observe([&, name = u"a long name that lives in the heap"_qs](auto &, auto &) {
        store.removeObserver(first);
        store.removeObserver(second);
        calls += name.isEmpty() ? 100 : 1;
    });
    second = store.observe([&](auto &, auto &) { calls += 10; });
    store.update(setMinutes(6));
    store.update(setMinutes(7));
    EXPECT_EQ(calls, 1);
}

TEST_F(SettingsStoreTest, NeverBringsTheWelcomeBackByResetOrImport)
{
    SettingsStore store = makeStore();
    store.update([](AppSettings &settings) {
        settings.hasCompletedOnboarding = true;
        settings.theme = ThemePreference::light;
    });
    store.exportTo(folder.path(u"backup/deep/file.json"_qs));
    store.resetToDefaults();
    EXPECT_EQ(store.settings().theme, ThemePreference::dark);
    EXPECT_TRUE(store.settings().hasCompletedOnboarding);
    store.importFrom(folder.path(u"backup/deep/file.json"_qs));
    EXPECT_EQ(store.settings().theme, ThemePreference::light);

    folder.write(u"other.json"_qs,
                 R"({"hasCompletedOnboarding":false,"mailSound":true,"theme":1})");
    EXPECT_THAT(store.importFrom(folder.path(u"other.json"_qs)), ElementsAre(u"theme"_qs));
    EXPECT_TRUE(store.settings().hasCompletedOnboarding);
    EXPECT_TRUE(store.settings().mailSound);
}

TEST_F(SettingsStoreTest, ChangesNothingWhenAnImportFails)
{
    SettingsStore store = makeStore();
    store.update(setMinutes(6));
    const AppSettings before = store.settings();
    folder.write(u"list.json"_qs, "[]");
    EXPECT_THROW(store.importFrom(folder.path(u"list.json"_qs)), SettingsStore::ImportError);
    EXPECT_THROW(store.importFrom(folder.path(u"missing.json"_qs)), FileError);
    EXPECT_EQ(store.settings(), before);
    EXPECT_EQ(folder.read(u"list.json"_qs), "[]");
}

} // namespace
} // namespace velmo
