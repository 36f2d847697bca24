#pragma once

#include "VelmoUI/Design/RecordListModel.h"
#include "VelmoUI/Modules/Calendar/AgendaRows.h"
#include "VelmoUI/Modules/Calendar/CalendarServices.h"
#include "VelmoUI/Modules/Frame/ModulePage.h"
#include "VelmoUI/Modules/Frame/PanelPort.h"

#include <QtQml/qqmlregistration.h>

namespace velmo {

/// The Calendar page of one panel, and Home's card of it. It is about one event: the chosen one,
/// else the one that is on or comes next.
class CalendarPageModel : public velmo::ModulePage {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by its module")
    /// Columns of `AgendaRow`.
    Q_PROPERTY(QAbstractItemModel *agenda READ agenda CONSTANT)
    Q_PROPERTY(QAbstractItemModel *month READ month CONSTANT)
    Q_PROPERTY(QStringList weekdays READ weekdays CONSTANT)
    Q_PROPERTY(QString monthTitle READ monthTitle NOTIFY changed)
    Q_PROPERTY(bool isConnected READ isConnected NOTIFY changed)
    Q_PROPERTY(bool hasEvents READ hasEvents NOTIFY changed)
    /// What isn't right with the calendars, in a line; empty if all is.
    Q_PROPERTY(QString state READ state NOTIFY changed)
    Q_PROPERTY(bool hasEvent READ hasEvent NOTIFY changed)
    Q_PROPERTY(bool isChosen READ isChosen NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString when READ when NOTIFY changed)
    Q_PROPERTY(QString countdown READ countdown NOTIFY changed)
    /// Place and calendar.
    Q_PROPERTY(QString detail READ detail NOTIFY changed)
    Q_PROPERTY(bool canJoin READ canJoin NOTIFY changed)
    Q_PROPERTY(bool canEdit READ canEdit NOTIFY changed)
    Q_PROPERTY(bool isEditing READ isEditing NOTIFY changed)
    /// The calendar for new events; empty where none can be made.
    Q_PROPERTY(QString calendarName READ calendarName NOTIFY changed)
    /// How the typed line is understood, or why it isn't.
    Q_PROPERTY(QString understood READ understood NOTIFY changed)
    Q_PROPERTY(bool hasProblem READ hasProblem NOTIFY changed)
    Q_PROPERTY(bool isSaving READ isSaving NOTIFY changed)
    Q_PROPERTY(QString undoTitle READ undoTitle NOTIFY changed) ///< empty if nothing can come back

public:
    /// `panel` outlives the page.
    CalendarPageModel(const CalendarServices &services, PanelPort &panel);

    /// Chooses the event that is the route's item.
    void go(const Route &route) override;

    QAbstractItemModel *agenda() { return &m_agenda; }
    QAbstractItemModel *month() { return &m_month; }
    QStringList weekdays() const;
    QString monthTitle() const;
    bool isConnected() const { return m_calendar.isConnected(); }
    bool hasEvents() const { return m_agenda.rowCount() > 0; }
    QString state() const;
    bool hasEvent() const { return m_event.has_value(); }
    bool isChosen() const { return hasEvent() && !m_chosen.isEmpty(); }
    QString title() const;
    QString when() const;
    QString countdown() const;
    QString detail() const;
    bool canJoin() const { return m_event && m_event->meeting; }
    bool canEdit() const { return m_event && m_event->canEdit; }
    bool isEditing() const { return m_edited.has_value(); }
    QString calendarName() const { return m_calendar.defaultCalendarName(); }
    QString understood() const { return m_understood; }
    bool hasProblem() const { return m_hasProblem; }
    bool isSaving() const { return m_isSaving; }
    QString undoTitle() const;

    /// How many rows a column has room for.
    Q_INVOKABLE void setRowsPerColumn(int count);
    Q_INVOKABLE void choose(const QString &event);
    /// Back to what is on or next.
    Q_INVOKABLE void unchoose();
    Q_INVOKABLE void turnMonth(int months);
    /// The agenda from that day on: "2026-11-23".
    Q_INVOKABLE void showDay(const QString &day);
    Q_INVOKABLE void join();
    /// The event's note.
    Q_INVOKABLE void openNote();
    /// Of a new event, or of the one that is edited.
    Q_INVOKABLE void readLine(const QString &line);
    Q_INVOKABLE void save(const QString &line);
    /// Gives the line that describes the event.
    Q_INVOKABLE QString edit();
    Q_INVOKABLE void endEditing();
    Q_INVOKABLE void remove();
    Q_INVOKABLE void undo();
    Q_INVOKABLE void openApplication();
    Q_INVOKABLE void openAccounts();
    Q_INVOKABLE void openFeeds();

Q_SIGNALS:
    void changed();
    /// What was typed is kept.
    void saved();

private:
    /// An event as it was before it was changed.
    struct Change {
        CalendarEvent before;
        ScheduledTask end;
    };

    void watch(bool isWatched) override;
    /// Asks for the events of what is looked at.
    void load();
    void update();
    void tick();
    void report(const QString &problem);
    void change(const CalendarEvent &event, const QString &title, Date start, Seconds duration);
    QDate today() const;
    std::pair<QDate, QDate> shownDays() const;

    const CalendarServices m_services;
    CalendarService &m_calendar;
    PanelPort &m_panel;
    RecordListModel<AgendaRow> m_agenda;
    RecordListModel<MonthDayRow> m_month;
    std::vector<CalendarEvent> m_events; ///< of the month and the days that are looked at
    std::optional<CalendarEvent> m_event;
    QString m_chosen;
    QDate m_firstDay;   ///< of the agenda; invalid for today
    QDate m_shownMonth; ///< its first day; invalid for that of `m_firstDay`
    int m_perColumn = 4;
    std::optional<CalendarEvent> m_edited;
    std::optional<Change> m_change; ///< that can be taken back
    QString m_understood;
    bool m_hasProblem = false;
    bool m_isSaving = false;
    ScheduledTask m_nextTick;
    int m_loadCount = 0;
};

} // namespace velmo
