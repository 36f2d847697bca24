#include "VelmoSystem/Linux/X11/X11Pasteboard.h"

#include "VelmoSystem/Linux/X11/X11FrontApplication.h"

#include "tests/VelmoSystem/X11Test.h"
#include "tests/support/FakeDevices.h"
#include "tests/support/ManualScheduler.h"

namespace velmo {
namespace {

const QString text = Pasteboard::textType.toString();

/// Two applications on one display, and an owner that does nothing by itself.
class X11PasteboardTest : public X11Test {
protected:
    using Types = std::vector<QString>;

    X11PasteboardTest() { settle(); }
    ~X11PasteboardTest() override { dropOwner(); }

    /// Runs until the answer comes; the outer value is absent where none does.
    template <class Value, class Start>
    std::optional<std::optional<Value>> answer(Start start, Seconds passing = 0s)
    {
        std::optional<std::optional<Value>> result;
        start([&](const std::optional<Value> &value) { result = value; });
        settle();
        scheduler.advance(passing);
        eventually([&] {
            scheduler.advance(0s);
            return result.has_value();
        });
        return result;
    }
    std::optional<Pasteboard::Data> read(const QString &type, qsizetype limit = 64 << 20)
    {
        const auto result =
            answer<Pasteboard::Data>([&](auto take) { reader.read(type, limit, std::move(take)); });
        return result.value_or(std::nullopt);
    }
    Types types()
    {
        const auto result = answer<Types>([&](auto take) { reader.readTypes(std::move(take)); });
        return result.value_or(std::nullopt).value_or(Types());
    }
    bool hearsOf(std::uint64_t changes)
    {
        return eventually([&] { return reader.changeCount() == changes; });
    }
    void ownSilently()
    {
        silent = server->makeWindow({0, 0, 10, 10}, false);
        xcb_set_selection_owner(server->client(), silent, server->atom("CLIPBOARD"),
                                XCB_CURRENT_TIME);
        xcb_flush(server->client());
    }
    void dropOwner()
    {
        if (silent != XCB_NONE)
            xcb_destroy_window(server->client(), std::exchange(silent, XCB_NONE));
        xcb_flush(server->client());
    }

