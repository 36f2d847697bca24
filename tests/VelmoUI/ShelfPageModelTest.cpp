#include "VelmoUI/Modules/Shelf/ShelfPageModel.h"

#include "VelmoCore/Actions/ActionCatalog.h"
#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoCore/Shelf/ShelfStore.h"
#include "VelmoSystem/FileProcessing/ActionRunner.h"
#include "VelmoSystem/FileProcessing/QuickActions.h"
#include "VelmoSystem/Shelf/ShelfMover.h"
#include "VelmoUI/Modules/Shelf/ShelfDrag.h"
#include "VelmoUI/Notch/PanelIssues.h"

#include "tests/VelmoUI/PanelFixture.h"
#include "tests/support/Printers.h"
#include "tests/support/Warnings.h"

#include <QDirIterator>

#include <gmock/gmock.h>

#include <thread>

namespace velmo {
namespace {

class ShelfPageModelTest : public PanelFixture {
protected:
    ShelfPageModelTest()
    {
        addQuickActions(*services.actions, desktop.fileViewer, desktop.pasteboard);
        addModules(u"shelf"_qs);
        page.setWatched(true);
    }

    /// One text a letter, so that they stand in the order given.
    void addTexts(const char16_t *names)
    {
        const QString letters = QString::fromUtf16(names);
        for (auto letter = letters.crbegin(); letter != letters.crend(); ++letter)
            services.shelf->addText(*letter);
    }
    QUrl addFile(const QString &name)
    {
        desktop.folder.write(name, "?");
        return services.shelf->moveIn(QUrl::fromLocalFile(desktop.folder.path(name)));
    }
    QString shown(bool selectedOnly = false)
    {
        QString names;
        for (int row = 0; row < page.items()->rowCount(); ++row) {
            if (!selectedOnly || field(row, "isSelected").toBool())
                names += field(row, "title").toString();
        }
        return names;
    }
    QVariant field(int row, const char *name) { return velmo::field(page.items(), row, name); }
    QStringList commands() { return column(page.commands(), "title"); }

