#include "VelmoUI/Design/FieldClipboard.h"

#include "VelmoCore/Foundation/Log.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>

#include <algorithm>

namespace velmo {

namespace {

QVariant ask(QObject &field, Qt::InputMethodQuery query)
{
    QInputMethodQueryEvent question(query);
    QCoreApplication::sendEvent(&field, &question);
    return question.value(query);
}

/// Windows pass the question on to what has the keyboard in them.
bool isField(QObject &object)
{
    return !object.isWindowType() && ask(object, Qt::ImEnabled).toBool();
}

bool isReadOnly(QObject &field)
{
    return ask(field, Qt::ImReadOnly).toBool();
}

/// As an input method does.
void write(QObject &field, const QString &text)
{
    QInputMethodEvent typed;
    typed.setCommitString(text);
    QCoreApplication::sendEvent(&field, &typed);
}

/// As a text has it, not as a document does.
QString selectedText(QObject &field)
{
    return ask(field, Qt::ImCurrentSelection)
        .toString()
        .replace(QChar::ParagraphSeparator, u'\n')
        .replace(QChar::LineSeparator, u'\n');
}

} // namespace

FieldClipboard::FieldClipboard(Pasteboard &clipboard, Pasteboard &selection, Scheduler &scheduler)
    : m_clipboard(clipboard), m_selection(selection), m_scheduler(scheduler),
      m_deafFields(QGuiApplication::clipboard())
{
    qGuiApp->installEventFilter(this);
}

bool FieldClipboard::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        return pressKey(*watched, static_cast<const QKeyEvent &>(*event));
    case QEvent::MouseButtonRelease: {
        const auto &release = static_cast<const QMouseEvent &>(*event);
        if (release.button() != Qt::MiddleButton || !isField(*watched) || isReadOnly(*watched))
            return false;
        // The field is to end its press, and not to paste by itself.
        QMouseEvent end(QEvent::MouseButtonRelease, release.position(), release.scenePosition(),
                        release.globalPosition(), Qt::LeftButton, release.buttons(),
                        release.modifiers(), release.pointingDevice());
        QCoreApplication::sendEvent(watched, &end);
        paste(*watched, m_selection);
        return true;
    }
    case QEvent::ContextMenu: // of the fields in Qt's dialogs; it asks whether there is a text
        return watched->inherits("QLineEdit");
    default:
        return false;
    }
}

bool FieldClipboard::pressKey(QObject &field, const QKeyEvent &press)
{
    const bool pastes = press.matches(QKeySequence::Paste);
    const bool cuts = press.matches(QKeySequence::Cut);
    if ((!pastes && !cuts && !press.matches(QKeySequence::Copy)) || !isField(field))
        return false;
    if (pastes && !isReadOnly(field))
        paste(field, m_clipboard);
    if (!pastes && copy(field) && cuts && !isReadOnly(field)) {
        QKeyEvent removal(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier);
        QCoreApplication::sendEvent(&field, &removal);
    }
    return true;
}

bool FieldClipboard::copy(QObject &field)
{
    const auto hints = Qt::InputMethodHints::fromInt(ask(field, Qt::ImHints).toInt());
    const QString text = selectedText(field);
    if (text.isEmpty() || hints.testFlag(Qt::ImhHiddenText))
        return false;
    m_clipboard.writeText(text);
    return true;
}

void FieldClipboard::paste(QObject &field, Pasteboard &source)
{
    read(field, source, [this, &field, asked = m_scheduler.elapsed()](const QString &text) {
        if (QGuiApplication::focusObject() == &field && m_scheduler.elapsed() - asked <= patience)
            write(field, text);
    });
}

void FieldClipboard::pasteAt(QObject &field, int position)
{
    if (isReadOnly(field))
        return;
    read(field, m_clipboard, [&field, position](const QString &text) {
        field.setProperty("cursorPosition", position);
        write(field, text);
    });
}

void FieldClipboard::read(QObject &field, Pasteboard &source,
                          std::function<void(const QString &)> take)
{
    const auto answered = [self = QPointer(this), target = QPointer(&field),
                           take = std::move(take)](const auto &data) {
        if (self && target && data && data->isWhole)
            take(QString::fromUtf8(data->bytes));
        else if (data && !data->isWhole)
            qCInfo(Log::app, "O texto copiado é longo demais para um campo.");
    };
    source.readTypes([&source, answered](const auto &types) {
        if (types && std::ranges::count(*types, Pasteboard::textType) > 0)
            source.read(Pasteboard::textType.toString(), mostBytes, answered);
    });
}

} // namespace velmo
