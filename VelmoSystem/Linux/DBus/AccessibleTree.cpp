#include "VelmoSystem/Linux/DBus/AccessibleTree.h"

#include "VelmoSystem/Linux/DBus/DBusValue.h"

#include <QDBusMessage>
#include <QUuid>

#include <algorithm>

namespace velmo {

using Node = AccessibleTree::Node;

// A node is (so) on the bus.
static QDBusArgument &operator<<(QDBusArgument &argument, const Node &node)
{
    argument.beginStructure();
    argument << node.service << node.path;
    argument.endStructure();
    return argument;
}

static const QDBusArgument &operator>>(const QDBusArgument &argument, Node &node)
{
    argument.beginStructure();
    argument >> node.service >> node.path;
    argument.endStructure();
    return argument;
}

namespace {

constexpr int answerTime = 2'000; // milliseconds
/// So many questions are under way at once.
constexpr std::size_t batchSize = 128;

// As AT-SPI2 numbers them.
constexpr unsigned pushButton = 43;
constexpr unsigned activeState = 1;

QString accessible()
{
    return QStringLiteral("org.a11y.atspi.Accessible");
}

/// The answer's first value; nothing after an error, as of a node that has gone.
template <class Value>
std::optional<Value> await(QDBusPendingCall call)
{
    call.waitForFinished();
    if (call.isError())
        return std::nullopt;
    return DBusValue::as<Value>(call.reply().arguments().value(0));
}

QString awaitText(const QDBusPendingCall &property)
{
    const auto value = await<QDBusVariant>(property);
    return value ? value->variant().toString() : QString();
}

QDBusConnection connectToAccessibility(const QDBusConnection &session)
{
    QDBusConnection none{QString()};
    if (!session.isConnected()) // its calls would never end
        return none;
    const auto question = QDBusMessage::createMethodCall(
        QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
        QStringLiteral("org.a11y.Bus"), QStringLiteral("GetAddress"));
    const auto address = await<QString>(session.asyncCall(question, answerTime));
    if (!address)
        return none;
    return QDBusConnection::connectToBus(*address, QUuid::createUuid().toString());
}

} // namespace

AccessibleTree::AccessibleTree(const QDBusConnection &session, const Scheduler &scheduler,
                               std::stop_token stop)
    : m_scheduler(scheduler), m_stop(std::move(stop)), m_end(scheduler.elapsed() + patience),
      m_bus(connectToAccessibility(session))
{
    qDBusRegisterMetaType<Node>();
    qDBusRegisterMetaType<QList<Node>>();
}

AccessibleTree::~AccessibleTree()
{
    QDBusConnection::disconnectFromBus(m_bus.name());
}

std::optional<AccessibleTree::Button> AccessibleTree::find(const QStringList &labels,
                                                           qint64 pid) const
{
    QStringList lowerLabels;
    for (const QString &label : labels)
        lowerLabels.append(label.toLower());
    const auto owner = m_bus.isConnected() ? application(pid) : std::nullopt;
    if (!owner)
        return std::nullopt;
    std::vector<Node> nodes;
    const auto add = [&nodes](const auto &more) {
        const auto count = std::min(mostNodes - nodes.size(), std::size_t(more.size()));
        std::ranges::copy_n(more.begin(), std::ptrdiff_t(count), std::back_inserter(nodes));
    };
    add(windows(*owner));
    for (std::size_t first = 0; first < nodes.size() && mayGoOn();) {
        const std::size_t last = std::min(first + batchSize, nodes.size());
        std::vector<std::pair<QDBusPendingCall, QDBusPendingCall>> questions;
        for (std::size_t index = first; index < last; ++index)
            questions.emplace_back(call(nodes[index], accessible(), QStringLiteral("GetRole")),
                                   call(nodes[index], accessible(), QStringLiteral("GetChildren")));
        std::vector<Node> buttons;
        for (const auto &[role, children] : questions) {
            if (await<unsigned>(role) == pushButton)
                buttons.push_back(nodes[first]);
            ++first;
            if (const auto found = await<QList<Node>>(children))
                add(*found);
        }
        if (auto button = firstNamed(buttons, lowerLabels))
            return button;
    }
    return std::nullopt;
}

bool AccessibleTree::press(const Node &node) const
{
    constexpr int defaultAction = 0;
    return await<bool>(call(node, QStringLiteral("org.a11y.atspi.Action"),
                            QStringLiteral("DoAction"), {defaultAction}))
        .value_or(false);
}

std::optional<AccessibleTree::Node> AccessibleTree::application(qint64 pid) const
{
    const Node registry{QStringLiteral("org.a11y.atspi.Registry"),
                        QDBusObjectPath(QStringLiteral("/org/a11y/atspi/accessible/root"))};
    const Node bus{QStringLiteral("org.freedesktop.DBus"),
                   QDBusObjectPath(QStringLiteral("/org/freedesktop/DBus"))};
    const auto applications = children(registry);
    std::vector<QDBusPendingCall> processes;
    processes.reserve(applications.size());
    for (const Node &one : applications)
        processes.push_back(
            call(bus, bus.service, QStringLiteral("GetConnectionUnixProcessID"), {one.service}));
    std::optional<Node> found;
    for (std::size_t index = 0; index < applications.size(); ++index) {
        if (await<unsigned>(processes[index]) == pid && !found)
            found = applications[index];
    }
    return found;
}

std::vector<AccessibleTree::Node> AccessibleTree::windows(const Node &application) const
{
    auto all = children(application);
    std::vector<QDBusPendingCall> states;
    states.reserve(all.size());
    for (const Node &window : all)
        states.push_back(call(window, accessible(), QStringLiteral("GetState")));
    for (std::size_t index = 0; index < all.size(); ++index) {
        const auto state = await<QList<unsigned>>(states[index]);
        if (state && (state->value(0) >> activeState & 1) != 0)
            return {all[index]};
    }
    return all;
}

std::vector<AccessibleTree::Node> AccessibleTree::children(const Node &node) const
{
    const auto found = await<QList<Node>>(call(node, accessible(), QStringLiteral("GetChildren")));
    return found ? std::vector<Node>(found->begin(), found->end()) : std::vector<Node>();
}

std::optional<AccessibleTree::Button>
AccessibleTree::firstNamed(const std::vector<Node> &buttons, const QStringList &lowerLabels) const
{
    std::vector<std::pair<QDBusPendingCall, QDBusPendingCall>> questions;
    questions.reserve(buttons.size());
    for (const Node &button : buttons)
        questions.emplace_back(askProperty(button, QStringLiteral("Name")),
                               askProperty(button, QStringLiteral("Description")));
    for (std::size_t index = 0; index < buttons.size(); ++index) {
        const auto &[nameAnswer, descriptionAnswer] = questions[index];
        for (const QString &text : {awaitText(nameAnswer), awaitText(descriptionAnswer)}) {
            const auto isIn = [lower = text.toLower()](const QString &label) {
                return lower.contains(label);
            };
            if (std::ranges::any_of(lowerLabels, isIn))
                return Button{buttons[index], text};
        }
    }
    return std::nullopt;
}

bool AccessibleTree::mayGoOn() const
{
    return !m_stop.stop_requested() && m_scheduler.elapsed() < m_end;
}

QDBusPendingCall AccessibleTree::call(const Node &node, const QString &interface,
                                      const QString &method, const QVariantList &arguments) const
{
    auto message =
        QDBusMessage::createMethodCall(node.service, node.path.path(), interface, method);
    message.setArguments(arguments);
    return m_bus.asyncCall(message, answerTime);
}

QDBusPendingCall AccessibleTree::askProperty(const Node &node, const QString &name) const
{
    return call(node, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
                {accessible(), name});
}

} // namespace velmo
