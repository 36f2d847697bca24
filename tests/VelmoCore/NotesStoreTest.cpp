#include "VelmoCore/Notes/NotesStore.h"

#include "VelmoCore/Notes/DueText.h"
#include "VelmoCore/Notes/NoteParsing.h"

#include "tests/support/ManualScheduler.h"
#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NotesStoreTest : public testing::Test {
protected:
    NotesStoreTest()
    {
        launch();
        store->onTaskReminderChanged = [this](const TaskItem &task) { reminders.push_back(task); };
    }

    void launch() { store.emplace(folder.path(u"notes.json"_qs), cipher, scheduler); }
    std::vector<QString> texts(const QString &query = {},
                               const std::optional<QString> &tag = std::nullopt) const
    {
        std::vector<QString> texts;
        for (const Note &note : store->notes(query, tag))
            texts.push_back(note.text);
        return texts;
    }
    std::vector<QString> titles() const
    {
        std::vector<QString> titles;
        for (const TaskItem &task : store->sortedTasks())
            titles.push_back(task.title);
        return titles;
    }

    TemporaryFolder folder;
    ManualScheduler scheduler;
    DataCipher cipher{QByteArray(32, 'k')};
    std::vector<TaskItem> reminders;
    std::optional<NotesStore> store;
};

TEST_F(NotesStoreTest, SavesABurstOnceSealedAndLoadsItAgain)
{
    const Uuid id = store->createNote().id;
    for (const QString &text : {u"s"_qs, u"se"_qs, u"segredo #Casa"_qs})
        store->updateNote(id, text);
    EXPECT_EQ(scheduler.pendingCount(), 1U);
    EXPECT_THAT(folder.names(), IsEmpty());
    scheduler.advance(0.4s);
    store->flush();
    EXPECT_FALSE(folder.read(u"notes.json"_qs).contains("segredo"));
    const Date updated = store->note(id)->updated;
    scheduler.advance(1min);
    store->updateNote(id, u"segredo #Casa"_qs);
    EXPECT_EQ(store->note(id)->updated, updated);
    EXPECT_EQ(scheduler.pendingCount(), 0U);
    store->addTask(u"  regar  "_qs);
    store->flush();
    launch();
    EXPECT_THAT(texts(), ElementsAre(u"segredo #Casa"_qs));
    EXPECT_THAT(titles(), ElementsAre(u"regar"_qs));
}

TEST_F(NotesStoreTest, FindsByTextAndTagPinnedOnesFirst)
{
    const Uuid first = store->createNote(u"Ação #Trabalho"_qs).id;
    scheduler.advance(1s);
    store->createNote(u"lista\n#trabalho #a-b_c1 x#y"_qs);
    scheduler.advance(1s);
    store->createNote(u"  \n "_qs);
    store->togglePin(first);
    EXPECT_THAT(store->allTags(), ElementsAre(u"a-b_c1"_qs, u"trabalho"_qs));
    EXPECT_THAT(texts({}, u"trabalho"_qs),
                ElementsAre(u"Ação #Trabalho"_qs, u"lista\n#trabalho #a-b_c1 x#y"_qs));
    EXPECT_THAT(texts(u" AÇÃO "_qs), ElementsAre(u"Ação #Trabalho"_qs));
    EXPECT_EQ(texts(u"("_qs).size(), 0U);
    store->updateNote(first, u"Ação"_qs);
    EXPECT_EQ(texts({}, u"trabalho"_qs).size(), 1U);
    store->discardEmptyNotes();
    EXPECT_EQ(texts().size(), 2U);
    const Note deleted = *store->note(first);
    store->deleteNote(first);
    EXPECT_EQ(store->note(first), nullptr);
    store->restore(deleted);
    store->restore(deleted);
    EXPECT_EQ(texts().size(), 2U);
}

TEST_F(NotesStoreTest, KeepsOneNoteForAMeeting)
{
    QLocale::setDefault(QLocale(QLocale::Portuguese, QLocale::Brazil));
    const Date start = dueFromText(u"23/11/2026 14h", scheduler.now()).value();
    const Note note = store->meetingNote(u"e1"_qs, u"Plano"_qs, start, start + 90min);
    EXPECT_EQ(note.text, u"Reunião: Plano\nsegunda-feira, 23 de novembro · 14:00–15:30\n\n");
    EXPECT_EQ(store->meetingNote(u"e1"_qs, u"Outro"_qs, start, start).id, note.id);
    QLocale::setDefault(QLocale(QLocale::C));
}

