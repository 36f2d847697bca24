#include "VelmoSystem/Linux/Calendar/EvolutionStore.h"

#include "VelmoCore/Foundation/Log.h"
#include "VelmoSystem/Linux/Calendar/EvolutionError.h"
#include "VelmoSystem/Linux/DBus/DBusValue.h"

#include <QFileInfo>
#include <QPointer>
#include <QStandardPaths>

#include <algorithm>

namespace velmo {

namespace {

using Interfaces = QMap<QString, QVariantMap>;
using ManagedObjects = QMap<QDBusObjectPath, Interfaces>;

constexpr QLatin1StringView namePrefix("org.gnome.evolution.dataserver.");
constexpr QLatin1StringView managerPath("/org/gnome/evolution/dataserver/SourceManager");
constexpr QLatin1StringView sourceInterface("org.gnome.evolution.dataserver.Source");
constexpr QLatin1StringView objectManager("org.freedesktop.DBus.ObjectManager");
constexpr QLatin1StringView propertiesInterface("org.freedesktop.DBus.Properties");
constexpr QLatin1StringView bus("org.freedesktop.DBus");

/// An event or one occurrence of it, as D-Bus carries them: (ss).
struct ObjectName {
    QString uid;
    QString recurrence;
};

QDBusArgument &operator<<(QDBusArgument &argument, const ObjectName &name)
{
    argument.beginStructure();
    argument << name.uid << name.recurrence;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, ObjectName &name)
{
    argument.beginStructure();
    argument >> name.uid >> name.recurrence;
    argument.endStructure();
    return argument;
}

/// The service of that kind with the highest number, which grows with the server's versions.
QString newest(const QStringList &names, QLatin1StringView kind)
{
    QString newest;
    int highest = -1;
    for (const QString &name : names) {
        if (!name.startsWith(namePrefix + kind))
            continue;
        bool isNumber = false;
        const int number =
            QStringView(name).sliced(namePrefix.size() + kind.size()).toInt(&isNumber);
        if (isNumber && number > highest) {
            highest = number;
            newest = name;
        }
    }
    return newest;
}

/// Whether the server has run for this user.
bool hasBeenUsed()
{
    return std::ranges::any_of(
        std::array{QStandardPaths::GenericDataLocation, QStandardPaths::GenericConfigLocation},
        [](auto location) {
            return QFileInfo::exists(QStandardPaths::writableLocation(location) +
                                     QStringLiteral("/evolution"));
        });
}

QDBusMessage callToBus(const QString &method)
{
    return QDBusMessage::createMethodCall(bus, QStringLiteral("/org/freedesktop/DBus"), bus,
                                          method);
}

/// What the user reads of an edit's answer.
std::optional<QString> problem(const QDBusMessage &answer)
{
    if (answer.type() == QDBusMessage::ReplyMessage)
        return std::nullopt;
    if (TimedCalls::isTimeout(answer))
        return QStringLiteral("O calendário não respondeu. A alteração talvez ainda apareça.");
    if (!EvolutionError::isFromServer(answer))
        return QStringLiteral("O calendário parou de responder. Tente de novo em instantes.");
    if (EvolutionError::isNotFound(answer))
        return QStringLiteral("Compromisso não encontrado.");
    if (EvolutionError::isPermissionDenied(answer))
        return QStringLiteral("Este calendário não permite alterações.");
    return QStringLiteral("O calendário recusou a alteração (%1).").arg(answer.errorMessage());
}

} // namespace

EvolutionStore::EvolutionStore(QDBusConnection sessionBus, Scheduler &scheduler,
                               ReadDefault readDefault)
    : m_bus(sessionBus), m_scheduler(scheduler), m_readDefault(std::move(readDefault)),
      m_calls(sessionBus, scheduler), m_edits(std::move(sessionBus), scheduler), m_pause(scheduler)
{
    qDBusRegisterMetaType<Interfaces>();
    qDBusRegisterMetaType<ManagedObjects>();
    qDBusRegisterMetaType<ObjectName>();
    qDBusRegisterMetaType<QList<ObjectName>>();
    connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            &EvolutionStore::ownerChanged);
}

CalendarStore::State EvolutionStore::state() const
{
    if (m_server == Server::absent)
        return State::absent;
    if (m_isFailing)
        return State::failing;
    if (m_server != Server::listed)
        return State::unknown;
    const bool areAllFailing = std::ranges::all_of(
        m_calendars, [](const auto &entry) { return entry.second->isFailing(); });
    return areAllFailing && !m_calendars.empty() ? State::failing : State::present;
}

void EvolutionStore::start()
{
    if (std::exchange(m_isStarted, true))
        return;
    if (!m_bus.isConnected()) {
        m_server = Server::absent;
        announce();
        return;
    }
    m_watcher.setConnection(m_bus);
    m_watcher.addWatchedService(namePrefix.chopped(1) + u'*'); // all names below it
    look();
}

