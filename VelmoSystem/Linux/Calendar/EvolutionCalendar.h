#pragma once

#include "VelmoCore/Calendar/StoredEvents.h"
#include "VelmoSystem/Linux/Calendar/EvolutionView.h"
#include "VelmoSystem/Linux/Calendar/GrowingPause.h"

#include <memory>

namespace velmo {

/// One calendar of Evolution Data Server, opened, followed, and opened again when its process has
/// gone or doesn't answer. What it held stays until then.
class EvolutionCalendar : public QObject {
    Q_OBJECT

public:
    /// `factory` is the name of the service that opens calendars. `described` is what the registry
    /// says.
    EvolutionCalendar(QDBusConnection bus, Scheduler &scheduler, QString factory,
                      StoredCalendar described);
    ~EvolutionCalendar() override;

    void describe(const StoredCalendar &described);
    void watch(Date from, Date to);
    void open();
    /// Of a new calendar: others open it at once, and two at the same time confuse the server.
    void openSoon();
    /// If it waits to do so.
    void openNow();
    void peerLeft(const QString &peer);
    void fail(const QString &why);

    bool isFailing() const { return m_isFailing; }
    /// Nothing before it was open for the first time.
    const std::optional<StoredCalendar> &calendar() const { return m_calendar; }
    std::vector<StoredEvent> events() const;
    /// A call to it; nothing while it isn't open.
    std::optional<QDBusMessage> method(const QString &name) const;

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void propertiesChanged(const QDBusMessage &message);

private:
    struct Window {
        Date from;
        Date to;

        bool operator==(const Window &) const = default;
    };

    void call(const QString &service, const QString &path, const QString &interface,
              const QString &method, const QVariantList &arguments,
              void (EvolutionCalendar::*answered)(const QDBusMessage &));
    void found(const QDBusMessage &answer);
    void opened(const QDBusMessage &answer);
    void propertiesAnswered(const QDBusMessage &answer);
    void take(const QVariantMap &properties);
    void refused(const QString &why);
    void log(const QString &why) const;
    void close();
    void look();
    void viewChanged();
    void viewFailed(const QString &why);

    QDBusConnection m_bus;
    Scheduler &m_scheduler;
    TimedCalls m_calls;
    QString m_factory;
    StoredCalendar m_described;
    QString m_address;         ///< that the calendar itself gives
    bool m_isWritable = false; ///< as it says
    std::optional<StoredCalendar> m_calendar;
    std::optional<Window> m_window;
    QString m_path;
    QString m_peer; ///< the unique name of the process that has it open; else empty
    bool m_isOpen = false;
    bool m_isFailing = false;
    GrowingPause m_pause;
    ScheduledTask m_retry;
    ScheduledTask m_recheck;
    std::unique_ptr<EvolutionView> m_view; ///< what it held last
    std::unique_ptr<EvolutionView> m_next; ///< what takes its place when it is ready
};

} // namespace velmo
