#pragma once

#include "VelmoCore/Foundation/SystemScheduler.h"

#include <QApplication>

namespace velmo {

/// The application of development builds: logs what kept the main loop for long, and whose event it
/// was. What a loop within an event runs, as that of a drag, counts by itself.
class WatchedApplication : public QApplication {
    Q_OBJECT

public:
    static constexpr Seconds longest = 50ms;

    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override;

private:
    const SystemScheduler m_scheduler;
    Seconds m_logged{};    ///< of the present event, by those within it
    int m_deepestLoop = 0; ///< while the present event is handled
};

} // namespace velmo
