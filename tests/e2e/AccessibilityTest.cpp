#include "tests/e2e/OrvaneTest.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QSet>

#include <X11/keysym.h>

namespace velmo {

namespace {

constexpr auto root = "/org/a11y/atspi/accessible/root";
constexpr auto accessible = "org.a11y.atspi.Accessible";
constexpr auto action = "org.a11y.atspi.Action";

/// Bits of AT-SPI's states.
enum State { focusable = 11, focused = 12, selected = 23, visible = 30 };

/// AT-SPI's words for what a user may do something with, for what hands the keyboard on to what it
/// holds, and for what is only there to be read.
const QSet<QString> controls = {"check box",    "combo box",   "entry",       "list item",
                                "menu item",    "page tab",    "push button", "radio button",
                                "slider",       "spin button", "text",        "toggle button",
                                "password text"};
const QSet<QString> containers = {"list", "panel", "page tab list"};
const QSet<QString> texts = {"label", "heading", "paragraph", "image", "icon", "progress bar"};

/// One node of what Orvane tells a screen reader.
struct Node {
    QString path; ///< on the bus
    QString name;
    QString role;
    quint64 states = 0;
    QString place; ///< roles and names from the window down

    bool is(State state) const { return (states >> state & 1) != 0; }
    bool isControl() const { return controls.contains(role); }
    bool isFault() const
    {
        const bool isKnown = isControl() || containers.contains(role) || texts.contains(role);
        return is(visible) && (is(focusable) || isControl()) && (!isKnown || name.isEmpty());
    }
};

} // namespace

/// Orvane as a screen reader sees it.
class AccessibilityTest : public OrvaneTest {
protected:
    void SetUp() override
    {
        screen.runWindowManager();
        screen.run("/usr/libexec/at-spi-bus-launcher");
        const QDBusConnection session = bus.connect();
        const auto question = QDBusMessage::createMethodCall("org.a11y.Bus", "/org/a11y/bus",
                                                             "org.a11y.Bus", "GetAddress");
        QDBusMessage answer;
        ASSERT_TRUE(eventually([&] {
            answer = session.call(question);
            return answer.type() == QDBusMessage::ReplyMessage;
        }));
        QDBusConnection::disconnectFromBus(session.name());
        m_connection =
            QDBusConnection::connectToBus(answer.arguments().value(0).toString(), "accessibility");
        environment.insert("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
        writeSettings({{"animationsEnabled", false}});
        launch();
        ASSERT_TRUE(eventually([this] { return findsApplication(); }));
    }
    void TearDown() override
    {
        QDBusConnection::disconnectFromBus(m_connection.name());
        OrvaneTest::TearDown();
    }

    /// Parents before their children.
    std::vector<Node> nodes() const
    {
        std::vector<Node> found;
        walk(root, {}, found);
        return found;
    }
    std::vector<Node> nodes(const std::function<bool(const Node &)> &wanted) const
    {
        auto found = nodes();
        std::erase_if(found, std::not_fn(wanted));
        return found;
    }
    void expectEachPageIsTold(const QString &tabList)
    {
        std::vector<Node> tabs;
        const auto hasTabs = [&] {
            tabs = nodes([&](const Node &node) {
                return node.role == "page tab" && node.place.contains(tabList);
            });
            return !tabs.empty();
        };
        ASSERT_TRUE(eventually(hasTabs));
        for (const Node &tab : tabs) {
            SCOPED_TRACE(qPrintable(tab.place));
            press(tab);
            const auto isShown = [&](const Node &node) {
                return node.path == tab.path && node.is(selected) && node.is(visible);
            };
            EXPECT_TRUE(eventually([&] { return !nodes(isShown).empty(); }));
            for (const Node &node : nodes(&Node::isFault))
                ADD_FAILURE() << "Without a name or a role: " << qPrintable(node.place);
            expectTabComesRound();
        }
    }

private:
    /// Presses it as a screen reader does.
    void press(const Node &node) const
    {
        for (int i = 0; i < 4; ++i) {
            const auto name = ask(node.path, action, "GetName", {i}).toString();
            if (name == "Press") {
                ask(node.path, action, "DoAction", {i});
                return;
            }
        }
        ADD_FAILURE() << "It can't be pressed: " << qPrintable(node.place);
    }
    /// Presses Tab until it comes round; at each step the screen reader is told of one control.
    void expectTabComesRound()
    {
        Node last;
        QSet<QString> visited;
        for (;;) {
            screen.typeKey(XK_Tab);
            Node next;
            const auto moves = [&] {
                for (const Node &node : nodes([](const Node &one) { return one.is(focused); }))
                    next = node;
                return next.isControl() && next.path != last.path;
            };
            if (!eventually(moves, 1s) && visited.size() == 1 && next.path == last.path)
                return; // a page without another control
            ASSERT_TRUE(eventually(moves)) << "Tab leads from " << qPrintable(last.place)
                                           << " to nothing, or to " << qPrintable(next.place);
            if (visited.contains(next.path))
                return;
            visited.insert(next.path);
            last = next;
        }
    }

    QDBusMessage call(const QString &service, const QString &path, const QString &interface,
                      const QString &method, const QVariantList &arguments) const
    {
        auto message = QDBusMessage::createMethodCall(service, path, interface, method);
        message.setArguments(arguments);
        return m_connection.call(message);
    }
    QVariant ask(const QString &path, const QString &interface, const QString &method,
                 const QVariantList &arguments = {}) const
    {
        return call(m_application, path, interface, method, arguments).arguments().value(0);
    }
    /// Services and paths.
    std::vector<std::pair<QString, QString>> children(const QString &service,
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
    bool findsApplication()
    {
        for (const auto &[service, path] : children("org.a11y.atspi.Registry", root))
            m_application = service;
        return !m_application.isEmpty();
    }
    void walk(const QString &parent, const QString &place, std::vector<Node> &found) const
    {
        for (const auto &[service, path] : children(m_application, parent)) {
            const auto name =
                ask(path, "org.freedesktop.DBus.Properties", "Get", {accessible, "Name"});
            const auto states = qdbus_cast<QList<uint>>(ask(path, accessible, "GetState"));
            Node node{path, name.value<QDBusVariant>().variant().toString(),
                      ask(path, accessible, "GetRoleName").toString(),
                      states.value(0) | quint64(states.value(1)) << 32};
            node.place = QStringLiteral("%1 / %2 “%3”").arg(place, node.role, node.name);
            found.push_back(node);
            walk(path, node.place, found);
        }
    }

    QDBusConnection m_connection{QString()};
    QString m_application;
};

TEST_F(AccessibilityTest, TellsEveryControlOfThePanel)
{
    home.write("copied", "https://example.org/a");
    screen.run("xclip", {"-quiet", "-selection", "clipboard", home.path("copied")});
    ASSERT_TRUE(eventually(
        [this] { return QFile::exists(home.path("data/Orvane/Clipboard/clipboard.json")); }));
    pressHotKey();
    ASSERT_TRUE(shows("expanded"));
    expectEachPageIsTold("Módulos");
}

TEST_F(AccessibilityTest, TellsEveryControlOfTheSettings)
{
    EXPECT_EQ(run({"settings"}).exitCode, 0);
    expectEachPageIsTold("Páginas dos ajustes");
}

} // namespace velmo
