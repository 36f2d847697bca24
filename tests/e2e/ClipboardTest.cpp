#include "VelmoCore/Clipboard/ClipboardStore.h"
#include "VelmoCore/Foundation/Json.h"
#include "VelmoCore/Storage/DataCipher.h"

#include "tests/e2e/OrvaneTest.h"

#include <QImage>

#include <X11/keysym.h>

namespace velmo {

/// Orvane beside applications that copy and paste.
class ClipboardTest : public OrvaneTest {
protected:
    struct Content {
        QString kind;
        QString type; ///< as X11's tools call it
        QString file; ///< what is copied, or what holds it
        QString text; ///< what a reader prints
    };

    void SetUp() override { screen.runWindowManager(); }

    /// Unlike those of any other owner.
    std::vector<Content> contents(const QString &owner) const
    {
        const QString text = "ação € " + owner;
        const int width = 40 + int(owner.size());
        QImage image(width, 30, QImage::Format_RGB32);
        image.fill(Qt::red);
        image.save(home.path(owner + ".png"));
        home.write(owner, text.toUtf8());
        return {{"text", "UTF8_STRING", home.path(owner), text},
                {"files", "text/uri-list", home.path(owner), home.path(owner)},
                {"image", "image/png", home.path(owner + ".png"), QString::number(width)}};
    }
    QProcess &copy(const QString &owner, const Content &content)
    {
        if (owner == "Qt")
            return screen.run(CLIPBOARD_PEER, {"offer", content.kind, content.file});
        if (owner == "GTK")
            return screen.run("/usr/bin/python3",
                              {CLIPBOARD_PEER_GTK, "offer", content.kind, content.file});
        home.write("uris", "file://" + content.file.toUtf8() + "\r\n");
        const QString file = content.kind == "files" ? home.path("uris") : content.file;
        return screen.run("xclip", {"-quiet", "-selection", "clipboard", "-t", content.type, file});
    }
    QString output(const QString &program, const QStringList &words) const
    {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(program, words);
        process.waitForFinished();
        return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    }

    xcb_window_t selectionOwner() const
    {
        auto *server = screen.client();
        auto *reply = xcb_get_selection_owner_reply(
            server, xcb_get_selection_owner(server, screen.atom("CLIPBOARD")), nullptr);
        const xcb_window_t owner = reply->owner;
        std::free(reply);
        return owner;
    }
    /// Opens the page of the history by its key; its field has the keyboard once one types.
    void openHistory()
    {
        const xcb_window_t focused = screen.focusedWindow();
        screen.typeKey(XK_v, {XK_Control_L, XK_Alt_L});
        ASSERT_TRUE(shows("expanded"));
        ASSERT_TRUE(eventually([&] { return screen.focusedWindow() != focused; }));
    }
    /// Has Orvane copy the newest item of its own.
    void giveBack()
    {
        screen.typeKey(XK_v, {XK_Control_L, XK_Alt_L});
        ASSERT_TRUE(shows("expanded"));
        EXPECT_TRUE(eventually([&] {
            screen.typeKey(XK_Return);
            return presentation() == "collapsed";
        }));
    }

