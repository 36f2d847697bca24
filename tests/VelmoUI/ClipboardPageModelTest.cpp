#include "VelmoUI/Modules/Clipboard/ClipboardPageModel.h"

#include "VelmoCore/Clipboard/ClipboardStore.h"
#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoSystem/Clipboard/ClipboardMonitor.h"
#include "VelmoUI/Modules/Clipboard/ClipDrag.h"
#include "VelmoUI/Modules/Clipboard/ClipImageProvider.h"
#include "VelmoUI/Modules/Clipboard/ClipboardCardModel.h"

#include "tests/VelmoUI/PanelFixture.h"
#include "tests/support/Printers.h"

#include <QBuffer>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QTest>

#include <X11/keysym.h>

namespace velmo {
namespace {

constexpr int noModifier = Qt::NoModifier;
constexpr int ctrl = Qt::ControlModifier;

class ClipboardPageModelTest : public PanelFixture {
protected:
    ClipboardPageModelTest()
    {
        addModules(u"clipboard"_qs);
        services.clipboardMonitor->start();
        page.setWatched(true);
    }

    ClipItem copy(const QString &text, const ClipSource &source = {})
    {
        services.clipboard->add(ClipItems::fromText(text, source, desktop.scheduler.now()).value());
        return services.clipboard->items().front();
    }
    ClipItem copyFiles(const std::vector<QUrl> &files)
    {
        services.clipboard->add(ClipItems::fromFiles(files, {}, desktop.scheduler.now()).value());
        return services.clipboard->items().front();
    }
    /// One text a letter, so that they stand in the order given.
    void copyLetters(const char16_t *letters)
    {
        const QString all = QString::fromUtf16(letters);
        for (auto letter = all.crbegin(); letter != all.crend(); ++letter)
            copy(*letter);
    }
    QVariant field(int row, const char *name) { return velmo::field(page.items(), row, name); }
    using PanelFixture::shown;
    QString shown() { return column(page.items(), "title").join(QString()); }
    QString currentTitle() { return field(page.currentIndex(), "title").toString(); }
    /// Names of the lines, those that are selected in capitals.
    QString collections()
    {
        QStringList lines;
        const QAbstractItemModel &rows = *page.collections()->rows();
        for (int row = 0; row < rows.rowCount(); ++row) {
            const QString title = rows.index(row, 0).data(Qt::UserRole + 1).toString();
            lines += rows.index(row, 0).data(Qt::UserRole + 3).toBool() ? title.toUpper() : title;
        }
        return lines.mid(0, lines.size() - 1).join(u' ');
    }

    ClipboardServices clipboard()
    {
        return {*services.clipboard, *services.clipboardMonitor, *services.settings,
                desktop.fileViewer, desktop.scheduler};
    }

