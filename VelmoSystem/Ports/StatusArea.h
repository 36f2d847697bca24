#pragma once

#include <QObject>

namespace velmo {

/// Where the desktop shows the items of programs that run in the background.
class StatusArea : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// False until the desktop has one.
    virtual bool isAvailable() const = 0;

Q_SIGNALS:
    void becameAvailable();
};

} // namespace velmo
