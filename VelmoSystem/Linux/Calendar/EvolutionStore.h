#pragma once

#include "VelmoSystem/Linux/Calendar/EvolutionCalendar.h"
#include "VelmoSystem/Linux/Calendar/EvolutionSources.h"
#include "VelmoSystem/Ports/CalendarStore.h"

#include <QDBusServiceWatcher>

#include <thread>

namespace velmo {

/// `CalendarStore` with Evolution Data Server, which keeps the calendars of GNOME, Evolution and
/// others, by its interfaces on the session bus.
class EvolutionStore : public CalendarStore {
    Q_OBJECT

public:
    /// Gives the UID of the calendar that the user chose for new events, if it knows one. Called on
    /// another thread, it may wait until it is asked to stop.
    using ReadDefault = std::function<QString(const std::stop_token &)>;

    EvolutionStore(QDBusConnection sessionBus, Scheduler &scheduler, ReadDefault readDefault);

    State state() const override;
    void start() override;
    void watch(Date from, Date to) override;

    const std::vector<StoredCalendar> &calendars() const override { return m_list; }
    QString defaultCalendar() const override;
    std::vector<StoredEvent> events() const override;

    void create(const QString &calendar, const QByteArray &component, Done done) override;
    void modify(const QString &calendar, const QByteArray &component, Done done) override;
    void remove(const QString &calendar, const QString &uid,
                const std::optional<QString> &recurrence, Done done) override;

private Q_SLOTS:
    void sourceChanged(const QString &interface, const QVariantMap &changed,
                       const QStringList &invalidated, const QDBusMessage &message);
    void sourcesChanged();

private:
    /// What is known of the server as a whole.
    enum class Server { unknown, absent, found, listed };

    void look();
    void choose(const QStringList &running, const QStringList &startable);
    void ownerChanged(const QString &name, const QString &former, const QString &owner);
    void listen();
    void askForSources();
    void sourcesAnswered(const QDBusMessage &answer);
    void keepOnly(const std::vector<StoredCalendar> &described);
    void tryAgain(const QString &why, void (EvolutionStore::*what)());
    void readDefault();
    void announce();
    void edit(const QString &calendar, const QString &method, const QVariantList &arguments,
              Done done);

    QDBusConnection m_bus;
    Scheduler &m_scheduler;
    ReadDefault m_readDefault;
    TimedCalls m_calls;
    TimedCalls m_edits;
    QDBusServiceWatcher m_watcher;
    Server m_server = Server::unknown;
    bool m_isStarted = false;
    bool m_isListening = false;
    bool m_isAsking = false; ///< for the sources
    bool m_asksAgain = false;
    bool m_isFailing = false; ///< the registry, or the bus
    GrowingPause m_pause;
    ScheduledTask m_retry;
    QString m_registry; ///< names of the services
    QString m_factory;
    std::optional<std::pair<Date, Date>> m_window;
    std::map<QString, std::unique_ptr<EvolutionCalendar>> m_calendars; ///< by UID
    std::map<QString, QString> m_sources; ///< UIDs by their objects' paths
    std::vector<QString> m_order;         ///< of the calendars
    std::vector<StoredCalendar> m_list;   ///< those that were open once
    QString m_default;
    bool m_isReadingDefault = false;
    bool m_isAnnounced = false; ///< `changed` is on its way
    std::jthread m_reading;     ///< goes first
};

} // namespace velmo
