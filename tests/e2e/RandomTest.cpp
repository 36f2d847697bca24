#include "VelmoCore/Storage/DataCipher.h"

#include "tests/e2e/OrvaneTest.h"

#include <QDirIterator>
#include <QImage>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QStandardPaths>

#include <X11/keysym.h>
#include <array>
#include <random>

namespace velmo {

/// Some hundred things that a user might do, in an order that nobody thought of. The seed comes
/// from ORVANE_SEED, or else it is another one each time. Nothing outside of the test's folder can
/// be started or found.
class RandomTest : public OrvaneTest {
protected:
    void SetUp() override
    {
        QDir().mkpath(home.path("bin"));
        for (const char *tool : {"7zz", "bsdtar", "zip", "pdftoppm", "ffmpegthumbnailer"})
            QFile::link(QStandardPaths::findExecutable(tool),
                        home.path(QStringLiteral("bin/%1").arg(tool)));
        environment.insert("PATH", home.path("bin"));
        environment.insert("XDG_DATA_DIRS", home.path("share"));
        environment.insert("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + home.path("no-bus"));
        home.write("home/carta.txt", "Bom dia");
        home.write("home/lista.csv", QByteArray(100'000, ','));
        QImage(300, 200, QImage::Format_RGB32).save(home.path("home/foto.png"));
        home.write("share/applications/none", {});
        QFile::link("/usr/share/mime", home.path("share/mime"));
        screen.runWindowManager();
        writeSettings({{"closeDelay", 0.1}});
    }

    int upTo(int most) { return std::uniform_int_distribution(0, most)(m_random); }
    template <class List>
    auto one(const List &list)
    {
        return list[std::size_t(upTo(int(std::size(list)) - 1))];
    }

    void act()
    {
        switch (upTo(19)) {
        case 0:
            run({"open", one(modules)});
            break;
        case 1:
            run(one(commands));
            break;
        case 2:
            run(QStringList{"drop"} + files());
            break;
        case 3:
            drag();
            break;
        case 4:
            copy();
            break;
        case 5:
            screen.typeKey(one(hotKeys), {XK_Control_L, XK_Alt_L});
            break;
        case 6:
        case 7:
        case 8:
            press();
            break;
        default:
            point();
        }
    }

    /// A file dialog is another program's business, and shows the whole machine.
    void closeDialogs()
    {
        const auto dialogs = [&] {
            auto windows = screen.property(screen.root(), "_NET_CLIENT_LIST");
            std::erase_if(windows, [&](xcb_window_t window) {
                const auto types = screen.property(window, "_NET_WM_WINDOW_TYPE");
                return !std::ranges::count(types, screen.atom("_NET_WM_WINDOW_TYPE_DIALOG"));
            });
            return windows;
        };
        for (const xcb_window_t dialog : dialogs())
            screen.tellManager(dialog, "_NET_CLOSE_WINDOW", {XCB_CURRENT_TIME, 2});
        EXPECT_TRUE(eventually([&] { return dialogs().empty(); }));
    }

    const std::uint32_t seed = qEnvironmentVariableIsSet("ORVANE_SEED")
                                   ? qgetenv("ORVANE_SEED").toUInt()
                                   : std::random_device()();

private:
    static constexpr const char *modules[] = {"home",  "tools",  "shelf",  "clipboard",
                                              "notes", "timers", "system", "activity"};
    static inline const QStringList commands[] = {{"toggle"}, {"open"},     {"hide"},
                                                  {"show"},   {"settings"}, {"settings", "data"}};
    static constexpr xcb_keysym_t hotKeys[] = {XK_n, XK_m, XK_v};
    static constexpr xcb_keysym_t keys[] = {
        XK_a,  XK_1,    XK_e,   XK_space, XK_Return, XK_Tab,   XK_Escape, XK_Left,     XK_Right,
        XK_Up, XK_Down, XK_End, XK_Home,  XK_Delete, XK_minus, XK_period, XK_BackSpace};
    static constexpr xcb_keysym_t commandKeys[] = {XK_1, XK_2, XK_3, XK_4, XK_5,   XK_6, XK_7, XK_8,
                                                   XK_c, XK_x, XK_v, XK_a, XK_Tab, XK_w, XK_z};

    QStringList files()
    {
        QStringList chosen;
        for (const char *name : {"carta.txt", "lista.csv", "foto.png"})
            if (const QString file = home.path("home/") + name; upTo(1) == 0 && QFile::exists(file))
                chosen.append(file);
        if (chosen.empty())
            home.write("home/carta.txt", "Bom dia");
        return chosen.empty() ? QStringList(home.path("home/carta.txt")) : chosen;
    }
    void press()
    {
        const int kind = upTo(4);
        if (kind == 0)
            screen.typeKey(one(keys), {XK_Shift_L});
        else if (kind < 3)
            screen.typeKey(one(keys));
        else
            screen.typeKey(one(commandKeys), {XK_Control_L});
    }
    void point()
    {
        const QRect area = upTo(9) == 0 ? wholeScreen : frame("shape");
        if (area.isEmpty())
            return;
        screen.movePointer(area.x() + upTo(area.width() - 1), area.y() + upTo(area.height() - 1));
        const int button = std::array{1, 1, 1, 1, 1, 3, 2, 4, 5}[std::size_t(upTo(8))];
        screen.setButton(button, true);
        screen.setButton(button, false);
    }
    void drag()
    {
        QProcess &source = screen.run(DRAG_SOURCE, {files().front()});
        pause(300ms);
        screen.movePointer(610, 600);
        screen.setButton(1, true);
        pause(50ms);
        for (const QPoint &stop : {notch, QPoint(600 + upTo(300), 40 + upTo(60))}) {
            screen.movePointer(stop.x() + 1, stop.y());
            pause(100ms);
            screen.movePointer(stop.x(), stop.y());
            pause(100ms);
        }
        screen.setButton(1, false);
        pause(100ms);
        source.terminate();
        source.waitForFinished();
    }
    void copy()
    {
        if (m_owner)
            m_owner->kill();
        const bool isFiles = upTo(1) == 0;
        m_owner =
            &screen.run(CLIPBOARD_PEER, {"offer", isFiles ? "files" : "text", files().front()});
    }

    std::mt19937 m_random{seed};
    QProcess *m_owner = nullptr;
};

TEST_F(RandomTest, EndsWellWithWholeFilesWhateverIsDone)
{
    std::printf("ORVANE_SEED=%u\n", seed);
    SCOPED_TRACE(seed);
    launch();
    const auto began = std::chrono::steady_clock::now();
    int steps = 0;
    for (; steps < 300 && std::chrono::steady_clock::now() - began < 12s; ++steps) {
        act();
        pause(30ms);
        closeDialogs();
        ASSERT_TRUE(isRunning()) << "after " << steps << " steps";
    }
    EXPECT_GT(steps, 30);
    EXPECT_EQ(run({"quit"}).exitCode, 0);
    EXPECT_EQ(exitCode(), 0);
    EXPECT_FALSE(log().contains(QRegularExpression("TypeError|ReferenceError")));
    const DataCipher cipher(home.read("state/Orvane/app.velmo.Velmo.storage:data-key-v1"));
    QDirIterator saved(home.path("data/Orvane"), {"*.json"}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (saved.hasNext()) {
        QFile file(saved.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        QByteArray text = file.readAll();
        if (text.startsWith("VLMO1"))
            text = cipher.open(text);
        EXPECT_FALSE(QJsonDocument::fromJson(text).isNull()) << qPrintable(file.fileName());
    }
}

} // namespace velmo
