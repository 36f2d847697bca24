#include "VelmoCore/Actions/ActionCatalog.h"
#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Jobs/JobCenter.h"
#include "VelmoCore/Shelf/ShelfStore.h"
#include "VelmoSystem/FileProcessing/ToolsSelection.h"
#include "VelmoSystem/Shelf/ShelfMover.h"
#include "VelmoSystem/Storage/StorageInspector.h"
#include "VelmoUI/Modules/Frame/ModuleRegistry.h"
#include "VelmoUI/Notch/NotchContent.h"

#include "tests/VelmoUI/FakeModule.h"
#include "tests/VelmoUI/ServicesFixture.h"
#include "tests/support/Printers.h"

#include <QDir>
#include <QLocale>

#include <gmock/gmock.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <new>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>

namespace {

constexpr std::size_t largeBlock = 4 << 20;
std::atomic<bool> refusesLargeBlocks = false;

} // namespace

/// So that memory runs out when a test wants it.
void *operator new(std::size_t size)
{
    void *block = refusesLargeBlocks && size >= largeBlock ? nullptr : std::malloc(size);
    if (block == nullptr)
        throw std::bad_alloc();
    return block;
}

void *operator new(std::size_t size, const std::nothrow_t &) noexcept
{
    return std::malloc(size);
}

void operator delete(void *block) noexcept
{
    std::free(block);
}

void operator delete(void *block, std::size_t) noexcept
{
    std::free(block);
}

namespace velmo {
namespace {

using enum NotchPresentation;
using testing::ElementsAre;

class ShelfDropTest : public ServicesFixture {
protected:
    DroppedItem file(const QString &name) const
    {
        desktop.folder.write(name, "conteúdo");
        return {DroppedItem::File{QUrl::fromLocalFile(desktop.folder.path(name))}};
    }
    DroppedItem inNotch(const QString &name) const
    {
        return {
            DroppedItem::File{QUrl::fromLocalFile(*services.shelf->mesaDirectory() + u'/' + name)}};
    }
    void drop(DropZone zone, const std::vector<DroppedItem> &items)
    {
        model.drop().setZone(zone);
        model.drop().receive(items);
    }
    void waitFor(const std::function<bool()> &isDone)
    {
        while (!isDone()) {
            const double before = processorTime();
            desktop.scheduler.runNextPosted();
            longestStep = std::max(longestStep, processorTime() - before);
            std::this_thread::yield();
        }
    }
    void finishJobs()
    {
        waitFor([this] { return services.jobs->runningCount() == 0; });
    }
    /// Of this thread, in milliseconds, whatever else the machine does.
    static double processorTime()
    {
        rusage used{};
        ::getrusage(RUSAGE_THREAD, &used);
        const auto of = [](const timeval &time) {
            return double(time.tv_sec) * 1e3 + double(time.tv_usec) / 1e3;
        };
        return of(used.ru_utime) + of(used.ru_stime);
    }
    QString movedFromHere() const
    {
        return u"Movido de "_qs + QDir(desktop.folder.path()).dirName();
    }
    QString lastEvent() const
    {
        if (services.activity->history().empty())
            return {};
        const ActivityEvent &event = services.activity->history().front();
        return event.title + u'|' + event.detail.value_or(QString());
    }

