#include "VelmoUI/Modules/Notes/NotesPageModel.h"

#include "VelmoCore/Notes/NotesStore.h"

#include "tests/VelmoUI/FakePanelPort.h"
#include "tests/VelmoUI/ServicesFixture.h"
#include "tests/support/Printers.h"

#include <QTextDocument>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmo {
namespace {

using testing::ElementsAre;

class NotesPageModelTest : public ServicesFixture {
protected:
    static std::vector<QString> column(QAbstractItemModel *model, const char *role)
    {
        std::vector<QString> texts;
        for (int row = 0; row < model->rowCount(); ++row)
            texts.push_back(model->index(row, 0).data(model->roleNames().key(role)).toString());
        return texts;
    }

    FakePanelPort panel;
    NotesPageModel page{
        {*services.notes, desktop.fileViewer, desktop.pasteboard, desktop.scheduler}, panel};
};

TEST_F(NotesPageModelTest, WritesListsFindsAndBringsBackNotes)
{
    page.setWatched(true);
    page.go(NotesPageModel::composing());
    ASSERT_TRUE(page.hasSelection());
    services.notes->updateNote(services.notes->notes().front().id,
                               u"Plano #Casa\nver https://exemplo.org/a"_qs);
    EXPECT_THAT(column(page.notes(), "title"), ElementsAre(u"Plano #Casa"_qs));
    EXPECT_THAT(column(page.tags(), "title"), ElementsAre(u"#casa"_qs));
    EXPECT_THAT(column(page.links(), "title"), ElementsAre(u"exemplo.org/a"_qs));
    EXPECT_FALSE(page.openLinkAt(3));
    EXPECT_TRUE(page.openLinkAt(20));
    EXPECT_THAT(desktop.fileViewer.opened, ElementsAre(QUrl(u"https://exemplo.org/a"_qs)));
    page.create();
    EXPECT_THAT(column(page.notes(), "title"), ElementsAre(u"Nota vazia"_qs, u"Plano #Casa"_qs));
    page.toggleTag(u"casa"_qs);
    EXPECT_EQ(page.notes()->rowCount(), 1);
    page.toggleTag(u"casa"_qs);
    page.search(u"plano"_qs);
    const QString id = column(page.notes(), "id").at(0);
    page.search({});
    page.remove(id);
    EXPECT_EQ(page.undoTitle(), u"Desfazer: nota apagada");
    page.undo();
    EXPECT_EQ(page.text(), u"Plano #Casa\nver https://exemplo.org/a");
    page.setWatched(false); // the empty one goes
    EXPECT_EQ(services.notes->notes().size(), 1U);
}

TEST_F(NotesPageModelTest, HandsALongNoteOnOnlyWhenTheKeysRest)
{
    QStringList edits;
    QTextDocument document;
    NoteEditor editor(desktop.scheduler, [&](const QString &text) { edits.append(text); });
    editor.attach(&document, Qt::white);
    document.setPlainText(u"curta"_qs);
    EXPECT_EQ(edits.takeLast(), u"curta");
    edits.clear();
    const QString text(NoteEditor::longNote + 1, u'a');
    document.setPlainText(text);
    document.setPlainText(text + u'b');
    EXPECT_TRUE(edits.isEmpty());
    desktop.scheduler.advance(0.5s);
    EXPECT_EQ(edits.size(), 1);
    document.setPlainText(text);
    editor.flush();
    EXPECT_EQ(edits.last(), text);
}

TEST_F(NotesPageModelTest, GivesALongNoteBackAsItWas)
{
    QString text;
    while (text.size() <= NoteEditor::longNote)
        text += u"10\u00a0km até o hotel\n\n"_qs;
    QStringList edits;
    QTextDocument document;
    NoteEditor editor(desktop.scheduler, [&](const QString &edit) { edits.append(edit); });
    editor.attach(&document, Qt::white);
    document.setPlainText(NoteEditor::arranged(text));
    EXPECT_LT(document.blockCount(), 60);
    editor.flush();
    EXPECT_EQ(edits, QStringList{text});
}

TEST_F(NotesPageModelTest, KeepsTasksWithTheirReminders)
{
    EXPECT_FALSE(page.addTask(u"regar"_qs, u"algum dia"_qs));
    EXPECT_EQ(page.dueIssue(), u"Digite quando, como 18h, amanhã 9h ou 25/12 9:30.");
    EXPECT_TRUE(page.addTask(u"regar"_qs, u"em 1h"_qs));
    EXPECT_TRUE(page.addTask(u"ler"_qs, {}));
    desktop.scheduler.advance(2h);
    EXPECT_THAT(column(page.tasks(), "isOverdue"), ElementsAre(u"true"_qs, u"false"_qs));
    const QString id = column(page.tasks(), "id").at(0);
    EXPECT_TRUE(page.setDue(id, {}));
    page.toggleTask(id);
    EXPECT_THAT(column(page.tasks(), "title"), ElementsAre(u"ler"_qs));
    EXPECT_EQ(page.doneText(), u"1 concluída");
    page.setShowsDone(true);
    EXPECT_THAT(column(page.tasks(), "spoken"), ElementsAre(u"ler"_qs, u"regar, concluída"_qs));
    page.clearCompleted();
    page.undo();
    page.removeTask(id);
    EXPECT_THAT(column(page.tasks(), "title"), ElementsAre(u"ler"_qs));
    page.undo();
    EXPECT_EQ(services.notes->tasks().size(), 2U);
}

TEST_F(NotesPageModelTest, TakesRemovalsBackOneByOneEachInItsTime)
{
    const QString note = uuidText(services.notes->createNote(u"Plano"_qs).id);
    page.addTask(u"regar"_qs, {});
    const auto remove = [&] {
        page.removeTask(column(page.tasks(), "id").at(0));
        desktop.scheduler.advance(UndoStack::time - 1s);
        page.remove(note);
        EXPECT_EQ(page.undoTitle(), u"Desfazer: nota apagada");
    };
    remove();
    page.undo();
    EXPECT_EQ(page.text(), u"Plano");
    EXPECT_EQ(page.undoTitle(), u"Desfazer: tarefa apagada");
    page.undo();
    EXPECT_EQ(page.tasks()->rowCount(), 1);
    remove();
    page.setWatched(false); // the page may close meanwhile
    desktop.scheduler.advance(1s);
    page.undo();
    EXPECT_EQ(page.text(), u"Plano");
    EXPECT_EQ(page.undoTitle(), QString());
    page.undo();
    EXPECT_EQ(page.tasks()->rowCount(), 0);
}

TEST_F(NotesPageModelTest, OffersWhatCanBeDone)
{
    const Note note = services.notes->createNote(u"Plano"_qs);
    const TaskItem task = services.notes->addTask(u"regar"_qs).value();
    const auto run = [&](const Uuid &id, const QString &command) {
        page.offerCommands(uuidText(id));
        page.run(command);
        page.offerCommands(uuidText(id));
        return column(page.commands(), "title");
    };
    page.create();
    EXPECT_THAT(run(note.id, u"open"_qs),
                ElementsAre(u"Abrir"_qs, u"Fixar"_qs, u"Copiar"_qs, u"Apagar"_qs));
    EXPECT_EQ(page.text(), u"Plano");
    EXPECT_EQ(run(note.id, u"pin"_qs).at(1), u"Desafixar");
    run(note.id, u"copy"_qs);
    EXPECT_EQ(desktop.pasteboard.text, u"Plano"_qs);
    EXPECT_TRUE(run(note.id, u"remove"_qs).empty());
    EXPECT_THAT(run(task.id, u"copy"_qs),
                ElementsAre(u"Concluir"_qs, u"Lembrete…"_qs, u"Copiar"_qs, u"Apagar"_qs));
    EXPECT_EQ(desktop.pasteboard.text, u"regar"_qs);
    EXPECT_THAT(run(task.id, u"toggle"_qs), ElementsAre(u"Reabrir"_qs, u"Copiar"_qs, u"Apagar"_qs));
    EXPECT_TRUE(run(task.id, u"remove"_qs).empty());
}

} // namespace
} // namespace velmo
