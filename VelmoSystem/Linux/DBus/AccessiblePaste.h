#pragma once

#include "VelmoCore/Foundation/Scheduler.h"

#include <QAccessible>
#include <QDBusVirtualObject>
#include <QPointer>

#include <functional>

namespace velmo {

/// Answers a screen reader's `PasteText` (AT-SPI's EditableText). Qt would read the clipboard
/// meanwhile, and wait on the main thread for its owner, who may be hung, or Orvane itself. On the
/// bus of the screen readers this stands in the place of Qt's own object and hands everything else
/// on to that. Where it isn't found Qt goes on as it is.
class AccessiblePaste : public QDBusVirtualObject, public QAccessible::ActivationObserver {
    Q_OBJECT

public:
    /// Pastes into a text field, at a place in its text.
    using Paste = std::function<void(QObject &field, int position)>;

    AccessiblePaste(Scheduler &scheduler, Paste paste);
    ~AccessiblePaste() override;

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;
    QString introspect(const QString &path) const override;
    void accessibilityActiveChanged(bool isActive) override;

private:
    void takePlace();
    bool paste(const QDBusMessage &message) const;

    Scheduler &m_scheduler;
    const Paste m_paste;
    QPointer<QDBusVirtualObject> m_qt;
};

} // namespace velmo