void EvolutionStore::watch(Date from, Date to)
{
    m_window = {from, to};
    for (const auto &[uid, calendar] : m_calendars)
        calendar->watch(from, to);
    if (m_server == Server::listed)
        readDefault(); // nobody says when it changes
}

QString EvolutionStore::defaultCalendar() const
{
    for (const QString &wanted : {m_default, QStringLiteral("system-calendar")}) {
        const auto found = std::ranges::find(m_list, wanted, &StoredCalendar::id);
        if (found != m_list.end() && found->canEdit)
            return wanted;
    }
    const auto first = std::ranges::find_if(m_list, &StoredCalendar::canEdit);
    return first == m_list.end() ? QString() : first->id;
}

std::vector<StoredEvent> EvolutionStore::events() const
{
    std::vector<StoredEvent> events;
    for (const auto &[uid, calendar] : m_calendars)
        std::ranges::move(calendar->events(), std::back_inserter(events));
    return events;
}

void EvolutionStore::create(const QString &calendar, const QByteArray &component, Done done)
{
    edit(calendar, QStringLiteral("CreateObjects"), {QStringList{QString::fromUtf8(component)}, 0U},
         std::move(done));
}

void EvolutionStore::modify(const QString &calendar, const QByteArray &component, Done done)
{
    // With "all" a series is replaced, and its exceptions stay.
    const auto parts = EvolutionEvents::read(QString::fromUtf8(component));
    const bool isException = parts.size() == 1 && !parts.front().recurrence.isEmpty();
    edit(calendar, QStringLiteral("ModifyObjects"),
         {QStringList{QString::fromUtf8(component)},
          isException ? QStringLiteral("this") : QStringLiteral("all"), 0U},
         std::move(done));
}

void EvolutionStore::remove(const QString &calendar, const QString &uid,
                            const std::optional<QString> &recurrence, Done done)
{
    const QList<ObjectName> names{{uid, recurrence.value_or(QString())}};
    edit(calendar, QStringLiteral("RemoveObjects"),
         {QVariant::fromValue(names), recurrence ? QStringLiteral("this") : QStringLiteral("all"),
          0U},
         std::move(done));
}

void EvolutionStore::edit(const QString &calendar, const QString &method,
                          const QVariantList &arguments, Done done)
{
    const auto found = m_calendars.find(calendar);
    auto message = found == m_calendars.end() ? std::nullopt : found->second->method(method);
    if (!message) {
        m_scheduler.post([done = std::move(done)] {
            done(QStringLiteral("Este calendário não está disponível agora."));
        });
        return;
    }
    message->setArguments(arguments);
    m_edits.call(*message, [this, calendar, done = std::move(done)](const QDBusMessage &answer) {
        const auto edited = m_calendars.find(calendar);
        if (!EvolutionError::isFromServer(answer) && edited != m_calendars.end())
            edited->second->fail(answer.errorMessage());
        done(problem(answer));
    });
}

void EvolutionStore::look()
{
    m_server = Server::unknown;
    m_calls.call(callToBus(QStringLiteral("ListNames")), [this](const QDBusMessage &running) {
        m_calls.call(callToBus(QStringLiteral("ListActivatableNames")),
                     [this, running](const QDBusMessage &startable) {
                         if (startable.type() == QDBusMessage::ErrorMessage)
                             tryAgain(startable.errorMessage(), &EvolutionStore::look);
                         else
                             choose(running.arguments().value(0).toStringList(),
                                    startable.arguments().value(0).toStringList());
                     });
    });
}

/// The server costs a desktop some 100 MB, and to be installed doesn't mean to be used. So nothing
/// is started where it neither runs nor has left anything; it is followed once others start it.
void EvolutionStore::choose(const QStringList &running, const QStringList &startable)
{
    m_isFailing = false;
    m_registry = newest(running + startable, QLatin1StringView("Sources"));
    m_factory = newest(running + startable, QLatin1StringView("Calendar"));
    const bool isRunning = std::ranges::any_of(
        running, [](const QString &name) { return name.startsWith(namePrefix); });
    if (m_registry.isEmpty() || m_factory.isEmpty() || (!isRunning && !hasBeenUsed())) {
        m_server = Server::absent;
        announce();
        return;
    }
    m_server = Server::found;
    listen();
    askForSources();
}

void EvolutionStore::ownerChanged(const QString &name, const QString &former, const QString &owner)
{
    for (const auto &[uid, calendar] : m_calendars) {
        if (!former.isEmpty())
            calendar->peerLeft(former);
    }
    if (m_server == Server::absent || m_server == Server::unknown) {
        if (!owner.isEmpty())
            look();
    } else if (name == m_registry && owner.isEmpty()) {
        tryAgain(QStringLiteral("o registro terminou"), &EvolutionStore::askForSources);
    } else if (name == m_registry) {
        askForSources();
    } else if (name == m_factory && !owner.isEmpty()) {
        for (const auto &[uid, calendar] : m_calendars)
            calendar->openNow();
    }
}

