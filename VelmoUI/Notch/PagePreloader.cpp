#include "VelmoUI/Notch/PagePreloader.h"

#include <QDirIterator>
#include <QFontMetricsF>
#include <QThreadPool>
#include <QUrl>

#include <algorithm>

namespace velmo {

namespace {

/// The first frame has no letters.
constexpr Seconds firstFrameTime = 0.1s;
/// The session starts other programs beside Orvane.
constexpr Seconds startTime = 2s;
/// Between two steps, for what the user does meanwhile.
constexpr Seconds pauseTime = 0.02s;

/// What those are made of comes with them.
std::vector<QUrl> qmlFiles(const QStringList &patterns)
{
    std::vector<QUrl> files;
    QDirIterator entry(QStringLiteral(":/qt/qml/Velmo"), patterns, QDir::Files,
                       QDirIterator::Subdirectories);
    while (entry.hasNext())
        files.emplace_back(QStringLiteral("qrc") + entry.next());
    return files;
}

/// The first letters wait until all fonts are listed.
void listFonts()
{
    QThreadPool::globalInstance()->start([] { QFontMetricsF(QFont()).height(); });
}

} // namespace

PagePreloader::PagePreloader(QQmlEngine &engine, Scheduler &scheduler)
    : m_engine(engine), m_scheduler(scheduler)
{
}

void PagePreloader::start()
{
    m_opening = m_scheduler.after(firstFrameTime, [this] {
        listFonts();
        for (const QUrl &file : qmlFiles({QStringLiteral("*Content.qml")}))
            load(file);
    });
    for (const QUrl &file : qmlFiles({QStringLiteral("*Page.qml"), QStringLiteral("*Card.qml")}))
        m_steps.emplace_back([this, file] { load(file); });
    scheduleNext(startTime);
}

void PagePreloader::load(const QUrl &file)
{
    m_loaded.push_back(
        std::make_unique<QQmlComponent>(&m_engine, file, QQmlComponent::Asynchronous));
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
