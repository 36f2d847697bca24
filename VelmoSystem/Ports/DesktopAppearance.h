#pragma once

#include <QObject>

namespace velmo {

/// What the user asked the whole desktop for.
class DesktopAppearance : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// The last answer of the desktop; false until there is one.
    virtual bool shouldReduceMotion() const = 0;
    virtual bool prefersDarkScheme() const = 0;

Q_SIGNALS:
    void changed();
};

} // namespace velmo