    NotchViewModel panel{1, NotchGeometry::metrics(FakeDesktop::screen(1)), services.panels()};
    ClipboardPageModel page{clipboard(), panel};
};

} // namespace

TEST_F(ClipboardPageModelTest, TellsWhatIsInEachKindOfCopy)
{
    const Date now = desktop.scheduler.now();
    const auto text = [&](const char16_t *copied) {
        return ClipItems::fromText(QString::fromUtf16(copied), {u"Editor"_qs, {}}, now - 125s)
            .value();
    };
    const auto files = [&](std::vector<QUrl> urls) {
        return ClipItems::fromFiles(urls, {}, now).value();
    };
    struct Case {
        ClipItem item;
        QString title;
        QString text;
        QString swatch;
    };
    for (const Case &expected : {
             Case{text(u" um\n dois "), u"um dois"_qs, u"um\n dois"_qs, {}},
             Case{text(u"https://www.a.org/b?c#d"), u"a.org"_qs, u"/b?c#d"_qs, {}},
             Case{text(u"http://a.org/"), u"a.org"_qs, {}, {}},
             Case{text(u"#f008"), u"#f008"_qs, u"#f008"_qs, {}},
             Case{text(u"ff000080"), u"ff000080"_qs, u"ff000080"_qs, {}},
             Case{text(u"#ff000080"), u"#ff000080"_qs, {}, u"#80ff0000"_qs},
             Case{files({QUrl(u"file:///x/Viagem%20a/"_qs)}), u"Viagem a"_qs, {}, {}},
             Case{files({QUrl(u"file:///x/a.txt"_qs), QUrl(u"file:///b"_qs)}),
                  u"2 arquivos"_qs,
                  u"a.txt, b"_qs,
                  {}},
             Case{ClipItems::fromImage(u"a.png"_qs, {}, 3, 2, {}, now), u"3 × 2"_qs, {}, {}},
         }) {
        const ClipRow row = ClipRows::make(expected.item, now);
        EXPECT_EQ(row.title, expected.title);
        EXPECT_EQ(row.text, expected.text) << qPrintable(row.title);
        EXPECT_EQ(row.swatch, expected.swatch) << qPrintable(row.title);
    }
    EXPECT_EQ(ClipRows::make(text(u"a"), now).spoken, u"a, texto, Editor · 2 min");
}

TEST_F(ClipboardPageModelTest, FindsWhatTheUserTypesAndPutsItBack)
{
    copyLetters(u"abc");
    copy(u"#fff"_qs);
    copy(u"Carta"_qs, {u"Editor"_qs, {}});
    page.handleKey(Qt::Key_End, noModifier);
    EXPECT_EQ(currentTitle(), u"c");
    page.handleKey(Qt::Key_P, ctrl);
    EXPECT_EQ(shown(), u"cCarta#fffab");
    EXPECT_EQ(currentTitle(), u"c") << "the keyboard stays with the item";
    page.setKindIndex(3);
    EXPECT_EQ(shown(), u"#fff");
    page.setKindIndex(0);
    page.search(u"EDIT"_qs);
    EXPECT_EQ(currentTitle(), u"Carta");

    coordinator.start();
    EXPECT_TRUE(page.handleKey(Qt::Key_Enter, Qt::KeypadModifier));
    EXPECT_EQ(desktop.pasteboard.text, u"Carta");
    wait(ClipboardMonitor::beat);
    page.setWatched(false);
    page.setWatched(true);
    EXPECT_EQ(shown(), u"cCarta#fffab") << "each opening begins with everything";
    EXPECT_EQ(page.currentIndex(), 0);
    desktop.pasteboard.offer({{Pasteboard::textType.toString(), "novo"}});
    wait(ClipboardMonitor::beat);
    EXPECT_EQ(shown(), u"cnovoCarta#fffab");
    page.setWatched(false);
    copy(u"d"_qs);
    EXPECT_EQ(shown(), u"cnovoCarta#fffab") << "nobody sees it";
}

TEST_F(ClipboardPageModelTest, RemovesForGoodOnlyOnceNothingCanBringItBack)
{
    copyLetters(u"abcd");
    const auto kept = [this] { return services.clipboard->items().size(); };
    page.press(1, noModifier);
    EXPECT_TRUE(page.handleKey(Qt::Key_Delete, noModifier));
    EXPECT_EQ(shown(), u"acd");
    EXPECT_EQ(currentTitle(), u"c") << "the keyboard goes on from there";
    EXPECT_TRUE(page.handleKey(Qt::Key_Z, ctrl));
    EXPECT_EQ(shown(), u"abcd");
    EXPECT_EQ(currentTitle(), u"b");
    page.run(u"remove"_qs);
    wait(1s);
    copy(u"b"_qs);
    wait(UndoStack::time);
    EXPECT_EQ(shown(), u"bacd") << "it has been copied again";
    EXPECT_FALSE(page.canUndo());
    page.run(u"remove"_qs);
    page.run(u"remove"_qs);
    EXPECT_EQ(kept(), 3U);
    wait(UndoStack::time);
    EXPECT_EQ(kept(), 2U);
    page.run(u"remove"_qs);
    page.setWatched(false);
    EXPECT_EQ(kept(), 1U);
}

TEST_F(ClipboardPageModelTest, AsksBeforeItLosesAnything)
{
    copyLetters(u"abc");
    ClipCollections &collections = *page.collections();
    collections.startNaming(u"new"_qs);
    collections.finishNaming(u"Viagem"_qs);
    const QString viagem = uuidText(services.clipboard->collections()[0].id);
    collections.add(viagem, field(1, "id").toString());
    page.press(2, noModifier);
    page.handleKey(Qt::Key_P, ctrl);
    page.askToClear();
    EXPECT_EQ(page.question(), u"Apagar o histórico do clipboard?");
    page.answer(false);
    EXPECT_EQ(shown(), u"cab");
    page.askToClear();
    EXPECT_EQ(page.confirmation(), u"Apagar, exceto fixados e coleções");
    page.answer(true);
    EXPECT_EQ(shown(), u"cb");

    collections.choose(viagem);
    EXPECT_EQ(shown(), u"b");
    page.askToDelete(viagem);
    EXPECT_EQ(page.question(), u"Excluir a coleção “Viagem”?");
    page.answer(true);
    page.answer(true);
    EXPECT_EQ(shown(), u"cb") << "everything shows again";
    EXPECT_EQ(this->collections(), u"HISTÓRICO Favoritos");
}

TEST_F(ClipboardPageModelTest, CollectsByMenuByDragAndUnderANewName)
{
    copyLetters(u"abc");
    ClipCollections &collections = *page.collections();
    page.press(0, noModifier);
    EXPECT_TRUE(page.handleKey(Qt::Key_G, ctrl));
    collections.choose(u"favorites"_qs);
    collections.choose(u"new"_qs);
    collections.finishNaming(u" Cores "_qs);
    EXPECT_EQ(this->collections(), u"FAVORITOS CORES") << "the item is in both";
    const QString cores = uuidText(services.clipboard->collections()[0].id);
    collections.choose(cores);
    EXPECT_EQ(this->collections(), u"FAVORITOS Cores");
    collections.stopCollecting();
    for (int i = 0; i < 2; ++i) {
        collections.add(cores, field(2, "id").toString());
        collections.add(u"favorites"_qs, field(2, "id").toString());
    }
    collections.startNaming(cores);
    collections.finishNaming(u"Tons"_qs);
    collections.choose(cores);
    EXPECT_EQ(this->collections(), u"Histórico Favoritos TONS");
    EXPECT_EQ(shown(), u"c");
    collections.choose(u"favorites"_qs);
    EXPECT_EQ(shown(), u"ac");
    collections.startNaming(u"new"_qs);
    collections.finishNaming(u"  "_qs);
    EXPECT_EQ(services.clipboard->collections().size(), 1U);
}

TEST_F(ClipboardPageModelTest, OpensWhatIsStillThere)
{
    desktop.folder.write(u"a.txt"_qs, "?");
    const QUrl file = QUrl::fromLocalFile(desktop.folder.path(u"a.txt"_qs));
    const QUrl link(u"https://example.org/a"_qs);
    copy(link.toString());
    copyFiles({file});
    page.press(0, noModifier);
    EXPECT_TRUE(page.handleKey(Qt::Key_R, ctrl));
    EXPECT_TRUE(page.handleKey(Qt::Key_O, ctrl));
    page.press(1, noModifier);
    EXPECT_FALSE(page.handleKey(Qt::Key_R, ctrl));
    page.run(u"open"_qs);
    EXPECT_EQ(desktop.fileViewer.revealed, std::vector{file});
    EXPECT_EQ(desktop.fileViewer.opened, (std::vector{file, link}));
    QFile::remove(file.toLocalFile());
    page.press(0, noModifier);
    page.run(u"open"_qs);
    EXPECT_EQ(page.summary(), u"Arquivo não encontrado");
    EXPECT_EQ(desktop.fileViewer.opened.size(), 2U);
}

TEST_F(ClipboardPageModelTest, LeadsTheKeyboardThroughThePage)
{
    copyLetters(u"abc");
    start();
    showView();
    coordinator.open({.module = u"clipboard"_qs});
    QCoreApplication::processEvents();
    const auto items = [this] { return services.clipboard->items(); };
    press(XK_Right, {}, Qt::Key_Right);
    press(XK_g, Qt::ControlModifier, Qt::Key_G);
    press(XK_Return, {}, Qt::Key_Return); // the favourites
    EXPECT_TRUE(items()[1].isFavorite);
    press(XK_Escape, {}, Qt::Key_Escape);
    EXPECT_EQ(shown(1), u"expanded");
    for (int i = 0; i < 2; ++i) { // typed, it leads to the search, and the keyboard stays there
        QKeyEvent typed(QEvent::KeyPress, Qt::Key_Z, {}, u"z"_qs);
        QCoreApplication::sendEvent(&view(), &typed);
    }
    press(XK_Escape, {}, Qt::Key_Escape);
    EXPECT_EQ(shown(1), u"expanded");
    press(XK_Right, {}, Qt::Key_Right);
    press(XK_Delete, {}, Qt::Key_Delete);
    press(XK_z, Qt::ControlModifier, Qt::Key_Z);
    press(XK_Return, {}, Qt::Key_Return);
    EXPECT_EQ(desktop.pasteboard.text, u"b");
    EXPECT_EQ(shown(1), u"collapsed");
    EXPECT_EQ(items()[0].text, u"b"_qs);
}

TEST_F(ClipboardPageModelTest, PausesGoesOnAndSwitchesOn)
{
    EXPECT_TRUE(page.isCapturing());
    page.toggleCapture();
    EXPECT_EQ(page.summary(), u"Pausado");
    page.toggleCapture();
    EXPECT_TRUE(page.isCapturing());
    change([](AppSettings &next) { next.clipboardEnabled = false; });
    EXPECT_EQ(page.summary(), u"Desligado");
    page.toggleCapture();
    EXPECT_TRUE(page.isCapturing());
}

TEST_F(ClipboardPageModelTest, UnpacksASealedImageAsLargeAsItIsShown)
{
    const DataCipher cipher{QByteArray(32, 'k')};
    const ClipImageWriter images{desktop.folder.path(u"images"_qs), {cipher}};
    QImage picture(40, 20, QImage::Format_RGB32);
    picture.fill(Qt::green);
    QByteArray png;
    QBuffer buffer(&png);
    picture.save(&buffer, "PNG");
    const QString name = images.store(png);
    QQmlEngine engine;
    engine.addImageProvider(u"clip"_qs, new ClipImageProvider(images));
    QQmlComponent component(&engine);
    component.setData("import QtQuick; Image { }", {});
    const std::unique_ptr<QObject> image(component.create());
    const auto size = [&](const QString &file, QSize wanted) {
        constexpr int loading = 2;
        image->setProperty("sourceSize", wanted);
        image->setProperty("source", ClipImageProvider::urlFor(file));
        EXPECT_TRUE(QTest::qWaitFor([&] { return image->property("status").toInt() != loading; }));
        return QSize(image->property("implicitWidth").toInt(),
                     image->property("implicitHeight").toInt());
    };
    EXPECT_EQ(size(name, {10, 10}), QSize(10, 5));
    EXPECT_EQ(size(name, {80, 80}), QSize(40, 20));
    EXPECT_EQ(size(u"../x.png"_qs, {}), QSize(0, 0));

    const auto data = ClipDrag::mimeData(ClipItems::fromImage(name, png, 40, 20, {}, {}), images);
    EXPECT_TRUE(data->hasFormat(u"image/png"_qs));
    EXPECT_EQ(data->data(u"image/png"_qs), png);
    const auto link = ClipDrag::mimeData(copy(u" https://a.org "_qs), images);
    EXPECT_EQ(link->urls(), QList<QUrl>{QUrl(u"https://a.org"_qs)});
    EXPECT_EQ(link->text(), u" https://a.org ");
}

TEST_F(ClipboardPageModelTest, GivesHomeTheLatestCopies)
{
    copyLetters(u"abcdef");
    ClipboardCardModel card{clipboard(), panel};
    EXPECT_EQ(card.items()->rowCount(), int(ClipboardCardModel::mostItems));
    card.copy(2);
    EXPECT_EQ(desktop.pasteboard.text, u"c");
    EXPECT_EQ(services.clipboard->items()[0].text, u"c"_qs);
    card.copy(int(ClipboardCardModel::mostItems));
    EXPECT_EQ(desktop.pasteboard.text, u"c") << "it isn't on the card";
}

} // namespace velmo
