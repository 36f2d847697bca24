#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Clipboard/ClipboardStore.h"
#include "VelmoCore/Notes/NotesStore.h"
#include "VelmoCore/Shelf/ShelfStore.h"
#include "VelmoCore/Timers/TimerCenter.h"
#include "VelmoSystem/FileProcessing/ToolsSelection.h"
#include "VelmoUI/Modules/Frame/ModuleRegistry.h"

#include "tests/VelmoUI/NotchViewFixture.h"

#include <QPointer>
#include <QQmlComponent>
#include <QRegularExpression>

#include <X11/keysym.h>

namespace velmo {
namespace {

/// The panel in the hands of who works it by key.
class NotchKeyboardTest : public NotchViewFixture {};

TEST_F(NotchKeyboardTest, ReachesEveryControlByTabAndWorksItByKey)
{
    addModules(u"activity"_qs);
    bool isCancelled = false;
    services.activity->upsert(
        {.id = u"job"_qs, .title = u"Job"_qs, .progress = 0.5, .isCancellable = true},
        [&] { isCancelled = true; });
    services.activity->post(ActivityEvent::make(desktop.scheduler.now(), {}, u"Pronto"_qs,
                                                FeedbackStyle::success, u"test"_qs, {},
                                                {QUrl(u"file:///a"_qs)}));
    start();
    showView();
    view().requestActivate();
    coordinator.open({.module = u"activity"_qs});
    QCoreApplication::processEvents();
    ASSERT_TRUE(view().activeFocusItem());
    EXPECT_EQ(view().activeFocusItem()->property("name").toString(), QString())
        << "no control is set off by a key that was meant for another window";

    QStringList names;
    while (names.size() < 20 && !names.contains(u"Fechar"_qs))
        names.append(nameAfter(names.isEmpty() ? Qt::Key_Down : Qt::Key_Tab));
    names.replaceInStrings(QRegularExpression(u"Pronto, .*"_qs), u"Pronto"_qs);
    EXPECT_EQ(names, QStringList({u"Job, 50%"_qs, u"Cancelar"_qs, u"Limpar"_qs, u"Pronto"_qs,
                                  u"Mostrar na pasta"_qs, u"UM"_qs, u"DOIS"_qs, u"TRÊS"_qs,
                                  u"Atividade"_qs, u"Ajustes"_qs, u"Fechar"_qs}));
    EXPECT_EQ(nameAfter(Qt::Key_Right), u"Fechar") << "the bar's end";
    EXPECT_EQ(nameAfter(Qt::Key_Left), u"Ajustes");
    EXPECT_EQ(nameAfter(Qt::Key_Left), u"Atividade");
    nameAfter(Qt::Key_Tab);
    nameAfter(Qt::Key_Tab);
    EXPECT_EQ(nameAfter(Qt::Key_Tab), u"Cancelar");
    nameAfter(Qt::Key_Space);
    EXPECT_TRUE(isCancelled);
}

TEST_F(NotchKeyboardTest, GivesTheKeyboardToThePageThatIsCalled)
{
    addModules();
    services.shelf->addText(u"Texto"_qs);
    services.notes->createNote(u"Nota"_qs);
    services.clipboard->add(ClipItems::fromText(u"Cópia"_qs, {}, desktop.scheduler.now()).value());
    start();
    showView();
    view().requestActivate();
    coordinator.open();
    const struct {
        const char16_t *page;
        const char16_t *written; ///< in what has the keyboard after an "x"
    } pages[] = {{u"home", u""},       {u"tools", u""},  {u"shelf", u"x"}, {u"clipboard", u"x"},
                 {u"notes", u"Notax"}, {u"timers", u""}, {u"system", u""}, {u"activity", u""}};
    for (const auto &[page, written] : pages) {
        QCoreApplication::processEvents();
        found([](const auto &item) {
            return item.property("name") == u"Fechar"_qs;
        })->forceActiveFocus();
        coordinator.open({.module = QString::fromUtf16(page)});
        QCoreApplication::processEvents();
        QKeyEvent letter(QEvent::KeyPress, Qt::Key_X, {}, u"x"_qs);
        QCoreApplication::sendEvent(&view(), &letter);
        const QQuickItem *item = view().activeFocusItem();
        EXPECT_EQ(item->property("text").toString(), written)
            << QString::fromUtf16(page).toStdString();
        while (item && !item->property("page").isValid())
            item = item->parentItem();
        EXPECT_TRUE(item) << QString::fromUtf16(page).toStdString() << " hasn't the keyboard";
    }
}

TEST_F(NotchKeyboardTest, GivesTheKeyboardToTheActionsOfAnotherDrop)
{
    start();
    showView();
    view().requestActivate();
    const auto drop = [this] {
        coordinator.openFiles({QUrl(u"file:///a"_qs)});
        QCoreApplication::processEvents();
        return view().activeFocusItem()->property("name").toString();
    };
    const QString first = drop();
    QString reached;
    for (int i = 0; i < 10 && reached != u"Fechar"; ++i)
        reached = nameAfter(Qt::Key_Tab);
    ASSERT_EQ(reached, u"Fechar");
    change([](AppSettings &next) { next.animationsEnabled = true; }); // the first one only fades
    EXPECT_EQ(drop(), first);
}

TEST_F(NotchKeyboardTest, StaysOpenForWhoIsWritingInIt)
{
    openPage(R"(import QtQuick
        FocusScope {
            focus: true
            property QtObject page; property bool watched
            TextInput { focus: true }
        })");
    const auto leave = [&](Seconds time) {
        desktop.movePointer(notchOf(1));
        desktop.movePointer(outside);
        wait(time);
        return shown();
    };
    press(XK_a, {}, Qt::Key_A);
    EXPECT_EQ(leave(9.9s), u"expanded");
    press(XK_b, {}, Qt::Key_B);
    wait(9.9s);
    EXPECT_EQ(shown(), u"expanded");
    wait(0.1s);
    EXPECT_EQ(shown(), u"collapsed");

    const auto compose = [&](const QString &preedit) {
        QInputMethodEvent event(preedit, {});
        QCoreApplication::sendEvent(view().activeFocusItem(), &event);
    };
    const auto reopen = [&] {
        coordinator.open();
        QCoreApplication::processEvents();
    };
    reopen();
    compose({});
    EXPECT_EQ(leave(0.5s), u"collapsed") << "nothing was written";
    reopen();
    compose(u"か"_qs);
    EXPECT_EQ(leave(60s), u"expanded");
    compose({});
    wait(10s);
    EXPECT_EQ(shown(), u"collapsed");
    reopen();
    press(XK_a, {}, Qt::Key_A);
    view().activeFocusItem()->setFocus(false);
    EXPECT_EQ(leave(0.5s), u"collapsed") << "the text hasn't the keyboard";
}

TEST_F(NotchKeyboardTest, StaysOpenWhileAMenuOfItsOwnIs)
{
    openPage(R"(import QtQuick
        import Velmo.Design
        FocusScope {
            property QtObject page; property bool watched
            function openMenu() { menu.open(Qt.point(5, 5)) }
            ContextMenu { id: menu; model: ListModel {} }
        })");
    const auto openMenu = [&] {
        auto *page = found([](const auto &item) { return item.property("watched").isValid(); });
        QMetaObject::invokeMethod(page, "openMenu");
        return page->childItems().front();
    };
    const QQuickItem *menu = openMenu();
    desktop.movePointer(outside);
    wait(60s);
    EXPECT_EQ(shown(), u"expanded");
    desktop.pointer.press(outside, 7);
    EXPECT_FALSE(menu->isVisible());
    desktop.pointer.press(outside, 7);
    wait(0.79s);
    EXPECT_EQ(shown(), u"expanded");
    wait(0.01s);
    EXPECT_EQ(shown(), u"collapsed") << "the pointer has left it";

    change([](AppSettings &next) { next.closeOnMouseLeave = false; });
    coordinator.open();
    openMenu();
    desktop.pointer.press(outside, 7);
    wait(0.8s);
    desktop.pointer.press(outside, 7);
    EXPECT_EQ(shown(), u"collapsed");
    coordinator.open();
    openMenu();
    coordinator.open({.module = u"um"_qs});
    QCoreApplication::processEvents();
    wait(0.8s);
    desktop.pointer.press(outside, 7);
    EXPECT_EQ(shown(), u"collapsed") << "the menu went with its page";
}

TEST_F(NotchKeyboardTest, ShowsWhereTheKeyboardIsToWhoGoesByKey)
{
    openPage(R"(import QtQuick
        import Velmo.Design
        FocusScope {
            focus: true
            property QtObject page; property bool watched
            ActionButton { name: "Um"; focus: true }
            TextEntry { name: "Texto"; y: 40 }
        })");
    const auto rings = [&] {
        int count = 0;
        for (const QQuickItem *item : items())
            count += QByteArray(item->metaObject()->className()).startsWith("FocusRing");
        return count;
    };
    const auto click = [&](const char *name) {
        const auto *item = found(
            [&](const auto &one) { return one.property("name") == QString::fromLatin1(name); });
        const QPointF middle = item->mapToScene({item->width() / 2, item->height() / 2});
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QMouseEvent event(type, middle, middle, Qt::LeftButton,
                              type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, {});
            QCoreApplication::sendEvent(&view(), &event);
        }
    };
    nameAfter(Qt::Key_Tab);
    EXPECT_EQ(rings(), 1);
    click("Um");
    EXPECT_EQ(rings(), 0);
    nameAfter(Qt::Key_Tab);
    EXPECT_EQ(rings(), 1);
    click("Texto");
    EXPECT_TRUE(view().activeFocusItem()->property("cursorPosition").isValid());
    nameAfter(Qt::Key_A);
    EXPECT_EQ(rings(), 0) << "what is written shows where the keyboard is";
    coordinator.toggleFromHotKey();
    coordinator.toggleFromHotKey();
    QCoreApplication::processEvents();
    EXPECT_EQ(rings(), 1) << "called by key";
}

TEST_F(NotchKeyboardTest, NeverTabsToWhatIsNotSeen)
{
    change([](AppSettings &next) {
        next.hasCompletedOnboarding = true;
        next.hiddenHomeCards.clear();
    });
    addModules();
    std::vector<QUrl> files;
    for (int i = 0; i < 30; ++i) {
        const QString text = u"Número %1"_qs.arg(i);
        services.shelf->addText(text);
        services.notes->createNote(text + u" #"_qs + QString(i + 1, u'a') +
                                   u" https://x.org/%1"_qs);
        services.notes->addTask(text, std::nullopt);
        services.timers->addPreset(60s * (i + 1));
        services.timers->startTimer(60s, text);
        services.clipboard->add(ClipItems::fromText(text, {}, desktop.scheduler.now()).value());
        services.clipboard->createCollection(text);
        services.activity->post(ActivityEvent::make(desktop.scheduler.now(), {}, text,
                                                    FeedbackStyle::success, u"test"_qs, {},
                                                    {QUrl(u"file:///a"_qs)}));
        desktop.folder.write(text, "?");
        files.push_back(QUrl::fromLocalFile(desktop.folder.path(text)));
    }
    start();
    showView();
    view().requestActivate();
    services.tools->open(files, std::nullopt);
    for (const char16_t *page :
         {u"home", u"shelf", u"notes", u"timers", u"activity", u"tools", u"clipboard", u"system"}) {
        coordinator.open({.module = QString::fromUtf16(page)});
        view().grabWindow(); // lays it out
        for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) {
            QCoreApplication::processEvents();
            std::vector<QPointer<QQuickItem>> visited; // lists make and delete what is in them
            int within = 0;
            for (int i = 0; i < 300; ++i) {
                const QString name = nameAfter(key);
                QQuickItem *item = view().activeFocusItem();
                if (std::ranges::any_of(visited, [&](const auto &one) { return one == item; }))
                    break;
                visited.emplace_back(item);
                QCoreApplication::processEvents(); // it is scrolled to
                const QRectF place = item->boundingRect();
                within += item->mapRectToScene(place).top() > 32 ? 1 : 0;
                for (auto *holder = item->parentItem(); holder; holder = holder->parentItem()) {
                    EXPECT_TRUE(!holder->clip() ||
                                holder->contains(item->mapToItem(holder, place.center())))
                        << QString::fromUtf16(page).toStdString() << ": " << name.toStdString();
                }
            }
            EXPECT_GT(within, 0) << QString::fromUtf16(page).toStdString();
        }
    }
}

