#include "VelmoUI/Design/FieldClipboard.h"

#include "tests/support/FakeDevices.h"
#include "tests/support/ManualScheduler.h"
#include "tests/support/TemporaryFolder.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>

#include <gtest/gtest.h>

namespace velmo {
namespace {

int readings = 0;

/// What another application has, whom Qt would wait for.
struct ForeignText : QMimeData {
    ForeignText() { setText(u"de Qt"_qs); }
    QStringList formats() const override
    {
        ++readings;
        return QMimeData::formats();
    }
    bool hasFormat(const QString &type) const override
    {
        ++readings;
        return QMimeData::hasFormat(type);
    }
};

struct SlowPasteboard : FakePasteboard {
    void read(const QString &type, qsizetype limit, Answer<Data> answer) override
    {
        if (isSlow)
            late = [this, type, limit, answer] { FakePasteboard::read(type, limit, answer); };
        else
            FakePasteboard::read(type, limit, answer);
    }

    bool isSlow = false; ///< answers come by `late`
    std::function<void()> late;
};

class FieldClipboardTest : public testing::Test {
protected:
    FieldClipboardTest()
    {
        folder.write(u"Fields.qml"_qs, R"(import QtQuick
            FocusScope {
                width: 200; height: 100
                TextInput { objectName: "line"; property int edits; onTextEdited: ++edits }
                TextInput { objectName: "secret"; y: 20; echoMode: TextInput.Password }
                TextEdit { objectName: "sheet"; y: 40; property bool canNow: canPaste }
            })");
        view.setSource(QUrl::fromLocalFile(folder.path(u"Fields.qml"_qs)));
        view.show();
        view.requestActivate();
        QApplication::processEvents();
        pasteboard.writeText(u"a\nb"_qs);
        readings = 0;
        QGuiApplication::clipboard()->setMimeData(new ForeignText);
    }
    ~FieldClipboardTest() override { EXPECT_EQ(readings, 0) << "Qt waits for the owner"; }

    QQuickItem &focus(const QString &name)
    {
        auto *item = view.rootObject()->findChild<QQuickItem *>(name);
        item->forceActiveFocus();
        item->setProperty("text", u"xyz"_qs);
        select(*item, 1, 3);
        return *item;
    }
    static void select(QQuickItem &field, int start, int end)
    {
        QMetaObject::invokeMethod(&field, "select", Q_ARG(int, start), Q_ARG(int, end));
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::ControlModifier)
    {
        QTest::keyClick(&view, key, modifiers);
    }

    TemporaryFolder folder;
    ManualScheduler scheduler;
    SlowPasteboard pasteboard;
    FakePasteboard selection;
    FieldClipboard clipboard{pasteboard, selection, scheduler};
    QQuickView view;
};

TEST_F(FieldClipboardTest, CopiesCutsAndPastesThroughThePort)
{
    for (const QString &name : {u"line"_qs, u"sheet"_qs}) {
        SCOPED_TRACE(name.toStdString());
        QQuickItem &field = focus(name);
        pasteboard.writeText(u"a\nb"_qs);
        press(Qt::Key_V);
        EXPECT_EQ(field.property("text"), u"xa\nb"_qs);
        select(field, 0, 3);
        press(Qt::Key_C);
        EXPECT_EQ(pasteboard.text, u"xa\n"_qs);
        select(field, 2, 4);
        press(Qt::Key_X);
        EXPECT_EQ(pasteboard.text, u"\nb"_qs);
        EXPECT_EQ(field.property("text"), u"xa"_qs);
        press(Qt::Key_Insert, Qt::ShiftModifier);
        EXPECT_EQ(field.property("text"), u"xa\nb"_qs);
    }
    EXPECT_EQ(view.rootObject()->findChild<QQuickItem *>(u"line"_qs)->property("edits"), 3);
    focus(u"secret"_qs);
    press(Qt::Key_C);
    press(Qt::Key_X);
    EXPECT_EQ(pasteboard.text, u"\nb"_qs) << "what isn't shown isn't copied";
    selection.offer({{Pasteboard::textType.toString(), "p"}});
    QQuickItem &field = focus(u"line"_qs);
    const QPointF point(2, 5);
    QMouseEvent release(QEvent::MouseButtonRelease, point, point, point, Qt::MiddleButton,
                        Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&field, &release);
    EXPECT_EQ(field.property("text").toString().count(u'p'), 1);
}

TEST_F(FieldClipboardTest, WorksInDialogsToo)
{
    QLineEdit field;
    field.show();
    field.activateWindow();
    field.setFocus();
    QApplication::processEvents();
    QTest::keyClick(&field, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(field.text(), u"a\nb"_qs);
    QContextMenuEvent menu(QContextMenuEvent::Mouse, {}, {});
    QCoreApplication::sendEvent(&field, &menu);
    EXPECT_FALSE(QApplication::activePopupWidget());
}

TEST_F(FieldClipboardTest, TakesNothingLateElsewhereOrTooLong)
{
    const auto pasteLate = [&](const std::function<void()> &meanwhile) {
        QQuickItem &field = focus(u"line"_qs);
        pasteboard.isSlow = true;
        press(Qt::Key_V);
        EXPECT_EQ(field.property("text"), u"xyz"_qs);
        meanwhile();
        pasteboard.late();
        return field.property("text").toString();
    };
    const auto setClock = [&](Seconds by) { scheduler.setClock(scheduler.now() + by); };
    EXPECT_EQ(pasteLate([&] { setClock(1h); }), u"xa\nb"_qs);
    const auto wait = [&] {
        setClock(-1h);
        scheduler.advance(FieldClipboard::patience + 1s);
    };
    EXPECT_EQ(pasteLate(wait), u"xyz"_qs);
    EXPECT_EQ(pasteLate([&] { focus(u"sheet"_qs); }), u"xyz"_qs);
    pasteboard.writeText(QString(FieldClipboard::mostBytes + 1, u'a'));
    EXPECT_EQ(pasteLate([] {}), u"xyz"_qs);
}

} // namespace
} // namespace velmo
