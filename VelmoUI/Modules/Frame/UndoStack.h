#pragma once

#include "VelmoCore/Foundation/Scheduler.h"

#include <QObject>

#include <deque>
#include <functional>

namespace velmo {

/// What a page has removed and can bring back, each for its `time`, the latest first.
class UndoStack : public QObject {
    Q_OBJECT

public:
    static constexpr Seconds time = 8s;

    explicit UndoStack(Scheduler &scheduler) : m_scheduler(scheduler) {}

    bool isEmpty() const { return m_removals.empty(); }
    /// Of the latest; empty if nothing can come back.
    QString title() const { return isEmpty() ? QString() : m_removals.back().title; }

    /// Either `undo` brings it back, or `commit` is called once it can't come back.
    void offer(
        const QString &title, std::function<void()> undo, std::function<void()> commit = [] {});
    /// Brings the latest back.
    void undo();
    /// Nothing can come back any more.
    void commitAll();
    /// The same without a commit.
    void clear();

Q_SIGNALS:
    void changed();

private:
    struct Removal {
        QString title;
        std::function<void()> undo;
        std::function<void()> commit;
        ScheduledTask end;
    };

    void commitFirst();

    Scheduler &m_scheduler;
    std::deque<Removal> m_removals;
};

} // namespace velmo
