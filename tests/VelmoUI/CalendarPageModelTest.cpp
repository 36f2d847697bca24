#include "VelmoUI/Modules/Calendar/CalendarPageModel.h"

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Notes/NotesStore.h"

#include "tests/VelmoUI/FakePanelPort.h"
#include "tests/VelmoUI/ServicesFixture.h"
#include "tests/support/FakeDesktop.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <thread>

namespace velmo {
namespace {

class CalendarPageModelTest : public testing::Test {
protected:
    CalendarPageModelTest()
    {
        QLocale::setDefault(QLocale(QLocale::Portuguese, QLocale::Brazil));
        // Monday at ten.
        desktop.scheduler.setClock(at(0, 10));
        calendar.start();
        desktop.calendars.set(
            {{"a", "Pessoal", {0.5, 0.5, 1}, true, {}}, {"b", "Feriados", {}, false, {}}},
            {stored("a", "Reunião", at(0, 11), "URL:https://meet.google.com/abc-defg-hij\r\n"),
             stored("a", "Almoço", at(1, 12)), stored("b", "Longe", at(40, 12))});
        page.setWatched(true);
        waitFor([this] { return page.title() == "Reunião"; });
    }
    ~CalendarPageModelTest() override { QLocale::setDefault(QLocale::C); }

    static Date at(int day, int hour)
    {
        const QDateTime start = QDate(2026, 11, 23).addDays(day).startOfDay();
        return Date(Seconds(double(start.addSecs(3600 * hour).toSecsSinceEpoch())));
    }
    static StoredEvent stored(const QString &calendar, const QString &title, Date start,
                              const QByteArray &more = {})
    {
        return {calendar, title,
                "BEGIN:VEVENT\r\nUID:" + title.toUtf8() + "\r\nSUMMARY:" + title.toUtf8() +
                    "\r\nDTSTART:" +
                    localDateTime(start).toUTC().toString("yyyyMMdd'T'HHmmss'Z'").toLatin1() +
                    "\r\nDURATION:PT1H\r\n" + more + "END:VEVENT\r\n"};
    }
    /// The reading is another thread's.
    void waitFor(const std::function<bool()> &isDone)
    {
        while (!isDone()) {
            desktop.scheduler.runPosted();
            std::this_thread::yield();
        }
    }
    QString eventNamed(const QString &title)
    {
        waitFor([&] { return column(page.agenda(), "title").contains(title); });
        const qsizetype row = column(page.agenda(), "title").indexOf(title);
        return column(page.agenda(), "event").at(row);
    }