TEST_F(NotchKeyboardTest, SaysWhyAPageIsMissingAndLoadsItOnDemand)
{
    auto &module = FakeModule::addTo(*services.modules, u"quebrado"_qs);
    module.failure = u"Falta um serviço."_qs;
    start();
    showView();
    coordinator.open({.module = u"quebrado"_qs});
    EXPECT_TRUE(names().contains(u"QUEBRADO não pôde ser carregado"_qs));
    EXPECT_TRUE(names().contains(u"Falta um serviço."_qs));
    coordinator.open({.module = u"um"_qs});
    EXPECT_FALSE(names().contains(u"Tentar novamente"_qs));

    coordinator.open({.module = u"quebrado"_qs});
    view().requestActivate();
    QCoreApplication::processEvents();
    EXPECT_EQ(nameAfter(Qt::Key_Space), u"Tentar novamente") << "it fails again";
    module.failure.clear();
    warnings.take(); // of the failures
    nameAfter(Qt::Key_Space);
    EXPECT_EQ(module.activations, 4);
    EXPECT_FALSE(names().contains(u"Tentar novamente"_qs));
}

TEST_F(NotchKeyboardTest, LetsThePageHaveItsKeysFirst)
{
    openPage(R"(import QtQuick
        FocusScope {
            focus: true
            property QtObject page; property bool watched; property bool asks: true
            TextInput {
                focus: true; text: "duas palavras"; cursorPosition: 13
                Keys.onEscapePressed: event => { event.accepted = parent.asks; parent.asks = false }
            }
        })");
    press(XK_Left, Qt::ControlModifier, Qt::Key_Left);
    EXPECT_EQ(view().activeFocusItem()->property("cursorPosition"), 5);
    press(XK_Escape, {}, Qt::Key_Escape);
    EXPECT_EQ(shown(), u"expanded");
    press(XK_Escape, {}, Qt::Key_Escape);
    EXPECT_EQ(shown(), u"collapsed");
}

