#include "tests/e2e/OrvaneTest.h"
#include "tests/support/DBusMock.h"

#include <QDBusArgument>
#include <QImage>

#include <algorithm>

namespace velmo {

namespace {

constexpr auto watcher = "org.kde.StatusNotifierWatcher";
constexpr auto mockInterface = "org.freedesktop.DBus.Mock";
constexpr auto watcherPath = "/StatusNotifierWatcher";

} // namespace

/// With a status area that comes up after Orvane.
class StatusItemTest : public OrvaneTest {
protected:
    StatusItemTest() : m_connection(bus.connect()) {}

    void startStatusArea()
    {
        m_area.emplace(bus, watcher, QStringList{watcher, watcherPath, watcher});
        m_area->call(watcherPath, mockInterface, "AddMethod",
                     {watcher, "RegisterStatusNotifierItem", "s", "", "self.item = args[0]"});
        m_area->call(watcherPath, mockInterface, "AddMethod",
                     {watcher, "Item", "", "s", "ret = getattr(self, 'item', '')"});
        m_area->call(
            watcherPath, mockInterface, "AddProperty",
            {watcher, "IsStatusNotifierHostRegistered", QVariant::fromValue(QDBusVariant(true))});
        m_area->call(watcherPath, mockInterface, "EmitSignal",
                     {watcher, "StatusNotifierHostRegistered", "", QVariantList()});
    }

    /// The items' ids by their labels, as a status area shows them.
    QMap<QString, int> menu()
    {
        const QDBusMessage answer = ask("GetLayout", {0, -1, QStringList()});
        QMap<QString, int> items;
        const auto layout = answer.arguments().value(1).value<QDBusArgument>();
        for (const QVariant &child : children(layout)) {
            const auto item = child.value<QDBusArgument>();
            int id = 0;
            QVariantMap properties;
            item.beginStructure();
            item >> id >> properties;
            item.endStructure();
            items[properties["label"].toString()] = id;
        }
        return items;
    }
    /// The item's picture of that size; a null one without it.
    QImage picture(int side)
    {
        const QString item = m_area->call(watcherPath, watcher, "Item").toString();
        auto call = QDBusMessage::createMethodCall(item, "/StatusNotifierItem",
                                                   "org.freedesktop.DBus.Properties", "Get");
        call.setArguments({"org.kde.StatusNotifierItem", "IconPixmap"});
        const auto pictures = m_connection.call(call)
                                  .arguments()
                                  .value(0)
                                  .value<QDBusVariant>()
                                  .variant()
                                  .value<QDBusArgument>();
        QImage found;
        pictures.beginArray();
        while (!pictures.atEnd()) {
            int width = 0;
            int height = 0;
            QByteArray pixels; // ARGB, the highest byte first
            pictures.beginStructure();
            pictures >> width >> height >> pixels;
            pictures.endStructure();
            for (auto place = pixels.begin(); place < pixels.end(); place += 4)
                std::reverse(place, place + 4);
            if (width == side && height == side)
                found = QImage(reinterpret_cast<const uchar *>(pixels.constData()), width, height,
                               QImage::Format_ARGB32)
                            .copy();
        }
        pictures.endArray();
        return found;
    }
    void click(const QString &label)
    {
        ask("Event", {menu()[label], "clicked", QVariant::fromValue(QDBusVariant(0)), 0U});
    }
    void TearDown() override
    {
        QDBusConnection::disconnectFromBus(m_connection.name());
        OrvaneTest::TearDown();
    }

private:
    static QVariantList children(const QDBusArgument &layout)
    {
        int id = 0;
        QVariantMap properties;
        QVariantList found;
        if (layout.currentType() != QDBusArgument::StructureType)
            return found;
        layout.beginStructure();
        layout >> id >> properties >> found;
        layout.endStructure();
        return found;
    }
    QDBusMessage ask(const QString &method, const QVariantList &arguments)
    {
        const QString item = m_area->call(watcherPath, watcher, "Item").toString();
        auto call =
            QDBusMessage::createMethodCall(item, "/MenuBar", "com.canonical.dbusmenu", method);
        call.setArguments(arguments);
        return m_connection.call(call);
    }

    QDBusConnection m_connection;
    std::optional<DBusMock> m_area;
};

TEST_F(StatusItemTest, OffersWhatCanBeDoneOnceThereIsAStatusArea)
{
    launch();
    startStatusArea();
    ASSERT_TRUE(eventually([this] { return menu().contains("Abrir painel    Ctrl+Alt+N"); }));
    EXPECT_TRUE(menu().contains("Ajustes…"));
    const QImage symbol = picture(18);
    ASSERT_FALSE(symbol.isNull());
    EXPECT_EQ(symbol.pixelColor(9, 5), QColor(Qt::black)) << "the notch";
    EXPECT_EQ(symbol.pixelColor(9, 11), QColor(Qt::white)) << "in a screen";
    EXPECT_EQ(symbol.pixelColor(0, 0).alpha(), 0);

    click("Ocultar notch");
    EXPECT_TRUE(becomesVisible(false));
    ASSERT_TRUE(eventually([this] { return menu().contains("Mostrar notch"); }));
    click("Abrir painel    Ctrl+Alt+N");
    EXPECT_TRUE(shows("expanded"));
    click("Sair do Orvane");
    EXPECT_EQ(exitCode(), 0);
}

TEST_F(StatusItemTest, IsNotThereIfTheUserDoesNotWantIt)
{
    writeSettings({{"showMenuBarIcon", false}});
    startStatusArea();
    launch();
    pause(500ms);
    EXPECT_TRUE(menu().isEmpty());
}

} // namespace velmo