TEST_F(NotesStoreTest, SortsTasksAndTellsOfTheirReminders)
{
    const Date now = scheduler.now();
    EXPECT_FALSE(store->addTask(u" \n "_qs, now));
    store->addTask(u"sem data"_qs);
    const Uuid late = store->addTask(u"depois"_qs, now + 2h)->id;
    const Uuid soon = store->addTask(u"antes"_qs, now + 1h)->id;
    EXPECT_THAT(titles(), ElementsAre(u"antes"_qs, u"depois"_qs, u"sem data"_qs));
    EXPECT_FALSE(store->tasks().front().isOverdue(now + 1h));
    EXPECT_TRUE(store->tasks().front().isOverdue(now + 61min));
    reminders.clear();
    store->toggleTask(soon);
    EXPECT_TRUE(reminders.back().isDone);
    EXPECT_EQ(reminders.back().completedAt, now);
    store->setDue(late, std::nullopt);
    EXPECT_THAT(titles(), ElementsAre(u"depois"_qs, u"sem data"_qs, u"antes"_qs));
    store->clearCompletedTasks();
    store->deleteTask(late);
    EXPECT_EQ(reminders.back().due, std::nullopt);
    EXPECT_THAT(titles(), ElementsAre(u"sem data"_qs));
}

TEST(NoteParsing, FindsAddressesWithoutTheSentenceAroundThem)
{
    const auto urls = NoteParsing::links(
        u"Veja https://exemplo.org/a_(b)?c=1, (www.exemplo.com) e ana.b+c@x.com.br. Não: a@b, http:// ola.txt"_qs);
    EXPECT_THAT(urls, ElementsAre(QUrl(u"https://exemplo.org/a_(b)?c=1"_qs),
                                  QUrl(u"https://www.exemplo.com"_qs),
                                  QUrl(u"mailto:ana.b+c@x.com.br"_qs)));
    EXPECT_EQ(NoteParsing::title(u"\n  \n  Compras \nleite"_qs), u"Compras");
}

TEST(DueText, ReadsDaysAndTimes)
{
    const auto local = [](int year, int month, int day, int hour, int minute) {
        return Date(Seconds(
            double(QDateTime(QDate(year, month, day), QTime(hour, minute)).toSecsSinceEpoch())));
    };
    const Date now = local(2026, 11, 20, 15, 0); // a Friday
    const std::pair<const char16_t *, Date> cases[] = {
        {u"16:30", local(2026, 11, 20, 16, 30)},
        {u"9h", local(2026, 11, 21, 9, 0)},
        {u"Amanhã às 9h15", local(2026, 11, 21, 9, 15)},
        {u"hoje 8h", local(2026, 11, 20, 8, 0)},
        {u"segunda", local(2026, 11, 23, 9, 0)},
        {u"sexta-feira 18h", local(2026, 11, 27, 18, 0)},
        {u"SÁB 10:00", local(2026, 11, 21, 10, 0)},
        {u"depois de amanhã", local(2026, 11, 22, 9, 0)},
        {u"25/12 9:30", local(2026, 12, 25, 9, 30)},
        {u"1/2", local(2027, 2, 1, 9, 0)},
        {u"1/2/2028 7h", local(2028, 2, 1, 7, 0)},
        {u"em 20 min", now + 20min},
        {u"Daqui a 20 minutos", now + 20min},
        {u"em uma hora", now + 1h},
        {u"daqui a 2 semanas 10h", local(2026, 12, 4, 10, 0)},
        {u"próxima terça 18:30", local(2026, 11, 24, 18, 30)},
        {u"na sexta-feira", local(2026, 11, 27, 9, 0)},
        {u"segunda que vem 9h", local(2026, 11, 23, 9, 0)},
        {u"Meio-dia", local(2026, 11, 21, 12, 0)},
        {u"amanhã ao meio-dia", local(2026, 11, 21, 12, 0)},
        {u"à meia-noite", local(2026, 11, 21, 0, 0)},
        {u"hoje à noite", local(2026, 11, 20, 20, 0)},
        {u"hoje à tarde", local(2026, 11, 20, 16, 0)}, // it is 15:00
        {u"amanhã de manhã", local(2026, 11, 21, 9, 0)},
        {u"dia 15 às 8h", local(2026, 12, 15, 8, 0)},
        {u"dia 20 14h", local(2026, 12, 20, 14, 0)},
        {u"no dia 20", local(2026, 12, 20, 9, 0)},
        {u"dia 31", local(2026, 12, 31, 9, 0)},
        {u"às 16", local(2026, 11, 20, 16, 0)},
        {u"hoje às 8 e meia da noite", local(2026, 11, 20, 20, 30)},
        {u"amanhã 3h da tarde", local(2026, 11, 21, 15, 0)},
        {u"1º de maio às 9 horas", local(2027, 5, 1, 9, 0)},
        {u"20 de março de 2028", local(2028, 3, 20, 9, 0)},
        {u"1/2/28 14h30min", local(2028, 2, 1, 14, 30)},
    };
    for (const auto &[text, due] : cases)
        EXPECT_EQ(dueFromText(text, now), due) << QString::fromUtf16(text).toStdString();
    for (const char16_t *text : {u"", u"comprar", u"25h", u"31/2", u"9", u"em breve",
                                 u"amanhã 9:60", u"dia 32", u"dia", u"mais tarde", u"dia 20 e meia",
                                 u"às 31", u"31 de abril", u"semana", u"próxima", u"daqui a pouco"})
        EXPECT_EQ(dueFromText(text, now), std::nullopt) << QString::fromUtf16(text).toStdString();
}

} // namespace
} // namespace velmo