/// To any sender: for a certain one Qt asks the bus for its owner and waits. It is but a reason to
/// ask again.
void EvolutionStore::listen()
{
    if (std::exchange(m_isListening, true))
        return;
    m_bus.connect(QString(), QString(), propertiesInterface, QStringLiteral("PropertiesChanged"),
                  {sourceInterface}, QStringLiteral("sa{sv}as"), this,
                  SLOT(sourceChanged(QString, QVariantMap, QStringList, QDBusMessage)));
    for (const char *signal : {"InterfacesAdded", "InterfacesRemoved"})
        m_bus.connect(QString(), managerPath, objectManager, QLatin1StringView(signal), this,
                      SLOT(sourcesChanged()));
}

void EvolutionStore::sourceChanged(const QString &, const QVariantMap &changed, const QStringList &,
                                   const QDBusMessage &message)
{
    if (changed.contains(QStringLiteral("Data")))
        sourcesChanged();
    if (changed.value(QStringLiteral("ConnectionStatus")) != QStringLiteral("connected"))
        return;
    const auto source = m_sources.find(message.path());
    const auto calendar =
        source == m_sources.end() ? m_calendars.end() : m_calendars.find(source->second);
    if (calendar != m_calendars.end())
        calendar->second->openNow();
}

void EvolutionStore::sourcesChanged()
{
    if (m_server == Server::listed)
        askForSources();
}

void EvolutionStore::askForSources()
{
    m_retry.cancel();
    m_asksAgain = std::exchange(m_isAsking, true);
    if (m_asksAgain)
        return;
    m_calls.call(QDBusMessage::createMethodCall(m_registry, managerPath, objectManager,
                                                QStringLiteral("GetManagedObjects")),
                 [this](const QDBusMessage &answer) { sourcesAnswered(answer); });
}

void EvolutionStore::sourcesAnswered(const QDBusMessage &answer)
{
    m_isAsking = false;
    const auto objects = DBusValue::as<ManagedObjects>(answer.arguments().value(0));
    if (answer.type() == QDBusMessage::ErrorMessage || !objects) {
        tryAgain(answer.errorMessage(), &EvolutionStore::askForSources);
        return;
    }
    if (m_asksAgain)
        askForSources();
    EvolutionSources::Texts texts;
    m_sources.clear();
    for (const auto &[path, interfaces] : objects->asKeyValueRange()) {
        const QVariantMap source = interfaces.value(sourceInterface);
        const QString uid = source.value(QStringLiteral("UID")).toString();
        m_sources.emplace(path.path(), uid);
        texts.emplace(uid, source.value(QStringLiteral("Data")).toString());
    }
    m_isFailing = false;
    keepOnly(EvolutionSources::calendars(texts));
    m_server = Server::listed;
    readDefault();
    announce();
}

void EvolutionStore::keepOnly(const std::vector<StoredCalendar> &described)
{
    std::erase_if(m_calendars, [&](const auto &entry) {
        return std::ranges::find(described, entry.first, &StoredCalendar::id) == described.end();
    });
    m_order.clear();
    for (const StoredCalendar &one : described) {
        m_order.push_back(one.id);
        auto &calendar = m_calendars[one.id];
        if (calendar) {
            calendar->describe(one);
            continue;
        }
        calendar = std::make_unique<EvolutionCalendar>(m_bus, m_scheduler, m_factory, one);
        connect(calendar.get(), &EvolutionCalendar::changed, this, &EvolutionStore::announce);
        if (m_window)
            calendar->watch(m_window->first, m_window->second);
        if (m_server == Server::listed)
            calendar->openSoon();
        else
            calendar->open();
    }
}

void EvolutionStore::tryAgain(const QString &why, void (EvolutionStore::*what)())
{
    qCInfo(Log::app, "Calendários do sistema: %ls", qUtf16Printable(why));
    m_isFailing = true;
    m_retry = m_scheduler.after(m_pause.next(), [this, what] { (this->*what)(); });
    announce();
}

void EvolutionStore::readDefault()
{
    if (std::exchange(m_isReadingDefault, true))
        return;
    m_reading = std::jthread([read = m_readDefault, self = QPointer(this),
                              &scheduler = m_scheduler](const std::stop_token &stop) {
        scheduler.post([self, found = read(stop)] {
            if (!self)
                return;
            self->m_isReadingDefault = false;
            if (std::exchange(self->m_default, found) != found)
                self->announce();
        });
    });
}

/// Says so once for all that happens until the main loop is back.
void EvolutionStore::announce()
{
    m_list.clear();
    for (const QString &uid : m_order) {
        if (const auto &calendar = m_calendars.at(uid)->calendar())
            m_list.push_back(*calendar);
    }
    if (std::exchange(m_isAnnounced, true))
        return;
    m_scheduler.post([self = QPointer(this)] {
        if (!self)
            return;
        self->m_isAnnounced = false;
        Q_EMIT self->changed();
    });
}

} // namespace velmo
