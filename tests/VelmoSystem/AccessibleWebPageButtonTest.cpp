#include "VelmoSystem/Linux/DBus/AccessibleWebPageButton.h"

#include "VelmoSystem/Linux/DBus/AccessibleTree.h"

#include "tests/support/ManualScheduler.h"
#include "tests/support/Printers.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/XServer.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVirtualObject>

#include <gtest/gtest.h>

#include <unistd.h>

namespace velmo {
namespace {

/// What another application shows of itself, on a bus that has nothing else.
class Application : public QDBusVirtualObject {
public:
    struct Object {
        QVariant role = 39U;
        QString name;
        QString description;
        QStringList children;
        bool isActive = false;
        bool isPressable = true;
    };
    static inline const QVariant button = 43U;

    explicit Application(const PrivateBus &bus) : m_address(bus.address()), m_bus(bus.connect())
    {
        m_bus.registerVirtualObject(u"/"_qs, this, QDBusConnection::SubPath);
        m_bus.registerService(u"org.a11y.Bus"_qs);
        m_bus.registerService(u"org.a11y.atspi.Registry"_qs);
        objects[u"/org/a11y/atspi/accessible/root"_qs] = {.children = {u"/application"_qs}};
    }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        ++questions;
        if (message.member() == u"GetAddress")
            return connection.send(message.createReply(m_address));
        if (!objects.contains(message.path())) // hangs
            return true;
        return connection.send(message.createReply(answer(objects[message.path()], message)));
    }

    std::map<QString, Object> objects;
    QString pressed;
    int questions = 0;

private:
    QVariant answer(const Object &object, const QDBusMessage &message)
    {
        if (message.member() == u"GetRole")
            return object.role;
        if (message.member() == u"GetState")
            return QVariant::fromValue(QList<unsigned>{object.isActive ? 2U : 0U, 0U});
        if (message.member() == u"Get")
            return QVariant::fromValue(QDBusVariant(
                message.arguments().at(1) == u"Name"_qs ? object.name : object.description));
        if (message.member() == u"DoAction") {
            pressed = message.path();
            return object.isPressable;
        }
        QDBusArgument list;
        list.beginArray(QMetaType::fromType<AccessibleTree::Node>());
        for (const QString &child : object.children) {
            list.beginStructure();
            list << m_bus.baseService() << QDBusObjectPath(child);
            list.endStructure();
        }
        list.endArray();
        return QVariant::fromValue(list);
    }

    const QString m_address;
    QDBusConnection m_bus;
};

class AccessibleWebPageButtonTest : public testing::Test {
protected:
    /// The object that was pressed; "?" where it is looked for again.
    QString press(const QStringList &labels)
    {
        m_answer = u"?"_qs;
        page.press(labels, ::getpid(), [this](bool isPressed) {
            m_answer = isPressed ? application.pressed : QString();
        });
        return settle();
    }
    QString settle()
    {
        EXPECT_TRUE(eventually([this] {
            scheduler.runPosted();
            return m_answer != u"?" || scheduler.pendingCount() > 0;
        }));
        return m_answer;
    }

    PrivateBus bus;
    ManualScheduler scheduler;
    Application application{bus};
    std::map<QString, Application::Object> &objects = application.objects;
    AccessibleWebPageButton page{bus.connect(), scheduler};

private:
    QString m_answer;
};

TEST_F(AccessibleWebPageButtonTest, PressesTheFirstThatHasALabelInTheActiveWindow)
{
    const QVariant button = Application::button;
    objects[u"/application"_qs] = {.children = {u"/back"_qs, u"/front"_qs}};
    objects[u"/back"_qs] = {.role = button, .name = u"Apresentar agora"_qs};
    objects[u"/front"_qs] = {.children = {u"/deep"_qs, u"/text"_qs, u"/other"_qs, u"/near"_qs},
                             .isActive = true};
    objects[u"/deep"_qs] = {.children = {u"/back"_qs}};
    objects[u"/text"_qs] = {.role = u"button"_qs, .name = u"Apresentar agora"_qs};
    objects[u"/other"_qs] = {.role = button, .name = u"Sair"_qs};
    objects[u"/near"_qs] = {.role = button, .description = u"Ícone: APRESENTAR agora"_qs};
    const QStringList labels{u"Share screen"_qs, u"Apresentar"_qs};
    EXPECT_EQ(press(labels), u"/near");
    objects[u"/near"_qs].isPressable = false;
    EXPECT_EQ(press(labels), QString());
    objects[u"/front"_qs].isActive = false;
    EXPECT_EQ(press(labels), u"/back") << "without an active window all count";
}

TEST_F(AccessibleWebPageButtonTest, LooksOnceMoreForWhatIsNotThereYet)
{
    EXPECT_EQ(press({u"a"_qs}), u"?") << "an application that hangs";
    objects[u"/application"_qs] = {.children = {u"/a"_qs}};
    objects[u"/a"_qs] = {.role = Application::button, .name = u"A"_qs};
    scheduler.advance(0.3s);
    EXPECT_EQ(settle(), u"/a");
    EXPECT_EQ(press({u"b"_qs}), u"?");
    scheduler.advance(0.3s);
    EXPECT_EQ(settle(), QString());
    EXPECT_EQ(scheduler.pendingCount(), 0U);
}

TEST_F(AccessibleWebPageButtonTest, EndsInATreeWithoutEnd)
{
    objects[u"/application"_qs] = {.children = {u"/a"_qs}};
    objects[u"/a"_qs] = {.children = QStringList(8, u"/a"_qs)};
    EXPECT_EQ(press({u"a"_qs}), u"?");
    EXPECT_LT(application.questions, 2 * int(AccessibleTree::mostNodes) + 1000);
}

TEST(AccessibleWebPageButton, PressesNothingWithoutAccessibility)
{
    const PrivateBus bus;
    for (const QDBusConnection &session : {bus.connect(), QDBusConnection(u"none"_qs)}) {
        ManualScheduler scheduler;
        AccessibleWebPageButton page(session, scheduler);
        std::optional<bool> answer;
        page.press({u"a"_qs}, ::getpid(), [&](bool isPressed) { answer = isPressed; });
        EXPECT_TRUE(eventually([&] {
            scheduler.advance(0.1s);
            return answer.has_value();
        }));
        EXPECT_FALSE(answer.value());
    }
}

} // namespace
} // namespace velmo
