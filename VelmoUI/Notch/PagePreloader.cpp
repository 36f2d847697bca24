#include "VelmoUI/Notch/PagePreloader.h"

#include <QDirIterator>
#include <QUrl>

#include <algorithm>

namespace velmo {

namespace {

/// The session starts other programs beside Orvane.
constexpr Seconds startTime = 2s;
/// Between two steps, for what the user does meanwhile.
constexpr Seconds pauseTime = 0.02s;

std::vector<QUrl> qmlOfModules()
{
    std::vector<QUrl> files;
    QDirIterator entry(QStringLiteral(":/qt/qml/Velmo/Modules"), {QStringLiteral("*.qml")},
                       QDir::Files, QDirIterator::Subdirectories);
    while (entry.hasNext())
        files.emplace_back(QStringLiteral("qrc") + entry.next());
    return files;
}

} // namespace

PagePreloader::PagePreloader(QQmlEngine &engine, Scheduler &scheduler)
    : m_engine(engine), m_scheduler(scheduler)
{
}

void PagePreloader::start()
{
    for (const QUrl &file : qmlOfModules())
        m_steps.emplace_back([this, file] {
            m_loaded.push_back(
                std::make_unique<QQmlComponent>(&m_engine, file, QQmlComponent::Asynchronous));
        });
    scheduleNext(startTime);
}

void PagePreloader::scheduleNext(Seconds delay)
{
    m_next = m_scheduler.after(delay, [this] {
        m_steps.front()();
        m_steps.pop_front();
        if (!m_steps.empty())
            scheduleNext(pauseTime);
    });
}

} // namespace velmo
