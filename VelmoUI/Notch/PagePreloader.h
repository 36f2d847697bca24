#pragma once

#include "VelmoCore/Foundation/Scheduler.h"

#include <QQmlComponent>
#include <QUrl>

#include <deque>
#include <memory>
#include <vector>

class QQmlEngine;

namespace velmo {

/// Does ahead what the first opening of the panel and of each page would wait for, on other
/// threads: the list of fonts, and the QML. One small step at a time, once the start is over; then
/// it ends, so that an idle Orvane sleeps.
class PagePreloader {
public:
    /// Both outlive it.
    PagePreloader(QQmlEngine &engine, Scheduler &scheduler);

    void start();

private:
    void load(const QUrl &file);
    void loadNext();

    QQmlEngine &m_engine;
    Scheduler &m_scheduler;
    std::deque<QUrl> m_left;
    std::vector<std::unique_ptr<QQmlComponent>> m_loaded; ///< kept, so that nothing unloads them
    ScheduledTask m_opening;
    ScheduledTask m_next;
};

} // namespace velmo