    /// What is sealed on disk, the newest first.
    std::vector<ClipItem> items() const
    {
        if (!QFile::exists(home.path("data/Orvane/Clipboard/clipboard.json")))
            return {};
        const DataCipher cipher(home.read("state/Orvane/app.velmo.Velmo.storage:data-key-v1"));
        const auto text = cipher.open(home.read("data/Orvane/Clipboard/clipboard.json"));
        return Json::decode<ClipboardStore::Snapshot>(text).items;
    }
    /// Whether there come to be so many, the newest of that content.
    testing::AssertionResult keeps(const Content &content, std::size_t count)
    {
        const auto textOf = [](const ClipItem &item) {
            return item.imageWidth ? QString::number(*item.imageWidth)
                   : item.fileURLs ? item.fileURLs->front().toLocalFile()
                                   : item.text.value_or(QString());
        };
        std::vector<ClipItem> found;
        const auto does = [&] {
            found = items();
            return found.size() == count && textOf(found.front()) == content.text;
        };
        if (eventually(does))
            return testing::AssertionSuccess();
        return testing::AssertionFailure()
               << "It keeps " << found.size() << ", the newest being "
               << (found.empty() ? "" : qPrintable(textOf(found.front())));
    }
};

TEST_F(ClipboardTest, KeepsWhatApplicationsOfAnyToolkitCopy)
{
    launch();
    std::size_t count = 0;
    for (const QString &owner : QStringList{"xclip", "Qt", "GTK"}) {
        for (const Content &content : contents(owner)) {
            if (owner == "GTK" && content.kind == "files")
                continue; // Python can't have it offer them
            copy(owner, content);
            EXPECT_TRUE(keeps(content, ++count)) << qPrintable(owner + " " + content.kind);
        }
    }
}

TEST_F(ClipboardTest, GivesAnItemBackToApplicationsOfAnyToolkit)
{
    launch();
    std::size_t count = 0;
    for (const Content &content : contents("Qt")) {
        SCOPED_TRACE(qPrintable(content.kind));
        QProcess &owner = copy("Qt", content);
        ASSERT_TRUE(keeps(content, ++count));
        owner.terminate();
        owner.waitForFinished();
        giveBack();
        const QStringList read{"read", content.kind};
        EXPECT_TRUE(eventually([&] { return output(CLIPBOARD_PEER, read) == content.text; }));
        EXPECT_EQ(output("/usr/bin/python3", QStringList(CLIPBOARD_PEER_GTK) + read), content.text);
        const QString raw = output("xclip", {"-selection", "clipboard", "-t", content.type, "-o"});
        const QString sign = content.kind == "image" ? "PNG" : content.text;
        EXPECT_TRUE(raw.contains(sign)) << qPrintable(raw);
        EXPECT_TRUE(keeps(content, count)) << "its own copy isn't another";
    }
}

TEST_F(ClipboardTest, FindsAnItemByTypingAndPastesItIntoFieldsAndApplications)
{
    launch();
    home.write("um", "primeira copia");
    copy("xclip", {"text", "UTF8_STRING", home.path("um"), {}});
    ASSERT_TRUE(keeps({{}, {}, {}, "primeira copia"}, 1));
    copy("xclip", contents("xclip").front());
    ASSERT_TRUE(keeps(contents("xclip").front(), 2));
    const auto pastes = [&](const QString &text) {
        return eventually([&] { return output(CLIPBOARD_PEER, {"read", "text"}) == text; });
    };
    openHistory();
    type("prim");
    screen.typeKey(XK_Return);
    EXPECT_TRUE(shows("collapsed"));
    EXPECT_TRUE(pastes("primeira copia"));

    openHistory();
    type("x"); // gives the field the keyboard
    screen.typeKey(XK_v, {XK_Control_L});
    pause(300ms); // it comes when the owner has answered
    type("y");
    screen.typeKey(XK_Left, {XK_Shift_L});
    screen.typeKey(XK_x, {XK_Control_L});
    EXPECT_TRUE(pastes("y"));
    screen.typeKey(XK_a, {XK_Control_L});
    screen.typeKey(XK_c, {XK_Control_L});
    EXPECT_TRUE(pastes("xprimeira copia"));
}

TEST_F(ClipboardTest, NeverWaitsForAnOwnerThatIsSilent)
{
    writeSettings({{"animationsEnabled", false}});
    launch();
    copy("xclip", contents("xclip").front());
    ASSERT_TRUE(keeps(contents("xclip").front(), 1));
    openHistory();
    type("a");
    const xcb_window_t silent = screen.makeWindow({0, 900, 10, 10}, false);
    const auto isAsked = [&] {
        return eventually([&] { return screen.takeEvents(XCB_SELECTION_REQUEST) > 0; });
    };
    for (const char *selection : {"CLIPBOARD", "PRIMARY"})
        xcb_set_selection_owner(screen.client(), silent, screen.atom(selection), XCB_CURRENT_TIME);
    xcb_flush(screen.client());
    EXPECT_TRUE(isAsked()) << "for the history";
    screen.typeKey(XK_v, {XK_Control_L});
    EXPECT_TRUE(isAsked()) << "for the field";
    const QPoint field = frame("shape").topLeft() + QPoint(250, 40);
    screen.movePointer(field.x(), field.y());
    screen.setButton(2, true);
    screen.setButton(2, false);
    EXPECT_TRUE(isAsked()) << "for the field, by the middle button";
    EXPECT_EQ(selectionOwner(), silent);
    screen.typeKey(XK_Return);
    EXPECT_TRUE(shows("collapsed"));
    EXPECT_TRUE(eventually([&] { return selectionOwner() != silent; }));
    EXPECT_EQ(output(CLIPBOARD_PEER, {"read", "text"}), contents("xclip").front().text);
}

TEST_F(ClipboardTest, ExchangesTextsAndImagesWithABrowser)
{
    constexpr QPoint ground{700, 700};
    const Content ownText{"text", {}, {}, "da página"};
    const Content ownImage{"image", {}, {}, "64"};
    home.write("page.html", R"(<!doctype html><meta charset=utf-8><body style="background:#0f0">
        <textarea autofocus>da página</textarea>
        <script>
            const page = document.body, field = page.firstElementChild;
            const show = isRight => page.style.background = isRight ? '#00f' : '#f00';
            field.oninput = () => show(field.value === 'ação € xclip');
            page.onpaste = async event => {
                const [file] = event.clipboardData.files;
                if (file) show((await createImageBitmap(file)).width === 45);
            };
            page.onkeydown = async event => {
                if (event.key !== 'F2') return;
                page.style.background = '#0f0';
                const canvas = new OffscreenCanvas(64, 20);
                canvas.getContext('2d').fillRect(0, 0, 9, 9);
                const image = await canvas.convertToBlob();
                navigator.clipboard.write([new ClipboardItem({'image/png': image})]);
            };
        </script>)");
    launch();
    screen.run("chromium", {"--no-sandbox", "--disable-dev-shm-usage", "--no-first-run",
                            "--disable-gpu", "--password-store=basic",
                            "--user-data-dir=" + home.path("chromium"), "--window-size=1000,800",
                            "--window-position=200,100", "--app=file://" + home.path("page.html")});
    ASSERT_TRUE(eventually([&] { return pixel(ground) == green; }, 40s));
    // A page that was drawn may not listen yet.
    const auto untilIt = [](const std::function<void()> &act, const std::function<bool()> &has) {
        return eventually([&] { return act(), eventually(has, 2s); });
    };
    const auto press = [&](xcb_keysym_t key) {
        screen.typeKey(XK_a, {XK_Control_L});
        screen.typeKey(key, {XK_Control_L});
    };
    const auto paste = [&] { press(XK_v); };
    const auto isTaken = [&] { return pixel(ground) == 0x0000ff; };
    const auto takeFrom = [&](const Content &content, std::size_t count) {
        QProcess &owner = copy("xclip", content);
        EXPECT_TRUE(keeps(content, count));
        owner.terminate();
        owner.waitForFinished();
        giveBack();
    };

    EXPECT_TRUE(untilIt([&] { press(XK_c); }, [&] { return !items().empty(); }));
    EXPECT_TRUE(keeps(ownText, 1));
    takeFrom(contents("xclip").front(), 2);
    EXPECT_TRUE(untilIt(paste, isTaken));

    const auto copyImage = [&] { screen.typeKey(XK_F2); };
    EXPECT_TRUE(untilIt(copyImage, [&] { return items().size() == 3; }));
    EXPECT_TRUE(keeps(ownImage, 3));
    takeFrom(contents("xclip").back(), 4);
    EXPECT_TRUE(untilIt(paste, isTaken));
}

TEST_F(ClipboardTest, TakesNothingThatIsSecretOrWasCopiedInAPause)
{
    writeSettings({{"clipboardPaused", true}, {"animationsEnabled", false}});
    launch();
    const Content before = contents("pausa").front();
    copy("xclip", before);
    const xcb_window_t focused = screen.focusedWindow();
    EXPECT_EQ(run({"settings", "privacy"}).exitCode, 0);
    ASSERT_TRUE(eventually([&] { return screen.focusedWindow() != focused; }));
    for (int i = 0; i < 8; ++i)
        screen.typeKey(XK_Tab, {XK_Shift_L});
    screen.typeKey(XK_space);
    EXPECT_TRUE(eventually([&] {
        return home.read("data/Orvane/settings.json").contains("\"clipboardPaused\": false");
    }));

    Content secret = contents("segredo").front();
    secret.kind = "secret";
    copy("Qt", secret);
    EXPECT_TRUE(eventually([&] { return QFile::exists(secret.file + ".asked"); }));
    const Content after = contents("depois").front();
    copy("xclip", after);
    EXPECT_TRUE(keeps(after, 1));
    EXPECT_EQ(home.read("segredo.asked"), "x-kde-passwordManagerHint\n");
}

} // namespace velmo