TEST_F(NotchKeyboardTest, WorksOnTasksByKey)
{
    addModules();
    services.notes->createNote(u"Plano"_qs);
    services.notes->addTask(u"regar"_qs);
    start();
    showView();
    view().requestActivate();
    coordinator.open({.module = u"notes"_qs});
    QQuickItem *editor = found([](const auto &item) { return item.property("isLong").isValid(); });
    QQuickItem *line =
        found([](const auto &item) { return item.property("name") == u"Nova tarefa"_qs; });
    const auto focusTask = [&] {
        view().grabWindow(); // lists make what is in them when it is drawn
        found([](const auto &item) {
            return item.property("removal") == u"Remover regar"_qs;
        })->forceActiveFocus();
    };
    const auto count = [&] { return services.notes->tasks().size(); };
    const auto remove = [&] {
        focusTask();
        press(XK_Delete, {}, Qt::Key_Delete);
        EXPECT_EQ(count(), 0U);
    };
    const auto undo = [&] {
        press(XK_z, Qt::ControlModifier, Qt::Key_Z);
        return count();
    };
    remove();
    EXPECT_EQ(undo(), 1U);
    for (QQuickItem *field : {editor, line}) {
        remove();
        field->forceActiveFocus();
        EXPECT_EQ(undo(), 1U);
    }
    remove();
    constexpr quint32 placeOfZ = 52;
    press(XK_Cyrillic_ya, Qt::ControlModifier, 0x42f, placeOfZ);
    EXPECT_EQ(count(), 1U) << "the layout has no z";
    remove();
    line->forceActiveFocus();
    QKeyEvent typing(QEvent::KeyPress, Qt::Key_A, {}, u"a"_qs);
    QCoreApplication::sendEvent(&view(), &typing);
    EXPECT_EQ(undo(), 0U) << "what was typed goes first";
    EXPECT_EQ(undo(), 1U);

    focusTask();
    press(XK_Menu, {}, Qt::Key_Menu);
    EXPECT_EQ(view().activeFocusItem()->property("name"), u"Concluir"_qs);
    EXPECT_EQ(nameAfter(Qt::Key_Down), u"Lembrete…");
    EXPECT_FALSE(names().contains(u"Lembrete: regar"_qs));
    press(XK_Return, {}, Qt::Key_Return);
    EXPECT_TRUE(names().contains(u"Lembrete: regar"_qs));
    focusTask();
    press(XK_Menu, {}, Qt::Key_Menu);
    EXPECT_EQ(nameAfter(Qt::Key_Escape), u"regar") << "it goes back to the task";
    EXPECT_EQ(warnings.take(), QStringList());
}

