#pragma once

#include "tests/VelmoUI/PanelFixture.h"
#include "tests/support/Printers.h"
#include "tests/support/Warnings.h"

#include <QQuickItem>

namespace velmo {

/// Looks into the visible tree of a panel.
class NotchViewFixture : public PanelFixture {
protected:
    /// Everything that is to be seen.
    std::vector<QQuickItem *> items()
    {
        QCoreApplication::processEvents();
        std::vector<QQuickItem *> found{view().rootObject()};
        for (std::size_t i = 0; i < found.size(); ++i) {
            for (QQuickItem *child : found[i]->childItems()) {
                if (child->isVisible())
                    found.push_back(child);
            }
        }
        return found;
    }
    /// The names and texts of it.
    QStringList names()
    {
        QStringList found;
        for (const QQuickItem *item : items())
            found << item->property("name").toString() << item->property("text").toString();
        return found;
    }

    QQuickItem *found(const std::function<bool(const QQuickItem &)> &isWanted)
    {
        for (QQuickItem *item : items()) {
            if (isWanted(*item))
                return item;
        }
        return nullptr;
    }
    /// A module with that page.
    void addPage(const QByteArray &qml)
    {
        desktop.folder.write(u"Page.qml"_qs, qml);
        FakeModule::addTo(*services.modules, u"página"_qs).page =
            QUrl::fromLocalFile(desktop.folder.path(u"Page.qml"_qs));
    }
    /// The same, opened with the keyboard in it.
    void openPage(const QByteArray &qml)
    {
        addPage(qml);
        start();
        showView();
        view().requestActivate();
        coordinator.open({.module = u"página"_qs});
        desktop.movePointer(notchOf(1));
        QCoreApplication::processEvents();
    }

    /// The name of the control that has the keyboard after that key.
    QString nameAfter(Qt::Key key)
    {
        QKeyEvent event(QEvent::KeyPress, key, {});
        QCoreApplication::sendEvent(&view(), &event);
        return view().activeFocusItem()->property("name").toString();
    }

    Warnings warnings;
};

} // namespace velmo
