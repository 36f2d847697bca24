#include "VelmoSystem/Linux/DBus/AccessibleWebPageButton.h"

#include "VelmoSystem/Linux/DBus/AccessibleTree.h"

#include <QPointer>

namespace velmo {

namespace {

constexpr int leaveTime = 1'000; // milliseconds

} // namespace

AccessibleWebPageButton::AccessibleWebPageButton(QDBusConnection session, Scheduler &scheduler)
    : m_session(std::move(session)), m_scheduler(scheduler),
      m_thread(std::make_unique<QThreadPool>())
{
    m_thread->setMaxThreadCount(1);
}

AccessibleWebPageButton::~AccessibleWebPageButton()
{
    m_stop.request_stop();
    // A thread that a browser keeps waiting ends with the process.
    if (!m_thread->waitForDone(leaveTime))
        static_cast<void>(m_thread.release());
}

void AccessibleWebPageButton::press(const QStringList &labels, qint64 pid,
                                    std::function<void(bool)> answer)
{
    add({.labels = labels,
         .pid = pid,
         .presses = true,
         .answer = [answer = std::move(answer)](const Result &result) { answer(result.isPressed); },
         .retry = {}});
}

void AccessibleWebPageButton::findName(const QStringList &labels, qint64 pid,
                                       std::function<void(const std::optional<QString> &)> answer)
{
    add({.labels = labels,
         .pid = pid,
         .answer = [answer = std::move(answer)](const Result &result) { answer(result.name); },
         .retry = {}});
}

void AccessibleWebPageButton::add(Errand errand)
{
    m_errands.emplace(++m_lastID, std::move(errand));
    run(m_lastID);
}

void AccessibleWebPageButton::run(std::uint64_t id)
{
    const Errand &errand = m_errands.at(id);
    m_thread->start([self = QPointer(this), &scheduler = m_scheduler, session = m_session,
                     stop = m_stop.get_token(), id, labels = errand.labels, pid = errand.pid,
                     presses = errand.presses] {
        if (stop.stop_requested())
            return;
        Result result;
        const AccessibleTree tree(session, scheduler, stop);
        if (const auto button = tree.find(labels, pid)) {
            result.name = button->name;
            result.isPressed = presses && tree.press(button->node);
        }
        if (stop.stop_requested())
            return;
        scheduler.post([self, id, result] {
            if (self)
                self->finish(id, result);
        });
    });
}

void AccessibleWebPageButton::finish(std::uint64_t id, const Result &result)
{
    Errand &errand = m_errands.at(id);
    if (!result.name && !std::exchange(errand.isRetry, true)) {
        errand.retry = m_scheduler.after(retryDelay, [this, id] { run(id); });
        return;
    }
    const auto answer = std::move(m_errands.extract(id).mapped().answer);
    answer(result);
}

} // namespace velmo
