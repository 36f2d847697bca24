#include "VelmoSystem/Linux/DBus/AccessiblePaste.h"

#include "VelmoCore/Foundation/Log.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace velmo {

namespace {

/// Of all that Qt exposes to screen readers.
QString root()
{
    return QStringLiteral("/org/a11y/atspi/accessible");
}

} // namespace

AccessiblePaste::AccessiblePaste(Scheduler &scheduler, Paste paste)
    : m_scheduler(scheduler), m_paste(std::move(paste))
{
    QAccessible::installActivationObserver(this);
    accessibilityActiveChanged(QAccessible::isActive());
}

AccessiblePaste::~AccessiblePaste()
{
    QAccessible::removeActivationObserver(this);
}

void AccessiblePaste::accessibilityActiveChanged(bool isActive)
{
    if (isActive && !m_qt) // Qt's object comes right after this change
        m_scheduler.post([self = QPointer(this)] {
            if (self)
                self->takePlace();
        });
}

void AccessiblePaste::takePlace()
{
    QDBusConnection bus(QStringLiteral("a11y")); // as Qt calls it
    auto *qt = qobject_cast<QDBusVirtualObject *>(bus.objectRegisteredAt(root()));
    if (m_qt || !qt) {
        qCInfo(Log::app, "O objeto do Qt para leitores de tela não foi encontrado.");
        return;
    }
    m_qt = qt;
    bus.unregisterObject(root(), QDBusConnection::UnregisterTree);
    bus.registerVirtualObject(root(), this, QDBusConnection::SubPath);
}

bool AccessiblePaste::handleMessage(const QDBusMessage &message, const QDBusConnection &connection)
{
    if (message.interface() == u"org.a11y.atspi.EditableText" && message.member() == u"PasteText")
        return connection.send(message.createReply(paste(message)));
    return m_qt && m_qt->handleMessage(message, connection);
}

QString AccessiblePaste::introspect(const QString &path) const
{
    return m_qt ? m_qt->introspect(path) : QString();
}

/// Whether it is on its way.
bool AccessiblePaste::paste(const QDBusMessage &message) const
{
    const QString name = message.path().section(u'/', -1);
    auto *field = QAccessible::accessibleInterface(name.toUInt());
    if (!field || !field->isValid() || !field->object() || !field->state().editable)
        return false;
    m_paste(*field->object(), message.arguments().value(0).toInt());
    return true;
}

} // namespace velmo
