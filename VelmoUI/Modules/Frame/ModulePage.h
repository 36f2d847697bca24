#pragma once

#include "VelmoCore/Notch/Route.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace velmo {

/// What QML draws of a module: a page of the panel, or a card of Home. One object for each time it
/// is drawn. It follows its services only while it can be seen. Written `velmo::ModulePage` where
/// it is a base: else qmllint doesn't find what pages inherit.
class ModulePage : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by its module")
    /// Whether the user can see it. Set by whoever shows it.
    Q_PROPERTY(bool isWatched READ isWatched WRITE setWatched NOTIFY watchedChanged)

public:
    bool isWatched() const { return m_isWatched; }
    /// Only a change calls `watch`.
    void setWatched(bool isWatched);
    /// Shows the item and does the verb, as far as it knows them.
    virtual void go(const Route &) {}

Q_SIGNALS:
    void watchedChanged();

protected:
    /// It comes into view, or has gone out of it.
    virtual void watch(bool) {}

private:
    bool m_isWatched = false;
};

} // namespace velmo