    FakeDesktop desktop;
    DataFiles files{std::nullopt};
    ActivityCenter activity{std::nullopt, files, desktop.scheduler, 7};
    NotesStore notes{std::nullopt, files, desktop.scheduler};
    FakePanelPort panel;
    CalendarService calendar{std::nullopt,      files,
                             desktop.scheduler, desktop.calendars,
                             desktop.downloads, desktop.workspace};
    CalendarPageModel page{CalendarServices{calendar, notes, activity, desktop.fileViewer,
                                            desktop.applications, desktop.permissions,
                                            desktop.scheduler},
                           panel};
};

TEST_F(CalendarPageModelTest, IsAboutWhatComesNextUntilTheUserChooses)
{
    EXPECT_EQ(page.when(), "hoje, 11:00–12:00");
    EXPECT_EQ(page.countdown(), "em 1 h");
    EXPECT_EQ(page.detail(), "Pessoal");
    desktop.scheduler.advance(60s);
    EXPECT_EQ(page.countdown(), "em 59 min");
    page.join();
    EXPECT_EQ(desktop.fileViewer.opened, std::vector{QUrl("https://meet.google.com/abc-defg-hij")});

    page.openApplication();
    EXPECT_TRUE(page.hasProblem()) << "there is none";
    desktop.applications.entries = {{.id = "agenda.desktop"}};
    desktop.applications.handlers = {{"text/calendar", "agenda.desktop"}};
    page.openApplication();
    EXPECT_EQ(desktop.applications.launched, std::vector<QString>{"agenda.desktop"});
    desktop.applications.handlers["x-scheme-handler/calendar"] = "agenda.desktop";
    page.openApplication();
    EXPECT_EQ(desktop.fileViewer.opened.back(),
              QUrl("calendar:///?startdate=" +
                   localDateTime(at(0, 11)).toUTC().toString("yyyyMMdd'T'HHmmss'Z'")));

    page.choose(eventNamed("Almoço"));
    EXPECT_EQ(page.when(), "amanhã, 12:00–13:00");
    EXPECT_FALSE(page.canJoin());
    page.openNote();
    EXPECT_EQ(panel.route.module, "notes");
    EXPECT_TRUE(notes.notes().front().text.startsWith("Reunião: Almoço\n"));
    page.unchoose();
    EXPECT_EQ(page.title(), "Reunião");
    desktop.scheduler.advance(7200s); // it is over
    EXPECT_EQ(page.title(), "Almoço");
}

TEST_F(CalendarPageModelTest, LooksAtOtherMonths)
{
    EXPECT_EQ(page.monthTitle(), "Novembro");
    page.turnMonth(2);
    EXPECT_EQ(page.monthTitle(), "Janeiro 2027");
    waitFor([this] { return column(page.month(), "hasEvents").contains("true"); });
    page.showDay("2027-01-02");
    EXPECT_EQ(page.month()->rowCount() % 7, 0);
    page.choose(eventNamed("Longe"));
    EXPECT_EQ(page.detail(), "Feriados · somente leitura");
    EXPECT_FALSE(page.canEdit());
    page.remove();
    EXPECT_EQ(page.undoTitle(), "");
}

TEST_F(CalendarPageModelTest, MakesAndChangesEventsByALine)
{
    page.readLine("Jantar com a Bia sexta 20h 2h");
    EXPECT_EQ(page.understood(), "Jantar com a Bia · sexta-feira, 27 de novembro, 20:00–22:00");
    page.save("Jantar");
    EXPECT_TRUE(page.hasProblem());
    page.save("Jantar com a Bia sexta 20h 2h");
    EXPECT_TRUE(page.isSaving());
    waitFor([this] { return !page.isSaving(); });
    EXPECT_TRUE(desktop.calendars.created.back().component.contains("SUMMARY:Jantar com a Bia"));

    page.choose(eventNamed("Almoço"));
    EXPECT_EQ(page.edit(), "Almoço 24/11/2026 12:00-13:00");
    page.save("Almoço com Ana");
    waitFor([this] { return !page.isSaving(); });
    const QByteArray renamed = desktop.calendars.modified.back().component;
    EXPECT_TRUE(renamed.contains("SUMMARY:Almoço com Ana")) << "and at its time";
    EXPECT_FALSE(page.isEditing());
    EXPECT_EQ(page.undoTitle(), "Alterado · Desfazer");
    page.undo();
    EXPECT_TRUE(desktop.calendars.modified.back().component.contains("SUMMARY:Almoço\r\n"));
    EXPECT_EQ(page.undoTitle(), "");

    page.edit();
    desktop.calendars.problem = "A agenda não respondeu.";
    page.save("Almoço amanhã 13h");
    waitFor([this] { return !page.isSaving(); });
    EXPECT_EQ(page.understood(), "A agenda não respondeu.");
    EXPECT_TRUE(page.isEditing()) << "what was typed stays";
}

TEST_F(CalendarPageModelTest, RemovesWithUndo)
{
    page.choose(eventNamed("Almoço"));
    page.remove();
    EXPECT_EQ(page.undoTitle(), "Removido · Desfazer");
    waitFor([this] { return !column(page.agenda(), "title").contains("Almoço"); });
    page.undo();
    eventNamed("Almoço");
    EXPECT_TRUE(desktop.calendars.removed.empty());
    page.choose(eventNamed("Almoço"));
    page.remove();
    panel.isClosed = true;
    Q_EMIT panel.openChanged();
    EXPECT_EQ(desktop.calendars.removed.size(), 1) << "nobody can undo it any more";
}

} // namespace
} // namespace velmo
