#pragma once

#include "VelmoCore/Foundation/Date.h"
#include "VelmoSystem/Linux/Calendar/EvolutionEvents.h"
#include "VelmoSystem/Linux/DBus/TimedCalls.h"

#include <map>
#include <set>

namespace velmo {

/// What takes place in one calendar of Evolution Data Server between two dates, followed.
///
/// The server's views (`org.gnome.evolution.dataserver.CalendarView`) give the series and each of
/// its exceptions as objects of their own, forget exceptions once their series has been changed,
/// and report the removal of one as that of the series. So what they say of a series is a reason to
/// ask for all of it.
class EvolutionView : public QObject {
    Q_OBJECT

public:
    /// `calendar` is the path of an open calendar, `peer` the unique name of its process.
    EvolutionView(QDBusConnection bus, Scheduler &scheduler, QString peer, QString calendar,
                  Date from, Date to);
    ~EvolutionView() override;

    /// Everything has come that there was.
    bool isReady() const { return m_isReady; }
    /// Of each event all its VEVENTs, by UID.
    std::map<QString, QByteArray> texts() const;
    /// Looks at every series again: one whose exception has left the time isn't reported.
    void askForSeries();

Q_SIGNALS:
    /// It is ready, or what it holds is different.
    void changed();
    /// It is no use any more.
    void failed(const QString &why);

private Q_SLOTS:
    void heard(const QDBusMessage &message);

private:
    struct Event {
        QByteArray text;
        bool isSeries = false;

        bool operator==(const Event &) const = default;
    };
    /// What is asked about a series.
    struct Question {
        std::vector<EvolutionEvents::Component> told; ///< by the view, for want of an answer
        bool isAsked = false;                         ///< an answer is on its way
        bool isStale = false;                         ///< something happened since then
    };

    void start(const QDBusMessage &answer);
    void listen();
    void take(const QStringList &components);
    void keep(const QString &uid, Event event);
    void forget(const QString &uid);
    void drop(const QStringList &identifiers);
    void ask(const QString &uid);
    void answered(const QString &uid, const QDBusMessage &answer);
    void end(const QString &error);
    void report();

    QDBusConnection m_bus;
    Scheduler &m_scheduler;
    TimedCalls m_calls;
    QString m_peer;
    QString m_calendar;
    QString m_path; ///< empty until the server has made the view
    ScheduledTask m_limit;
    bool m_hasEnded = false; ///< the server has told what there was
    bool m_isReady = false;
    bool m_hasNews = false; ///< to report
    std::map<QString, Event> m_events;
    std::map<QString, Question> m_questions; ///< by UID
};

} // namespace velmo
