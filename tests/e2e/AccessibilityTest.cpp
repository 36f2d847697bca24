#include "tests/e2e/OrvaneTest.h"
#include "tests/e2e/ScreenReader.h"

#include <QRegularExpression>
#include <QSet>

#include <X11/keysym.h>

namespace velmo {

namespace {

using Node = ScreenReader::Node;

/// AT-SPI's words for what a user may do something with, for what hands the keyboard on to what it
/// holds, and for what is only there to be read.
const QSet<QString> controls = {"check box",    "combo box",   "entry",       "list item",
                                "menu item",    "page tab",    "push button", "radio button",
                                "slider",       "spin button", "text",        "toggle button",
                                "password text"};
const QSet<QString> containers = {"list", "panel", "page tab list"};
const QSet<QString> texts = {"label", "heading", "paragraph", "image", "icon", "progress bar"};

bool isControl(const Node &node)
{
    return controls.contains(node.role);
}

/// Qt names none; the group around it does.
bool isPasswordField(const Node &node)
{
    static const QRegularExpression place(u"panel “[^”]+” / text “”$"_qs);
    return node.is(ScreenReader::focusable) && node.place.contains(place) &&
           node.place.contains(u"panel “Senha"_qs);
}

bool isFault(const Node &node)
{
    if (isPasswordField(node))
        return false;
    const bool isKnown =
        isControl(node) || containers.contains(node.role) || texts.contains(node.role);
    return node.is(ScreenReader::visible) &&
           (node.is(ScreenReader::focusable) || isControl(node)) &&
           (!isKnown || node.name.isEmpty());
}

} // namespace

class AccessibilityTest : public OrvaneTest {
protected:
    void SetUp() override
    {
        screen.runWindowManager();
        writeSettings({{"animationsEnabled", false}});
        launch();
        ASSERT_TRUE(reader.findsApplication());
    }

    void expectEachPageIsTold(const QString &tabList)
    {
        std::vector<Node> tabs;
        const auto hasTabs = [&] {
            tabs = reader.nodes([&](const Node &node) {
                return node.role == "page tab" && node.place.contains(tabList);
            });
            return !tabs.empty();
        };
        ASSERT_TRUE(eventually(hasTabs));
        for (const Node &tab : tabs) {
            SCOPED_TRACE(qPrintable(tab.place));
            EXPECT_TRUE(reader.press(tab));
            const auto isShown = [&](const Node &node) {
                return node.path == tab.path && node.is(ScreenReader::selected) &&
                       node.is(ScreenReader::visible);
            };
            EXPECT_TRUE(eventually([&] { return !reader.nodes(isShown).empty(); }));
            for (const Node &node : reader.nodes(isFault))
                ADD_FAILURE() << "Without a name or a role: " << qPrintable(node.place);
            expectTabComesRound();
        }
    }

    ScreenReader reader{screen, bus, environment};

private:
    /// Presses Tab until it comes round; at each step the screen reader hears of one control.
    void expectTabComesRound()
    {
        const auto hasFocus = [](const Node &node) { return node.is(ScreenReader::focused); };
        Node last;
        QSet<QString> visited;
        for (;;) {
            screen.typeKey(XK_Tab);
            Node next;
            const auto moves = [&] {
                for (const Node &node : reader.nodes(hasFocus))
                    next = node;
                return isControl(next) && next.path != last.path;
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

TEST_F(AccessibilityTest, PastesWithoutWaitingForTheOwner)
{
    home.write("copied", "colado");
    screen.run("xclip", {"-quiet", "-selection", "clipboard", home.path("copied")});
    EXPECT_EQ(run({"open", "notes"}).exitCode, 0);
    std::vector<Node> fields;
    const auto isField = [](const Node &node) {
        return node.role == "text" && node.is(ScreenReader::visible);
    };
    ASSERT_TRUE(eventually([&] { return !(fields = reader.nodes(isField)).empty(); }));
    EXPECT_TRUE(reader.paste(fields[0]));
    EXPECT_TRUE(eventually([&] { return reader.text(fields[0]) == "colado"; }));
    const xcb_window_t silent = screen.makeWindow({0, 900, 10, 10}, false);
    xcb_set_selection_owner(screen.client(), silent, screen.atom("CLIPBOARD"), XCB_CURRENT_TIME);
    xcb_flush(screen.client());
    EXPECT_TRUE(reader.paste(fields[0]));
    EXPECT_EQ(reader.text(fields[0]), "colado");
}

TEST_F(AccessibilityTest, TellsEveryControlOfTheSettings)
{
    EXPECT_EQ(run({"settings"}).exitCode, 0);
    expectEachPageIsTold("Páginas dos ajustes");
}

} // namespace velmo