    NotchViewModel model{1, NotchGeometry::metrics(FakeDesktop::screen(1)), services.panels()};
    const DroppedItem link{DroppedItem::Link{QUrl(u"https://orvane.app"_qs)}};
    double longestStep = 0; ///< of the main thread, in milliseconds
};

} // namespace

TEST_F(ShelfDropTest, MovesWhatFallsOnTheNotchAndShowsWhereItIs)
{
    const DroppedItem text{DroppedItem::Text{u"um texto"_qs}};
    const DroppedItem bundle = file(u"Programa.APP"_qs);
    const DroppedItem gone{DroppedItem::File{QUrl(u"file:///nada/b.txt"_qs)}};
    const DroppedItem goneToo{DroppedItem::File{QUrl(u"file:///nada/c.txt"_qs)}};
    drop(DropZone::notch, {file(u"a.txt"_qs), gone, bundle, link, text, goneToo});
    EXPECT_EQ(model.presentation(), dropResult);
    finishJobs();
    EXPECT_THAT(model.drop().items(),
                ElementsAre(inNotch(u"a.txt"_qs), gone, bundle, link, text, goneToo));
    EXPECT_EQ(services.shelf->items().size(), 3U);
    EXPECT_EQ(lastEvent(), u"Não foi possível mover|b.txt, c.txt: o item não existe");

    drop(DropZone::notch, {inNotch(u"a.txt"_qs)});
    EXPECT_EQ(services.shelf->items().size(), 3U) << "it is there already";
    drop(DropZone::actions, {file(u"d.txt"_qs)});
    EXPECT_EQ(services.shelf->items().size(), 3U) << "until the user says so";
    model.drop().keep();
    finishJobs();
    EXPECT_THAT(model.drop().items(), ElementsAre(inNotch(u"d.txt"_qs)));
    EXPECT_EQ(lastEvent(), movedFromHere() + u'|');

    // Whatever a setting of another use says, and where nothing is asked.
    change([](AppSettings &next) {
        next.dropStraightToShelf = true;
        next.shelfDropStorage = ShelfStorage::copy;
    });
    const DroppedItem last = file(u"e.txt"_qs);
    model.drop().receive({last});
    finishJobs();
    EXPECT_FALSE(QFile::exists(last.fileURL()->toLocalFile()));
    model.drop().receive({link});
    EXPECT_EQ(lastEvent(), u"Guardado na Mesa|");
}

TEST_F(ShelfDropTest, LooksAtFilesAwayFromTheMainThreadAndOnce)
{
    NotchContent content(model, services.panels());
    const auto details = [&] { return column(content.drop()->items(), "detail"); };
    const QString folder = desktop.folder.path(u"pasta"_qs);
    QDir().mkpath(folder);
    drop(DropZone::actions, {file(u"a.txt"_qs), {DroppedItem::File{QUrl::fromLocalFile(folder)}}});
    EXPECT_EQ(details(), QStringList({QString(), QString()})) << "none has been looked at";
    waitFor([&] { return !details().contains(QString()); });
    EXPECT_EQ(details(), QStringList({StorageInspector::format(9), u"Pasta"_qs}));
    model.drop().keep();
    finishJobs();
    EXPECT_EQ(details(), QStringList({u"Na prateleira · "_qs + StorageInspector::format(9),
                                      u"Na prateleira · Pasta"_qs}));
}

TEST_F(ShelfDropTest, TakesBackWhatItMovedForAWhile)
{
    NotchContent content(model, services.panels());
    const DroppedItem a = file(u"a.txt"_qs);
    const DroppedItem b = file(u"b.txt"_qs);
    desktop.folder.write(u"data/Shelf/Copies/Mesa/a.txt"_qs, "outro");
    drop(DropZone::notch, {a, b});
    EXPECT_FALSE(content.drop()->canUndo());
    finishJobs();
    EXPECT_THAT(model.drop().items(), ElementsAre(inNotch(u"a 2.txt"_qs), inNotch(u"b.txt"_qs)));
    EXPECT_EQ(lastEvent(), movedFromHere() + u"|2 itens"_qs);
    ASSERT_TRUE(content.drop()->canUndo());
    EXPECT_EQ(content.drop()->undoTitle(), movedFromHere());
    content.drop()->undo();
    finishJobs();
    EXPECT_THAT(model.drop().items(), ElementsAre(a, b)) << "with their first names";
    EXPECT_EQ(desktop.folder.read(u"a.txt"_qs), "conteúdo");
    EXPECT_TRUE(services.shelf->items().empty());
    EXPECT_TRUE(model.drop().canKeep());
    EXPECT_FALSE(content.drop()->canUndo());

    model.drop().keep();
    finishJobs();
    desktop.scheduler.advance(DropUndo::time - 0.1s);
    EXPECT_TRUE(content.drop()->canUndo());
    EXPECT_EQ(services.activity->feedback()->title, movedFromHere());
    desktop.scheduler.advance(0.1s);
    EXPECT_FALSE(content.drop()->canUndo());
}

TEST_F(ShelfDropTest, LeavesAFileWhereItIsThatTheShelfCannotRecord)
{
    QDir().mkpath(desktop.folder.path(u"data/Shelf/shelf.json"_qs)); // no file can take its place
    const DroppedItem a = file(u"a.txt"_qs);
    drop(DropZone::notch, {a});
    finishJobs();
    EXPECT_THAT(model.drop().items(), ElementsAre(a));
    EXPECT_TRUE(QFile::exists(a.fileURL()->toLocalFile()));
    EXPECT_TRUE(services.shelf->items().empty());
    EXPECT_TRUE(lastEvent().startsWith(
        u"Não foi possível mover|A prateleira não pôde ser salva: Falha em “shelf.json”"))
        << qPrintable(lastEvent());
    EXPECT_TRUE(model.drop().canKeep());
    QDir().rmdir(desktop.folder.path(u"data/Shelf/shelf.json"_qs));
    model.drop().keep();
    finishJobs();
    EXPECT_THAT(model.drop().items(), ElementsAre(inNotch(u"a.txt"_qs)));
}

TEST_F(ShelfDropTest, TakesThousandsOfFilesWithoutHoldingUpThePanel)
{
    constexpr int count = 3000;
    NotchContent content(model, services.panels());
    std::vector<DroppedItem> files;
    for (int i = 0; i < count; ++i)
        files.push_back(file(QString::number(i)));
    const double before = processorTime();
    drop(DropZone::notch, files);
    longestStep = processorTime() - before;
    EXPECT_TRUE(content.drop()->hasJob());
    finishJobs();
    EXPECT_LT(longestStep, 40) << "which took seconds at once";
    EXPECT_EQ(services.shelf->items().size(), std::size_t(count));
    EXPECT_EQ(model.drop().items().back(), inNotch(QString::number(count - 1)));
    EXPECT_LT(content.drop()->items()->rowCount(), 100);
    EXPECT_EQ(content.drop()->title(), QLocale().toString(count) + u" itens"_qs);
    services.shelf->flush();
    longestStep = 0;

    model.drop().undo();
    EXPECT_GT(services.shelf->items().size(), 2000U) << "they go in small steps";
    waitFor([this] { return services.shelf->items().empty(); });
    services.activity->cancel(services.activity->live().front().id);
    finishJobs();
    EXPECT_LT(longestStep, 40);
    int here = 0;
    for (const DroppedItem &item : files)
        here += QFile::exists(item.fileURL()->toLocalFile());
    EXPECT_LT(here, count) << "it was cancelled";
    EXPECT_EQ(services.shelf->items().size() + std::size_t(here), std::size_t(count));
}

TEST_F(ShelfDropTest, BringsFilesOfAnotherFileSystemByAJob)
{
    const std::filesystem::path other = "/dev/shm/orvane-drop-" + std::to_string(::getpid());
    std::ofstream(other) << "conteúdo";
    const QString name = QString::fromStdString(other.filename().string());
    drop(DropZone::notch,
         {{DroppedItem::File{QUrl::fromLocalFile(QString::fromStdString(other.string()))}}});
    EXPECT_TRUE(services.shelf->items().empty()) << "never on the main thread";
    finishJobs();
    EXPECT_THAT(model.drop().items(), ElementsAre(inNotch(name)));
    ASSERT_EQ(services.shelf->items().size(), 1U);
    EXPECT_EQ(services.shelf->items()[0].originalFolder, u"/dev/shm"_qs);
    EXPECT_EQ(lastEvent(), u"Movido de shm|");
    EXPECT_FALSE(std::filesystem::exists(other));

    const std::vector<ShelfItem> kept = services.shelf->items();
    const std::filesystem::path here = inNotch(name).fileURL()->toLocalFile().toStdString();
    std::filesystem::resize_file(here, 1U << 30); // or it would be home before the cancel
    services.shelfMover->remove({kept[0].id});
    EXPECT_TRUE(services.shelf->items().empty());
    services.activity->cancel(services.activity->live().front().id);
    finishJobs();
    EXPECT_EQ(services.shelf->items(), kept);
    EXPECT_EQ(lastEvent(), u"Devolver à pasta de origem: cancelado|");
    std::filesystem::remove(here);
    ASSERT_EQ(::mkfifo(here.c_str(), 0600), 0) << "which no other disk takes";
    services.shelfMover->remove({kept[0].id});
    finishJobs();
    EXPECT_EQ(services.shelf->items(), kept);
    EXPECT_EQ(services.shelf->lastReturnFailure(), 1);
    EXPECT_EQ(lastEvent(), u"Não foi possível devolver|"_qs + name +
                               u": não é um arquivo, uma pasta nem um link"_qs);
    std::filesystem::remove(here);
    std::ofstream(here) << "conteúdo";
    services.shelfMover->remove({kept[0].id});
    finishJobs();
    EXPECT_EQ(lastEvent(), u"Devolvido à pasta “shm”|");
    EXPECT_TRUE(services.shelf->items().empty());

    std::filesystem::resize_file(other, 1U << 30);
    NotchContent content(model, services.panels());
    drop(DropZone::actions,
         {{DroppedItem::File{QUrl::fromLocalFile(QString::fromStdString(other.string()))}}});
    EXPECT_FALSE(content.drop()->hasJob());
    content.drop()->perform(QStringLiteral("drop.keep"));
    EXPECT_EQ(content.drop()->jobTitle(), u"Mover para o notch");
    EXPECT_FALSE(model.drop().canKeep());
    content.drop()->cancelJob();
    EXPECT_FALSE(content.drop()->hasJob());
    EXPECT_TRUE(model.drop().canKeep());
    finishJobs();
    EXPECT_EQ(lastEvent(), u"Mover para o notch: cancelado|");
    EXPECT_TRUE(services.shelf->items().empty());
    EXPECT_TRUE(std::filesystem::remove(other));
}

TEST_F(ShelfDropTest, SettlesEveryFileWhateverGoesWrong)
{
    const std::filesystem::path other = "/dev/shm/orvane-drop-" + std::to_string(::getpid());
    std::ofstream(other) << "conteúdo";
    const QUrl url = QUrl::fromLocalFile(QString::fromStdString(other.string()));
    std::filesystem::resize_file(other, largeBlock);
    refusesLargeBlocks = true;
    drop(DropZone::notch, {{DroppedItem::File{url}}});
    finishJobs();
    refusesLargeBlocks = false;
    EXPECT_EQ(services.shelf->arrivingCount(), 0);
    EXPECT_TRUE(services.shelf->items().empty());
    EXPECT_EQ(lastEvent(), u"Não foi possível mover|"_qs + url.fileName() +
                               u": erro inesperado (std::bad_alloc)"_qs);
    EXPECT_TRUE(std::filesystem::remove(other));
    EXPECT_TRUE(QDir(*services.shelf->mesaDirectory())
                    .isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}

TEST_F(ShelfDropTest, HandsFilesToTheDesktopAndNothingElse)
{
    using enum DropZone;
    const DroppedItem a = file(u"a.txt"_qs);
    drop(airdrop, {a, link});
    EXPECT_EQ(model.presentation(), dropResult) << "nothing is lost";
    EXPECT_EQ(lastEvent(), u"Não foi possível compartilhar|Só arquivos podem ser enviados.");
    drop(airdrop, {a});
    EXPECT_THAT(desktop.share.shared, ElementsAre(*a.fileURL()));
    EXPECT_EQ(model.presentation(), collapsed);

    const auto offered = [&](DragPasteboard::Contents contents) {
        model.send(NotchEvent::dismiss);
        desktop.dragPasteboard.begin(contents);
        model.send(NotchEvent::dragEntered);
        return model.drop().zones();
    };
    EXPECT_THAT(offered({.hasFiles = true, .hasText = true}), ElementsAre(airdrop, actions, notch));
    EXPECT_THAT(offered({.isUntold = true}), ElementsAre(airdrop, actions, notch));
    EXPECT_THAT(offered({.hasLinks = true}), ElementsAre(actions, notch));
    desktop.share.isThere = false;
    EXPECT_THAT(offered({.hasFiles = true}), ElementsAre(actions, notch));
}

TEST_F(ShelfDropTest, TellsWhatAnActionCameTo)
{
    struct Action : NotchAction {
        QString id() const override { return u"a"_qs; }
        QString title() const override { return u"Abrir"_qs; }
        QString symbol() const override { return {}; }
        bool isAvailable(const std::vector<DroppedItem> &) const override { return true; }
        ActionOutcome perform(const std::vector<DroppedItem> &items) override
        {
            if (items.size() > 1)
                throw LocalizedError(u"Só um."_qs);
            return {u"Abrindo…"_qs, {}, FeedbackStyle::success, true};
        }
    };
    services.actions->add(std::make_unique<Action>());
    drop(DropZone::actions, {link, file(u"a.txt"_qs)});
    model.drop().perform(u"a"_qs);
    EXPECT_EQ(lastEvent(), u"Abrir: falhou|Só um.");
    EXPECT_EQ(model.presentation(), dropResult);
    model.drop().removeItem(link.id());
    model.drop().perform(u"a"_qs);
    EXPECT_EQ(lastEvent(), u"Abrindo…|");
    EXPECT_EQ(model.presentation(), collapsed);
}

TEST_F(ShelfDropTest, OpensTheToolsWithFilesOnly)
{
    FakeModule::addTo(*services.modules, u"home"_qs);
    FakeModule::addTo(*services.modules, u"tools"_qs);
    const DroppedItem a = file(u"a.txt"_qs);
    drop(DropZone::actions, {a, link});
    EXPECT_FALSE(model.drop().canOpenTools());
    model.drop().removeItem(link.id());
    ASSERT_TRUE(model.drop().canOpenTools());
    model.drop().openTools();
    EXPECT_THAT(services.tools->urls(), ElementsAre(*a.fileURL()));
    EXPECT_EQ(model.modules().current()->id(), u"tools");
    EXPECT_EQ(model.presentation(), expanded);
}

} // namespace velmo
