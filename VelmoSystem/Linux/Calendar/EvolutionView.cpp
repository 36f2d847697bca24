#include "VelmoSystem/Linux/Calendar/EvolutionView.h"

#include "VelmoSystem/Linux/Calendar/EvolutionError.h"
#include "VelmoSystem/Linux/DBus/DBusValue.h"

#include <QDBusObjectPath>

namespace velmo {

namespace {

constexpr QLatin1StringView calendarInterface("org.gnome.evolution.dataserver.Calendar");
constexpr QLatin1StringView viewInterface("org.gnome.evolution.dataserver.CalendarView");

constexpr Seconds longestStart = 20s;
/// The server takes days and times without a zone for UTC.
constexpr Seconds margin = 86400s;

QString timeText(Date date)
{
    return QDateTime::fromSecsSinceEpoch(qint64(date.time_since_epoch().count()), Qt::UTC)
        .toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'"));
}

QString query(Date from, Date to)
{
    return QStringLiteral("(occur-in-time-range? (make-time \"%1\") (make-time \"%2\"))")
        .arg(timeText(from - margin), timeText(to + margin));
}

} // namespace

EvolutionView::EvolutionView(QDBusConnection bus, Scheduler &scheduler, QString peer,
                             QString calendar, Date from, Date to)
    : m_bus(bus), m_scheduler(scheduler), m_calls(std::move(bus), scheduler),
      m_peer(std::move(peer)), m_calendar(std::move(calendar))
{
    auto message = QDBusMessage::createMethodCall(m_peer, m_calendar, calendarInterface,
                                                  QStringLiteral("GetView"));
    message.setArguments({query(from, to)});
    m_calls.call(message, [this](const QDBusMessage &answer) { start(answer); });
}

EvolutionView::~EvolutionView()
{
    if (!m_path.isEmpty())
        m_bus.send(QDBusMessage::createMethodCall(m_peer, m_path, viewInterface,
                                                  QStringLiteral("Dispose")));
}

std::map<QString, QByteArray> EvolutionView::texts() const
{
    std::map<QString, QByteArray> texts;
    for (const auto &[uid, event] : m_events)
        texts.emplace(uid, event.text);
    return texts;
}

void EvolutionView::askForSeries()
{
    for (const auto &[uid, event] : m_events) {
        if (event.isSeries)
            ask(uid);
    }
}

void EvolutionView::start(const QDBusMessage &answer)
{
    const auto path = DBusValue::as<QDBusObjectPath>(answer.arguments().value(0));
    if (!path) {
        Q_EMIT failed(answer.errorMessage());
        return;
    }
    m_path = path->path();
    listen();
    m_limit = m_scheduler.after(
        longestStart, [this] { Q_EMIT failed(QStringLiteral("a lista não chegou até o fim")); });
    m_calls.call(
        QDBusMessage::createMethodCall(m_peer, m_path, viewInterface, QStringLiteral("Start")),
        [this](const QDBusMessage &started) {
            if (started.type() == QDBusMessage::ErrorMessage)
                Q_EMIT failed(started.errorMessage());
        });
}

/// To any sender: for a certain one Qt asks the bus for its owner and waits.
void EvolutionView::listen()
{
    for (const char *signal : {"ObjectsAdded", "ObjectsModified", "ObjectsRemoved", "Complete"})
        m_bus.connect(QString(), m_path, viewInterface, QLatin1StringView(signal), this,
                      SLOT(heard(QDBusMessage)));
}

void EvolutionView::heard(const QDBusMessage &message)
{
    if (message.service() != m_peer)
        return;
    const auto first = message.arguments().value(0);
    if (message.member() == u"Complete")
        end(first.toString());
    else if (message.member() == u"ObjectsRemoved")
        drop(first.toStringList());
    else
        take(first.toStringList());
}

void EvolutionView::take(const QStringList &components)
{
    for (const QString &text : components) {
        for (EvolutionEvents::Component &component : EvolutionEvents::read(text)) {
            const auto known = m_events.find(component.uid);
            const bool wasSeries = known != m_events.end() && known->second.isSeries;
            if (component.isOfSeries || wasSeries || m_questions.contains(component.uid)) {
                const QString uid = component.uid;
                m_questions[uid].told.push_back(std::move(component));
                ask(uid);
            } else {
                keep(component.uid, {component.text, false});
            }
        }
    }
    report();
}

void EvolutionView::drop(const QStringList &identifiers)
{
    for (const QString &identifier : identifiers) {
        const QString uid = identifier.section(u'\n', 0, 0); // its RECURRENCE-ID follows, if any
        const auto known = m_events.find(uid);
        const auto question = m_questions.find(uid);
        if (question != m_questions.end())
            question->second.told.clear();
        if (question != m_questions.end() || (known != m_events.end() && known->second.isSeries))
            ask(uid);
        else
            forget(uid);
    }
    report();
}

void EvolutionView::ask(const QString &uid)
{
    Question &question = m_questions[uid];
    question.isStale = std::exchange(question.isAsked, true);
    if (question.isStale)
        return;
    auto message = QDBusMessage::createMethodCall(m_peer, m_calendar, calendarInterface,
                                                  QStringLiteral("GetObject"));
    message.setArguments({uid, QString()}); // the series and all of its exceptions
    m_calls.call(message, [this, uid](const QDBusMessage &answer) { answered(uid, answer); });
}

void EvolutionView::answered(const QString &uid, const QDBusMessage &answer)
{
    Question question = std::move(m_questions.extract(uid).mapped());
    if (!EvolutionError::isFromServer(answer)) {
        Q_EMIT failed(answer.errorMessage());
        return;
    }
    if (question.isStale) {
        m_questions[uid].told = std::move(question.told);
        ask(uid);
        return;
    }
    const bool isFound = answer.type() == QDBusMessage::ReplyMessage;
    const auto components = isFound ? EvolutionEvents::read(answer.arguments().value(0).toString())
                                    : std::move(question.told);
    if (!components.empty())
        keep(uid, {EvolutionEvents::joined(components),
                   std::ranges::any_of(components, &EvolutionEvents::Component::isOfSeries)});
    else if (isFound || EvolutionError::isNotFound(answer))
        forget(uid);
    report();
}

void EvolutionView::keep(const QString &uid, Event event)
{
    Event &kept = m_events[uid];
    m_hasNews = m_hasNews || kept != event;
    kept = std::move(event);
}

void EvolutionView::forget(const QString &uid)
{
    m_hasNews = m_events.erase(uid) > 0 || m_hasNews;
}

void EvolutionView::end(const QString &error)
{
    m_limit.cancel();
    if (!error.isEmpty()) {
        Q_EMIT failed(error);
        return;
    }
    m_hasEnded = true;
    report();
}

void EvolutionView::report()
{
    const bool wasReady =
        std::exchange(m_isReady, m_isReady || (m_hasEnded && m_questions.empty()));
    if (!m_isReady)
        return;
    const bool hasNews = std::exchange(m_hasNews, false);
    if (hasNews || !wasReady)
        Q_EMIT changed();
}

} // namespace velmo
