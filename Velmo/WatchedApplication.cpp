#include "Velmo/WatchedApplication.h"

#include "VelmoCore/Foundation/Log.h"

#include <QEvent>
#include <QMetaEnum>
#include <QThread>

#include <algorithm>
#include <utility>

namespace velmo {

bool WatchedApplication::notify(QObject *receiver, QEvent *event)
{
    if (QThread::currentThread() != thread())
        return QApplication::notify(receiver, event);
    // Either may be gone afterwards.
    const QEvent::Type type = event->type();
    const char *const kind = receiver->metaObject()->className();
    const QString name = receiver->objectName();
    const int loop = thread()->loopLevel();
    const Seconds loggedBefore = std::exchange(m_logged, Seconds{});
    const int deepestBefore = std::exchange(m_deepestLoop, loop);
    const Date start = m_scheduler.now();
    const bool result = QApplication::notify(receiver, event);
    const Seconds duration = m_scheduler.now() - start;
    if (m_deepestLoop == loop && duration - m_logged > longest) {
        qCWarning(Log::app).noquote().nospace()
            << "blocked for " << qRound(duration / 1ms) << " ms: " << kind << ' ' << name << ' '
            << QMetaEnum::fromType<QEvent::Type>().valueToKey(type);
        m_logged = duration;
    }
    m_logged += loggedBefore;
    m_deepestLoop = std::max(m_deepestLoop, deepestBefore);
    return result;
}

} // namespace velmo
