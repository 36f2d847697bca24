#include "tests/e2e/ScreenReader.h"

#include <QDBusArgument>

namespace velmo {

namespace {

constexpr auto root = "/org/a11y/atspi/accessible/root";
constexpr auto accessible = "org.a11y.atspi.Accessible";
constexpr auto action = "org.a11y.atspi.Action";
constexpr auto component = "org.a11y.atspi.Component";

} // namespace

ScreenReader::ScreenReader(XServer &screen, const PrivateBus &bus, QProcessEnvironment &environment)
{
    environment.insert("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
    screen.run("/usr/libexec/at-spi-bus-launcher");
    const QDBusConnection session = bus.connect();
    const auto question = QDBusMessage::createMethodCall("org.a11y.Bus", "/org/a11y/bus",
                                                         "org.a11y.Bus", "GetAddress");
    QDBusMessage answer;
    const bool answers = eventually([&] {
        answer = session.call(question);
        return answer.type() == QDBusMessage::ReplyMessage;
    });
    QDBusConnection::disconnectFromBus(session.name());
    if (!answers)
        qFatal("AT-SPI doesn't start");
    m_connection =
        QDBusConnection::connectToBus(answer.arguments().value(0).toString(), "accessibility");
}

ScreenReader::~ScreenReader()
{
    QDBusConnection::disconnectFromBus(m_connection.name());
}

bool ScreenReader::findsApplication()
{
    return eventually([this] {
        for (const auto &[service, path] : children("org.a11y.atspi.Registry", root))
            m_application = service;
        return !m_application.isEmpty();
    });
}

std::vector<ScreenReader::Node> ScreenReader::nodes() const
{
    std::vector<Node> found;
    walk(root, {}, found);
    return found;
}

std::vector<ScreenReader::Node>
ScreenReader::nodes(const std::function<bool(const Node &)> &wanted) const
{
    auto found = nodes();
    std::erase_if(found, std::not_fn(wanted));
    return found;
}

QRect ScreenReader::frame(const Node &node) const
{
    const auto extents =
        ask(node.path, component, "GetExtents", {QVariant::fromValue(0U)}).value<QDBusArgument>();
    int x = 0, y = 0, width = 0, height = 0;
    extents.beginStructure();
    extents >> x >> y >> width >> height;
    extents.endStructure();
    return {x, y, width, height};
}

bool ScreenReader::press(const Node &node) const
{
    for (int i = 0; i < 4; ++i) {
        const auto name = ask(node.path, action, "GetName", {i}).toString();
        if (name == "Press") {
            ask(node.path, action, "DoAction", {i});
            return true;
        }
    }
    return false;
}

bool ScreenReader::paste(const Node &node) const
{
    return ask(node.path, "org.a11y.atspi.EditableText", "PasteText", {0}).toBool();
}

QString ScreenReader::text(const Node &node) const
{
    return ask(node.path, "org.a11y.atspi.Text", "GetText", {0, -1}).toString();
}

QDBusMessage ScreenReader::call(const QString &service, const QString &path,
                                const QString &interface, const QString &method,
                                const QVariantList &arguments) const
{
    auto message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    return m_connection.call(message);
}

QVariant ScreenReader::ask(const QString &path, const QString &interface, const QString &method,
                           const QVariantList &arguments) const
{
    return call(m_application, path, interface, method, arguments).arguments().value(0);
}

/// Services and paths.
std::vector<std::pair<QString, QString>> ScreenReader::children(const QString &service,
                                                                const QString &path) const
{
    const QDBusMessage answer = call(service, path, accessible, "GetChildren", {});
    std::vector<std::pair<QString, QString>> children;
    if (answer.type() != QDBusMessage::ReplyMessage)
        return children; // it has gone in the meantime
    const auto list = answer.arguments().value(0).value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString owner;
        QDBusObjectPath child;
        list.beginStructure();
        list >> owner >> child;
        list.endStructure();
        children.emplace_back(owner, child.path());
    }
    list.endArray();
    return children;
}

void ScreenReader::walk(const QString &parent, const QString &place, std::vector<Node> &found) const
{
    for (const auto &[service, path] : children(m_application, parent)) {
        const auto name = ask(path, "org.freedesktop.DBus.Properties", "Get", {accessible, "Name"});
        const auto states = qdbus_cast<QList<uint>>(ask(path, accessible, "GetState"));
        Node node{path, name.value<QDBusVariant>().variant().toString(),
                  ask(path, accessible, "GetRoleName").toString(),
                  states.value(0) | quint64(states.value(1)) << 32};
        node.place = QStringLiteral("%1 / %2 “%3”").arg(place, node.role, node.name);
        found.push_back(node);
        walk(path, node.place, found);
    }
}

} // namespace velmo
