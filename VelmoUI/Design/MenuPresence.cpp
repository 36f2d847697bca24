#include "VelmoUI/Design/MenuPresence.h"

#include <QCoreApplication>

#include <utility>

namespace velmo {

QEvent::Type MenuEvent::kind()
{
    static const int type = registerEventType();
    return Type(type);
}

MenuPresence::~MenuPresence()
{
    setHost(nullptr);
}

void MenuPresence::itemChange(ItemChange change, const ItemChangeData &value)
{
    QQuickItem::itemChange(change, value);
    if (change == ItemVisibleHasChanged)
        setHost(value.boolValue ? window() : nullptr);
    else if (change == ItemSceneChange)
        setHost(isVisible() ? value.window : nullptr);
}

void MenuPresence::setHost(QQuickWindow *host)
{
    if (m_host == host)
        return;
    const auto notify = [this](QQuickWindow *window, bool begins) {
        MenuEvent event(*this, begins);
        if (window)
            QCoreApplication::sendEvent(window, &event);
    };
    const QPointer<QQuickWindow> before = std::exchange(m_host, host);
    notify(before, false);
    notify(host, true);
}

} // namespace velmo