    NotchViewModel panel{1, NotchGeometry::metrics(FakeDesktop::screen(1)), services.panels()};
    ShelfPageModel page{
        {*services.shelf, *services.shelfMover, *services.actionRunner, desktop.scheduler}, panel};
};

constexpr int noModifier = Qt::NoModifier;
constexpr int ctrl = Qt::ControlModifier;
constexpr int shift = Qt::ShiftModifier;

} // namespace

TEST_F(ShelfPageModelTest, SelectsByPressAndByKey)
{
    addTexts(u"abcdef");
    struct Step {
        int place; ///< what is pressed, else the key
        int key;
        int modifiers;
        const char16_t *selected;
    };
    for (const Step &step : {
             Step{-1, Qt::Key_Right, noModifier, u"a"},
             Step{1, 0, noModifier, u"b"},
             Step{3, 0, shift, u"bcd"},
             Step{0, 0, shift, u"ab"},
             Step{4, 0, ctrl, u"abe"},
             Step{1, 0, ctrl, u"ae"},
             Step{4, 0, noModifier, u"ae"}, // may become a drag of both
             Step{-1, Qt::Key_Left, noModifier, u"d"},
             Step{-1, Qt::Key_Left, shift, u"cd"},
             Step{-1, Qt::Key_End, shift, u"def"},
             Step{-1, Qt::Key_Right, noModifier, u"f"},
             Step{-1, Qt::Key_A, ctrl, u"abcdef"},
             Step{-1, Qt::Key_Escape, noModifier, u""},
         }) {
        if (step.place >= 0)
            page.press(step.place, step.modifiers);
        else
            EXPECT_TRUE(page.handleKey(step.key, step.modifiers));
        EXPECT_EQ(shown(true), QStringView(step.selected));
    }
    EXPECT_FALSE(page.handleKey(Qt::Key_Escape, noModifier)) << "the panel closes";
    page.handleKey(Qt::Key_A, ctrl);
    page.release(2, noModifier);
    EXPECT_EQ(shown(true), u"c");
    page.search(u"D"_qs);
    EXPECT_EQ(shown(), u"d");
    EXPECT_FALSE(page.hasSelection()) << "nothing is done with what can't be seen";
}

TEST_F(ShelfPageModelTest, RemovesForGoodOnlyOnceNothingCanBringItBack)
{
    addTexts(u"abc");
    const auto kept = [this] { return services.shelf->items().size(); };
    page.press(1, noModifier);
    EXPECT_TRUE(page.handleKey(Qt::Key_Delete, noModifier));
    EXPECT_EQ(shown(), u"ac");
    EXPECT_EQ(shown(true), u"c") << "the keyboard goes on from there";
    EXPECT_EQ(page.summary(), u"1 item removido");
    EXPECT_TRUE(page.handleKey(Qt::Key_Z, ctrl));
    EXPECT_EQ(shown(), u"abc");
    EXPECT_EQ(shown(true), u"b");
    page.run(u"shelf.remove"_qs);
    wait(UndoStack::time);
    EXPECT_EQ(kept(), 2U);
    EXPECT_FALSE(page.canUndo());
    page.run(u"shelf.remove"_qs);
    EXPECT_EQ(kept(), 2U);
    page.setWatched(false);
    EXPECT_EQ(kept(), 1U);
}

TEST_F(ShelfPageModelTest, TellsWhatWentWrongWithAnyFileUntilTheUserHasReadIt)
{
    services.settings->update([](AppSettings &next) { next.mailSound = true; });
    services.flush();
    int count = 0;
    QDirIterator files(desktop.paths().support, {u"*.json"_qs}, QDir::Files,
                       QDirIterator::Subdirectories);
    for (; files.hasNext(); ++count)
        desktop.folder.write(QDir(desktop.folder.path()).relativeFilePath(files.next()), "{");
    EXPECT_GE(count, 6);
    AppServices others{desktop.paths(), {DataProtectionStatus::Disabled{}}, desktop.platform};
    PanelIssues issues(others.files, *others.modules);
    EXPECT_EQ(issues.texts().size(), count);
    EXPECT_TRUE(issues.texts().contains(others.shelf->loadIssue().value()));
    issues.dismiss();
    EXPECT_TRUE(issues.texts().isEmpty());
    desktop.folder.write(u"data/settings.json/inside"_qs, "in the way");
    others.settings->update([](AppSettings &next) { next.mailSound = true; });
    others.settings->flush();
    EXPECT_EQ(issues.texts().size(), 1) << "it can't be saved";
}

TEST_F(ShelfPageModelTest, DoesWithTheSelectionWhatSuitsAllOfIt)
{
    services.shelf->addText(u"nota"_qs);
    services.shelf->addLink(QUrl(u"https://example.org/a"_qs));
    const QUrl file = addFile(u"a.txt"_qs);
    page.press(0, noModifier);
    EXPECT_EQ(commands(),
              (QStringList{u"Mostrar na pasta"_qs, u"Abrir"_qs, u"Copiar caminho"_qs, u"Fixar"_qs,
                           u"Agrupar…"_qs, u"Renomear"_qs, u"Devolver à pasta"_qs}));
    EXPECT_NE(column(page.commands(), "symbol").back(), u"trash");
    EXPECT_TRUE(page.handleKey(Qt::Key_C, ctrl));
    EXPECT_EQ(desktop.pasteboard.text, file.toLocalFile());
    EXPECT_EQ(page.summary(), u"Caminho copiado");
    EXPECT_TRUE(page.handleKey(Qt::Key_P, ctrl));
    EXPECT_TRUE(field(0, "isPinned").toBool());
    EXPECT_TRUE(page.handleKey(Qt::Key_Return, noModifier));
    EXPECT_EQ(desktop.fileViewer.opened, std::vector{file});

    EXPECT_TRUE(page.handleKey(Qt::Key_F2, noModifier));
    EXPECT_EQ(page.renaming(), field(0, "id").toString());
    EXPECT_EQ(page.renamingLength(), 1) << "not the extension";
    page.rename(u"b.txt"_qs);
    EXPECT_EQ(shown(), u"b.txtexample.orgnota");
    EXPECT_TRUE(QFileInfo::exists(desktop.folder.path(u"data/Shelf/Copies/Mesa/b.txt"_qs)));
    page.handleKey(Qt::Key_F2, noModifier);
    page.rename(u"a/b"_qs);
    EXPECT_EQ(shown(), u"b.txtexample.orgnota");

    page.press(1, noModifier);
    page.press(2, shift);
    EXPECT_EQ(commands(), (QStringList{u"Copiar"_qs, u"Fixar"_qs, u"Agrupar…"_qs, u"Remover"_qs}));
    EXPECT_TRUE(page.handleKey(Qt::Key_C, ctrl));
    EXPECT_EQ(desktop.pasteboard.text, u"https://example.org/a\nnota");
    page.group(u"Viagem"_qs);
    EXPECT_EQ(page.groups(), (QStringList{u"Tudo"_qs, u"Viagem"_qs}));
    page.setGroupIndex(1);
    EXPECT_EQ(shown(), u"example.orgnota");
    page.handleKey(Qt::Key_A, ctrl);
    page.group({});
    EXPECT_EQ(page.groupIndex(), 0) << "its last item has left the group";
    EXPECT_EQ(page.items()->rowCount(), 3);
}

TEST_F(ShelfPageModelTest, GivesFilesLinksAndTextsToOtherApplications)
{
    const QUrl original = QUrl::fromLocalFile(desktop.folder.path(u"ref.txt"_qs));
    services.shelf->addText(u"nota"_qs);
    services.shelf->addLink(QUrl(u"https://example.org"_qs));
    services.shelf->addReferences({original});
    const QUrl moved = addFile(u"a.txt"_qs);
    const auto &items = services.shelf->items();
    const auto data = ShelfDrag::mimeData(items);
    EXPECT_EQ(data->urls(), (QList<QUrl>{moved, original, QUrl(u"https://example.org"_qs)}));
    EXPECT_EQ(data->text(), u"https://example.org\nnota");
    EXPECT_TRUE(ShelfDrag::actions({items[0]}).testFlag(Qt::MoveAction));
    EXPECT_FALSE(ShelfDrag::actions({items[0], items[1]}).testFlag(Qt::MoveAction))
        << "an original isn't ours to give away";

    QFile::remove(moved.toLocalFile());
    page.setWatched(false);
    page.setWatched(true);
    while (items.size() > 3) {
        desktop.scheduler.runPosted();
        std::this_thread::yield();
    }
    EXPECT_EQ(shown(), u"ref.txtexample.orgnota");
}

TEST_F(ShelfPageModelTest, ShowsEveryStateWithoutAWarning)
{
    Warnings warnings;
    start();
    showView();
    view().requestActivate();
    services.shelf->addText(u"nota"_qs);
    addFile(u"a.txt"_qs);
    coordinator.open({.module = u"shelf"_qs});
    QCoreApplication::processEvents();
    QObject *root = view().rootObject();
    auto *const shelf = qobject_cast<ShelfPageModel *>(
        root->property("content").value<NotchContent *>()->pages()->page());
    ASSERT_TRUE(shelf);
    const auto check = [&](const char *state) {
        QCoreApplication::processEvents();
        view().grabWindow();
        EXPECT_EQ(warnings.take(), QStringList()) << state;
    };
    for (const char16_t *command :
         {u"shelf.rename", u"shelf.group", u"shelf.rename", u"shelf.pin", u"shelf.group"}) {
        shelf->press(0, noModifier);
        shelf->run(QString::fromUtf16(command));
        check("asking");
    }
    shelf->group(u"Viagem"_qs);
    check("grouped");
    shelf->setGroupIndex(1);
    shelf->search(u"nada"_qs);
    check("nothing found");
    shelf->search({});
    for (int i = 0; i < 2; ++i) {
        shelf->press(0, noModifier);
        shelf->run(u"shelf.remove"_qs);
        check("removed");
    }
    shelf->undoRemove();
    check("back");
    shelf->press(0, noModifier);
    shelf->run(u"shelf.remove"_qs);
    wait(UndoStack::time);
    check("empty");
    coordinator.toggleFromHotKey();
    check("closed");
}

} // namespace velmo
