#pragma once

#include <QEvent>
#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>
#include <QtQml/qqmlregistration.h>

namespace velmo {

class MenuPresence;

/// Sent to a window when one of its menus opens or closes.
class MenuEvent : public QEvent {
public:
    MenuEvent(MenuPresence &ofMenu, bool opens) : QEvent(kind()), menu(ofMenu), begins(opens) {}

    static Type kind();

    MenuPresence &menu;
    const bool begins;
};

/// Stands in a menu. While it can be seen, its window has a menu open.
class MenuPresence : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

public:
    using QQuickItem::QQuickItem;
    ~MenuPresence() override;

Q_SIGNALS:
    /// The menu is to close.
    void dismissed();

protected:
    void itemChange(ItemChange change, const ItemChangeData &value) override;

private:
    void setHost(QQuickWindow *host);

    QPointer<QQuickWindow> m_host; ///< that knows of it
};

} // namespace velmo