    ManualScheduler scheduler;
    X11Connection other;
    X11Pasteboard reader{connection, scheduler};
    X11Pasteboard writer{other, scheduler};
    xcb_window_t silent = XCB_NONE;
};

TEST_F(X11PasteboardTest, PassesTextFilesAndImagesOnInAllTheirTypes)
{
    writer.writeText(u"ação €"_qs);
    ASSERT_TRUE(hearsOf(1));
    const Types offered = types();
    for (const char *name : {"UTF8_STRING", "STRING", "TEXT", "text/plain;charset=utf-8"})
        EXPECT_EQ(std::ranges::count(offered, QString::fromLatin1(name)), 1) << name;
    EXPECT_EQ(std::ranges::count(offered, text), 1);
    EXPECT_EQ(read(text)->bytes, "ação €");
    EXPECT_EQ(read(u"STRING"_qs)->bytes, u"ação ?"_qs.toLatin1());
    EXPECT_FALSE(read(u"image/png"_qs));

    writer.write({.files = {QUrl(u"file:///a%20b"_qs), QUrl(u"file:///c"_qs)}});
    ASSERT_TRUE(hearsOf(2));
    EXPECT_EQ(read(u"text/uri-list"_qs)->bytes, "file:///a%20b\r\nfile:///c\r\n");
    EXPECT_EQ(read(u"x-special/gnome-copied-files"_qs)->bytes, "copy\nfile:///a%20b\nfile:///c");
    EXPECT_EQ(read(text)->bytes, "/a b\n/c");
    writer.write({.png = "png"});
    ASSERT_TRUE(hearsOf(3));
    EXPECT_EQ(types().size(), 4U);
    EXPECT_EQ(read(u"image/png"_qs)->bytes, "png");
}

TEST_F(X11PasteboardTest, SendsAndReadsLongContentsInPiecesAsFarAsAsked)
{
    QByteArray image(5'000'001, Qt::Uninitialized);
    for (qsizetype place = 0; place < image.size(); ++place)
        image[place] = char(place * 7919 >> 8);
    writer.write({.png = image});
    ASSERT_TRUE(hearsOf(1));
    const QString type = u"image/png"_qs;
    const auto whole = read(type);
    ASSERT_TRUE(whole);
    EXPECT_TRUE(whole->bytes == image);
    EXPECT_TRUE(whole->isWhole);
    const auto cut = read(type, 1'000'000);
    ASSERT_TRUE(cut);
    EXPECT_EQ(cut->bytes.size(), 1'000'000);
    EXPECT_FALSE(cut->isWhole);
    EXPECT_TRUE(read(type, image.size())->isWhole);
    scheduler.advance(X11SelectionSource::patience);
    EXPECT_EQ(scheduler.pendingCount(), 0U) << "whoever stopped fetching is forgotten";
}

TEST_F(X11PasteboardTest, CountsItsOwnWriteAtOnceAndTellsOfItLater)
{
    int changes = 0;
    QObject::connect(&reader, &Pasteboard::changed, [&] { ++changes; });
    reader.writeText(u"meu"_qs);
    EXPECT_EQ(reader.changeCount(), 1U);
    EXPECT_EQ(changes, 0);
    EXPECT_TRUE(eventually([&] { return changes == 1; }));
    EXPECT_EQ(reader.changeCount(), 1U);
    EXPECT_EQ(read(text)->bytes, "meu") << "from itself";
    reader.write({});
    settle();
    EXPECT_TRUE(types().empty());
}

TEST_F(X11PasteboardTest, EndsAReadingWhoseOwnerIsSilentOrGoes)
{
    ownSilently();
    ASSERT_TRUE(hearsOf(1));
    const auto readText = [&](auto take) { reader.read(text, 100, std::move(take)); };
    auto result = answer<Pasteboard::Data>(readText, X11SelectionRead::patience);
    EXPECT_TRUE(result && !*result);

    int answers = 0;
    reader.readTypes([&](const auto &given) { answers += given ? 100 : 1; });
    reader.read(text, 100, [&](const auto &given) { answers += given ? 100 : 1; });
    settle();
    dropOwner();
    EXPECT_TRUE(eventually([&] { return answers == 2; }));
    EXPECT_EQ(reader.changeCount(), 1U) << "no owner is no content";
    scheduler.advance(60s);
    EXPECT_EQ(answers, 2);
}

TEST_F(X11PasteboardTest, NamesTheFrontApplicationByItsDesktopEntry)
{
    FakeApplications applications;
    applications.entries = {{.id = u"org.editor.desktop"_qs,
                             .name = u"Editor"_qs,
                             .bundleID = u"org.editor"_qs,
                             .windowClass = u"Writer"_qs}};
    const X11FrontApplication front(connection, applications);
    const xcb_window_t window = makeFocusedWindow({100, 100, 200, 100});
    const auto is = [&](const char *property, const QByteArray &value,
                        const FrontApplication::Info &info) {
        xcb_change_property(server->client(), XCB_PROP_MODE_REPLACE, window, server->atom(property),
                            XCB_ATOM_STRING, 8, std::uint32_t(value.size()), value.constData());
        xcb_flush(server->client());
        return eventually([&] { return front.current() == info; });
    };
    EXPECT_TRUE(is("WM_CLASS", QByteArray("keepassxc\0KeePassXC", 20),
                   {u"KeePassXC"_qs, u"com.keepassxc.keepassxc"_qs}));
    EXPECT_TRUE(is("WM_CLASS", QByteArray("writer\0writer", 14), {u"Editor"_qs, u"org.editor"_qs}));
    EXPECT_TRUE(is("WM_CLASS", QByteArray("tool\0Tool", 10), {u"Tool"_qs, u"tool"_qs}));
    EXPECT_TRUE(is("_GTK_APPLICATION_ID", "org.editor", {u"Editor"_qs, u"org.editor"_qs}));
    EXPECT_TRUE(is("_GTK_APPLICATION_ID", "org.gnome.World.Secrets",
                   {u"Tool"_qs, u"com.apple.Passwords"_qs}));
}

} // namespace
} // namespace velmo
