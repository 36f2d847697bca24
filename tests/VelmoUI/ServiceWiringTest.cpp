#include "VelmoUI/Composition/ServiceWiring.h"

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Activity/ActivityEvent.h"
#include "VelmoCore/Clipboard/ClipItem.h"
#include "VelmoCore/Clipboard/ClipboardStore.h"
#include "VelmoCore/Files/PendingFiles.h"
#include "VelmoCore/Jobs/JobCenter.h"
#include "VelmoCore/Jobs/JobProgress.h"
#include "VelmoCore/Notes/NotesStore.h"
#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoCore/Shelf/ShelfStore.h"
#include "VelmoCore/Timers/TimerCenter.h"
#include "VelmoUI/Composition/AppServices.h"
#include "VelmoUI/Composition/BuiltInModules.h"
#include "VelmoUI/Modules/Frame/ModuleRegistry.h"

#include "tests/support/FakeDesktop.h"
#include "tests/support/Printers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

namespace velmo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class ServiceWiringTest : public testing::Test {
protected:
    ServiceWiringTest() { launch(); }

    void launch(const DataProtectionStatus &protection = {DataProtectionStatus::Disabled{}})
    {
        services.emplace(desktop.paths(), protection, desktop.platform);
        for (auto &module : makeBuiltInModules(*services))
            services->modules->add(std::move(module));
        ServiceWiring::start(*services);
    }
    std::vector<QString> notifications() const
    {
        std::vector<QString> texts;
        for (const auto &[id, notification] : desktop.notifications.shown)
            texts.push_back(notification.title + u": "_qs + notification.body);
        return texts;
    }

    FakeDesktop desktop;
    std::optional<AppServices> services;
};

TEST_F(ServiceWiringTest, TellsOfATimerThatEndsInAllWays)
{
    services->timers->startTimer(60s, u"chá"_qs);
    desktop.scheduler.advance(60s);
    const ActivityEvent event = services->activity->history().front();
    EXPECT_EQ(event.title, u"Timer concluído");
    EXPECT_EQ(event.detail, u"chá"_qs);
    EXPECT_EQ(event.source, u"timers");
    EXPECT_THAT(desktop.sounds.played, ElementsAre(SystemSound::glass));
    EXPECT_THAT(notifications(), ElementsAre(u"Timer concluído: chá"_qs));
    EXPECT_EQ(event.symbol, u"timer");
    services->timers->startPomodoro();
    for (const auto &[length, title, detail, symbol] :
         {std::tuple(25min, u"Foco concluído"_qs, u"Pausa curta"_qs, u"checkmark.circle.fill"_qs),
          {5min, u"Pausa curta concluída"_qs, u"Foco"_qs, u"brain.head.profile"_qs}}) {
        desktop.scheduler.advance(length);
        const ActivityEvent ended = services->activity->history().front();
        EXPECT_EQ(ended.title, title);
        EXPECT_EQ(ended.detail, u"Próxima etapa: "_qs + detail);
        EXPECT_EQ(ended.symbol, symbol);
    }
}

TEST_F(ServiceWiringTest, GivesNamesBackBeforeTheShelfForgetsFiles)
{
    const PendingFiles::Folder records(desktop.paths().supportFile(u"Pending"_qs));
    desktop.folder.write(u"a.txt"_qs, "conteúdo");
    const QUrl place =
        services->shelf->moveIn(QUrl::fromLocalFile(desktop.folder.path(u"a.txt"_qs)));
    {
        const PendingFiles::Renaming renaming({place}, {place});
        QFile::rename(place.toLocalFile(), renaming.hidden()[0].toLocalFile());
    }
    launch();
    EXPECT_THAT(services->shelf->items(), SizeIs(1)) << "its file is only hidden";
    ServiceWiring::finishRestoring(*services, PendingFiles::restore());
    EXPECT_THAT(services->shelf->items(), SizeIs(1));
    EXPECT_TRUE(QFile::exists(place.toLocalFile()));
    EXPECT_EQ(services->activity->history().front().title, u"1 item tem de novo o nome de antes");
}

TEST_F(ServiceWiringTest, RemindsOfOpenTasksAlsoAfterARestart)
{
    const Date now = desktop.scheduler.now();
    services->notes->addTask(u"antes"_qs, now - 1h);
    const Uuid done = services->notes->addTask(u"feita"_qs, now + 1h)->id;
    const Uuid moved = services->notes->addTask(u"adiada"_qs, now + 1h)->id;
    services->notes->addTask(u"regar"_qs, now + 1h);
    services->notes->toggleTask(done);
    services->notes->setDue(moved, now + 2h);
    services->flush();
    services.reset();
    launch();
    desktop.scheduler.advance(59min);
    EXPECT_THAT(notifications(), IsEmpty());
    desktop.scheduler.advance(1min);
    EXPECT_THAT(notifications(), ElementsAre(u"Lembrete: regar"_qs));
    desktop.scheduler.advance(1h);
    EXPECT_THAT(notifications(), SizeIs(2));
    services->notes->deleteTask(moved);
    EXPECT_THAT(notifications(), SizeIs(1));
}

