#include "VelmoSystem/Linux/Calendar/EvolutionCalendar.h"

#include "VelmoCore/Foundation/Log.h"
#include "VelmoSystem/Linux/Calendar/EvolutionError.h"
#include "VelmoSystem/Linux/DBus/DBusValue.h"

namespace velmo {

namespace {

constexpr QLatin1StringView factoryPath("/org/gnome/evolution/dataserver/CalendarFactory");
constexpr QLatin1StringView factoryInterface("org.gnome.evolution.dataserver.CalendarFactory");
constexpr QLatin1StringView calendarInterface("org.gnome.evolution.dataserver.Calendar");
constexpr QLatin1StringView propertiesInterface("org.freedesktop.DBus.Properties");

constexpr Seconds courtesy = 1s;
constexpr Seconds refusedPause = 3600s;
constexpr Seconds revisionPause = 500ms; ///< several changes come together

} // namespace

EvolutionCalendar::EvolutionCalendar(QDBusConnection bus, Scheduler &scheduler, QString factory,
                                     StoredCalendar described)
    : m_bus(bus), m_scheduler(scheduler), m_calls(std::move(bus), scheduler),
      m_factory(std::move(factory)), m_described(std::move(described)), m_pause(scheduler)
{
}

EvolutionCalendar::~EvolutionCalendar()
{
    m_next.reset();
    close();
}

void EvolutionCalendar::describe(const StoredCalendar &described)
{
    const bool isNew = std::exchange(m_described, described) != described;
    if (m_calendar)
        take({});
    if (isNew)
        openNow();
}

void EvolutionCalendar::watch(Date from, Date to)
{
    const Window window{from, to};
    if (std::exchange(m_window, window) != window && m_isOpen)
        look();
}

void EvolutionCalendar::open()
{
    close();
    call(m_factory, factoryPath, factoryInterface, QStringLiteral("OpenCalendar"), {m_described.id},
         &EvolutionCalendar::found);
}

void EvolutionCalendar::openSoon()
{
    m_retry = m_scheduler.after(courtesy, [this] { open(); });
}

void EvolutionCalendar::openNow()
{
    if (m_retry.isPending())
        open();
}

void EvolutionCalendar::peerLeft(const QString &peer)
{
    if (peer == m_peer)
        fail(QStringLiteral("o processo terminou"));
}

void EvolutionCalendar::fail(const QString &why)
{
    if (!std::exchange(m_isFailing, true))
        log(why);
    close();
    m_retry = m_scheduler.after(m_pause.next(), [this] { open(); });
    Q_EMIT changed();
}

/// By the server itself: for want of a password or of a network, say. Each attempt might make it
/// ask the user, so another one waits until something has changed.
void EvolutionCalendar::refused(const QString &why)
{
    log(why);
    close();
    m_isFailing = false;
    m_retry = m_scheduler.after(refusedPause, [this] { open(); });
    Q_EMIT changed();
}

void EvolutionCalendar::log(const QString &why) const
{
    qCInfo(Log::app, "Calendário %ls: %ls", qUtf16Printable(m_described.id), qUtf16Printable(why));
}

std::vector<StoredEvent> EvolutionCalendar::events() const
{
    std::vector<StoredEvent> events;
    if (m_view) {
        for (const auto &[uid, text] : m_view->texts())
            events.push_back({m_described.id, uid, text});
    }
    return events;
}

std::optional<QDBusMessage> EvolutionCalendar::method(const QString &name) const
{
    if (!m_isOpen)
        return std::nullopt;
    return QDBusMessage::createMethodCall(m_peer, m_path, calendarInterface, name);
}

/// A failure ends the attempt.
void EvolutionCalendar::call(const QString &service, const QString &path, const QString &interface,
                             const QString &method, const QVariantList &arguments,
                             void (EvolutionCalendar::*answered)(const QDBusMessage &))
{
    auto message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    m_calls.call(message, [this, answered](const QDBusMessage &answer) {
        if (answer.type() == QDBusMessage::ReplyMessage)
            (this->*answered)(answer);
        else if (EvolutionError::isFromServer(answer))
            refused(answer.errorMessage());
        else
            fail(answer.errorMessage());
    });
}

void EvolutionCalendar::found(const QDBusMessage &answer)
{
    m_path = answer.arguments().value(0).toString();
    const QString service = answer.arguments().value(1).toString();
    // Qt refuses to call what is no path or name.
    call(service, m_path, calendarInterface, QStringLiteral("Open"), {},
         &EvolutionCalendar::opened);
}

/// From here on the process itself is spoken to: a name would start another one, which doesn't know
/// the calendar.
void EvolutionCalendar::opened(const QDBusMessage &answer)
{
    m_peer = answer.service();
    m_bus.connect(QString(), m_path, propertiesInterface, QStringLiteral("PropertiesChanged"), this,
                  SLOT(propertiesChanged(QDBusMessage)));
    call(m_peer, m_path, propertiesInterface, QStringLiteral("GetAll"),
         {QString(calendarInterface)}, &EvolutionCalendar::propertiesAnswered);
}

void EvolutionCalendar::propertiesAnswered(const QDBusMessage &answer)
{
    m_isOpen = true;
    m_isFailing = m_isFailing && m_window; // until its events are there
    take(DBusValue::as<QVariantMap>(answer.arguments().value(0)).value_or(QVariantMap()));
    look();
}

void EvolutionCalendar::propertiesChanged(const QDBusMessage &message)
{
    const auto properties = DBusValue::as<QVariantMap>(message.arguments().value(1));
    if (!m_isOpen || message.service() != m_peer || !properties)
        return;
    take(*properties);
    if (properties->contains(QStringLiteral("Revision")) && !m_recheck.isPending())
        m_recheck = m_scheduler.after(revisionPause, [this] {
            if (EvolutionView *current = m_next ? m_next.get() : m_view.get())
                current->askForSeries();
        });
}

/// What isn't among them stays. Of a calendar in a file of its own the server says that it can't be
/// changed when two programs have opened it at the same time, and takes changes all the same.
void EvolutionCalendar::take(const QVariantMap &properties)
{
    const QString address = properties.value(QStringLiteral("CalEmailAddress")).toString();
    if (!address.isEmpty())
        m_address = address;
    m_isWritable = properties.value(QStringLiteral("Writable"), m_isWritable).toBool();
    StoredCalendar calendar = m_described;
    calendar.canEdit = m_described.canEdit || m_isWritable;
    if (!m_address.isEmpty())
        calendar.address = m_address;
    if (m_calendar == calendar)
        return;
    m_calendar = calendar;
    Q_EMIT changed();
}

void EvolutionCalendar::close()
{
    m_calls.forget();
    m_retry.cancel();
    m_recheck.cancel();
    if (m_next) { // may be what says that it failed
        m_next->disconnect(this);
        m_next.release()->deleteLater();
    }
    if (m_peer.isEmpty())
        return;
    m_bus.disconnect(QString(), m_path, propertiesInterface, QStringLiteral("PropertiesChanged"),
                     this, SLOT(propertiesChanged(QDBusMessage)));
    m_bus.send(
        QDBusMessage::createMethodCall(m_peer, m_path, calendarInterface, QStringLiteral("Close")));
    m_peer.clear();
    m_isOpen = false;
}

void EvolutionCalendar::look()
{
    if (!m_window)
        return;
    m_next = std::make_unique<EvolutionView>(m_bus, m_scheduler, m_peer, m_path, m_window->from,
                                             m_window->to);
    connect(m_next.get(), &EvolutionView::changed, this, &EvolutionCalendar::viewChanged);
    connect(m_next.get(), &EvolutionView::failed, this, &EvolutionCalendar::viewFailed);
}

void EvolutionCalendar::viewChanged()
{
    if (m_next && m_next->isReady()) {
        m_view = std::move(m_next);
        m_isFailing = false;
    }
    Q_EMIT changed();
}

void EvolutionCalendar::viewFailed(const QString &why)
{
    if (m_isOpen) // else it is waiting to be opened again
        fail(why);
}

} // namespace velmo
