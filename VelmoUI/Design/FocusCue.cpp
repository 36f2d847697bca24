#include "VelmoUI/Design/FocusCue.h"

#include <QGuiApplication>
#include <QKeyEvent>

#include <utility>

namespace velmo {

namespace {

/// A key that goes somewhere or sets something off, rather than one that writes.
bool isForControls(const QKeyEvent &press)
{
    switch (press.key()) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return true;
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
        return false;
    default:
        const QObject *focus = QGuiApplication::focusObject();
        return !focus || !focus->property("cursorPosition").isValid();
    }
}

} // namespace

FocusCue::FocusCue()
{
    qGuiApp->installEventFilter(this);
}

void FocusCue::setByKeys(bool byKeys)
{
    if (std::exchange(m_byKeys, byKeys) != byKeys)
        Q_EMIT changed();
}

bool FocusCue::eventFilter(QObject *watched, QEvent *event)
{
    if (!watched->isWindowType())
        return false;
    if (event->type() == QEvent::MouseButtonPress)
        setByKeys(false);
    else if (event->type() == QEvent::KeyPress && isForControls(static_cast<QKeyEvent &>(*event)))
        setByKeys(true);
    return false;
}

} // namespace velmo