TEST_F(ServiceWiringTest, RemindsOnceOfWhatCameDueWhileItWasClosed)
{
    const auto restart = [&](Seconds closed) {
        desktop.scheduler.advance(1s); // it saves before the end, too
        services.reset();
        desktop.notifications.shown.clear();
        desktop.scheduler.advance(closed);
        launch();
    };
    const Date now = desktop.scheduler.now();
    services->notes->addTask(u"regar"_qs, now + 1h);
    services->notes->toggleTask(services->notes->addTask(u"feita"_qs, now + 1h)->id);
    const Uuid later = services->notes->addTask(u"ler"_qs, now + 3h)->id;
    restart(2h);
    EXPECT_THAT(notifications(), ElementsAre(u"Lembrete: regar"_qs));
    restart(0s);
    EXPECT_THAT(notifications(), IsEmpty());
    desktop.scheduler.advance(2h);
    EXPECT_THAT(notifications(), ElementsAre(u"Lembrete: ler"_qs));
    restart(1h);
    EXPECT_THAT(notifications(), IsEmpty()) << "it was reminded of while it ran";
    services->notes->setDue(later, desktop.scheduler.now() + 1h);
    restart(2h);
    EXPECT_THAT(notifications(), ElementsAre(u"Lembrete: ler"_qs));
}

TEST_F(ServiceWiringTest, BringsAllThatIsSealedWhenItsKeyComesAndLosesNothing)
{
    const DataProtectionStatus protection{
        DataProtectionStatus::Enabled{DataCipher(QByteArray(32, 'k'))}};
    const auto copy = [this](const QString &text) {
        services->clipboard->add(*ClipItems::fromText(text, {}, desktop.scheduler.now()));
        return services->clipboard->items().front().id;
    };
    const auto post = [this](const QString &title) {
        services->activity->post(ActivityEvent::make(desktop.scheduler.now(), u"doc"_qs, title,
                                                     FeedbackStyle::info, u"files"_qs));
    };
    launch(protection);
    copy(u"antes"_qs);
    services->clipboard->togglePin(copy(u"ambos"_qs));
    post(u"antes"_qs);
    services->notes->createNote(u"antes"_qs);
    services->notes->addTask(u"regar"_qs, desktop.scheduler.now() + 1h);
    services->shelf->addText(u"antes"_qs);
    services->flush();
    services.reset();
    desktop.scheduler.advance(2h);

    launch({DataProtectionStatus::Awaited{}});
    EXPECT_TRUE(services->files.isLoading());
    EXPECT_THAT(services->notes->notes(), IsEmpty());
    services->clipboard->toggleFavorite(copy(u"ambos"_qs));
    copy(u"agora"_qs);
    post(u"agora"_qs);
    services->notes->createNote(u"agora"_qs);
    services->shelf->addText(u"agora"_qs);
    services->setProtection(protection);
    services->flush();
    EXPECT_THAT(notifications(), ElementsAre(u"Lembrete: regar"_qs));
    services.reset();

    launch(protection);
    std::vector<QString> texts;
    for (const ClipItem &item : services->clipboard->items())
        texts.push_back(item.text.value() +
                        (item.isPinned && item.isFavorite ? u"*"_qs : QString()));
    EXPECT_THAT(texts, ElementsAre(u"agora"_qs, u"ambos*"_qs, u"antes"_qs));
    EXPECT_THAT(services->notes->notes(), SizeIs(2));
    EXPECT_EQ(services->activity->history().at(0).title, u"agora");
    EXPECT_EQ(services->activity->history().at(1).title, u"antes");
    EXPECT_EQ(services->shelf->items().at(0).name, u"agora");
    EXPECT_EQ(services->shelf->items().at(1).name, u"antes");
    EXPECT_THAT(services->files.issues(), IsEmpty());
}

TEST_F(ServiceWiringTest, KeepsCopiesFromWhenTheUserWantsThem)
{
    const auto want = [this](bool isWanted) {
        services->settings->update([&](AppSettings &next) { next.clipboardEnabled = isWanted; });
    };
    const auto copy = [this](const char *text) {
        desktop.pasteboard.offer({{Pasteboard::textType.toString(), text}});
        desktop.scheduler.advance(1s);
    };
    want(false);
    services->flush();
    services.reset();
    launch();
    copy("antes");
    want(true);
    copy("depois");
    want(false);
    copy("tarde");
    ASSERT_THAT(services->clipboard->items(), SizeIs(1));
    EXPECT_EQ(services->clipboard->items()[0].text, u"depois"_qs);
}

TEST_F(ServiceWiringTest, ForgetsAShelfFileThatAJobHasTakenAway)
{
    desktop.folder.write(u"a.txt"_qs, "?");
    const QUrl file =
        services->shelf->moveIn(QUrl::fromLocalFile(desktop.folder.path(u"a.txt"_qs)));
    services->jobs->run({}, {}, {}, [&](JobProgress &, const std::stop_token &) -> JobOutcome {
        QFile::remove(file.toLocalFile());
        throw LocalizedError(u"E então falhou."_qs);
    });
    while (!services->shelf->items().empty()) {
        desktop.scheduler.runPosted();
        std::this_thread::yield();
    }
    EXPECT_EQ(services->activity->history().front().detail, u"E então falhou."_qs);
}

} // namespace
} // namespace velmo
