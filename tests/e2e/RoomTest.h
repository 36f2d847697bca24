#pragma once

#include "tests/e2e/OrvaneTest.h"
#include "tests/e2e/ScreenReader.h"

#include <QJsonArray>

namespace velmo {

/// What each room is there for, done as a user does it: with the pointer on what is seen, and keys.
class RoomTest : public OrvaneTest {
protected:
    void SetUp() override
    {
        screen.runWindowManager();
        writeSettings({{"animationsEnabled", false}, {"closeOnMouseLeave", false}});
    }

    /// Where the control of that name is, or else one whose name holds it; empty if none comes.
    QRect place(const QString &name, const QString &role = {})
    {
        QRect found;
        const auto isThere = [&] {
            for (const auto &node : controls(name, role)) {
                if (found.isEmpty() || node.name == name)
                    found = reader.frame(node);
            }
            return !found.isEmpty();
        };
        EXPECT_TRUE(eventually(isThere)) << qPrintable(name);
        return found;
    }
    void click(const QString &name, const QString &role = {})
    {
        const QPoint point = place(name, role).center();
        screen.movePointer(point.x(), point.y());
        screen.click(point.x(), point.y());
    }
    bool isGone(const QString &name)
    {
        return eventually([&] { return controls(name).empty(); });
    }
    /// Goes to a module by its symbol in the bar.
    void enter(const QString &module)
    {
        launch();
        ASSERT_TRUE(reader.findsApplication());
        const xcb_window_t focused = screen.focusedWindow();
        pressHotKey();
        ASSERT_TRUE(shows("expanded"));
        ASSERT_TRUE(eventually([&] { return screen.focusedWindow() != focused; }));
        click(module, "page tab"); // Home's card may have its name
    }
    bool isLive(const QString &part)
    {
        return eventually([&] {
            const QJsonArray live = status()["live"].toArray();
            return std::ranges::any_of(
                live, [&](const auto &id) { return QJsonValue(id).toString().contains(part); });
        });
    }

    ScreenReader reader{screen, bus, environment};

private:
    std::vector<ScreenReader::Node> controls(const QString &name, const QString &role = {}) const
    {
        return reader.nodes([&](const ScreenReader::Node &node) {
            return node.name.contains(name) && node.is(ScreenReader::visible) &&
                   (role.isEmpty() || node.role == role) && node.role != "page tab list" &&
                   node.role != "panel";
        });
    }
};

} // namespace velmo