TEST_F(NotchKeyboardTest, NeverConfirmsWhereTheFirstPressWas)
{
    start();
    showView();
    QQmlComponent probe(qmlEngine(view().rootObject()));
    probe.setData(R"(import QtQuick
        import Velmo.Design
        Item {
            width: 600
            ConfirmButton {
                anchors.right: parent.right
                name: "Restaurar tudo agora…"
                question: "Certeza?"
                confirmName: "Sim"
            }
        })",
                  {});
    const std::unique_ptr<QObject> made(probe.create());
    auto *const item = qobject_cast<QQuickItem *>(made.get());
    ASSERT_TRUE(item) << qPrintable(probe.errorString());
    item->setParentItem(view().rootObject());
    const auto button = [&](const QString &name) {
        for (QQuickItem *child : item->childItems().front()->childItems()) {
            if (child->property("name").toString() == name)
                return child;
        }
        throw std::logic_error("no such button");
    };
    const auto place = [](const QQuickItem *of) {
        return of->mapRectToScene({0, 0, of->width(), of->height()});
    };
    view().grabWindow();
    QQuickItem *const first = button(u"Restaurar tudo agora…"_qs);
    const QRectF pressed = place(first);
    QMetaObject::invokeMethod(first, "triggered");
    view().grabWindow();
    EXPECT_FALSE(place(button(u"Sim"_qs)).intersects(pressed));
    EXPECT_TRUE(place(button(u"Manter"_qs)).contains(pressed));
}

} // namespace
} // namespace velmo
