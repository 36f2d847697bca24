#include "VelmoUI/Notch/PagePreloader.h"

#include <QDirIterator>
#include <QFontMetricsF>
#include <QThreadPool>

#include <algorithm>
#include <malloc.h>

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
    m_next = m_scheduler.after(startTime, [this] {
        const auto files = qmlFiles({QStringLiteral("*Page.qml"), QStringLiteral("*Card.qml")});
        m_left.assign(files.begin(), files.end());
        loadNext();
    });
}

void PagePreloader::load(const QUrl &file)
{
    m_loaded.push_back(
        std::make_unique<QQmlComponent>(&m_engine, file, QQmlComponent::Asynchronous));
}

void PagePreloader::loadNext()
{
    if (m_left.empty()) {
        malloc_trim(0); // loading leaves many freed pieces behind
        return;
    }
    load(m_left.front());
    m_left.pop_front();
    m_next = m_scheduler.after(pauseTime, [this] { loadNext(); });
}

} // namespace velmo
